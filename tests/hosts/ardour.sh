# shellcheck shell=bash
# Ardour: VST2, VST3 and LV2, without a window: sessions made, kept and exported by its own tools.
# shellcheck disable=SC2154 # what run and common.sh set

drive_ardour () {
    command -v ardour7-lua > /dev/null || { say "ardour is not installed: skipped"; return; }
    local format folder tools
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

session () { # step [argument song]; sets cutoff
    threeTimes ardour7-lua "$here/ardour.lua" "$1" "$folder" "${@:2}" || return 1
    cutoff=$(awk '$1 == "cutoff" { print $2 }' "$work/ardour.log")
    [ -n "$cutoff" ]
}

exportTo () { threeTimes ardour7-export -b float -s 48000 -o "$folder/$1.wav" "$folder" "${folder##*/}" || true; }
