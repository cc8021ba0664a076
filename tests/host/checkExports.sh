#!/bin/bash
# The library exports its entry points and nothing else, and a Windows library needs no file but
# those of Windows itself: checkExports.sh LIBRARY [NAME...], without names those of VST 2.4
set -euo pipefail
library=$1
shift
expected=${*:-MAIN VSTPluginMain main}

case $(head -c 2 "$library") in
    MZ)
        table=$(x86_64-w64-mingw32-objdump -p "$library")
        exported=$(awk '/^\[Ordinal\/Name Pointer\] Table/ { on = 1; next } on && NF == 0 { on = 0 } on { print $NF }' <<< "$table")
        needed=$(awk '/DLL Name:/ { print tolower($3) }' <<< "$table" | sort -u | tr '\n' ' ')
        for file in $needed; do
            [ -f "/usr/lib/x86_64-linux-gnu/wine/x86_64-windows/$file" ] || {
                echo "it needs $file, which is no part of Windows"
                exit 1
            }
        done ;;
    *)
        exported=$(nm -D --defined-only "$library" | awk '{ print $NF }') ;;
esac
exported=$(LC_ALL=C sort <<< "$exported" | tr '\n' ' ')
echo "exports: $exported"
[ "$exported" = "$expected " ] || {
    echo "expected: $expected"
    exit 1
}
