#!/bin/bash
# Runs a program on a virtual screen (1024 by 768) of its own: onScreen.sh PROGRAM [arguments...]
set -euo pipefail

# The server picks a free number itself and writes it once it is ready. -noreset: it must not start afresh
# whenever its last client leaves.
coproc Xvfb -displayfd 1 -screen 0 1024x768x24 -noreset -nolisten tcp 2> /dev/null
screen=$COPROC_PID
trap 'kill "$screen" 2> /dev/null || true' EXIT
if ! read -r -t 60 number <&"${COPROC[0]}"; then
    echo "onScreen.sh: the virtual screen did not start; is xvfb installed?" >&2
    exit 1
fi
export DISPLAY=:$number
unset WAYLAND_DISPLAY
"$@"
