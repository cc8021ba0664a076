# Shell pieces that the commands at the top of the tree and the helpers in scripts/ share. Sourced, not run.

# Services and containers may start us without it; Wine and the cache need one.
export HOME=${HOME:-$(getent passwd "$(id -u)" | cut -d: -f6)}

# One plain sentence on standard error, then the end.
fail () {
    printf '%s: %s\n' "${0##*/}" "$*" >&2
    exit 1
}

# Folder for what comes from outside and is kept between builds.
brimvaleCache () {
    if [ -n "${XDG_CACHE_HOME:-}" ]; then
        printf '%s/brimvale\n' "$XDG_CACHE_HOME"
    else
        printf '%s/.cache/brimvale\n' "$HOME"
    fi
}

# Runs a command whose output matters only when it goes wrong: quietly with its output in a log file,
# of which the end is shown after a failure.
#   quietly LOG "what failed" command...
quietly () {
    local log=$1 what=$2
    shift 2
    mkdir -p "$(dirname "$log")"
    if ! "$@" > "$log" 2>&1 < /dev/null; then
        tail -n 25 "$log" >&2
        fail "$what; the whole output is in $log."
    fi
}
