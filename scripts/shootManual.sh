#!/bin/bash
# Renews the manual's pictures of open windows, docs/manual/menu.png and typing.png, from the native library in
# build/linux (targets Brimvale, brimvale-editor-host and brimvale-grab). The drawn ones are makeManual's.
set -euo pipefail
here=$(cd "$(dirname "$0")" && pwd)
# shellcheck source=scripts/common.sh
. "$here/common.sh"

[ $# -eq 0 ] || fail "it needs no arguments."
build=$here/../build/linux
pictures=$here/../docs/manual
width=612
height=433
heightWithoutKeys=295

screen=
settings=$(mktemp -d)
trap '[ -z "$screen" ] || kill "$screen" 2> /dev/null || true; rm -rf "$settings"' EXIT
export XDG_CONFIG_HOME=$settings
startScreen

coproc HOST { exec "$build/brimvale-editor-host" "$build/Brimvale.so" 2> /dev/null; }
host=$HOST_PID
exec {toHost}>&"${HOST[1]}" {fromHost}<&"${HOST[0]}"
tell () {
    echo "$1" >&"$toHost"
    read -r -t 60 answer <&"$fromHost" || fail "the editor's host does not answer."
    case $answer in error*) fail "the editor did not open: ${answer#error }." ;; esac
}
# The top of the screen once it has changed and two pictures in a row are the same (a caret may blink in it).
before=
shoot () {
    local now last=""
    for _ in $(seq 60); do
        sleep 0.2
        "$build/brimvale-grab" "$1" $width "$2" || fail "$1 cannot be written."
        now=$(cksum < "$1")
        if [ "$now" = "$last" ] && [ "$now" != "$before" ]; then
            before=$now
            return
        fi
        last=$now
    done
    fail "the panel did not change for $1."
}

scratch=$settings/scratch.png
tell open
shoot "$scratch" $height
xdotool mousemove 585 58 click 1 # the menu's button
shoot "$scratch" $height
xdotool mousemove 520 231 # its entry "Random"
shoot "$scratch" $height
xdotool mousemove 400 231
shoot "$pictures/menu.png" $height
for _ in 1 2 3; do xdotool key Escape; done
shoot "$scratch" $height
xdotool mousemove 329 153 keydown shift click --repeat 2 --delay 100 1 keyup shift # the cutoff's field
shoot "$scratch" $heightWithoutKeys
xdotool type --delay 50 '1.2k'
shoot "$pictures/typing.png" $heightWithoutKeys
echo quit >&"$toHost"
wait "$host" 2> /dev/null || true
