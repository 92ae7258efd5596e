#!/usr/bin/env bash
# Checks a plug-in DLL without running it: its machine type, that it exports exactly VSTPluginMain and
# main (undecorated), and that it imports from Windows system DLLs only (no C++ runtime, libgcc or
# winpthreads DLL). Usage: check-dll.sh Tolvane2.dll i386|x86-64
set -euo pipefail
dll=$1
machine=$2
case "$machine" in
  i386) objdump=i686-w64-mingw32-objdump; format=pei-i386 ;;
  x86-64) objdump=x86_64-w64-mingw32-objdump; format=pei-x86-64 ;;
  *) echo "unknown machine $machine" >&2; exit 2 ;;
esac
[ -f "$dll" ] || { echo "FAIL: $dll not found (make windows builds it)"; exit 1; }
failures=0
fail() { echo "FAIL: $*"; failures=$((failures + 1)); }

header=$("$objdump" -f "$dll")
grep -q "file format $format" <<<"$header" || fail "not a $format file: $(grep -o 'file format.*' <<<"$header")"
private=$("$objdump" -p "$dll")
grep -qx $'\tDLL' <<<"$private" || fail "not a DLL"
exports=$(awk '/\[Ordinal\/Name Pointer\] Table/ {on = 1; next} on && /\[ *[0-9]+\]/ {print $NF; next} on {exit}' <<<"$private" | sort | tr '\n' ' ')
[ "$exports" = "VSTPluginMain main " ] || fail "exports are '$exports', not 'VSTPluginMain main'"

imports=$(awk '/DLL Name:/ {print tolower($3)}' <<<"$private" | sort -u | tr '\n' ' ')
system="advapi32.dll comdlg32.dll gdi32.dll kernel32.dll msvcrt.dll ole32.dll oleaut32.dll shell32.dll user32.dll"
for name in $imports; do
  grep -qw "$name" <<<"$system" || fail "imports $name, which is not a Windows system DLL"
done
echo "$dll: $format, exports: $exports; imports: $imports"
[ "$failures" -eq 0 ]
