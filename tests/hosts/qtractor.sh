# shellcheck shell=bash
# qtractor: VST2, CLAP and LV2. Its session is text, so it begins with one that plays the song.
# shellcheck disable=SC2154 # what run and common.sh set

drive_qtractor () {
    command -v qtractor > /dev/null || { say "qtractor is not installed: skipped"; return; }
    local format file host folder
    standIn
    for format in ${BRIMVALE_HOSTS_FORMATS:-VST2 CLAP LV2}; do
        case "$format" in
            VST2) file=$HOME/.vst/Brimvale.so ;;
            CLAP) file=$HOME/.clap/Brimvale.clap ;;
            LV2) file=https://corvanex.com/brimvale ;;
        esac
        isBuilt "$format" || continue
        folder=$work/qtractor-$format
        rm -rf "$folder" && mkdir "$folder"
        cp "$work/song.mid" "$folder/"
        writeSession
        startQtractor
        playSong "$folder/one.wav" Qtractor:Master/out_1 Qtractor:Master/out_2
        # The level over the whole recording; the dummy server may lose blocks on a busy machine.
        tell qtractor "$format" played "not the renderer's level" closeTo "$folder/one.wav" "$work/reference.wav" 1.5
        exportTracks "$folder/exported.wav"
        tell qtractor "$format" rendered "not the renderer's level" closeTo "$folder/exported.wav" "$work/reference.wav" 0.1
        openPanel
        usePanel qtractor "$format"
        saveSession
        tell qtractor "$format" saved "the session holds no state" await 10 grep -qE '<config key|<param ' "$folder/song.qtr"
        finish "$host"
        cp "$folder/song.qtr" "$folder/saved.qtr"

        startQtractor
        playSong "$folder/two.wav" Qtractor:Master/out_1 Qtractor:Master/out_2
        tell qtractor "$format" reloaded "the turned cutoff is not heard" farFrom "$folder/two.wav" "$folder/one.wav" 0.1
        [ "$format" != VST2 ] || exchangePresets
        finish "$host"

        writeSession "$(curve Volume)"
        startQtractor
        exportTracks "$folder/automated.wav"
        tell qtractor "$format" automated "the curve changes nothing" farFrom "$folder/automated.wav" "$folder/exported.wav" 2
        tellAlike qtractor "$format" automated.wav
        finish "$host"

        writeSession "$(curve FilterFreq record)"
        startQtractor
        recordPanel
        finish "$host"
    done
}

openPanel () {
    windowNamed song.qtr || true
    point 181 179
    xdotool click --repeat 2 --delay 100 1
}

saveSession () { # by the toolbar
    windowNamed song.qtr || true
    press 90 37
}

# What is turned on the panel while the song plays becomes a curve.
recordPanel () {
    openPanel
    await 20 panelIsOpen || true
    point 329 153
    { echo stop; echo locate 0; sleep 1; echo play; echo exit; } | jack_transport > /dev/null 2>&1 || true
    xdotool click --repeat 12 --delay 60 4
    sleep 1 # the wheel's edit ends half a second after its last notch, and may be recorded only then
    printf '%s\n' stop exit | jack_transport > /dev/null 2>&1 || true
    saveSession
    tell qtractor "$format" recorded "the curve has no points" await 10 hasCurve
}
hasCurve () { find "$folder" -name '*curve*.mid' -size +26c | grep -q .; }

# By its menu, as 32-bit float: exportTracks WAV
exportTracks () {
    windowNamed song.qtr || return 0
    xdotool windowfocus "$window"
    act key alt+t
    act key x
    xdotool key a
    await 5 windowNamed 'Export Audio' || return 0
    typeOver "$1"
    press 266 147 # the only output
    press 177 93  # the sample format: the fourth
    act key Down Down Down Return
    press 298 346 # OK
    await 20 lasts "$1" 2.5 || true
}

