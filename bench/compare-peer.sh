#!/usr/bin/env bash
# Renders the same MIDI workload through tolvane2-render with Tolvane2.so and with Debian's amsynth VST2
# plug-in, in one run, and prints the CPU time per voice-sample of each and their ratio.
#
#   bench/compare-peer.sh [build-dir]      (default: build)
#
# Workloads: chords of 1, 8 and 64 notes held for the whole rendering (the voices stay busy), and
# an idle rendering with no notes. Tolvane2 plays the sawtooth patch (OSC1 SawH, OSC2 PulseH, LP24 at
# resonance 0.5, both envelopes, LFO1 and ENV2 on the cutoff, effect on; "Number of Voices" equal to the
# notes held) and, idle, program 0;
# amsynth plays its default patch.
set -euo pipefail
cd "$(dirname "$0")/.."
BUILD=${1:-build}
RENDER="$BUILD/tolvane2-render"
OURS="$BUILD/Tolvane2.so"
PEER=/usr/lib/vst/amsynth_vst.so
SECONDS_PER_RUN=${SECONDS_PER_RUN:-10}
# The idle run is longer: its first two seconds still hold the delay's tail (the effect keeps running
# until everything it could still play has gone quiet), the rest is the idle cost proper.
IDLE_SECONDS=${IDLE_SECONDS:-30}
REPEATS=${REPEATS:-5}

[ -x "$RENDER" ] || { echo "build first: $RENDER is missing" >&2; exit 1; }
if [ ! -f "$PEER" ]; then
  if [ "$(id -u)" -eq 0 ]; then
    DEBIAN_FRONTEND=noninteractive apt-get install -y -q amsynth >/dev/null
  else
    echo "amsynth is not installed (apt-get install amsynth)" >&2; exit 1
  fi
fi

work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT

# A type-0 MIDI file holding `count` notes from the first tick to the end.
write_chord() {
  python3 - "$1" "$2" "${3:-$SECONDS_PER_RUN}" <<'PY'
import struct, sys
path, count, seconds = sys.argv[1], int(sys.argv[2]), float(sys.argv[3])
ppq = 480                      # 120 bpm: 960 ticks per second
events = bytearray()
def var(n):
    out = [n & 0x7F]; n >>= 7
    while n: out.append(0x80 | (n & 0x7F)); n >>= 7
    return bytes(reversed(out))
notes = [24 + (i * 7) % 80 for i in range(count)]   # spread over the keyboard, all distinct
for n in notes: events += var(0) + bytes([0x90, n, 100])
end = int(seconds * 960)
for i, n in enumerate(notes): events += var(end if i == 0 else 0) + bytes([0x80, n, 0])
if not notes: events += var(end) + bytes([0xB0, 1, 0])
events += var(0) + b'\xff\x2f\x00'
with open(path, 'wb') as f:
    f.write(b'MThd' + struct.pack('>IHHH', 6, 0, 1, ppq))
    f.write(b'MTrk' + struct.pack('>I', len(events)) + events)
PY
}

SAW_PATCH=(--program 64
  --param 0=0.7083 --param 12=0.9583 --param 25=0.45 --param 30=0.21875 --param 33=0.6 --param 34=0.5
  --param 36=0.40625 --param 37=0.8 --param 39=0.34375 --param 40=0.75 --param 59=0.45
  --param 47=0.6 --param 49=0.7 --param 50=0.5 --param 53=0.6 --param 55=0.6
  --param 65=1 --param 67=0.3 --param 70=0.7)

# CPU seconds of one rendering's process calls.
cpu_once() {
  local length=$1
  shift
  local s
  s=$("$RENDER" "$@" --length "$length" --out "$work/out.wav" 2>/dev/null \
      | sed -n 's/.*(\([0-9.]*\) s of processing.*/\1/p')
  [ -n "$s" ] || { echo "rendering failed: $*" >&2; exit 1; }
  echo "$s"
}

# Renders ours and the peer alternately $REPEATS times (so that both meet the same machine load) and
# keeps the best of each: sets OURS_CPU and PEER_CPU. Arguments: length, then our arguments, "--",
# then the peer's arguments.
compare() {
  local length=$1
  shift
  local ours_args=() peer_args=()
  while [ "$1" != "--" ]; do ours_args+=("$1"); shift; done
  shift
  peer_args=("$@")
  OURS_CPU="" PEER_CPU=""
  for _ in $(seq "$REPEATS"); do
    local o p
    o=$(cpu_once "$length" "${ours_args[@]}")
    p=$(cpu_once "$length" "${peer_args[@]}")
    if [ -z "$OURS_CPU" ] || awk "BEGIN{exit !($o < $OURS_CPU)}"; then OURS_CPU=$o; fi
    if [ -z "$PEER_CPU" ] || awk "BEGIN{exit !($p < $PEER_CPU)}"; then PEER_CPU=$p; fi
  done
}

frames=$(awk "BEGIN{print $SECONDS_PER_RUN * 44100}")
printf "%-8s %14s %14s %12s %10s %10s\n" "voices" "ours ns/v-smp" "peer ns/v-smp" "ours/peer" "ours RT" "peer RT"
for voices in 1 8 64; do
  write_chord "$work/chord$voices.mid" "$voices"
  voiceParam=$(awk -v v="$voices" 'BEGIN{print (v - 0.5) / 64}')
  compare "$SECONDS_PER_RUN" --plugin "$OURS" --midi "$work/chord$voices.mid" "${SAW_PATCH[@]}" --param 77="$voiceParam" \
    -- --plugin "$PEER" --midi "$work/chord$voices.mid"
  ours=$OURS_CPU peer=$PEER_CPU
  awk -v v="$voices" -v o="$ours" -v p="$peer" -v f="$frames" -v t="$SECONDS_PER_RUN" 'BEGIN{
    printf "%-8s %14.2f %14.2f %12.2f %9.0fx %9.0fx\n", v, o*1e9/(v*f), p*1e9/(v*f), o/p, t/o, t/p }'
done
write_chord "$work/idle.mid" 0 "$IDLE_SECONDS"
compare "$IDLE_SECONDS" --plugin "$OURS" --midi "$work/idle.mid" --program 0 -- --plugin "$PEER" --midi "$work/idle.mid"
ours=$OURS_CPU peer=$PEER_CPU
frames=$(awk "BEGIN{print $IDLE_SECONDS * 44100}")
awk -v o="$ours" -v p="$peer" -v f="$frames" -v t="$IDLE_SECONDS" 'BEGIN{
  printf "%-8s %14s %14s %12.2f %9.0fx %9.0fx   (idle: ns per sample %.2f vs %.2f)\n", "idle", "-", "-", o/p, t/o, t/p, o*1e9/f, p*1e9/f }'
