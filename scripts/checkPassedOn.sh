#!/bin/bash
# Looks over built files that are to be passed on: scripts/checkPassedOn.sh [--glibc VERSION] [--own FOLDER]... FILE...
# No file may tell where it was built, which is in the FOLDERs and in this user's home. Linux files may need no C++
# runtime, no library that lies in a folder of the build, and no C library newer than VERSION; Windows files must tell
# their version in their properties. It tells the newest C library that each needs.
set -euo pipefail
here=$(cd "$(dirname "$0")" && pwd)
# shellcheck source=scripts/common.sh
. "$here/common.sh"

allowed=
folders=("$(cd "$here/.." && pwd)" "$HOME" "$(brimvaleCache)")
while [ $# -gt 0 ]; do
    case $1 in
        --glibc) allowed=$2; shift 2 ;;
        --own) folders+=("$2"); shift 2 ;;
        *) break ;;
    esac
done
[ $# -gt 0 ] || fail "it needs the files to look over."

found=0
complain () {
    say "$*"
    found=1
}
newest () { # file: of the C library's versions that it names
    objdump -T "$1" | grep -o 'GLIBC_[0-9.]*' | sed 's/GLIBC_//' | sort -Vu | tail -n 1
}
for file; do
    [ -f "$file" ] || fail "there is no $file; build it first."
    for folder in "${folders[@]}"; do
        for width in s l; do # letters of one and of two bytes
            if strings -a -e "$width" "$file" | grep -F -m 1 -- "$folder/" > /dev/null; then
                complain "$file names $folder"
            fi
        done
    done
    case $(head -c 2 "$file") in
        MZ) strings -a -e l "$file" | grep -x ProductVersion > /dev/null || complain "$file does not tell its version" ;;
        *)
            glibc=$(newest "$file")
            say "$file: glibc $glibc"
            if [ -n "$allowed" ] && [ "$(printf '%s\n' "$glibc" "$allowed" | sort -V | tail -n 1)" != "$allowed" ]; then
                complain "$file needs glibc $glibc, newer than $allowed"
            fi
            if readelf -d "$file" | grep -E 'NEEDED.*(libstdc\+\+|libgcc_s)|R(UN)?PATH'; then
                complain "$file needs the above"
            fi ;;
    esac
done
exit $found
