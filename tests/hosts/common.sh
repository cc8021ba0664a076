# shellcheck shell=bash
# What the scripts that drive real hosts share; sourced by run, which sets build and work.
# shellcheck disable=SC2154,SC2034 # what run sets, and what others read

# One cell of the table: host, format, what was tried, how it went ("no: ..." counts as a failure).
told () {
    printf '%-9s %-5s %-10s %s\n' "$@"
    case $4 in no*) failures=$((failures + 1)) ;; esac
}

# Tells "yes" or "no: reason", by a condition.
#   tell HOST FORMAT STEP "what is wrong" command...
tell () {
    local where=("$1" "$2" "$3") wrong=$4
    shift 4
    if "$@" > /dev/null 2>&1; then told "${where[@]}" yes; else told "${where[@]}" "no: $wrong"; fi
}

# Whether there is a library of the format; otherwise it is told.
isBuilt () { [ "$1" = VST2 ] || [ -e "$build/Brimvale.${1,,}" ] || { say "Brimvale.${1,,} is not built: skipped"; return 1; }; }

# Waits until a command succeeds, up to so many seconds.
await () {
    local end=$((SECONDS + $1))
    shift
    until "$@" > /dev/null 2>&1; do
        [ $SECONDS -lt $end ] || return 1
        sleep 0.2
    done
}

# Ends a program that we started, and what it asks on its way out.
finish () {
    kill "$1" 2> /dev/null || return 0
    await 3 gone "$1" || kill -9 "$1" 2> /dev/null || true
    wait "$1" 2> /dev/null || true
}
gone () { ! kill -0 "$1"; }

# The energy of a WAV file in dB, whatever silence lies around it; nothing for silence.
energy () {
    "$build/brimvale-measure" "$1" | awk '$1 == "length" { seconds = $2 }
        $1 == "level" && $2 != "-inf" { print $2 + 10 * log (seconds) / log (10) }'
}

# Whether the energies of two WAV files with sound are at most so many dB apart, or farther.
apart () { # first second condition
    local a b
    a=$(energy "$1") && b=$(energy "$2") && [ -n "$a" ] && [ -n "$b" ] &&
        awk -v a="$a" -v b="$b" "BEGIN { d = a > b ? a - b : b - a; exit !(d $3) }"
}
lasts () { "$build/brimvale-measure" "$1" | awk -v least="$2" '$1 == "length" { long = $2 >= least } END { exit !long }'; }
sounds () { [ -n "$(energy "$1")" ]; }
closeTo () { apart "$1" "$2" "<= $3"; }
farFrom () { apart "$1" "$2" "> $3"; }

# Tells whether a WAV file of a format holds the samples of VST2's, where this run made one.
tellAlike () { # host format WAV, within the host's folder of the format
    local first=$work/$1-VST2/$3
    [ "$2" = VST2 ] || [ ! "$first" -nt "$work/song.mid" ] || tell "$1" "$2" alike "other samples than VST2" sameSamples "$first" "$work/$1-$2/$3"
}
# As far as the shorter one goes.
sameSamples () { { "$build/brimvale-measure" "$1" "$2" || true; } | grep -x 'largest difference 0 at frame 0'; }

