# shellcheck shell=bash
# jalv: LV2. Notes from jack_midiseq, sound to jack_rec.
# shellcheck disable=SC2154 # what run and common.sh set

drive_jalv () {
    command -v jalv.gtk3 > /dev/null || { say "jalv is not installed: skipped"; return; }
    local uri=https://corvanex.com/brimvale host value
    tell jalv LV2 scanned "lv2ls does not list it" sh -c "lv2ls | grep -qx $uri"

    for value in '' 0.61; do
        forgetZoom
        jalv.gtk3 --jack-name=brimvale ${value:+--control=FilterFreq=$value} "$uri" > "$work/jalv.log" 2>&1 &
        host=$!
        tell jalv LV2 loaded "its ports do not appear" await 40 portIs brimvale:lv2_left
        recordLoop "$work/jalv$value.wav"
        if [ -z "$value" ]; then
            tell jalv LV2 played "there is no sound" sounds "$work/jalv.wav"
            usePanel jalv LV2
        else
            tell jalv LV2 automated "a value changes nothing" farFrom "$work/jalv.wav" "$work/jalv0.61.wav" 0.3
        fi
        finish "$host"
    done
}

recordLoop () {
    jack_midiseq notes 24000 0 60 10000 12000 67 10000 > /dev/null 2>&1 &
    local player=$!
    await 10 portIs notes:out
    jack_connect notes:out brimvale:lv2_events_in
    jack_rec -f "$1" -d 4 -b 24 brimvale:lv2_left brimvale:lv2_right > /dev/null 2>&1
    finish "$player"
}
