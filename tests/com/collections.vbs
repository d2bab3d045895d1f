' The collections as scripts see them, on the site's database.
Option Explicit

Dim Failures
Failures = 0

Dim config, record, ids, station, names, position
Set config = CreateObject("TLPACSCFG.clsConfig")
config.SQLDSN = "TlTestSite"
Equal "Init", config.Init(), True

ids = ""
For Each record In config.colPACSConfig.ColPACSConfigs
  ids = ids & " " & record.configID
Next
Equal "identifiers", ids, " 0 1 2 3 4 5 6 7 8 9 12"
Equal "count", config.colPACSConfig.ColPACSConfigs.Count, 11
Equal "item by position", config.colPACSConfig.Item(11).configID, 12
Equal "default item", config.colPACSConfig(11).configID, 12
Equal "item of the collection by key", config.colPACSConfig.ColPACSConfigs("12").configID, 12
Equal "item by a name is Nothing", config.colWS.Item("READ-07") Is Nothing, True
Equal "same item", config.colPACSConfig(2) Is config.m_colPACSConfig.ColPACSConfigs("1"), True

position = 0
config.colPACSConfig.GetItemNumber 12, position
Equal "position by reference", position, 11

names = 0
For Each station In config.colWS.ColWorkStations
  If station.WorkStation = "READ-07" Then names = names + 1
Next
Equal "one workstation of the name", names, 1

Set record = Nothing
Set station = Nothing
Set config = Nothing
If Failures = 0 Then WScript.Echo "passed"

Sub Equal(what, actual, expected)
  If actual <> expected Then
    WScript.Echo what & ": " & actual & " instead of " & expected
    Failures = Failures + 1
  End If
End Sub
