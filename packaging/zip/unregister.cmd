@echo off
rem Unregisters what register.cmd registered, as administrator.
call "%~dp0register.cmd" /u
