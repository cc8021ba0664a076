#!/bin/bash
# Builds the packages and tries them out as a stranger would: scripts/tryPackages.sh [--built-here]
#
# They are built in this checkout, and once more on a clean Debian 12 system that is made for it in a folder: both
# must give the same bytes. The .deb and the tar.gz are then installed, used and removed on another clean system, by a
# user who is nobody special there; the zip is unpacked and used under Wine. Takes a quarter of an hour or more and some
# gigabytes of disk for the while; with --built-here, which leaves the second build out, some minutes.
#
# Needs root, for the clean systems, and the network.
set -euo pipefail
here=$(cd "$(dirname "$0")" && pwd)
# shellcheck source=scripts/common.sh
. "$here/common.sh"
root=$(cd "$here/.." && pwd)

builtHere=
case ${1:-} in
    --built-here) builtHere=1 ;;
    ?*) fail "there is no option $1; it takes --built-here or nothing." ;;
esac
[ "$(id -u)" -eq 0 ] || fail "making a clean system needs root; try sudo $0."
build=$root/build
logs=$build/tryPackages
rm -rf "$logs"
mkdir -p "$logs"

work=$(mktemp -d)
# Whatever is mounted in there is so for the commands inside alone, so nothing else can be removed.
trap 'rm -rf --one-file-system "$work"' EXIT

# --- the clean systems -------------------------------------------------------------------------------------------

makeSystem () { # folder
    local mirror
    # shellcheck disable=SC2016 # apt replaces that, not the shell
    mirror=$(apt-get indextargets --format '$(ORIGIN)|$(LABEL)|$(REPO_URI)' | sed -n 's/^Debian|Debian|//p' | sort -u | head -n 1)
    quietly "$logs/${1##*/}.log" "making a clean Debian 12 system failed" \
        mmdebstrap --variant=minbase --include=ca-certificates bookworm "$1" "$mirror"
    cp /etc/resolv.conf "$1/etc/resolv.conf"
    chroot "$1" useradd --create-home --shell /bin/bash player
}

# Runs a command in a clean system: inside FOLDER USER command...
inside () {
    local folder=$1 user=$2
    shift 2
    # shellcheck disable=SC2016 # for the shell inside
    unshare --mount --pid --fork --kill-child bash -c '
        mount -t proc proc "$0/proc"
        folder=$0 user=$1
        shift
        exec chroot --userspec="$user" "$folder" /usr/bin/env -i PATH=/usr/sbin:/usr/bin:/sbin:/bin LC_ALL=C.UTF-8 \
            HOME="$(chroot "$folder" getent passwd "$user" | cut -d: -f6)" DEBIAN_FRONTEND=noninteractive \
            QT_QPA_PLATFORM=offscreen "$@"' "$folder" "$user" "$@" < /dev/null
}

install () { # folder package...
    local folder=$1
    shift
    quietly "$logs/install.log" "installing $* failed" \
        inside "$folder" root apt-get -q -y install --no-install-recommends "$@"
}

# --- building ----------------------------------------------------------------------------------------------------

preset () { # folder preset
    cd "$1" && cmake --preset "$2" -DBRIMVALE_TESTS=OFF -DBRIMVALE_BENCH=OFF && cmake --build --preset "$2" --target package
}
# A tree that has been configured keeps its options.
presetHere () {
    cd "$root" && { [ -f "build/$1/build.ninja" ] || cmake --preset "$1"; } && cmake --build --preset "$1" --target package
}

"$here/installPackages.sh" package
"$here/fetchSources.sh"
for name in linux windows; do
    say "Building for $name"
    rm -f "$build/$name/packages"/brimvale*
    quietly "$logs/$name.log" "building the packages for $name failed" presetHere "$name"