# A song of eight notes, a beat of 480 ticks at 120 BPM, each as long as ON ticks of STEP: song FILE STEP ON VELOCITY
song () {
    local bytes=00ff510307a120 note wait=00
    for note in 3c 43 48 4c 4f 48 43 3c; do
        bytes+=$(printf '%s90%s%02x%02x%02x80%s40' "$wait" "$note" "$4" $(($3 >> 7 | 128)) $(($3 & 127)) "$note")
        wait=$(printf '%02x' $(($2 - $3)))
    done
    bytes+=00ff2f00
    bytes=4d546864000000060000000101e04d54726b$(printf '%08x' $((${#bytes} / 2)))$bytes
    printf '%b' "$(printf '%s' "$bytes" | sed 's/../\\x&/g')" > "$1"
}

# The renderer of this tree plays a song: reference SONG WAV
reference () {
    "$build/brimvale-host" "$build/Brimvale.so" "$1" -o "$2" --rate 48000 --block 512 --format float --tail 2 > /dev/null
}

# Sets `place` to the left and top of the newest visible window of a size (half a pixel may be rounded).
windowOf () {
    local window
    for window in $(xdotool search --onlyvisible --name '' | sort -rn); do
        # shellcheck disable=SC2046 # its words are assignments
        local $(xdotool getwindowgeometry --shell "$window" 2> /dev/null) || continue
        if [ "$WIDTH" -eq "$1" ] && [ $((HEIGHT - $2)) -ge -1 ] && [ $((HEIGHT - $2)) -le 1 ]; then
            place="$X $Y"
            return 0
        fi
    done
    return 1
}
# Sets `window`, and `place` to its left and top: the newest visible window with a text in its name.
windowNamed () {
    window=$(xdotool search --onlyvisible --name "$1" | sort -n | tail -n 1)
    [ -n "$window" ] || return 1
    # shellcheck disable=SC2046 # its words are assignments
    local $(xdotool getwindowgeometry --shell "$window")
    place="$X $Y"
}
point () { # x y in the panel or the window that was found last
    local left top
    read -r left top <<< "$place"
    xdotool mousemove $((left + $1)) $((top + $2)) sleep 0.3
}
picture () { import -window root "$1"; }
changed () { picture "$work/now.png" && ! cmp -s "$work/now.png" "$work/before.png"; }
# Does something with mouse or keyboard that is to be seen, such as opening a menu, and waits until it is.
act () {
    picture "$work/before.png"
    xdotool "$@"
    sleep 0.2
    await 3 changed || true
}
press () { # x y [button]
    point "$1" "$2"
    act click "${3:-1}"
}
# Types into the field that has the keyboard, in place of what stands there.
typeOver () { act key ctrl+a type "$1"; }
# Gives a file to a dialog with such a name.
answerFile () {
    await 5 windowNamed "$1" || return 0
    xdotool windowfocus "$window"
    typeOver "$2"
    await 5 confirmed "$1" || true # it may still be completing the name
}
confirmed () { xdotool key Return sleep 0.5 && ! windowNamed "$1"; }
largerThan () { [ "$(stat -c %s "$1")" -gt "$2" ]; }

# The zoom is kept for all instances; pictures begin with the panel's own size.
forgetZoom () { rm -rf "$XDG_CONFIG_HOME/corvanex"; }

# Finds the panel; qtractor gives one of LV2 a window of its own size.
panelIsOpen () { windowOf 612 433 || windowOf 640 480; }

# The panel that a host shows: opened, its cutoff turned by the wheel, zoomed to 150 % by its menu.
usePanel () { # host format
    if ! await 20 panelIsOpen; then
        picture "$work/$1-$2.png"
        told "$1" "$2" panel "no: no window of its size"
        return
    fi
    sleep 1 # it draws
    picture "$work/$1-$2.png"
    told "$1" "$2" panel yes
    point 329 153
    picture "$work/before.png"
    xdotool click --repeat 12 --delay 60 4
    tell "$1" "$2" turned "the wheel changes nothing" await 5 changed
    picture "$work/before.png"
    point 585 58
    xdotool click 1
    await 5 changed || true
    point 480 265
    sleep 0.5
    point 420 265
    point 406 302
    picture "$work/$1-$2-menu.png"
    xdotool click 1
    tell "$1" "$2" zoom "its window keeps its size" await 8 windowOf 918 650
    sleep 1
    picture "$work/$1-$2-zoomed.png"
}

# A JACK server of our own without a sound card; `jack` is its process.
startJack () {
    export JACK_DEFAULT_SERVER=brimvale-$$ JACK_NO_START_SERVER=1
    jackd -r -n "$JACK_DEFAULT_SERVER" -d dummy -r 48000 -p 1024 > "$work/jackd.log" 2>&1 &
    jack=$!
    await 20 portIs system:playback_1 || fail "JACK's dummy server did not start; $work/jackd.log tells why."
}
portIs () { jack_lsp | grep -qx "$1"; }

# What a host that follows JACK's transport makes of its song: playSong WAV LEFT_PORT RIGHT_PORT
playSong () {
    jack_rec -f "$1" -d 6 -b 24 "$2" "$3" > /dev/null 2>&1 &
    local recorder=$!
    { echo stop; echo locate 0; sleep 1; echo play; sleep 3.5; echo stop; echo exit; } | jack_transport > /dev/null 2>&1 || true
    wait "$recorder" || true
}

# ALSA's sequencer, where the kernel has none: silent, so that a host that insists on one starts. It leaves the
# preload in `preload`.
standIn () {
    preload=
    [ ! -e /dev/snd/seq ] || return 0
    local name
    {
        echo 'static char none[64];'
        echo 'int snd_seq_open (void** s, const char* n, int t, int m) { (void) n; (void) t; (void) m; *s = none; return 0; }'
        for name in close client_id set_client_name alloc_queue free_queue control_queue create_simple_port delete_simple_port \
            drain_output drop_input drop_output event_input_pending event_output event_output_direct free_event \
            poll_descriptors poll_descriptors_count remove_events set_port_info get_port_info set_queue_tempo \
            get_queue_tempo set_queue_timer get_queue_status; do
            echo "int snd_seq_$name (void) { return 0; }"
        done
        for name in event_input get_any_client_info get_any_port_info query_next_client query_next_port \
            query_port_subscribers subscribe_port unsubscribe_port; do
            echo "int snd_seq_$name (void) { return -2; }"
        done
    } | gcc -shared -fPIC -x c -o "$work/sequencer.so" -
    preload=$work/sequencer.so
}
