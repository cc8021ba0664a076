#!/bin/bash
# The native library and the Windows library under Wine render the demo piece to the same samples, also where
# Windows has no such names for the song and the WAV file:
#   compareRenders.sh ROOT NATIVE_BUILD TOLERANCE
set -euo pipefail
root=$1
native=$2
tolerance=$3
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
export XDG_CONFIG_HOME=$work/settings # none of the user's own
unset DISPLAY # and no window that would wait for somebody

settings=(--format float --rate 44100 --block 512)
"$native/brimvale-host" "$native/Brimvale.so" "$root/examples/demo.mid" -o "$work/native.wav" "${settings[@]}"

mkdir "$work/con"
cd "$work/con"
cp "$root/examples/demo.mid" 'who?.mid'
echo older > 'a|b.WAV'
"$root/scripts/play.sh" 'who?.mid' 'a|b.wav' "${settings[@]}"
if [ "$(LC_ALL=C ls)" != $'a|b.WAV\na|b.wav\nwho?.mid' ] || [ "$(cat 'a|b.WAV')" != older ]; then
    echo "other files came, went or changed:"
    ls -l
    exit 1
fi
"$native/brimvale-measure" "$work/native.wav" 'a|b.wav' --tolerance "$tolerance"
