' A host that ends while it still holds an object and the database is open.
Option Explicit

Dim Config
Set Config = CreateObject("TLPACSCFG.clsConfig")
Config.SQLDSN = "TlTestSite"
If Config.Init() Then WScript.Echo "passed"
WScript.Quit 0
