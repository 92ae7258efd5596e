#!/usr/bin/env bash
# The 64-bit DLL's editor under wine on a private Xvfb, driven like a person would with xdotool (XTest):
# the window against the offscreen drawing of the Linux build, a knob drag, the page tab, a menu, the name
# field, 20 open/close cycles counting GDI and USER objects, and unloading and loading the module again.
# Run in the Windows build folder. Usage: editor-test.sh SOURCE_FOLDER [LINUX_BUILD_FOLDER]
set -uo pipefail
source_dir=$1
linux=${2:-$source_dir/build}
here=$(cd "$(dirname "$0")" && pwd)
log=$PWD/editor-session.log
failures=0
fail() { echo "FAIL: $*"; failures=$((failures + 1)); }
pass() { echo "ok: $*"; }

for tool in Xvfb xdotool; do
  command -v $tool >/dev/null || { echo "FAIL: $tool is not installed (make windows installs it)"; exit 1; }
done

# A display of our own.
for n in $(seq 70 140); do
  [ -e /tmp/.X11-unix/X$n ] || [ -e /tmp/.X$n-lock ] || { display=:$n; break; }
done
Xvfb "$display" -screen 0 1024x768x24 -nolisten tcp >/dev/null 2>&1 &
xvfb=$!
export DISPLAY=$display
fifo=$(mktemp -u)
mkfifo "$fifo"
session=
cleanup() {
  exec 3>&- 2>/dev/null
  [ -n "$session" ] && kill "$session" 2>/dev/null
  kill "$xvfb" 2>/dev/null
  rm -f "$fifo"
}
trap cleanup EXIT
sleep 1

# Lines seen so far; waits until a line matches (extended regex) or the time is up.
seen=0
wait_for() {
  local pattern=$1 seconds=${2:-20} start=$SECONDS
  while [ $((SECONDS - start)) -lt "$seconds" ]; do
    if tail -n +"$((seen + 1))" "$log" 2>/dev/null | grep -qE "$pattern"; then
      seen=$(grep -nE "$pattern" "$log" | tail -1 | cut -d: -f1)
      return 0
    fi
    sleep 0.2
  done
  return 1
}
send() { echo "$1" >&3; }
reply=
answer() {  # sends a command and puts the line that answers it in $reply
  reply=
  send "$1"
  wait_for "$2" "${3:-20}" && reply=$(sed -n "${seen}p" "$log")
}

"$here/wine-run.sh" tolvane2-winhost.exe session Tolvane2.dll <"$fifo" >"$log" 2>&1 &
session=$!
exec 3>"$fifo"
wait_for "^ready" 120 || { fail "the editor did not open"; cat "$log"; exit 1; }
pass "$(sed -n "${seen}p" "$log")"

# The window against the offscreen drawing: every pixel outside text is the same.
# Where text is drawn (rasterisers differ): the status lines and program name, and on page 2 the
# modulation slots' and controller maps' list fields.
text_boxes_page1="401 263 557 305"
text_boxes_page2="401 263 557 305 104 36 174 252 292 36 362 252 444 38 702 250 48 86 98 100 48 204 98 218
  180 86 230 100 180 204 230 218 236 86 286 100 236 204 286 218 368 86 418 100 368 204 418 218"
compare_page() {
  local page=$1 boxes=$2
  answer "capture page$page-windows.bmp" "^captured" || { fail "no capture of page $page"; return; }
  if [ ! -x "$linux/tolvane2-render" ]; then
    fail "no Linux build at $linux to draw the offscreen page $page"
    return
  fi
  "$linux/tolvane2-render" --screenshot page$page-offscreen.png --page "$page" >/dev/null &&
    convert page$page-offscreen.png BMP3:page$page-offscreen.bmp || { fail "offscreen page $page"; return; }
  if "$here/wine-run.sh" tolvane2-winhost.exe compare-images page$page-windows.bmp page$page-offscreen.bmp $boxes; then
    pass "page $page matches the offscreen drawing outside text"
  else
    fail "page $page differs from the offscreen drawing outside text"
  fi
}
compare_page 1 "$text_boxes_page1"

