# Not run by the project's own tests, which have no PowerShell; the kit for Windows runs it.
#
# Runs the configuration component from PowerShell:
#
#   powershell -STA -ExecutionPolicy Bypass -File host.ps1 NAME=VALUE ... [--no-form]
#
# Sets the properties of TLPACSCFG.clsConfig, calls Init, prints the description of every configuration,
# and shows the windows unless --no-form is given. Ends with 0 only when Init and ShowForm succeeded.
# C:\Windows\SysWOW64\WindowsPowerShell\v1.0\powershell.exe uses the 32-bit component.
$ErrorActionPreference = 'Stop'
try {
    $config = New-Object -ComObject TLPACSCFG.clsConfig
    Write-Output "TLPACSCFG $($config.Version())"
    $showForm = $true
    foreach ($argument in $args) {
        $name, $value = $argument -split '=', 2
        if ($argument -eq '--no-form') { $showForm = $false }
        elseif ($null -eq $value) { throw "NAME=VALUE or --no-form expected instead of $argument" }
        else { $config.$name = $value }
    }
    $initialized = $config.Init()
    Write-Output "Init returned $initialized"
    if (-not $initialized) { exit 1 }
    foreach ($record in $config.colPACSConfig.ColPACSConfigs) {
        # The record with the identifier 0 stands for no configuration.
        if ($record.configID -gt 0) { Write-Output "$($record.configID) $($record.Description)" }
    }
    if ($showForm) {
        $code = $config.ShowForm()
        Write-Output "ShowForm returned $code"
        if ($code -ne 0) { exit 1 }
    }
    exit 0
}
catch {
    Write-Output $_.Exception.Message
    exit 1
}
