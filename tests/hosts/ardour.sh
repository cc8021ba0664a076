# shellcheck shell=bash
# Ardour: VST2, VST3 and LV2. Sessions made, kept and exported by its own tools without a window; the panel in its windows.
# shellcheck disable=SC2154 # what run and common.sh set

drive_ardour () {
    command -v ardour7-lua > /dev/null || { say "ardour is not installed: skipped"; return; }
    local format folder tools host cutoff
    tools=$(dirname "$(dpkg-query -L ardour | grep '/luasession$')")
    rm -rf "$XDG_CACHE_HOME/ardour7"
    LD_LIBRARY_PATH=$tools timeout 60 "$tools/ardour-vst-scanner" -q "$HOME/.vst/Brimvale.so" > /dev/null 2>&1 || true
    [ ! -e "$HOME/.vst3/Brimvale.vst3" ] ||
        LD_LIBRARY_PATH=$tools timeout 60 "$tools/ardour-vst3-scanner" -q "$HOME/.vst3/Brimvale.vst3" > /dev/null 2>&1 || true

    for format in ${BRIMVALE_HOSTS_FORMATS:-VST2 VST3 LV2}; do
        isBuilt "$format" || continue
        folder=$work/ardour-$format
        rm -rf "$folder"
        tell ardour "$format" scanned "its session does not get the instrument" session create "${format/VST2/LXVST}" "$work/song.mid"
        exportTo one
        tell ardour "$format" rendered "not the renderer's level" closeTo "$folder/one.wav" "$work/reference.wav" 0.1
        useWindows
        session set 0.61 || true
        session show || true
        tell ardour "$format" reloaded "the value is $cutoff instead of 0.61" [ "${cutoff#0.61}" != "$cutoff" ]
        exportTo two
        tell ardour "$format" played "a value changes nothing" farFrom "$folder/two.wav" "$folder/one.wav" 0.3
        session automate || true
        exportTo three
        tell ardour "$format" automated "the curve changes nothing" farFrom "$folder/three.wav" "$folder/two.wav" 0.2
        ! [ -s "$folder/one.wav" ] || "$build/brimvale-measure" "$folder/one.wav" "$work/reference.wav" | grep largest || true
    done
}

# Ardour without a window now and then hangs or crashes on its dummy device, likely by itself: three attempts.
threeTimes () {
    local attempt
    for attempt in 1 2 3; do
        if timeout -k 5 40 "$@" > "$work/ardour.log" 2>&1; then return 0; fi
        say "          (attempt $attempt ended with $?)"
    done
    return 1
}

# The session on the JACK server, which its settings choose so that it does not ask. It would ask about a session that
# was made with another device, too.
useWindows () {
    local name=${folder##*/}
    forgetZoom
    rm -rf "$XDG_CONFIG_HOME/ardour7" && mkdir -p "$XDG_CONFIG_HOME/ardour7"
    touch "$XDG_CONFIG_HOME/ardour7/.a7" # it was here before
    cat > "$XDG_CONFIG_HOME/ardour7/config" << CONFIG
<?xml version="1.0" encoding="UTF-8"?>
<Ardour><Config><Option name="try-autostart-engine" value="1"/></Config>
 <Extra><AudioMIDISetup><EngineStates><State backend="JACK" driver="" device="" input-device="" output-device="" sample-rate="48000"
  buffer-size="1024" n-periods="0" input-latency="0" output-latency="0" lm-input="" lm-output="" active="1" use-buffered-io="0"
  midi-option=""/></EngineStates></AudioMIDISetup></Extra></Ardour>
CONFIG
    openWindows
    if ! await 20 panelIsOpen; then
        say "          (its panel did not open, or it lost the server: again)"
        finish "$host"
        openWindows
    fi
    usePanel ardour "$format"
    windowNamed "$name - Ardour" || true
    xdotool windowfocus "$window" key ctrl+s || true
    await 10 windowNamed "^$name - Ardour" || true # without a star
    finish "$host"
    session show || true
    tell ardour "$format" saved "the cutoff is $cutoff instead of 0.524 as turned" [ "${cutoff#0.524}" != "$cutoff" ]
}

# With the session, and in it the panel.
openWindows () {
    sed -i '/<EngineHints /d' "$folder/$name.ardour"
    ardour --no-announcements --no-splash "$folder/$name.ardour" > "$work/ardour-window.log" 2>&1 &
    host=$!
    tell ardour "$format" loaded "its window does not appear" await 60 windowNamed "$name - Ardour"
    await 20 portIs 'ardour:Song/audio_out 1' || true
    xdotool windowfocus "$window" || true
    press 60 344 # the track
    act key shift+e # its strip of the mixer
    point 50 170
    xdotool click --repeat 2 --delay 80 1
}

session () { # step [argument song]; sets cutoff
    threeTimes ardour7-lua "$here/ardour.lua" "$1" "$folder" "${@:2}" || return 1
    cutoff=$(awk '$1 == "cutoff" { print $2 }' "$work/ardour.log")
    [ -n "$cutoff" ]
}

exportTo () { threeTimes ardour7-export -b float -s 48000 -o "$folder/$1.wav" "$folder" "${folder##*/}" || true; }
