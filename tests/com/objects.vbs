' The component as scripts see it.
Option Explicit

Dim Failures
Failures = 0

Dim config, other
Set config = CreateObject("TLPACSCFG.clsConfig")
Equal "new object's flag", config.TlCommClientEnabled, "False"
Equal "type of the flag", TypeName(config.TlCommClientEnabled), "String"
config.TlCommClientEnabled = True
Equal "flag set to True", config.TlCommClientEnabled, "True"
config.TlCommClientEnabled = 0
Equal "flag set to 0", config.TlCommClientEnabled, "False"
config.TlCommClientEnabled = "1"
Equal "flag set to the text 1", config.TlCommClientEnabled, "True"
config.LocalTaloraDirectory = "C:\Prog\"
Equal "directory", config.LocalTaloraDirectory, "C:\Prog\"
config.User_ID = "41"
Equal "user", config.User_ID, 41
Equal "type of the user", TypeName(config.User_ID), "Integer"
Equal "version has three numbers", UBound(Split(config.Version, ".")), 2
Equal "no collection", config.colWS Is Nothing, True
Equal "no configurations", config.colPACSConfig Is Nothing, True
Set config.colPACSConfig = Nothing
Set other = config
Equal "same object", other Is config, True
Equal "no window without a connection", config.ShowForm(), 1
Equal "type of the code", TypeName(config.ShowForm), "Byte"

Dim registry, number, text
Set registry = CreateObject("TLPACSCFG.brnkregs")
registry.AppRegPath = "SOFTWARE\TlPacsCfgTest-"
registry.AppName = "script"
Equal "path reads as the name", registry.AppRegPath, "script"
Equal "created", registry.CreateRegEntry(4, "number", 77), True
number = Empty
Equal "read", registry.GetAppRegValue("number", 4, number), True
Equal "by reference", number, 77
Equal "type of the number", TypeName(number), "Long"
Equal "created with the default", registry.GetRegValue("text", "a default"), "a default"
text = "unchanged"
Equal "missing", registry.GetAppRegValue("none", 1, text), False
Equal "reference left alone", text, "unchanged"
Equal "deleted", registry.DeleteAllAppRegEntries(), True

Set registry = Nothing
Set other = Nothing
Set config = Nothing
If Failures = 0 Then WScript.Echo "passed"

Sub Equal(what, actual, expected)
  If actual <> expected Then
    WScript.Echo what & ": " & actual & " instead of " & expected
    Failures = Failures + 1
  End If
End Sub
