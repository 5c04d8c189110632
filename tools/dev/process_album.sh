#!/bin/bash
# process_album.sh HOST_PROGRAM OUTPUT: takes the music of Debian's extremetuxracer-data through a chain of effects.
set -euo pipefail

host_program=$1
output=$2
music_folder=/usr/share/games/etr/music

# One album has one rate: the tracks at the compact disc's, which are the most.
mapfile -t tracks < <(tools/vorbis_tracks.py --rate 44100 "$music_folder"/*.ogg)
if ((${#tracks[@]} == 0)); then
    echo "No tracks at 44100 Hz in $music_folder" >&2
    exit 1
fi

# The end of each track overlaps the start of the next. Out to four speakers and back to two: each side gets its rear
# part on top. Then for headphones: some of the separation of the low frequencies goes, and the limiter keeps the sum
# from clipping.
effects=("Crossfader:ms=4000" "Convert stereo to 4 channels" "Downmix channels to stereo"
    "Meier Crossfeed:strength=1500" "Hard -6dB limiter")

arguments=()
for effect in "${effects[@]}"; do
    arguments+=(-e "$effect")
done

echo "Tracks:"
printf '    %s\n' "${tracks[@]}"
echo "Effects:"
printf '    %s\n' "${effects[@]}"
mkdir -p "$(dirname "$output")"
"$host_program" process "${tracks[@]}" -o "$output" "${arguments[@]}"
echo "The processed album: $output"
