#!/bin/bash
# screenshots.sh FOLDER EFFECT...: a picture of each effect's settings dialog, from the Windows build under Wine, on the
# X server of the caller. The file is named after the effect.
set -euo pipefail

folder=$1
shift
program=$PWD/build/windows/bin/kelvane-host.exe
desktop=kelvane-pictures
seconds_to_draw=5

# Wine draws the cross of the close box in this font, which it finds only among the prefix's own fonts.
signs=/usr/share/wine/fonts/marlett.ttf

offer_signs() {
    [[ ! -e $signs ]] || cp "$signs" "$WINEPREFIX/drive_c/windows/Fonts/"
}

picture_of() {
    local effect=$1 file
    file=$folder/$(tr 'A-Z ' 'a-z_' <<<"$effect" | tr -cd 'a-z0-9_').png
    # A desktop of Wine's own draws the window with its caption.
    wine explorer "/desktop=$desktop,800x600" "$program" configure "$effect" >/dev/null &
    timeout 60 bash -c "until xdotool search --name $desktop >/dev/null 2>&1; do sleep 0.2; done"
    sleep "$seconds_to_draw"
    import -window root "$file"
    local blank
    blank=$(convert "$file" -format '%[pixel:p{790,590}]' info:)
    convert "$file" -bordercolor "$blank" -border 1 -trim +repage -strip "$file"
    xdotool key Escape
    wait $!
    echo "$file"
}

mkdir -p "$folder"
offer_signs
for effect in "$@"; do
    picture_of "$effect"
done
