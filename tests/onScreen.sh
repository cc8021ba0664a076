#!/bin/bash
# Runs a program on a virtual screen (1024 by 768) of its own: onScreen.sh PROGRAM [arguments...]
set -euo pipefail
here=$(cd "$(dirname "$0")" && pwd)
# shellcheck source=scripts/common.sh
. "$here/../scripts/common.sh"

screen=
trap '[ -z "$screen" ] || kill "$screen" 2> /dev/null || true' EXIT
startScreen
"$@"
