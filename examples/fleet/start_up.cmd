@echo off
rem Start-up script for Group Policy: Computer Configuration, Policies, Windows Settings, Scripts, Startup.
rem It runs as SYSTEM. Put agent.json into the same folder, to which only administrators can write.
"%ProgramW6432%\Tavrin Configuration\tavrinctl.exe" apply "%~dp0agent.json"
exit /b %ERRORLEVEL%
