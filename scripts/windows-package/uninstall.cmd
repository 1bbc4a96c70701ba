@echo off
rem Removes the registration of both builds of the Quillbank server in this
rem folder, as install.cmd made it.
rem   uninstall.cmd        per machine (run as administrator)
rem   uninstall.cmd user   for the current user only
rem Removing what is not registered changes nothing.
setlocal
set "HERE=%~dp0"
set "FLAGS="
if /i "%~1"=="user" set "FLAGS=/n /i:user"
if not "%~1"=="" if not defined FLAGS goto usage

set "SYSTEM64=%SystemRoot%\System32"
if exist "%SystemRoot%\Sysnative\regsvr32.exe" set "SYSTEM64=%SystemRoot%\Sysnative"
set "SYSTEM32=%SystemRoot%\SysWOW64"
set "STATUS=0"
if not exist "%SYSTEM32%\regsvr32.exe" goto only32

"%SYSTEM64%\regsvr32.exe" /s /u %FLAGS% "%HERE%x64\Quillbank.dll"
if errorlevel 1 set "STATUS=1"
"%SYSTEM32%\regsvr32.exe" /s /u %FLAGS% "%HERE%x86\Quillbank.dll"
if errorlevel 1 set "STATUS=1"
goto done

:only32
"%SYSTEM64%\regsvr32.exe" /s /u %FLAGS% "%HERE%x86\Quillbank.dll"
if errorlevel 1 set "STATUS=1"

:done
if "%STATUS%"=="0" (echo Quillbank is unregistered.) else (echo Quillbank could not be unregistered completely.)
exit /b %STATUS%

:usage
echo Usage: uninstall.cmd [user]
exit /b 2
