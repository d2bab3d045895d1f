@echo off
rem Registers the DLLs beside this file, as administrator:   register.cmd [/u]
rem With /u it unregisters them. A 64-bit Windows gets those for 64-bit and for 32-bit hosts.
setlocal
set failed=0
set system=%SystemRoot%\System32
if defined PROCESSOR_ARCHITEW6432 set system=%SystemRoot%\Sysnative
if "%PROCESSOR_ARCHITECTURE%%PROCESSOR_ARCHITEW6432%"=="x86" (
  call :register "%system%\regsvr32.exe" x86 %1
) else (
  call :register "%system%\regsvr32.exe" x64 %1
  if exist "%SystemRoot%\SysWOW64\regsvr32.exe" call :register "%SystemRoot%\SysWOW64\regsvr32.exe" x86 %1
)
if %failed%==0 echo Done.
exit /b %failed%

:register
for %%d in (TLPACSCFG.dll TlCommClient.dll) do (
  "%~1" /s %3 "%~dp0%2\%%d"
  if errorlevel 1 (
    echo %2\%%d: failed. Is this the command prompt of an administrator?
    set failed=1
  )
)
exit /b