done
shopt -s nullglob
packages=("$build"/{linux,windows}/packages/brimvale[-_]*)
[ ${#packages[@]} -eq 3 ] || fail "three packages were to be built; there are ${packages[*]:-none}."
deb=$(printf '%s\n' "${packages[@]}" | grep '\.deb$')
tarball=$(printf '%s\n' "${packages[@]}" | grep '\.tar\.gz$')
zip=$(printf '%s\n' "${packages[@]}" | grep '\.zip$')
version=$(sed -n 's/^project(Brimvale VERSION \([0-9.]*\).*/\1/p' "$root/CMakeLists.txt")

if [ -z "$builtHere" ]; then
    say "Building on a clean system"
    makeSystem "$work/builder"
    [ -z "$(git -C "$root" status --porcelain)" ] || say "  (with what is not committed)"
    mkdir "$work/builder/home/player/elsewhere"
    (cd "$root" && git ls-files -z --cached --others --exclude-standard | xargs -0 cp --parents -t "$work/builder/home/player/elsewhere")
    export SOURCE_DATE_EPOCH
    SOURCE_DATE_EPOCH=$(git -C "$root" log -1 --format=%ct)
    # shellcheck disable=SC2016 # for the shell inside
    quietly "$logs/builder.log" "building on a clean system failed" inside "$work/builder" root env \
        SOURCE_DATE_EPOCH="$SOURCE_DATE_EPOCH" bash -ec 'cd /home/player/elsewhere
            apt-get -q update
            scripts/installPackages.sh package
            scripts/fetchSources.sh
            for preset in linux windows; do
                cmake --preset $preset -DBRIMVALE_TESTS=OFF -DBRIMVALE_BENCH=OFF
                cmake --build --preset $preset --target package
            done'
    for package in "${packages[@]}"; do
        cmp "$package" "$work/builder/home/player/elsewhere/${package#"$root/"}" ||
            fail "${package##*/} is another when it is built on a clean system."
        say "  the same bytes: ${package##*/}"
    done
    rm -rf --one-file-system "$work/builder"
fi

# --- looking at them ---------------------------------------------------------------------------------------------

say "Looking over what is in them"
mkdir "$work/tar" "$work/zip" "$work/deb"
tar -xzf "$tarball" -C "$work/tar"
unzip -q "$zip" -d "$work/zip"
dpkg-deb -x "$deb" "$work/deb"
glibc=$(sed -n 's/^set(BRIMVALE_GLIBC \([0-9.]*\)).*/\1/p' "$root/cmake/Packages.cmake")
mapfile -t files < <(find "$work" -type f -print0 | xargs -0 file | grep -E ':.*(ELF|PE32)' | cut -d: -f1)
"$here/checkPassedOn.sh" --glibc "$glibc" "${files[@]}" > "$logs/passedOn.log" || fail "$(grep -v ': glibc ' "$logs/passedOn.log")"
for page in "$work"/tar/*/README.txt "$root/README.md" "$root/docs/packages.md"; do
    grep -q "glibc $glibc " "$page" || fail "${page##*/} does not tell that glibc $glibc is needed."
done
lintian --suppress-tags bogus-mail-host,bogus-mail-host-in-debian-changelog --fail-on error,warning "$deb" \
    > "$logs/lintian.log" 2>&1 || fail "$(cat "$logs/lintian.log")"
for entry in "$work"/deb/usr/share/applications/*.desktop; do desktop-file-validate "$entry" || fail "that is in ${entry##*/}."; done

# --- the .deb and the tar.gz -------------------------------------------------------------------------------------

# What the built host makes of the example is what all others have to make of it.
"$build/linux/brimvale-host" "$build/linux/Brimvale.so" "$root/examples/demo.mid" -o "$work/expected.wav" > /dev/null

clean=$work/clean
say "Installing ${deb##*/} on a clean system"
makeSystem "$clean"
cp "$deb" "$clean/tmp"
inside "$clean" root apt-get -q update > "$logs/update.log" 2>&1
install "$clean" "/tmp/${deb##*/}"
mapfile -t installed < <(inside "$clean" root dpkg -L brimvale)

asPlayer () {
    inside "$clean" player "$@"
}
expectVersion () { # program...
    local told
    told=$("$@" --version 2>&1 | tr -d '\r') || fail "$* --version failed: $told"
    [[ $told == *" $version" ]] || fail "$* tells to be of another version than $version: $told"
}
# Every option that a program tells is told by its manual page, too.
checkPage () { # program
    local option page
    page=$(zcat "$clean/usr/share/man/man1/$1.1.gz" | sed 's/\\-/-/g; s/\\fI//g')
    for option in $(asPlayer "$1" --help | grep -o -E -e '(^|[ ,])--[a-z-]+' | grep -o -e '--.*' | sort -u); do
        grep -q -e "$option\b" <<< "$page" || fail "the manual page of $1 does not tell of $option."
    done
}
expectRendering () { # wav
    cmp -s "$1" "$work/expected.wav" || fail "${1##*/} is not what the instrument sounds like elsewhere."
}

for program in brimvale-host brimvale; do
    [ -e "$clean/usr/bin/$program" ] || continue
    expectVersion asPlayer "$program"
    checkPage "$program"
done
[ "$(asPlayer brimvale-host /usr/lib/vst/Brimvale.so --list-programs | wc -l)" -eq 128 ] ||
    fail "the installed instrument does not list its 128 programs."