# Files of sounds: what the host writes is read by the renderer, what the renderer writes by the host, and each
# writes the same again. The host names a preset after its file, and keeps its program's number when it reads a bank.
exchangePresets () {
    local end what from chunk
    windowNamed song.qtr || true
    press 181 179 3 # its menu, and "Properties"
    press 240 441
    if ! await 5 windowNamed 'Brimvale - Song'; then
        told qtractor VST2 presets "no: its properties do not open"
        return
    fi
    point 412 213
    xdotool click --repeat 6 --delay 60 4 # FilterFreq
    convert --save-program "$folder/untouched.fxp"
    convert -p 9 --save-program "$folder/ours.fxp"
    convert -p 5 --save-program "$folder/five.fxp"
    convert --load "$folder/five.fxp" --save-bank "$folder/ours.fxb"

    for end in fxp fxb; do
        # Where the name or the chunk begins, and the sounds in it.
        if [ $end = fxp ]; then what=program from=28 chunk=84; else what=bank from=156 chunk=160; fi
        savePreset "$folder/host.$end"
        convert --load "$folder/host.$end" "--save-$what" "$folder/back.$end"
        tell qtractor VST2 "$end out" "other sounds" same $from "$folder/host.$end" "$folder/back.$end"
        openPreset "$folder/ours.$end"
        savePreset "$folder/again.$end"
        tell qtractor VST2 "$end in" "other sounds" same $chunk "$folder/ours.$end" "$folder/again.$end"
    done
    tell qtractor VST2 "fxp turned" "the turned cutoff is not in it" differ 84 "$folder/host.fxp" "$folder/untouched.fxp"
}
convert () { "$build/brimvale-host" "$build/Brimvale.so" "$@" > /dev/null || true; }
same () { [ -s "$2" ] && cmp --ignore-initial "$1" "$2" "$3"; }
differ () { [ -s "$2" ] && ! cmp --ignore-initial "$1" "$2" "$3"; }

# By the buttons of its properties; a preset to save needs a name.
savePreset () {
    windowNamed 'Brimvale - Song' || return 0
    press 90 15
    typeOver "${1##*/}"
    press 207 15
    answerFile 'Save Preset' "$1"
    await 5 largerThan "$1" 0 || true
}
openPreset () {
    windowNamed 'Brimvale - Song' || return 0
    press 15 15
    answerFile 'Open Preset' "$1"
}

startQtractor () {
    forgetZoom
    rm -rf "$XDG_CONFIG_HOME/rncbc.org" # what it remembers of a run that was ended makes it ask
    LD_PRELOAD=$preload qtractor "$folder/song.qtr" > "$work/qtractor.log" 2>&1 &
    host=$!
    tell qtractor "$format" loaded "its window does not appear" await 40 windowOf 1024 768
    await 20 portIs Qtractor:Master/out_1 || true
    sleep 3 # its session is read after its window has come
}

# A parameter's curve: a file of controller events, and what names it. Low for a second and then high, or empty and
# to be recorded.
curve () { # parameter [record]
    local low='\xb0\x63\0\0\x62\0\0\x06\x08\0\x26\0' high='\xb0\x63\0\0\x62\0\0\x06\x70\0\x26\0'
    local size='\x1f' points="\0$low\x8f\0$high" capture=0
    [ -z "${2-}" ] || size='\x04' points='' capture=1
    printf '%b' "MThd\0\0\0\x06\0\x01\0\x01\x03\xc0MTrk\0\0\0$size$points\0\xff\x2f\0" > "$folder/curve.mid"
    cat << CURVE
<curve-file><filename>curve.mid</filename><curve-items><curve-item name="$1" mode="Hold"><type>NONREGPARAM</type><channel>0</channel>
 <param>0</param><mode>Hold</mode><process>1</process><capture>$capture</capture></curve-item></curve-items></curve-file>
CURVE
}

writeSession () { # [what the instrument has beside it]
    cat > "$folder/song.qtr" << SESSION
<!DOCTYPE qtractorSession>
<session name="song" version="0.9.31">
 <properties><directory>$folder</directory><sample-rate>48000</sample-rate><tempo>120</tempo>
  <ticks-per-beat>960</ticks-per-beat><beats-per-bar>4</beats-per-bar></properties>
 <devices>
  <audio-engine><audio-bus mode="duplex" name="Master"><channels>2</channels></audio-bus></audio-engine>
  <midi-engine><midi-bus mode="duplex" name="Master"/></midi-engine>
 </devices>
 <tracks><track type="midi" name="Song">
  <properties><input-bus>Master</input-bus><output-bus>Master</output-bus></properties>
  <clips><clip name="song">
   <properties><name>song</name><start>0</start><offset>0</offset><length>120000</length></properties>
   <midi-clip><filename>$folder/song.mid</filename><track-channel>0</track-channel></midi-clip>
  </clip></clips>
  <plugins><plugin type="$format"><filename>$file</filename><index>0</index><label>Brimvale</label>
   <activated>1</activated>${1-}</plugin></plugins>
 </track></tracks>
</session>
SESSION
}
