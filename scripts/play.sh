#!/bin/bash
# Plays a song through the Windows library under Wine: scripts/play.sh SONG OUTPUT [options of brimvale-host...]
# Needs the Windows build (targets Brimvale and brimvale-host).
#
# Windows cannot hold every name that Linux can, and takes capital and small letters for the same. So the host
# gets to see plain names only: the song through a link, the WAV file in a new folder beside its place, from
# where it is moved there when it is complete.
set -euo pipefail
here=$(cd "$(dirname "$0")" && pwd)
# shellcheck source=scripts/common.sh
. "$here/common.sh"

[ $# -ge 2 ] || fail "it needs a song and the name of a WAV file."
song=$1
output=$2
shift 2
windows=$here/../build/windows

checkSong "$song"
checkOutput "$output" "$song" "$windows/Brimvale.dll"
target=$(readlink -f -- "$output") || fail "cannot write $output: it is a link that leads nowhere."

links=
beside=
trap 'rm -rf "$links" "$beside"' EXIT
beside=$(mktemp -d -- "${target%/*}/brimvale-XXXXXXXX" 2>&1) || fail "cannot write $output: ${beside##*: }."
links=$(mktemp -d)
ln -s "$(readlink -f -- "$song")" "$links/song.mid"
ln -s "$beside" "$links/folder"

# The channels' files are named like the output, with a number before its ending.
channelFile () { # file, number with its ending
    local name=${1##*/}
    printf '%s' "${1%"$name"}${name%.*} $2"
}
withNames () { # text: with the user's names in place of ours
    local text=${1//"$links/song.mid"/"$song"}
    text=${text//"$links/folder/song.wav"/"$output"}
    put "${text//"$links/folder/song "/"$(channelFile "$output" "")"}"
}

# Every picture of the progress bar starts with a carriage return, so that is where a part ends.
copyWithNames () {
    local part
    while IFS= read -r -d $'\r' part; do withNames "$part"$'\r'; done
    withNames "$part"
}

host () {
    "$here/wineRun.sh" "$windows/brimvale-host.exe" "$windows/Brimvale.dll" "$links/song.mid" \
        --output="$links/folder/song.wav" "$@" < /dev/null
}
# Both outputs through pipes, for Wine would take a terminal over.
report=$({ host "$@" 2>&1 >&3 3>&- | copyWithNames >&2; } 3>&1)
[ ! -f "$target" ] || chmod --reference="$target" -- "$beside/song.wav" || true
reason=$(mv -fT -- "$beside/song.wav" "$target" 2>&1) || fail "cannot write $output: ${reason##*: }."
for channel in "$beside"/song\ ??.wav; do
    [ -f "$channel" ] || continue
    reason=$(mv -fT -- "$channel" "$(channelFile "$target" "${channel##*song }")" 2>&1) || fail "cannot write $output: ${reason##*: }."
done
withNames "$report"$'\n'
