#!/bin/bash
# Fetches the sources that Debian 12 has no package of from the source packages of Debian 13, through the
# mirror that this machine's apt already uses, and keeps them in the cache folder. Every archive must have
# the SHA-256 written here. Does nothing when the cache is complete.
set -euo pipefail
here=$(cd "$(dirname "$0")" && pwd)
# shellcheck source=scripts/common.sh
. "$here/common.sh"

release=trixie
# folder in the cache, source package, archive, SHA-256, what is taken out of the archive
sources="
vstgui      vst3sdk     vst3sdk_3.7.10.14+~4.13.3.orig-vstgui4.tar.gz  5a7673c7b22a66086a6749a0c7ff447fcfc4a10d2c2013d58ff1320be4e8456f  *
miniaudio   miniaudio   miniaudio_0.11.22+dfsg.orig.tar.gz             c16866ce5071744f60874f9b0e0c2dbee2dfea96ac2c43a06a02cd1df23a019c  */miniaudio.h */LICENSE
libebur128  libebur128  libebur128_1.2.6.orig.tar.gz                   baa7fc293a3d4651e244d8022ad03ab797ca3c2ad8442c43199afe8059faa613  *
rtmidi      rtmidi      rtmidi_6.0.0.orig.tar.gz                       ef7bcda27fee6936b651c29ebe9544c74959d0b1583b716ce80a1c6fea7617f0  */RtMidi.cpp */RtMidi.h */LICENSE
"
cache=$(brimvaleCache)
stamp=.archive-sha256 # in each folder, written last: the folder is whole

isGood () { # folder hash
    [ "$(cat "$cache/$1/$stamp" 2> /dev/null || true)" = "$2" ]
}

missing=()
while read -r folder package archive hash parts; do
    if [ -n "$folder" ] && ! isGood "$folder" "$hash"; then
        missing+=("$folder $package $archive $hash $parts")
    fi
done <<< "$sources"
[ ${#missing[@]} -eq 0 ] && exit 0

mkdir -p "$cache" 2> /dev/null || fail "the cache folder $cache cannot be made; set XDG_CACHE_HOME to a folder you may write to."
work=$(mktemp -d "$cache/fetch.XXXXXX") || fail "the cache folder $cache cannot be written to; set XDG_CACHE_HOME to another one."
trap 'rm -rf "$work"' EXIT
log=$work/log
mkdir -p "$work/lists/partial" "$work/cache/archives/partial"

# apt with lists of its own, so that neither the machine's configuration nor its lists change.
privately=(-o "Dir::State::lists=$work/lists" -o "Dir::Cache=$work/cache" -o "APT::Sandbox::User=$(id -un)"
    -o Acquire::Retries=3 -o Acquire::http::Timeout=60 -o Acquire::https::Timeout=60
    -o Acquire::Languages=none)

mirrors () { # apt options...
    # shellcheck disable=SC2016 # apt replaces those, not the shell
    apt-get "$@" indextargets --format '$(ORIGIN)|$(LABEL)|$(REPO_URI)' 2> /dev/null |
        sed -n 's/^Debian|Debian|//p' | sort -u
}
findMirrors () {
    local found
    found=$(mirrors)
    if [ -z "$found" ]; then # package lists were never fetched here, or were deleted
        apt-get "${privately[@]}" update >> "$log" 2>&1 < /dev/null || true
        found=$(mirrors "${privately[@]}")
    fi
    printf '%s\n' "$found"
}

listSources () { # mirror
    local keyring=/usr/share/keyrings/debian-archive-keyring.gpg signedBy=
    [ -r "$keyring" ] && signedBy="[signed-by=$keyring] "
    echo "deb-src $signedBy$1 $release main" > "$work/sources.list"
    privateSources=("${privately[@]}" -o "Dir::Etc::sourcelist=$work/sources.list" -o Dir::Etc::sourceparts=/dev/null)
    apt-get "${privateSources[@]}" -o APT::Update::Error-Mode=any update >> "$log" 2>&1 < /dev/null
}

fetch () { # package archive hash
    local address
    address=$(apt-get "${privateSources[@]}" source --print-uris "$1" 2>> "$log" < /dev/null |
        awk -v archive="$2" '$2 == archive { gsub (/\x27/, "", $1); print $1; exit }') || true
    [ -n "$address" ] || fail "Debian's $release no longer lists $2; get it elsewhere and unpack it as the README says."
    /usr/lib/apt/apt-helper "${privately[@]}" download-file "$address" "$work/$2" "SHA256:$3" >> "$log" 2>&1 < /dev/null ||
        fail "$2 could not be fetched; check the network and try again."
    echo "$3  $work/$2" | sha256sum --check --status || fail "$2 is not the file that was expected; try again later."
}

unpack () { # folder archive hash parts...
    local folder=$1 archive=$2 hash=$3
    shift 3
    mkdir "$work/$folder"
    tar -xzf "$work/$archive" -C "$work/$folder" --strip-components=1 --no-same-owner --wildcards "$@"
    echo "$hash" > "$work/$folder/$stamp"
    rm -rf "${cache:?}/$folder"
    mv "$work/$folder" "$cache/$folder"
}

set -f # the parts hold wildcards that tar, not the shell, is to expand
names=$(printf '%s\n' "${missing[@]}" | awk '{ printf "%s ", $1 }')
say "Fetching sources: $names"
mirrorFound=
for mirror in $(findMirrors); do
    if listSources "$mirror"; then
        mirrorFound=$mirror
        break
    fi
done
[ -n "$mirrorFound" ] ||
    fail "no Debian mirror of this machine's apt configuration answers; check the network and try again."
for row in "${missing[@]}"; do
    read -r folder package archive hash parts <<< "$row"
    fetch "$package" "$archive" "$hash"
    # shellcheck disable=SC2086 # one argument for each part
    unpack "$folder" "$archive" "$hash" $parts
done
