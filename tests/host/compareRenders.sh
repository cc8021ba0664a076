#!/bin/bash
# The native library and the Windows library under Wine render the demo piece to the same samples:
#   compareRenders.sh ROOT NATIVE_BUILD TOLERANCE
set -euo pipefail
root=$1
native=$2
tolerance=$3
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
export XDG_CONFIG_HOME=$work/settings # none of the user's own
unset DISPLAY # and no window that would wait for somebody

render=("$root/examples/demo.mid" --format float --rate 44100 --block 512)
"$native/brimvale-host" "$native/Brimvale.so" "${render[@]}" -o "$work/native.wav"
"$root/scripts/wineRun.sh" "$root/build/windows/brimvale-host.exe" "$root/build/windows/Brimvale.dll" \
    "${render[@]}" -o "$work/windows.wav"
"$native/brimvale-measure" "$work/native.wav" "$work/windows.wav" --tolerance "$tolerance"
