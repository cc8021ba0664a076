#!/bin/bash
# Runs a 64-bit Windows program under Wine, away from the user's own Wine settings:
#   scripts/wineRun.sh [--own-prefix NAME [--display | --this-display]] PROGRAM.exe [arguments...]
# The prefix (Wine's Windows disk and registry) lies in build/wine/ and is made on first use. Programs share
# one and see no screen. A program that writes to the registry gets a fresh prefix of its own with
# --own-prefix; with --display it also gets a virtual screen (1024 by 768) of its own, with --this-display
# the one that this command was started on. Of two with the same NAME the second waits for the first.
set -euo pipefail
here=$(cd "$(dirname "$0")" && pwd)
# shellcheck source=scripts/common.sh
. "$here/common.sh"

wine=/usr/lib/wine/wine64
wineServer=/usr/lib/wine/wineserver64
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
[ -z "$display" ] || [ "$prefix" != shared ] || fail "--display needs --own-prefix, too."

mkdir -p "$folder"
folder=$(cd "$folder" && pwd)
export WINEDEBUG=-all
export WINEDLLOVERRIDES="mscoree,mshtml=;winemenubuilder.exe=" # no questions about add-ons, no desktop entries
export LC_ALL=C.UTF-8 # file names are UTF-8
unset DISPLAY WAYLAND_DISPLAY

# The shared prefix gets its name when it is complete.
makeShared () {
    [ ! -d "$folder/shared" ] || [ ! -d "$folder/registry" ] || return 0
    rm -rf "$folder/new" "$folder/shared" "$folder/registry"
    WINEPREFIX=$folder/new timeout 300 "$wine" wineboot -i > "$folder/wineboot.log" 2>&1 < /dev/null ||
        fail "Wine could not set up its folder; the reason may be in $folder/wineboot.log."
    WINEPREFIX=$folder/new timeout 60 "$wineServer" -w || true
    # The registry as it is before any program of ours has seen it.
    mkdir "$folder/registry"
    cp -t "$folder/registry" "$folder"/new/*.reg
    mv "$folder/new" "$folder/shared"
}
alone "$folder/lock" makeShared

export WINEPREFIX=$folder/$prefix
[ "$prefix" != shared ] || exec "$wine" "$@"

# Nothing of a prefix that will be thrown away may outlive its program: neither Wine's own server and
# desktop, which would cling to a screen that is gone, nor the screen.
screen=
cleanUp () {
    [ ! -d "$WINEPREFIX" ] || "$wineServer" -k || true
    [ -z "$screen" ] || kill "$screen" 2> /dev/null || true
}
trap cleanUp EXIT
if [ -n "$display" ]; then startScreen; fi
[ -z "$givenDisplay" ] || export DISPLAY=$givenDisplay

exec {turn}> "$folder/$prefix.lock"
flock "$turn"
rm -rf "$WINEPREFIX"
# Linked, for Wine's own files are large and never written; its registry files are.
cp -al "$folder/shared" "$WINEPREFIX"
cp --remove-destination -t "$WINEPREFIX" "$folder"/registry/*.reg
"$wine" "$@" {turn}>&-