# A knob drag with the real pointer: OSC1 Pulse Width (parameter 2) at (65, 54), 40 pixels up = +0.2.
answer "parameter 2" "^parameter 2 "
before=$(awk '{print $3}' <<<"$reply")
xdotool mousemove 65 54 sleep 0.1 mousedown 1 sleep 0.2
for y in 44 34 24 14; do xdotool mousemove 65 $y sleep 0.05; done
xdotool sleep 0.2 mouseup 1
if wait_for "^endEdit 2$" 10; then
  calls=$(grep -E "^(beginEdit|automate|endEdit) 2( |$)" "$log")
  first=$(head -1 <<<"$calls" | awk '{print $1}')
  last_value=$(grep "^automate 2 " <<<"$calls" | tail -1 | awk '{print $3}')
  expected=$(awk -v b="$before" 'BEGIN {v = b + 0.2; if (v > 1) v = 1; printf "%.6f", v}')
  automations=$(grep -c "^automate 2 " <<<"$calls")
  if [ "$first" = beginEdit ] && [ "$automations" -ge 2 ] &&
     awk -v a="$last_value" -v e="$expected" 'BEGIN {exit !(a - e < 1e-4 && e - a < 1e-4)}'; then
    pass "knob drag: beginEdit, $automations automations ending at $last_value (from $before), endEdit"
  else
    fail "knob drag gave: $(tr '\n' ';' <<<"$calls") (expected $expected at the end)"
  fi
else
  fail "the knob drag did not end with endEdit"
fi

# The page tab, then page 2 against the offscreen drawing.
xdotool mousemove 647 296 click 1
sleep 0.5
compare_page 2 "$text_boxes_page2"

# Mod 1's destination menu opens with a click and closes with Escape.
xdotool mousemove 130 70 click 1
sleep 1
answer windows "^menu "
state=$reply
xdotool key Escape
sleep 0.5
answer windows "^menu "
after=$reply
if [[ "$state" == "menu open"* && "$after" == "menu closed"* ]]; then
  pass "a menu opens and closes"
else
  fail "menu: '$state' after the click, '$after' after Escape"
fi

# The program name field takes typed text; Return accepts it.
xdotool mousemove 420 299 click 1
sleep 0.5
answer windows "^menu "
state=$reply
xdotool type --delay 20 "Wine Pad"
xdotool key Return
sleep 0.5
answer name "^name"
name=$reply
answer "capture named.bmp" "^captured"
if [[ "$state" == *"edit field open" && "$name" == "name Wine Pad" ]]; then
  pass "the name field took typed text"
else
  fail "name field: '$state', then '$name'"
fi

# The FILE menu: "Save Program..." through the Save dialog; then another program is selected and
# "Load Program..." through the Open dialog brings the saved one (its name) back into the editor.
dialog_types() {  # title, text: types the text into the dialog's file name field and presses Return
  local window attempt
  window=$(timeout 30 xdotool search --sync --limit 1 --name "^$1\$" 2>/dev/null) || return 1
  for attempt in 1 2 3; do
    sleep 2  # the dialog fills its lists after it shows
    xdotool windowfocus --sync "$window" 2>/dev/null
    sleep 0.3
    xdotool key End shift+Home
    xdotool type --delay 20 "$2"
    xdotool key Return
    sleep 1
    xdotool search --name "^$1\$" >/dev/null 2>&1 || return 0  # the dialog has closed
  done
  xdotool key Escape
  return 1
}
rm -f wine-saved.prog
xdotool mousemove 690 296 click 1
sleep 1
xdotool mousemove 729 370 click 1
if dialog_types "Save Program" "wine-saved" && for i in $(seq 50); do [ -s wine-saved.prog ] && break; sleep 0.2; done &&
   [ "$(stat -c %s wine-saved.prog)" = 632 ] && [ "$(dd if=wine-saved.prog bs=1 skip=24 count=9 2>/dev/null | tr -d '\0')" = "Wine Pad" ]; then
  pass "Save Program wrote wine-saved.prog (632 bytes, named \"Wine Pad\")"
