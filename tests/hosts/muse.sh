# shellcheck shell=bash
# MusE: VST2 and LV2. Its song is text, so it begins with one that plays the notes.
# shellcheck disable=SC2154 # what run and common.sh set

drive_muse () {
    command -v muse > /dev/null || { say "muse is not installed: skipped"; return; }
    local format file host folder
    for format in ${BRIMVALE_HOSTS_FORMATS:-VST2 LV2}; do
        case "$format" in VST2 | LV2) ;; *) continue ;; esac
        isBuilt "$format" || continue
        folder=$work/muse-$format file=$folder/song.med
        rm -rf "$folder" "$XDG_CACHE_HOME/MusE" && mkdir "$folder"
        writeMed 1 > "$file"
        startMuse
        tell muse "$format" scanned "it is in no list" grep -rqs Brimvale "$XDG_CACHE_HOME/MusE"
        playSong "$folder/one.wav" 'MusE:Out 1-0' 'MusE:Out 1-1'
        tell muse "$format" played "not the renderer's level" closeTo "$folder/one.wav" "$work/reference.wav" 1.5
        usePanel muse "$format"
        windowNamed 'MusE Project' || true
        xdotool windowfocus "$window" key ctrl+s
        tell muse "$format" saved "the song holds no state" await 10 grep -q '<customData>' "$file"
        finish "$host"

        startMuse
        playSong "$folder/two.wav" 'MusE:Out 1-0' 'MusE:Out 1-1'
        tell muse "$format" reloaded "the turned cutoff is not heard" farFrom "$folder/two.wav" "$folder/one.wav" 0.1
        finish "$host"

        writeMed 0 > "$file"
        startMuse
        downmix "$folder/exported.wav"
        tell muse "$format" rendered "not the renderer's samples" sameSamples "$folder/exported.wav" "$work/reference.wav"
        finish "$host"

        # The volume rises from low to half in the song's time.
        writeMed 0 '<controller id="36864" cur="0.865">0 0.1, 120000 0.5, </controller>' > "$file"
        startMuse
        downmix "$folder/automated.wav"
        tell muse "$format" automated "the curve changes nothing" farFrom "$folder/automated.wav" "$folder/exported.wav" 3
        tellAlike muse "$format" automated.wav
        finish "$host"
    done
}

startMuse () {
    forgetZoom
    rm -rf "$XDG_CONFIG_HOME/MusE"
    muse "$file" > "$work/muse.log" 2>&1 &
    host=$!
    tell muse "$format" loaded "its window does not appear" await 60 windowNamed 'MusE Project'
    if await 10 windowOf 448 214; then # it asks whether to send sequences for hardware: yes
        point 310 190
        xdotool click 1
    fi
    # Nor shall the tip of the day cover the panel.
    ! await 10 windowNamed 'Did you know' || xdotool windowunmap "$window"
}

# What lies between its markers, by its menu, as 32-bit float: downmix WAV
downmix () {
    windowNamed 'MusE Project' || return 0
    act windowfocus "$window" # its menus are complete then
    press 329 11
    xdotool key Down Down Return
    await 5 windowNamed 'Set Downmix' || return 0
    press 296 57 # the format: the last
    act key End Return
    press 355 25
    answerFile 'Save As' "$1"
    windowNamed 'Set Downmix' || return 0
    press 243 89 # OK
    await 20 lasts "$1" 2.5 || true
}

writeMed () { # whether the panel is open, [controllers]
    cat << SONG
<?xml version="1.0"?>
<muse version="3.3"><song><automation>1</automation><master>1</master><lpos>0</lpos><rpos>1920</rpos><type>1</type><len>6144</len><sampleRate>48000</sampleRate>
 <AudioOutput><name>Out 1</name><channels>2</channels>
  <controller id="0" cur="1"></controller><controller id="1" cur="0"></controller></AudioOutput>
 <SynthI><name>Brimvale-1</name><off>0</off><channels>2</channels><automation>1</automation>
  <controller id="0" cur="1"></controller><controller id="1" cur="0"></controller>${2-}
  <synthType>${format/VST2/VST}</synthType><class>Brimvale</class><label>Brimvale</label><port>0</port>
  <nativeGuiVisible>$1</nativeGuiVisible></SynthI>
 <miditrack><name>Track 1</name><selected>1</selected><device>0</device><channel>0</channel><len>100</len><compression>100</compression>
  <part><name>Track 1</name><poslen tick="0" len="1536" />
$(tick=0; for note in 60 67 72 76 79 72 67 60; do
        echo "   <event tick=\"$tick\" len=\"176\" a=\"$note\" b=\"100\" />"; tick=$((tick + 192)); done)
  </part></miditrack>
 <Route channel="0"><source name="Out 1"/><dest type="1" name="system:playback_1"/></Route>
 <Route channel="1"><source name="Out 1"/><dest type="1" name="system:playback_2"/></Route>
 <Route channel="0" channels="2"><source name="Brimvale-1"/><dest name="Out 1"/></Route>
 <tempolist fix="500000"><tempo at="21474837"><tick>0</tick><val>500000</val></tempo></tempolist>
</song></muse>
SONG
}
