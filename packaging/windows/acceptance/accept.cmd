@echo off
rem What it does, and its words, are told at the end. The script beside it, which is run once for each
rem size of a pointer, calls it with words of its own: /register or /remove, for the user or the machine.
setlocal
if "%~1"=="" goto usage
if "%~1"=="/register" goto register
if "%~1"=="/remove" goto remove
set "here=%~dp0"
set "reports=%TEMP%\bvconn-acceptance"
set status=0

if /i not "%PROCESSOR_ARCHITECTURE%"=="AMD64" goto small
if not exist "%here%..\x64\BVConn.dll" goto small
call :try x64 "%SystemRoot%\System32" %*

:small
if not exist "%here%..\x86\BVConn.dll" goto done
set "programs=%SystemRoot%\SysWOW64"
if /i "%PROCESSOR_ARCHITECTURE%"=="x86" set "programs=%SystemRoot%\System32"
if not exist "%programs%\cscript.exe" goto done
call :try x86 "%programs%" %*

:done
exit /b %status%

:try
for %%f in ("%here%..\%~1\BVConn.dll") do set "library=%%~ff"
set "programs=%~2"
set "report=%reports%-%~1.txt"
set "engine=//e:jscript"
rem The scripts of wine know no such word.
if exist "%SystemRoot%\System32\winecfg.exe" set "engine=//nologo"
if exist "%report%" del "%report%"
if not exist "%report%" goto begin
echo The file %report% cannot be written.
set status=1
exit /b 0

:begin
rem What a run before this one, which came to no end, has left.
call :clean
rem The script takes this file away as the last that it does.
>"%report%.open" echo open
"%programs%\cscript.exe" //nologo %engine% "%here%accept.js" "%library%" "%report%" %1 %3 %4 %5 %6 %7 %8 %9
set ended=%errorlevel%
if not "%ended%"=="0" set status=1
if not exist "%report%.open" goto send
set status=1
>>"%report%" echo.
call :say "The script came to no end. Its status is %ended%."
call :clean

:send
echo.
echo Please send back the file %report%
echo.
exit /b 0

:say
echo %~1
>>"%report%" echo %~1
exit /b 0

:clean
if exist "%report%.user" call :clean_for user
if exist "%report%.machine" call :clean_for machine
if exist "%report%.open" del "%report%.open"
exit /b 0

:clean_for
call :remove /remove %1
if errorlevel 1 call :say "What was registered for the %1 is left: regsvr32 ends with %removed%."
if not errorlevel 1 call :say "What was left registered for the %1 is removed."
exit /b 0

rem As long as something is registered, a file says by which library, since the next run may have another.
:register
set "switches="
if "%~2"=="user" set "switches=/n /i:user"
>"%report%.%~2" echo "%library%"
"%programs%\regsvr32.exe" /s %switches% "%library%"
exit /b %errorlevel%

:remove
set "switches="
if "%~2"=="user" set "switches=/n /i:user"
set left="%library%"
if exist "%report%.%~2" set /p left=<"%report%.%~2"
"%programs%\regsvr32.exe" /s /u %switches% %left%
set removed=%errorlevel%
if "%removed%"=="0" if exist "%report%.%~2" del "%report%.%~2"
exit /b %removed%

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
