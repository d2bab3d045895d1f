@echo off
rem Runs all tests of this kit on this computer, and writes report.txt beside this file, to be sent back:
rem
rem   run-tests [NAME=VALUE ...]
rem
rem The arguments are settings for the sample hosts, which then open that site too, for example
rem SQLDSN=Talora SqlUserName=talora Password=... (site\talora.sql makes a site on SQL Server). They are not
rem written into the report.
rem
rem Run it as an administrator and on a computer that nobody works with: for half an hour windows open and close
rem by themselves, and the tests register and unregister the component and use the data sources TlTestSite
rem and TlImpatientSite. At the end all of that is gone.
rem
rem Ends with 0 when nothing failed. What is not there (a driver, the service) counts as not run, never as passed.

setlocal
rem A 32-bit command interpreter sees the 32-bit system only.
if not defined PROCESSOR_ARCHITEW6432 goto native
if defined started_again goto native
set "started_again=yes"
"%windir%\Sysnative\cmd.exe" /c ""%~f0" %*"
exit /b %errorlevel%

:native
set "kit=%~dp0"
set "kit=%kit:~0,-1%"
set "report=%kit%\report.txt"
set settings=%*
rem Without a site, Init of an object that calls itself initialised returns False and shows nothing.
if not defined settings (
  set "settings=Initialized=True"
  set "expected=Init returned False"
) else (
  set "expected=Init returned True"
)
if not defined programs set "programs=core_tests com_tests ui_tests fault_tests lifetime_tests remote_tests"
set /a passed=0, failed=0, left_out=0

rem --- What must be so before anything is changed
reg add HKLM\SOFTWARE\TlTestKit /f >nul 2>&1
if not errorlevel 1 goto allowed
echo Run this as an administrator.
exit /b 2

:allowed
reg delete HKLM\SOFTWARE\TlTestKit /f >nul 2>&1
set "there="
for %%k in (HKCR\TLPACSCFG.clsConfig HKCR\TlCommClient.clsTlCommClient HKCU\SOFTWARE\TlCommClient) do (
  reg query %%k >nul 2>&1
  if not errorlevel 1 set "there=%%k"
)
if not defined there goto begin
echo %there% is there: the component is installed, and the tests would replace it.
echo Remove it, or use another computer.
exit /b 2

:begin
rem --- This computer
> "%report%" echo Report of the tests of TLPACSCFG
type "%kit%\version.txt" >> "%report%"
call :say %DATE% %TIME%
ver >> "%report%"
for %%v in (ProductName DisplayVersion CurrentBuild UBR) do (
  reg query "HKLM\SOFTWARE\Microsoft\Windows NT\CurrentVersion" /v %%v 2>nul | find "%%v" >> "%report%"
)
call :say Processor: %PROCESSOR_ARCHITECTURE% %PROCESSOR_ARCHITEW6432%
set "wine="
if exist "%windir%\system32\winecfg.exe" set "wine=yes"
if defined wine call :say This is Wine.
for %%b in (64 32) do (
  call :section ODBC drivers, %%b bit
  reg query "HKLM\SOFTWARE\ODBC\ODBCINST.INI\ODBC Drivers" /reg:%%b 2>nul | find "REG_SZ" >> "%report%"
  call :section System data sources, %%b bit
  reg query "HKLM\SOFTWARE\ODBC\ODBC.INI\ODBC Data Sources" /reg:%%b 2>nul | find "REG_SZ" >> "%report%"
)
call :section User data sources
reg query "HKCU\SOFTWARE\ODBC\ODBC.INI\ODBC Data Sources" 2>nul | find "REG_SZ" >> "%report%"

rem --- The tests
set "own_scratch="
if not defined TL_SCRATCH (
  set "TL_SCRATCH=%TEMP%\tlpacscfg-tests"
  set "own_scratch=yes"
)
if not exist "%TL_SCRATCH%" mkdir "%TL_SCRATCH%"
set "TL_SOURCE_DIR=%kit%\sources"
if not defined TL_TIME_LIMIT set "TL_TIME_LIMIT=900"
if not exist "%kit%\output" mkdir "%kit%\output"
if exist "%kit%\x64\core_tests.exe" call :all_of x64 64 System32 Framework64
if exist "%kit%\x86\core_tests.exe" call :all_of x86 32 SysWOW64 Framework
if defined own_scratch rmdir /s /q "%TL_SCRATCH%"

call :section Together
call :say %passed% passed, %failed% failed, %left_out% not run
echo The report is %report%
if %failed% gtr 0 exit /b 1
exit /b 0

rem all_of FOLDER BITS SYSTEM-DIRECTORY NET-DIRECTORY
:all_of
set "folder=%kit%\%1"
set "system=%windir%\%3"
if "%2"=="32" if not exist "%windir%\SysWOW64\regsvr32.exe" set "system=%windir%\System32"
if "%2"=="32" if not exist "%windir%\SysWOW64\regsvr32.exe" if not "%PROCESSOR_ARCHITECTURE%"=="x86" (
  call :section %1
  call :not_run 1 "all of %1: this system runs no 32-bit programs"
  goto :eof
)
if "%2"=="64" if "%PROCESSOR_ARCHITECTURE%"=="x86" (
  call :section %1
  call :not_run 1 "all of %1: this system runs no 64-bit programs"
  goto :eof
)
call :section Sample hosts, %1
set command="%folder%\plain-host.exe"
call :sample %1 without-registration
call :command_line %1
call :data_sources %2
for %%p in (%programs%) do call :program %1 %%p
reg delete HKCU\SOFTWARE\ODBC\ODBC.INI\TlTestSite /f >nul 2>&1
reg delete HKCU\SOFTWARE\ODBC\ODBC.INI\TlImpatientSite /f >nul 2>&1
reg delete HKCU\SOFTWARE\ODBC\ODBC.INI\TlMissingSite /f >nul 2>&1
reg delete "HKCU\SOFTWARE\ODBC\ODBC.INI\ODBC Data Sources" /v TlTestSite /f >nul 2>&1
reg delete "HKCU\SOFTWARE\ODBC\ODBC.INI\ODBC Data Sources" /v TlImpatientSite /f >nul 2>&1

