#!/bin/bash
# Leaves a picture of the Windows library's open editor under Wine: scripts/shootEditor.sh FILE.png
# Needs the Windows build (targets Brimvale and brimvale-editor-host); builds the program that reads the
# display by itself, for it alone is native.
set -euo pipefail
here=$(cd "$(dirname "$0")" && pwd)
# shellcheck source=scripts/common.sh
. "$here/common.sh"

[ $# -eq 1 ] || fail "it needs the name of a PNG file, and nothing else."
picture=$1
build=$here/../build
width=612
height=433

# shellcheck disable=SC2317 # alone calls it
build () {
    cmake -S "$here/../tests/stage/grabScreen" -B "$build/grab" -G Ninja -DCMAKE_BUILD_TYPE=Release &&
        cmake --build "$build/grab"
}
alone "$build/lock" quietly "$build/grab.log" "building the program that takes the picture failed" build

screen=
trap '[ -z "$screen" ] || kill "$screen" 2> /dev/null || true' EXIT
startScreen

coproc HOST { exec "$here/wineRun.sh" --own-prefix picture --this-display "$build/windows/brimvale-editor-host.exe" \
    "$build/windows/Brimvale.dll" 2> /dev/null; }
host=$HOST_PID
exec {toHost}>&"${HOST[1]}" {fromHost}<&"${HOST[0]}"
tell () {
    echo "$1" >&"$toHost"
    read -r -t 120 answer <&"$fromHost" || fail "the editor's host does not answer."
    case $answer in error*) fail "the editor did not open: ${answer#error }." ;; esac
}
tell open
# A chord, so that keys are shown pressed; MIDI in numbers.
for note in 48 55 64 67; do tell "midi 144 $note 100"; done
# Drawn when two pictures in a row are the same and not empty; an empty one is far smaller.
smallest=5000 # bytes
last=
for _ in $(seq 60); do
    tell redraw
    sleep 0.5
    "$build/grab/brimvale-grab" "$picture" $width $height || fail "$picture cannot be written."
    now=$(cksum < "$picture")
    if [ "$now" = "$last" ] && [ "$(stat -c %s "$picture")" -gt $smallest ]; then
        tell remove
        echo quit >&"$toHost"
        wait "$host" 2> /dev/null || true
        exit 0
    fi
    last=$now
done
fail "the editor's picture stayed empty."
