@echo off
rem Registers both builds of the Quillbank server from this folder: x86\ and
rem x64\ (on 64-bit Windows; only x86\ on 32-bit Windows).
rem   install.cmd          per machine (run as administrator)
rem   install.cmd user     for the current user only (no administrator rights)
rem A failed registration is reported and undone; the exit code is then 1.
setlocal
set "HERE=%~dp0"
set "FLAGS="
if /i "%~1"=="user" set "FLAGS=/n /i:user"
if not "%~1"=="" if not defined FLAGS goto usage

rem A 32-bit command prompt on 64-bit Windows reaches the 64-bit system
rem folder as Sysnative.
set "SYSTEM64=%SystemRoot%\System32"
if exist "%SystemRoot%\Sysnative\regsvr32.exe" set "SYSTEM64=%SystemRoot%\Sysnative"
set "SYSTEM32=%SystemRoot%\SysWOW64"
if not exist "%SYSTEM32%\regsvr32.exe" goto only32

"%SYSTEM32%\regsvr32.exe" /s %FLAGS% "%HERE%x86\Quillbank.dll"
if errorlevel 1 goto failed
"%SYSTEM64%\regsvr32.exe" /s %FLAGS% "%HERE%x64\Quillbank.dll"
if errorlevel 1 goto failed64
echo Quillbank is registered (x86 and x64).
exit /b 0

:only32
"%SYSTEM64%\regsvr32.exe" /s %FLAGS% "%HERE%x86\Quillbank.dll"
if errorlevel 1 goto failed
echo Quillbank is registered (x86).
exit /b 0

:failed64
"%SYSTEM32%\regsvr32.exe" /s /u %FLAGS% "%HERE%x86\Quillbank.dll"
:failed
echo Quillbank could not be registered: run as administrator, or "install.cmd user".
exit /b 1

:usage
echo Usage: install.cmd [user]
exit /b 2
