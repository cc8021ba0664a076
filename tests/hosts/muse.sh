# shellcheck shell=bash
# MusE: VST2 and LV2. Its song is text, so it begins with one that plays the notes.
# shellcheck disable=SC2154 # what run and common.sh set

drive_muse () {
    command -v muse > /dev/null || { say "muse is not installed: skipped"; return; }
    local format file host
    for format in ${BRIMVALE_HOSTS_FORMATS:-VST2 LV2}; do
        case "$format" in VST2 | LV2) ;; *) continue ;; esac
        isBuilt "$format" || continue
        file=$work/muse-$format.med
        writeMed > "$file"
        forgetZoom
        rm -rf "$XDG_CONFIG_HOME/MusE" "$XDG_CACHE_HOME/MusE"
        muse "$file" > "$work/muse-$format.log" 2>&1 &
        host=$!
        tell muse "$format" loaded "its window does not appear" await 60 windowNamed MusE
        tell muse "$format" scanned "it is in no list" grep -rqs Brimvale "$XDG_CACHE_HOME/MusE"
        if await 10 windowOf 448 214; then # it asks whether to send sequences for hardware: yes
            point 310 190
            xdotool click 1
        fi
        # Nor shall the tip of the day cover the panel.
        ! await 10 windowNamed 'Did you know' || xdotool search --onlyvisible --name 'Did you know' windowunmap || true
        usePanel muse "$format"
        playSong "$work/muse-$format.wav" 'MusE:Out 1-0' 'MusE:Out 1-1'
        tell muse "$format" played "there is no sound" sounds "$work/muse-$format.wav"
        finish "$host"
    done
}

writeMed () {
    cat << SONG
<?xml version="1.0"?>
<muse version="3.3"><song><automation>1</automation><master>1</master><type>1</type><len>6144</len><sampleRate>48000</sampleRate>
 <AudioOutput><name>Out 1</name><channels>2</channels>
  <controller id="0" cur="1"></controller><controller id="1" cur="0"></controller></AudioOutput>
 <SynthI><name>Brimvale-1</name><off>0</off><channels>2</channels><automation>1</automation>
  <controller id="0" cur="1"></controller><controller id="1" cur="0"></controller>
  <synthType>${format/VST2/VST}</synthType><class>Brimvale</class><label>Brimvale</label><port>0</port>
  <nativeGuiVisible>1</nativeGuiVisible></SynthI>
 <miditrack><name>Track 1</name><selected>1</selected><device>0</device><channel>0</channel><len>100</len><compression>100</compression>
  <part><name>Track 1</name><poslen tick="0" len="1536" />
$(tick=0; for note in 60 67 72 76 79 72 67 60; do
        echo "   <event tick=\"$tick\" len=\"179\" a=\"$note\" b=\"100\" />"; tick=$((tick + 192)); done)
  </part></miditrack>
 <Route channel="0"><source name="Out 1"/><dest type="1" name="system:playback_1"/></Route>
 <Route channel="1"><source name="Out 1"/><dest type="1" name="system:playback_2"/></Route>
 <Route channel="0" channels="2"><source name="Brimvale-1"/><dest name="Out 1"/></Route>
 <tempolist fix="500000"><tempo at="21474837"><tick>0</tick><val>500000</val></tempo></tempolist>
</song></muse>
SONG
}
