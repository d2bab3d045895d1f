"""Run by the project's tests with a stand-in for pywin32 only, never on the component itself: they have
no Python for Windows. The kit for Windows runs it.

Runs the configuration component from Python with pywin32:

    python host.py NAME=VALUE ... [--no-form]

Sets the properties of TLPACSCFG.clsConfig, calls Init, prints the description of every configuration,
and shows the windows unless --no-form is given. Ends with 0 only when Init and ShowForm succeeded.
A 32-bit Python uses the 32-bit component.
"""
import sys

import pythoncom
import win32com.client.dynamic


def run(arguments):
    config = win32com.client.dynamic.Dispatch("TLPACSCFG.clsConfig")
    print("TLPACSCFG", config.Version())
    show_form = True
    for argument in arguments:
        name, equals, value = argument.partition("=")
        if argument == "--no-form":
            show_form = False
        elif not equals:
            raise ValueError(f"NAME=VALUE or --no-form expected instead of {argument}")
        else:
            setattr(config, name, value)
    initialized = config.Init()
    print("Init returned", initialized)
    if not initialized:
        return False
    for record in config.colPACSConfig.ColPACSConfigs:
        # The record with the identifier 0 stands for no configuration.
        if record.configID > 0:
            print(record.configID, record.Description)
    if not show_form:
        return True
    code = config.ShowForm()
    print("ShowForm returned", code)
    return code == 0


try:
    succeeded = run(sys.argv[1:])
except (pythoncom.com_error, AttributeError, ValueError) as error:
    print(error)
    succeeded = False
sys.exit(0 if succeeded else 1)
