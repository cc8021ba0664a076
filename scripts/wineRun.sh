#!/bin/bash
# Runs a 64-bit Windows program under Wine, away from the user's own Wine settings:
#   scripts/wineRun.sh [--own-prefix NAME [--display | --this-display]] PROGRAM.exe [arguments...]
# The prefix (Wine's Windows disk and registry) lies in build/wine/ and is made on first use. Programs share
# one and see no screen. A program that writes to the registry gets a fresh prefix of its own with
# --own-prefix; with --display it also gets a virtual screen (1024 by 768) of its own, with --this-display
# the one that this command was started on. Never two at a time with the same NAME.
set -euo pipefail
here=$(cd "$(dirname "$0")" && pwd)
. "$here/common.sh"

wine=/usr/lib/wine/wine64
folder=$here/../build/wine
prefix=shared
display=
givenDisplay=
while [ $# -gt 0 ]; do
    case $1 in
        --own-prefix) prefix=own-$2; shift 2 ;;
        --display) display=1; shift ;;
        --this-display) givenDisplay=${DISPLAY:-}; shift ;;
        *) break ;;
    esac
done
[ -x "$wine" ] || fail "Wine is missing; run scripts/installPackages.sh run."
[ -f "${1:-}" ] || fail "${1:-no program} has not been built; run cmake --build --preset windows first."

if [ -n "$display" ] && [ "$prefix" = shared ]; then fail "--display needs --own-prefix, too."; fi

mkdir -p "$folder"
folder=$(cd "$folder" && pwd)
export WINEDEBUG=-all
export WINEDLLOVERRIDES="mscoree,mshtml=;winemenubuilder.exe=" # no questions about add-ons, no desktop entries
export LC_ALL=C.UTF-8 # file names are UTF-8
unset DISPLAY WAYLAND_DISPLAY

# The shared prefix is made under a lock and gets its name when it is complete.
exec 9> "$folder/lock"
flock 9
if [ ! -d "$folder/shared" ] || [ ! -d "$folder/registry" ]; then
    rm -rf "$folder/new" "$folder/shared" "$folder/registry"
    if ! WINEPREFIX=$folder/new timeout 300 "$wine" wineboot -i > "$folder/wineboot.log" 2>&1 < /dev/null 9>&-; then
        fail "Wine could not set up its folder; the reason may be in $folder/wineboot.log."
    fi
    WINEPREFIX=$folder/new timeout 60 /usr/lib/wine/wineserver64 -w 9>&- || true
    # The registry as it is before any program of ours has seen it.
    mkdir "$folder/registry"
    cp -t "$folder/registry" "$folder"/new/*.reg
    mv "$folder/new" "$folder/shared"
fi
if [ "$prefix" != shared ]; then
    rm -rf "${folder:?}/$prefix"
    # Linked, for Wine's own files are large and never written; its registry files are.
    cp -al "$folder/shared" "$folder/$prefix"
    cp --remove-destination -t "$folder/$prefix" "$folder"/registry/*.reg
fi
exec 9>&-

export WINEPREFIX=$folder/$prefix
[ "$prefix" = shared ] && exec "$wine" "$@"

# Nothing of a prefix that will be thrown away may outlive its program: neither Wine's own server and
# desktop, which would cling to a screen that is gone, nor the screen.
screen=
cleanUp () {
    /usr/lib/wine/wineserver64 -k || true
    [ -z "$screen" ] || kill "$screen" 2> /dev/null || true
}
trap cleanUp EXIT
[ -z "$givenDisplay" ] || export DISPLAY=$givenDisplay
if [ -n "$display" ]; then
    # The server picks a free number itself and writes it once it is ready.
    coproc Xvfb -displayfd 1 -screen 0 1024x768x24 -nolisten tcp 2> /dev/null
    screen=$COPROC_PID
    read -r -t 60 number <&"${COPROC[0]}" || fail "the virtual screen did not start; is xvfb installed?"
    export DISPLAY=:$number
fi
"$wine" "$@"
