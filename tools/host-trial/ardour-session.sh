#!/usr/bin/env bash
# tools/host-trial/ardour-session.sh <Tolvane2.so | Tolvane2.lv2 bundle folder> <work folder>
#
# Does a host keep the sound with its session? With the VST module or the LV2 bundle (a folder), builds three
# Ardour sessions headless (ardour7-lua), each a MIDI track with a note player (note-player.lua, a chord every
# second) feeding the plug-in, with "Filter Cutoff Frequency" (parameter and port 33) set to 0.1, to 0.9, or
# left alone; saves them, opens each again to read the value back, and exports each twice (ardour7-export
# opens the saved session each time) to float WAVs. Prints level and brightness of the exports.
# Fails when the 0.1 and 0.9 sessions sound the same, read back other values than were set, or when the two
# exports of one session differ. Needs Debian's ardour and python3; the work folder is its HOME.
set -euo pipefail

if [ $# -ne 2 ]; then
  echo "usage: $0 <Tolvane2.so | Tolvane2.lv2 bundle folder> <work folder>" >&2
  exit 2
fi
here=$(cd "$(dirname "$0")" && pwd)
work=$(mkdir -p "$2" && cd "$2" && pwd)
mkdir -p "$work/home/.config/ardour7/scripts"
cp "$here/note-player.lua" "$work/home/.config/ardour7/scripts/"
export HOME="$work/home"
quiet() { grep -v "^MIDI Clock\|^MTC in\|buffer of size\|pool trash\|^\[WARNING\]\|Emulate VST Bypass" || true; }
if [ -d "$1" ]; then
  plugin='"urn:brindlecot:tolvane2", ARDOUR.PluginType.LV2'
  mkdir -p "$work/lv2"
  rm -rf "$work/lv2/Tolvane2.lv2"
  cp -r "$1" "$work/lv2/Tolvane2.lv2"
  export LV2_PATH="$work/lv2:/usr/lib/lv2"
else
  plugin='"Tolvane2", ARDOUR.PluginType.LXVST'
  mkdir -p "$work/vst"
  # Ardour trusts a scan only when its cache (whole seconds) is newer than the module.
  cp "$1" "$work/vst/Tolvane2.so"
  touch -d "@$(( $(date +%s) - 5 ))" "$work/vst/Tolvane2.so"
  export LXVST_PATH="$work/vst" VST_PATH="$work/vst"
  LD_LIBRARY_PATH=/usr/lib/ardour7 /usr/lib/ardour7/ardour-vst-scanner -f -q "$work/vst/Tolvane2.so"
fi

# The Lua side: make <name> <value or none> | read <name>
session_lua() {
  local what=$1 name=$2 value=${3:-none}
  local open
  if [ "$what" = make ]; then
    open="create_session(\"$work/$name\", \"$name\", 48000)"
  else
    open="load_session(\"$work/$name\", \"$name\")"
  fi
  cat > "$work/$what-$name.lua" <<LUA
AudioEngine:set_backend("None (Dummy)", "", "")
AudioEngine:start(false)
assert($open, "cannot open the session")
if "$what" == "make" then
  local info = ARDOUR.LuaAPI.new_plugin_info($plugin)
  assert(not info:isnil(), "Ardour does not know the plug-in")
  local tl = Session:new_midi_track(ARDOUR.ChanCount(ARDOUR.DataType("midi"), 1),
      ARDOUR.ChanCount(ARDOUR.DataType("audio"), 2), true, info, nil, nil, 1, "Synth",
      ARDOUR.PresentationInfo.max_order, ARDOUR.TrackMode.Normal, true, true)
  for track in tl:iter() do
    local notes = ARDOUR.LuaAPI.new_luaproc(Session, "Session Trial Notes")
    assert(not notes:isnil(), "no note player")
    track:add_processor_by_index(notes, 0, nil, true)
  end
end
for route in Session:get_routes():iter() do
  local i = 0
  while not route:nth_plugin(i):isnil() do
    local p = route:nth_plugin(i)
    if p:display_name() == "Tolvane2" then
      if "$what" == "make" and "$value" ~= "none" then ARDOUR.LuaAPI.set_processor_param(p, 33, $value) end
      print(string.format("$what $name: parameter 33 (%s) reads %.6f", p:to_insert():plugin(0):parameter_label(33),
                          ARDOUR.LuaAPI.get_processor_param(p, 33, true)))
    end
    i = i + 1
  end
end
if "$what" == "make" then Session:save_state("", false, false, false, false, false) end
close_session()
LUA
  timeout 300 ardour7-lua "$work/$what-$name.lua" 2>&1 | quiet
}

status=0
for case in low:0.1 high:0.9 untouched:none; do
  name=${case%%:*}
  value=${case##*:}
  rm -rf "${work:?}/$name" "$work/$name.wav" "$work/$name-again.wav"
  session_lua make "$name" "$value"
  # A new session has no range to export: four seconds from the start.
  sed -i 's#<Locations/>#<Locations><Location id="9999" name="session" start="a0" end="a1128960000" flags="IsSessionRange" locked="0" timestamp="0" cue="0"/></Locations>#' \
    "$work/$name/$name.ardour"
  readback=$(session_lua read "$name")
  echo "$readback"
  if [ "$value" != none ] && ! echo "$readback" | grep -q "reads $value"; then
    echo "FAILED: $name reads back another value than $value" >&2
    status=1
  fi
  # On a busy machine an export now and then ends with an empty file: up to three tries.
  for out in "$name" "$name-again"; do
    for try in 1 2 3; do
      LD_LIBRARY_PATH=/usr/lib/ardour7 timeout 300 ardour7-export -b float -o "$work/$out.wav" "$work/$name" "$name" 2>&1 \
        | quiet | grep -v "Exporting Audio\|Writing\|Done" || true
      [ "$(stat -c %s "$work/$out.wav" 2>/dev/null || echo 0)" -gt 1000 ] && break
      echo "export of $out try $try gave no audio"
    done
  done
done

python3 - "$work" <<'PY' || status=1
import hashlib, math, struct, sys
work = sys.argv[1]
def measure(name):
    b = open(f"{work}/{name}.wav", "rb").read()
    i, fmt, data = 12, None, None
    while i < len(b):
        cid, n = b[i:i + 4], struct.unpack("<I", b[i + 4:i + 8])[0]
        if cid == b"fmt ": fmt = struct.unpack("<HHIIHH", b[i + 8:i + 24])
        if cid == b"data": data = b[i + 8:i + 8 + n]
        i += 8 + n + (n & 1)
    left = struct.unpack("<%df" % (len(data) // 4), data)[0::fmt[1]]
    if len(left) < 2:
        print(f"FAILED: {name}.wav holds no audio")
        sys.exit(1)
    rms = math.sqrt(sum(v * v for v in left) / len(left))
    diff = math.sqrt(sum((left[k] - left[k - 1]) ** 2 for k in range(1, len(left))) / (len(left) - 1))
    return hashlib.sha1(data).hexdigest()[:12], rms, diff / rms if rms else 0.0
results = {n: measure(n) for n in ("low", "high", "untouched")}
for n in ("low", "high", "untouched"):
    again = measure(n + "-again")
    same = again[0] == results[n][0]
    print(f"{n:10s} opened twice: {'the same samples' if same else 'DIFFERENT samples'}")
    if not same:
        print("FAILED: reopening the session does not give the same audio")
        sys.exit(1)
for n, (h, rms, bright) in results.items():
    print(f"{n:10s} rms {rms:.5f}  brightness (rms of the first difference / rms) {bright:.4f}  sha1 {h}")
(lo, _, blo), (hi, _, bhi) = results["low"], results["high"]
if lo == hi or not blo < results["untouched"][2] < bhi:
    print("FAILED: the sessions do not sound as they were set")
    sys.exit(1)
print("ok: each session sounds as it was set")
PY
exit $status