call :section Sample hosts with the registered component, %1
"%system%\regsvr32.exe" /s "%folder%\TLPACSCFG.dll"
set command="%folder%\tlpacscfg-host.exe"
call :sample %1 program
set command="%system%\cscript.exe" //nologo "%kit%\samples\host.vbs"
call :sample %1 script
set "powershell=%system%\WindowsPowerShell\v1.0\powershell.exe"
set command="%powershell%" -NoProfile -STA -ExecutionPolicy Bypass -File "%kit%\samples\host.ps1"
if defined wine (
  call :not_run 1 "powershell: Wine has none"
) else if exist "%powershell%" (
  call :sample %1 powershell
) else (
  call :not_run 1 "powershell: there is none"
)
set "compiler=%windir%\Microsoft.NET\%4\v4.0.30319\csc.exe"
set command="%folder%\host-cs.exe"
if exist "%compiler%" (
  "%compiler%" /nologo /platform:%1 /out:%command% "%kit%\samples\host.cs"
  call :sample %1 c-sharp
) else (
  call :not_run 1 "c-sharp: there is no %compiler%"
)
set command=py -3-%2 "%kit%\samples\host.py"
py -3-%2 -c "import win32com" >nul 2>&1
if errorlevel 1 (
  call :not_run 1 "python: there is no %2-bit Python 3 with pywin32"
) else (
  call :sample %1 python
)
"%system%\regsvr32.exe" /s /u "%folder%\TlCommClient.dll"
"%system%\regsvr32.exe" /s /u "%folder%\TLPACSCFG.dll"
goto :eof

rem command_line FOLDER: the program starts, and knows its version.
:command_line
set "output=%kit%\output\%1-command-line.txt"
"%folder%\tlpacscfg.exe" --version > "%output%" 2>&1
set "status=%errorlevel%"
set "version="
for /f "tokens=2" %%v in ('find "Version " ^< "%kit%\version.txt"') do set "version=%%v"
set "name=command-line"
find "%version%" < "%output%" >nul
if errorlevel 1 goto failed
goto good

rem data_sources BITS: makes the data sources of the tests, where there is the driver for SQLite.
:data_sources
set "driver="
for /f "tokens=2,*" %%a in ('reg query "HKLM\SOFTWARE\ODBC\ODBCINST.INI\SQLite3 ODBC Driver" /v Driver /reg:%1 2^>nul ^| find "REG_SZ"') do set "driver=%%b"
if not defined driver goto :eof
call :data_source TlTestSite 10000
call :data_source TlImpatientSite 20
goto :eof

:data_source
set "key=HKCU\SOFTWARE\ODBC\ODBC.INI\%1"
reg add %key% /v Driver /d "%driver%" /f >nul
reg add %key% /v Database /d "%TL_SCRATCH%\site.db" /f >nul
reg add %key% /v SyncPragma /d OFF /f >nul
reg add %key% /v Timeout /d %2 /f >nul
reg add "HKCU\SOFTWARE\ODBC\ODBC.INI\ODBC Data Sources" /v %1 /d "SQLite3 ODBC Driver" /f >nul
goto :eof

rem program FOLDER NAME: one program with tests.
:program
set "output=%kit%\output\%1-%2.txt"
echo %1 %2 ...
"%folder%\%2.exe" > "%output%" 2>&1
set "status=%errorlevel%"
set "good="
set "bad=0"
set "skipped=0"
for /f "tokens=2,4" %%a in ('find "[  PASSED  ]" ^< "%output%"') do set "good=%%b"
for /f "tokens=2,4" %%a in ('find ", listed below:" ^< "%output%"') do (
  if "%%a"=="FAILED" set "bad=%%b"
  if "%%a"=="SKIPPED" set "skipped=%%b"
)
call :section %1 %2
if not defined good (
  set "good=0"
  set "bad=1"
  call :say The program ended early.
) else if not "%status%"=="0" if "%bad%"=="0" set "bad=1"
call :say %good% passed, %bad% failed, %skipped% not run. Exit code %status%
find "Not run: " < "%output%" >> "%report%"
if not "%bad%"=="0" type "%output%" >> "%report%"
set /a passed+=good, failed+=bad, left_out+=skipped
goto :eof

rem sample FOLDER NAME: runs %command%, a sample host, which must print what is expected.
:sample
set "name=%2"
set "output=%kit%\output\%1-host-%2.txt"
%command% %settings% --no-form > "%output%" 2>&1
set "status=%errorlevel%"
find "%expected%" < "%output%" >nul
if errorlevel 1 goto failed
:good
call :say %name%: passed
set /a passed+=1
goto :eof
:failed
call :say %name%: failed. Exit code %status%
type "%output%" >> "%report%"
set /a failed+=1
goto :eof

:not_run
call :say Not run: %~2
set /a left_out+=%1
goto :eof

:section
>> "%report%" echo.
>> "%report%" echo === %*
goto :eof

:say
echo %*
>> "%report%" echo %*
goto :eof
