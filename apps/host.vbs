' Runs the configuration component from a script:
'
'   cscript //nologo host.vbs NAME=VALUE ... [--no-form]
'
' Sets the properties of TLPACSCFG.clsConfig, calls Init, prints the summary of every configuration,
' and shows the windows unless --no-form is given. Ends with 0 only when Init and ShowForm succeeded.
Option Explicit

Dim Config, ShowsForm, Failures

ShowsForm = True
Failures = 0
Set Config = CreateConfig()
If Failures = 0 Then ReadArguments
If Failures = 0 Then Initialize
If Failures = 0 Then PrintConfigurations
If Failures = 0 And ShowsForm Then RunForm
Set Config = Nothing
If Failures = 0 Then
  WScript.Echo "Finished."
  WScript.Quit 0
End If
WScript.Echo "Failed."
WScript.Quit 1

Function CreateConfig()
  Set CreateConfig = Nothing
  On Error Resume Next
  Set CreateConfig = CreateObject("TLPACSCFG.clsConfig")
  If CreateConfig Is Nothing Then
    Fail "TLPACSCFG.clsConfig cannot be created. Register the component first: regsvr32 TLPACSCFG.dll"
  End If
End Function

Sub ReadArguments()
  Dim i, argument, equals
  For i = 0 To WScript.Arguments.Count - 1
    argument = WScript.Arguments(i)
    equals = InStr(argument, "=")
    If argument = "--no-form" Then
      ShowsForm = False
    ElseIf equals > 1 Then
      SetProperty Left(argument, equals - 1), Mid(argument, equals + 1)
    Else
      Fail "NAME=VALUE or --no-form expected instead of " & argument
    End If
  Next
End Sub

Sub SetProperty(name, value)
  On Error Resume Next
  Select Case LCase(name)
    Case "tlcommclientenabled" Config.TlCommClientEnabled = value
    Case "tlcommclienthostip" Config.TlCommClientHostIP = value
    Case "tlcommclienthostport" Config.TlCommClientHostPort = value
    Case "tlcommclienttimeout" Config.TlCommClientTimeout = value
    Case "configloaded" Config.ConfigLoaded = value
    Case "initialized" Config.Initialized = value
    Case "user_id" Config.User_ID = value
    Case "debugmode" Config.DebugMode = value
    Case "logfile" Config.LogFile = value
    Case "sqlservername" Config.SqlServerName = value
    Case "password" Config.Password = value
    Case "sqlusername" Config.SqlUserName = value
    Case "sqldbname" Config.SqlDbName = value
    Case "sqldsn" Config.SQLDSN = value
    Case "sqltimeout" Config.SqlTimeout = value
    Case "dynamic_datasource" Config.Dynamic_DataSource = value
    Case "talora_inifile" Config.Talora_INIFile = value
    Case "useofflinedb" Config.UseOfflineDB = value
    Case "localtaloradirectory" Config.LocalTaloraDirectory = value
    Case Else Fail "There is no setting " & name
  End Select
  If Err.Number <> 0 Then Fail "Setting " & name & " failed: " & ErrorText()
End Sub

Sub Initialize()
  Dim result
  On Error Resume Next
  result = Config.Init()
  If Err.Number <> 0 Then
    Fail "Init failed: " & ErrorText()
  Else
    WScript.Echo "Init returned " & result
    If Not result Then Fail "The component is not connected to its data."
  End If
End Sub

Sub PrintConfigurations()
  Dim record
  For Each record In Config.colPACSConfig.ColPACSConfigs
    ' The record with the identifier 0 stands for no configuration.
    If record.configID > 0 Then WScript.Echo SummaryOf(record)
  Next
End Sub

Function SummaryOf(record)
  Dim summary
  On Error Resume Next
  summary = record.getAllValuesFormatted()
  If Err.Number <> 0 Then
    summary = " PACS ID - Description:          " & record.configID & " - " & record.Description & _
              vbCrLf & " It has no summary: " & ErrorText() & vbCrLf
  End If
  SummaryOf = summary
End Function

Sub RunForm()
  Dim code
  On Error Resume Next
  code = Config.ShowForm()
  If Err.Number <> 0 Then
    Fail "ShowForm failed: " & ErrorText()
  Else
    WScript.Echo "ShowForm returned " & code
    If code <> 0 Then Fail "The windows could not be shown."
  End If
End Sub

Function ErrorText()
  ErrorText = Err.Description & " (error " & Err.Number & ")"
End Function

Sub Fail(reason)
  WScript.Echo reason
  Failures = Failures + 1
End Sub
