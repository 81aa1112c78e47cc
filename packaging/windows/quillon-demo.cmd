@echo off
rem Starts Quillon on simulated boards, which keep their settings in the user's own folder.
setlocal
set QUILLON_KVUSB=sim
if not defined QUILLON_SIM_STATE set "QUILLON_SIM_STATE=%LOCALAPPDATA%\Quillon\boards"
if not defined QUILLON_FIRMWARE_DIR set "QUILLON_FIRMWARE_DIR=%~dp0firmware"
if not exist "%QUILLON_SIM_STATE%" mkdir "%QUILLON_SIM_STATE%"
start "" "%~dp0quillon.exe"
