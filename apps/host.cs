// Compiled by the project's tests, but not run: they have no .NET for Windows. The kit for Windows
// compiles and runs it.
//
// Runs the configuration component from C#:
//
//   csc /platform:x64 host.cs         (x86 for the 32-bit component)
//   host.exe NAME=VALUE ... [--no-form]
//
// Sets the properties of TLPACSCFG.clsConfig, calls Init, prints the description of every configuration,
// and shows the windows unless --no-form is given. Ends with 0 only when Init and ShowForm succeeded.
using System;
using System.Collections;
using System.Reflection;

static class Host
{
    // The windows belong to the thread that calls Init and ShowForm.
    [STAThread]
    static int Main(string[] arguments)
    {
        try
        {
            return Run(arguments) ? 0 : 1;
        }
        catch (TargetInvocationException error)
        {
            // The component's own words.
            Console.WriteLine(error.InnerException.Message);
        }
        catch (Exception error)
        {
            Console.WriteLine(error.Message);
        }
        return 1;
    }

    static bool Run(string[] arguments)
    {
        object config = Activator.CreateInstance(Type.GetTypeFromProgID("TLPACSCFG.clsConfig", true));
        Console.WriteLine("TLPACSCFG " + Call(config, "Version"));
        bool showForm = true;
        foreach (string argument in arguments)
        {
            int equals = argument.IndexOf('=');
            if (argument == "--no-form")
                showForm = false;
            else if (equals < 0)
                throw new ArgumentException("NAME=VALUE or --no-form expected instead of " + argument);
            else
                Put(config, argument.Substring(0, equals), argument.Substring(equals + 1));
        }
        bool initialized = (bool)Call(config, "Init");
        Console.WriteLine("Init returned " + initialized);
        if (!initialized)
            return false;
        foreach (object record in (IEnumerable)Get(Get(config, "colPACSConfig"), "ColPACSConfigs"))
        {
            // The record with the identifier 0 stands for no configuration.
            if (Convert.ToInt32(Get(record, "configID")) > 0)
                Console.WriteLine(Get(record, "configID") + " " + Get(record, "Description"));
        }
        if (!showForm)
            return true;
        object code = Call(config, "ShowForm");
        Console.WriteLine("ShowForm returned " + code);
        return Convert.ToInt32(code) == 0;
    }

    static object Get(object target, string name)
    {
        return target.GetType().InvokeMember(name, BindingFlags.GetProperty, null, target, null);
    }

    static void Put(object target, string name, object value)
    {
        target.GetType().InvokeMember(name, BindingFlags.SetProperty, null, target, new[] { value });
    }

    static object Call(object target, string name)
    {
        return target.GetType().InvokeMember(name, BindingFlags.InvokeMethod, null, target, null);
    }
}
