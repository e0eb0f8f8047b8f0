@echo off
rem Makes NorvaKavlor.dll known to this computer's programs, or takes that back. Usage: register.cmd /help
setlocal EnableExtensions
set "here=%~dp0"
set done=0
set failed=0

rem System32 has the tools of the system's own bitness, SysWOW64 the 32-bit ones of a 64-bit system. A 32-bit
rem command prompt sees the 64-bit tools as Sysnative.
set "system64="
set "system32=%SystemRoot%\System32"
if exist "%SystemRoot%\SysWOW64\regsvr32.exe" set "system32=%SystemRoot%\SysWOW64"
if /i "%PROCESSOR_ARCHITECTURE%"=="AMD64" set "system64=%SystemRoot%\System32"
if defined PROCESSOR_ARCHITEW6432 set "system64=%SystemRoot%\Sysnative"
rem A 64-bit system may lack the 32-bit half.
if defined system64 if not exist "%SystemRoot%\SysWOW64\regsvr32.exe" set "system32="

if /i "%~1"=="/machine" goto machine
if /i "%~1"=="/user" goto user
if /i "%~1"=="/remove" goto remove
echo usage: register.cmd /machine   for all users; run it as administrator
echo        register.cmd /user      for the current user only
echo        register.cmd /remove    takes back whichever was done
echo Exit codes: 0 done, 1 failed, 2 not understood. On 64-bit systems both DLLs are registered.
if /i "%~1"=="/help" exit /b 0
if "%~1"=="/?" exit /b 0
exit /b 2

:machine
call :both "registered for the machine" /s
goto finish

:user
call :both "registered for the current user" /s /n /i:user
goto finish

:remove
rem Only an administrator may take back what is there for the machine, so ask whether it is there.
reg query "HKLM\Software\Classes\NorvaKavlor.TextBooks" > nul 2> nul
if not errorlevel 1 call :both "removed for the machine" /s /u
call :both "removed for the current user" /s /u /n /i:user
goto finish

:both
if defined system64 call :one 64 "%system64%" %*
if defined system32 call :one 32 "%system32%" %*
exit /b

:one
"%~2\regsvr32.exe" %4 %5 %6 %7 "%here%%1\NorvaKavlor.dll"
set code=%errorlevel%
if "%code%"=="0" (
    echo %1-bit: %~3
    set done=1
) else (
    echo %1-bit: not %~3, regsvr32 ended with %code%
    set failed=1
)
exit /b

:finish
if "%failed%"=="1" (
    echo For the machine, run register.cmd as administrator.
    exit /b 1
)
if "%done%"=="0" (
    echo This system runs neither of the DLLs.
    exit /b 1
)
exit /b 0
