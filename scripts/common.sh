# shellcheck shell=bash
# Shell pieces that the commands at the top of the tree and the helpers in scripts/ share. Sourced, not run.

# Services and containers may start us without it; Wine and the cache need one.
export HOME=${HOME:-$(getent passwd "$(id -u)" | cut -d: -f6)}

# One plain sentence on standard error, then the end.
fail () {
    printf '%s: %s\n' "${0##*/}" "$*" >&2
    exit 1
}

# Text on standard output as it is, without a line end of its own. Ends quietly when nobody reads any more.
put () {
    local reason
    if { ! reason=$(printf '%s' "$1" 2>&1 >&3); } 3>&1; then
        [ -z "$reason" ] || fail "cannot write to standard output: ${reason##*: }."
        exit 1
    fi
}

# A line on standard output.
say () {
    put "$*"$'\n'
}

# Folder for what comes from outside and is kept between builds.
brimvaleCache () {
    if [ -n "${XDG_CACHE_HOME:-}" ]; then
        printf '%s/brimvale\n' "$XDG_CACHE_HOME"
    else
        printf '%s/.cache/brimvale\n' "$HOME"
    fi
}

# Runs a command while nobody else runs one with the same lock file; waits for its turn.
#   alone LOCK command...
alone () {
    local lock=$1 handle status=0
    shift
    mkdir -p "$(dirname "$lock")" || fail "the folder of $lock cannot be made."
    exec {handle}> "$lock"
    if ! flock --nonblock "$handle"; then
        [ ! -t 2 ] || echo "Waiting for another ${0##*/}" >&2
        flock "$handle"
    fi
    # Closed for the command: what it leaves running must not keep others waiting.
    (
        exec {handle}>&-
        "$@"
    ) || status=$?
    exec {handle}>&-
    return $status
}

# Runs a command whose output matters only when it goes wrong: quietly with its output in a log file,
# of which the end is shown after a failure.
#   quietly LOG "what failed" command...
quietly () {
    local log=$1 what=$2
    shift 2
    mkdir -p "$(dirname "$log")" || fail "the folder of $log cannot be made."
    if ! "$@" > "$log" 2>&1 < /dev/null; then
        tail -n 25 "$log" >&2
        fail "$what; the whole output is in $log."
    fi
}

# Starts a virtual screen, which becomes the display of what is started from then on. `screen` is its process,
# for the caller to end. The server picks a free number itself and writes it once it is ready; -noreset: it
# must not start afresh whenever its last client leaves.
startScreen () {
    local fromScreen number
    exec {fromScreen}< <(exec Xvfb -displayfd 1 -screen 0 1024x768x24 -noreset -nolisten tcp 2> /dev/null < /dev/null)
    # shellcheck disable=SC2034 # the caller's
    screen=$!
    read -r -t 60 number <&"$fromScreen" || fail "the virtual screen did not start; is xvfb installed?"
    export DISPLAY=:$number
    unset WAYLAND_DISPLAY
}

# Ends with a sentence unless there is a song to read.
checkSong () { # song
    [ -e "$1" ] || fail "there is no MIDI file $1; check the name."
    [ -f "$1" ] || fail "cannot read the MIDI file $1: it is not a file."
}

# Ends with a sentence when a WAV file cannot have a name, or would replace anything but an older file. Links
# are followed.
checkOutput () { # output files-to-keep...
    local output=$1 file
    shift
    [ ! -d "$output" ] || fail "cannot write $output: a folder has that name."
    [ ! -e "$output" ] || [ -f "$output" ] || fail "cannot write $output: what has that name is no ordinary file."
    [ -d "$(dirname -- "$output")" ] || fail "cannot write $output: its folder does not exist."
    for file; do
        [ ! "$output" -ef "$file" ] || fail "the output would overwrite $file; give it another name with -o."
    done
}
