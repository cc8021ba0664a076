#!/bin/bash
# Installs the Debian packages of packages.txt that are missing: scripts/installPackages.sh run|test|package
# Says what it installs, asks nothing, and touches no network when everything is there.
set -euo pipefail
here=$(cd "$(dirname "$0")" && pwd)
# shellcheck source=scripts/common.sh
. "$here/common.sh"

group=${1:-test}
[[ $group =~ ^(run|test|package)$ ]] || fail "the group of packages is run, test or package, not $group."
# Testing needs what running needs, too, and packages hold what all needs.
mapfile -t wanted < <(awk -v group="$group" '/^[a-z]/ && ($1 == "run" || $1 == group || group == "package") { print $2 }' \
    "$here/packages.txt")
command -v apt-get > /dev/null ||
    fail "this is no Debian system; install these yourself or use Debian 12: ${wanted[*]}."

missing=()
for package in "${wanted[@]}"; do
    state=$(dpkg-query -W -f '${db:Status-Status}' "$package" 2> /dev/null || true)
    [ "$state" = installed ] || missing+=("$package")
done
[ ${#missing[@]} -eq 0 ] && exit 0

say "Installing Debian packages: ${missing[*]}"
asRoot=()
if [ "$(id -u)" -ne 0 ]; then
    command -v sudo > /dev/null ||
        fail "installing needs root: run as root \"apt-get install ${missing[*]}\", then try again."
    if [ -t 0 ]; then asRoot=(sudo); else asRoot=(sudo -n); fi
    "${asRoot[@]}" true 2> /dev/null ||
        fail "installing needs root and sudo refuses: run as root \"apt-get install ${missing[*]}\", then try again."
fi

log=$(mktemp)
trap 'rm -f "$log"' EXIT
aptGet () {
    "${asRoot[@]}" env DEBIAN_FRONTEND=noninteractive LC_ALL=C.UTF-8 apt-get -y -q \
        -o DPkg::Lock::Timeout=600 -o Dpkg::Options::=--force-confdef -o Dpkg::Options::=--force-confold \
        -o Acquire::Retries=3 "$@" < /dev/null >> "$log" 2>&1
}
# A package list that is old or cannot be renewed may still do, so only the installation decides.
aptGet update || true
if ! aptGet install --no-install-recommends "${missing[@]}"; then
    grep -E '^(E|W|Err|dpkg)[: ]' "$log" | tail -n 5 >&2 || true
    fail "the packages could not be installed; check the network and the free disk space, then try again."
fi
