WScript.Echo CreateObject("TLPACSCFG.clsConfig").Version