else
  fail "Save Program: no 632-byte program file named \"Wine Pad\""
fi
answer "program 5" "^program "
other=$reply
answer "capture other.bmp" "^captured"
xdotool mousemove 690 296 click 1
sleep 1
xdotool mousemove 729 313 click 1
dialog_types "Load Program" "wine-saved.prog"
sleep 1
answer "capture loaded.bmp" "^captured"
# The name field's pixels: the loaded program shows the saved name again (the host's program name stays
# program 5's: a loaded file does not change the program number).
name_field() { convert "$1" -crop 156x12+401+293 +repage "${1%.bmp}-name.png"; }
differing() { compare -metric AE "$1" "$2" null: 2>&1 | cut -d' ' -f1; }
name_field named.bmp && name_field other.bmp && name_field loaded.bmp
same=$(differing named-name.png loaded-name.png)
changed=$(differing other-name.png loaded-name.png)
if [[ "$other" == "program 5 "* && "$other" != "program 5 Wine Pad" && "$same" == 0 && "${changed:-0}" != 0 ]]; then
  pass "Load Program brought \"Wine Pad\" back over program 5 (name field as typed; $changed pixels from program 5's)"
else
  fail "Load Program: '$other'; name field differs from the typed one in ${same:-?} pixels, from program 5's in ${changed:-?}"
fi

# 20 open/close cycles leave the GDI and USER object counts where they were: the system's (wine counts
# none) and the plug-in's own, counted at its imports (which must see objects while the editor is open).
answer "cycles 20" "^cycles .*as the system counts" 120
system=$reply
wait_for "^cycles .*the plug-in's" 10 && own=$(sed -n "${seen}p" "$log") || own=
echo "$system"
echo "$own"
read -r g0 g1 u0 u1 < <(sed -E 's/.*GDI objects ([0-9]+) before, ([0-9]+) after; USER objects ([0-9]+) before, ([0-9]+) after.*/\1 \2 \3 \4/' <<<"$system")
read -r p0 p1 popen q0 q1 qopen < <(sed -E 's/.*GDI objects ([0-9-]+) before, ([0-9-]+) after \(([0-9-]+) while open\); USER objects ([0-9-]+) before, ([0-9-]+) after \(([0-9-]+) while open\).*/\1 \2 \3 \4 \5 \6/' <<<"$own")
if [[ "$own" == "cycles 20 opened 20"* && "$g0" == "$g1" && "$u0" == "$u1" && "$p0" == "$p1" && "$q0" == "$q1" &&
      "${popen:-0}" -gt "$p0" && "${qopen:-0}" -gt "$q0" ]]; then
  pass "20 open/close cycles leave GDI and USER objects as they were"
else
  fail "open/close cycles: $system / $own"
fi

send quit
quit_at=$SECONDS
wait_for "^closed" 30 || fail "the session did not end (after $((SECONDS - quit_at)) s: $(tail -2 "$log" | tr "\n" " "))"
exec 3>&-
wait "$session" 2>/dev/null
session=

# Unloading the DLL and loading it again: the window class goes with the last editor and comes back.
"$here/wine-run.sh" tolvane2-winhost.exe reload Tolvane2.dll >reload.log 2>&1
cat reload.log
if grep -q "^round 2: editor window of class Plugin" reload.log &&
   [ "$(grep -c "after unloading the class is gone" reload.log)" = 2 ] &&
   ! grep -q "pixel (5,5) 000000$\|pixel (5,5) ffffffff$" reload.log; then
  pass "the module unloads and loads again with its editor working"
else
  fail "reload"
fi

echo "editor under wine: $failures failure(s)"
[ "$failures" -eq 0 ]
