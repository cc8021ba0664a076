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
        point 181 179
        xdotool click --repeat 2 --delay 100 1
        usePanel qtractor "$format"
        await 5 windowOf 1024 768 || true
        point 90 37 # the toolbar's "Save"
        xdotool click 1
        tell qtractor "$format" saved "the session holds no state" await 10 grep -qE '<config key|<param ' "$folder/song.qtr"
        finish "$host"
        cp "$folder/song.qtr" "$folder/saved.qtr"

        startQtractor
        playSong "$folder/two.wav" Qtractor:Master/out_1 Qtractor:Master/out_2
        tell qtractor "$format" reloaded "the turned cutoff is not heard" farFrom "$folder/two.wav" "$folder/one.wav" 0.1
        finish "$host"
    done
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

writeSession () {
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
   <activated>1</activated></plugin></plugins>
 </track></tracks>
</session>
SESSION
}
