' Errors as scripts see them.
Option Explicit

Dim Failures, Config, Registry, ErrorSource
Failures = 0
Set Config = CreateObject("TLPACSCFG.clsConfig")
Set Registry = CreateObject("TLPACSCFG.brnkregs")

On Error Resume Next

Config.User_ID = 40000
Failed "too large a number", 6
Config.User_ID = "forty"
Failed "no number", 13
Config.TlCommClientEnabled = "maybe"
Failed "no truth value", 13
If ErrorSource <> "TLPACSCFG" Then Wrong "source of an error: " & ErrorSource
Config.NoSuchProperty = 1
Failed "unknown property", 438
Registry.GetRegValue "one"
Failed "argument left out", 450
CreateObject "TLPACSCFG.colWorkstation"
Failed "class that hosts do not create", 429

Config.User_ID = 5
If Err.Number <> 0 Then Wrong "a value that fits: " & Err.Description
If Config.User_ID <> 5 Then Wrong "the value that fits is not kept"

Set Config = Nothing
Set Registry = Nothing
If Failures = 0 Then WScript.Echo "passed"

Sub Failed(what, expected)
  If Err.Number <> expected Then
    Wrong what & ": error " & Err.Number & " (" & Err.Description & ") instead of " & expected
  End If
  If Err.Description = "" Then Wrong what & ": no description"
  ErrorSource = Err.Source
  Err.Clear
End Sub

Sub Wrong(message)
  WScript.Echo message
  Failures = Failures + 1
End Sub
