# shellcheck shell=bash
# jalv: LV2. Notes from jack_midiseq, sound to jack_rec.
# shellcheck disable=SC2154 # what run and common.sh set

drive_jalv () {
    command -v jalv.gtk3 > /dev/null || { say "jalv is not installed: skipped"; return; }
    local uri=https://corvanex.com/brimvale host
    tell jalv LV2 scanned "lv2ls does not list it" sh -c "lv2ls | grep -qx $uri"

    startJalv
    tell jalv LV2 loaded "its ports do not appear" await 40 portIs brimvale:lv2_left
    recordLoop "$work/jalv.wav"
    tell jalv LV2 played "there is no sound" sounds "$work/jalv.wav"
    usePanel jalv LV2
    windowNamed '^Brimvale$' || true
    rm -rf "$work/jalv-state"
    press 20 12 # its menu, and "Save"
    press 47 37
    answerFile 'Save State' "$work/jalv-state"
    tell jalv LV2 saved "there is no state" await 5 largerThan "$work/jalv-state/state.ttl" 20000
    finish "$host"

    startJalv --load="$work/jalv-state"
    recordLoop "$work/jalv-reloaded.wav"
    tell jalv LV2 reloaded "the turned cutoff is not heard" farFrom "$work/jalv-reloaded.wav" "$work/jalv.wav" 0.3
    finish "$host"

    startJalv --control=FilterFreq=0.61
    recordLoop "$work/jalv-set.wav"
    tell jalv LV2 automated "a value changes nothing" farFrom "$work/jalv-set.wav" "$work/jalv.wav" 0.3
    finish "$host"
}

startJalv () { # [options]
    forgetZoom
    jalv.gtk3 --jack-name=brimvale "$@" "$uri" > "$work/jalv.log" 2>&1 &
    host=$!
    await 40 portIs brimvale:lv2_events_in || true
}

recordLoop () {
    jack_midiseq notes 24000 0 60 10000 12000 67 10000 > /dev/null 2>&1 &
    local player=$!
    await 10 portIs notes:out
    jack_connect notes:out brimvale:lv2_events_in || true
    jack_rec -f "$1" -d 4 -b 24 brimvale:lv2_left brimvale:lv2_right > /dev/null 2>&1
    finish "$player"
}
