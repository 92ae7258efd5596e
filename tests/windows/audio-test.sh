#!/usr/bin/env bash
# The demo phrase rendered through the 64-bit DLL under wine, compared sample by sample with the Linux
# module's rendering of the same MIDI (both through the same offline host code, 32-bit float files).
# Run in the Windows build folder. Usage: audio-test.sh LINUX_BUILD_FOLDER
set -euo pipefail
linux=$1
here=$(cd "$(dirname "$0")" && pwd)
if [ ! -x "$linux/tolvane2-render" ] || [ ! -f "$linux/Tolvane2.so" ]; then
  echo "FAIL: $linux has no tolvane2-render and Tolvane2.so (make build makes them)"
  exit 1
fi
"$linux/tolvane2-render" --plugin "$linux/Tolvane2.so" --format float --out linux-demo.wav >/dev/null
"$here/wine-run.sh" tolvane2-winhost.exe render Tolvane2.dll windows-demo.wav
# The engine computes with its own tables and fast maths, so the two builds give the same samples.
"$here/wine-run.sh" tolvane2-winhost.exe compare windows-demo.wav linux-demo.wav "${TOLVANE_AUDIO_LIMIT:-0}"
