@echo off
rem What it does, and its words, are told at the end.
setlocal
if "%~1"=="" goto usage
if "%~1"=="/regsvr32" goto regsvr32
set "here=%~dp0"
set "reports=%TEMP%\bvconn-acceptance"
set status=0

if /i not "%PROCESSOR_ARCHITECTURE%"=="AMD64" goto small
if not exist "%here%..\x64\BVConn.dll" goto small
call :try x64 "%SystemRoot%\System32\cscript.exe" %*

:small
if not exist "%here%..\x86\BVConn.dll" goto done
set "host=%SystemRoot%\SysWOW64\cscript.exe"
if /i "%PROCESSOR_ARCHITECTURE%"=="x86" set "host=%SystemRoot%\System32\cscript.exe"
if not exist "%host%" goto done
call :try x86 "%host%" %*

:done
exit /b %status%

:try
for %%f in ("%here%..\%~1\BVConn.dll") do set "library=%%~ff"
set "report=%reports%-%~1.txt"
set "engine=//e:jscript"
rem The scripts of wine know no such word.
if exist "%SystemRoot%\System32\winecfg.exe" set "engine=//nologo"
%2 //nologo %engine% "%here%accept.js" "%library%" "%report%" %1 %3 %4 %5 %6 %7 %8 %9
if errorlevel 1 set status=1
echo.
echo Please send back the file %report%
echo.
exit /b 0

:regsvr32
"%SystemRoot%\System32\regsvr32.exe" /s %~3 "%~2"
exit /b %errorlevel%

:usage
echo Tries the component on this machine, in a minute: registers it for you alone, calls it, removes it,
echo and writes what it saw to files to send back. It needs nothing but Windows.
echo.
echo   accept.cmd ADDRESS [/https:ADDRESS] [/bad:ADDRESS] [/ca:FILE] [/session:WORD] [/invoice:KEY]
echo.
echo ADDRESS is a server's with http. /https: is one with a certificate that this machine trusts, /bad:
echo one with a certificate that it does not trust, /ca: the file of the authority of that one, in PEM.
echo The session and the invoice are those of the sandbox (ANNA, INV-1001) without a word.
exit /b 2