asPlayer brimvale-host /usr/lib/vst/Brimvale.so /usr/share/doc/brimvale/examples/demo.mid -o /home/player/deb.wav > /dev/null
expectRendering "$clean/home/player/deb.wav"
say "  VST 2.4: renders the example, 128 programs"

# Hosts that Debian packages let their scanners tell what they find.
[ -e "$clean/usr/lib/vst3" ] && scanners=(qtractor lilv-utils ardour) || scanners=(qtractor lilv-utils)
install "$clean" "${scanners[@]}"
scan () { # "the format" "who loads it" "what is expected" command...
    local format=$1 host=$2 expected=$3 told
    shift 3
    told=$("$@" 2>&1) || fail "$format cannot be loaded: $told"
    grep -q -e "$expected" <<< "$told" || fail "$format is not what it should be: $told"
    say "  $format: loaded by $host"
}
qtractorScan () { # type path
    # shellcheck disable=SC2016 # for the shell inside
    asPlayer bash -c 'echo "$0:$1" | /usr/lib/*/qtractor/qtractor_plugin_scan' "$@"
}
lv2 () {
    local uri
    uri=$(asPlayer lv2ls | grep -i brimvale) || return 1
    asPlayer lv2info "$uri" && asPlayer lv2bench "$uri"
}
ardour () {
    # shellcheck disable=SC2016 # for the shell inside
    asPlayer bash -c 'cd /usr/lib/ardour7 && LD_LIBRARY_PATH=. ./ardour-vst3-scanner -f -v /usr/lib/vst3/Brimvale.vst3'
}
scan "VST 2.4" qtractor "VST|Brimvale|0:2|1:0|38:0" qtractorScan VST2 /usr/lib/vst/Brimvale.so
[ ! -e "$clean/usr/lib/clap" ] || scan CLAP qtractor "CLAP|Brimvale|0:2|1:0|39:0" qtractorScan CLAP /usr/lib/clap/Brimvale.clap
[ ! -e "$clean/usr/lib/vst3" ] || scan VST3 Ardour "Found Plugin: Brimvale" ardour
[ ! -e "$clean/usr/lib/lv2/Brimvale.lv2" ] || scan LV2 lilv Brimvale lv2

say "Using ${tarball##*/} beside it"
folder=$(basename "$work"/tar/*)
cp -r "$work/tar/$folder" "$clean/home/player/"
chroot "$clean" chown -R player "/home/player/$folder"
# shellcheck disable=SC2016 # for the shell inside
asPlayer bash -c 'cd "$0" && ./brimvale-host VST2/Brimvale.so examples/demo.mid -o ../tar.wav > /dev/null
    ! ldd $(find . -name "*.so" -o -name "*.clap" -o -name brimvale -o -name brimvale-host) | grep "not found"' \
    "/home/player/$folder" || fail "what the tar.gz holds does not run as its README.txt says."
expectRendering "$clean/home/player/tar.wav"
say "  renders the example; nothing that it needs is missing"

say "Removing them"
rm -r "${clean:?}/home/player/$folder"
quietly "$logs/remove.log" "removing the package failed" inside "$clean" root apt-get -q -y purge brimvale
for file in "${installed[@]}"; do
    [ -d "$clean$file" ] || [ ! -e "$clean$file" ] || fail "$file is left."
done
left=$(find "$clean" -xdev -iname '*brimvale*' ! -path "$clean/tmp/*" ! -path "$clean/home/*" ! -path "$clean/var/cache/*" \
    ! -path "$clean/var/log/*" ! -path "$clean/proc/*")
[ -z "$left" ] || fail "these are left: $left"
say "  nothing is left"

# --- the zip -----------------------------------------------------------------------------------------------------

say "Using ${zip##*/} under Wine"
cd "$work"/zip/*/
wine () {
    "$here/wineRun.sh" --own-prefix packages "$@"
}
wine brimvale-host.exe 'VST2\Brimvale.dll' 'examples\demo.mid' -o "Z:${work//\//\\}\\zip.wav" > "$logs/wine.log" ||
    fail "what the zip holds does not run as its README.txt says."
expectRendering "$work/zip.wav"
for program in brimvale-host.exe brimvale.exe; do
    [ ! -e "$program" ] || expectVersion wine "$program"
done
say "  renders the example"
for file in VST2/Brimvale.dll CLAP/Brimvale.clap VST3/Brimvale.vst3/Contents/x86_64-win/Brimvale.vst3 LV2/Brimvale.lv2/Brimvale.dll; do
    [ -e "$file" ] || continue
    cmp "$file" "$build/windows/${file#*/}" || fail "$file is not what was built."
    say "  $file: what ./test plays"
done
say "All is well:"
sha256sum "${packages[@]}" | sed "s#$root/##"
