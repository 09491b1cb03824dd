#!/usr/bin/env bash
# Makes the demo dictation that is laid down with the program:
#
#   data/Demo/dictation.ogg  a short office memo read by espeak-ng, mono Opus
#                            at 48 kbit/s, about a minute and three quarters
#   data/Demo/dictation.txt  what a typist should write from it
#
# The memo below is the one source of both. It is invented, people and
# places included. Each sentence is spoken on its own and followed by a
# pause, a longer one at the end of a paragraph, so the recording has the
# rhythm of someone dictating. Where the written form is not how it is read
# aloud (sums, phone numbers, dates), `spoken` gives the reader the words.
#
# Needs the Debian packages espeak-ng, sox and ffmpeg. Usage:
#   tools/make-demo-dictation.sh            # writes into data/Demo
#   tools/make-demo-dictation.sh OUT-FOLDER
set -euo pipefail

root=$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)
out=${1:-$root/data/Demo}
voice=${DICTATION_VOICE:-en-gb}
speed=140          # words per minute
pitch=42
sentence_pause=0.55
paragraph_pause=1.2

for tool in espeak-ng sox ffmpeg; do
    command -v "$tool" >/dev/null || { echo "make-demo-dictation: $tool is missing" >&2; exit 1; }
done

work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT

# One sentence a line; an empty line ends a paragraph.
memo=$(cat <<'MEMO'
Memo to all staff at the Kestrel Street office, from Delphine Arkwright, operations manager.
Tuesday, 14 March.

Subject: the archive room move, and our new phone numbers.

Good morning, everyone.
As most of you know, the archive room on the second floor will be emptied over the next three weeks, so that the building can be rewired.
From Monday the 20th, the removal team will take the shelves away in four stages: rows A to D first, then E to H, then the map cabinets, and finally the old accounts from 1998 to 2011.
Please don't leave personal items in the room after Friday the 17th.
Anything still there will be boxed, labelled and sent to our storage unit on Fenwick Road, unit 42.

Our new switchboard number is 01632 748290.
Direct lines keep their last three digits, so Tom Bellweather in accounts, who was on extension 215, is now on 748215.

A few reminders.
The budget for new shelving is £12,500, and Priya Sandoval in purchasing needs every order by 31 March.
If you need a trolley, a ladder or extra boxes, book them through the facilities desk, not by email.

Finally, a word of thanks to Owen Marsh and his team, who catalogued more than 2,400 files last quarter.
That work will save us weeks.
Any questions, please call me on extension 301.
End of memo.
MEMO
)

# The words the reader says for what is written.
spoken() {
    sed -e 's/Tuesday, 14 March/Tuesday, the fourteenth of March/' \
        -e 's/by 31 March/by the thirty-first of March/' \
        -e "s/rows A to D/rows [['eI]] to D/" \
        -e 's/01632 748290/oh one six three two, seven four eight, two nine oh/' \
        -e 's/on 748215/on seven four eight, two one five/' \
        -e 's/extension 215/extension two one five/' \
        -e 's/extension 301/extension three oh one/' \
        -e 's/£12,500/twelve thousand five hundred pounds/'
}

# The transcript: the sentences of a paragraph on one line.
mkdir -p "$out"
awk 'NF { line = line (line == "" ? "" : " ") $0; next }
     { if (line != "") print line; print ""; line = "" }
     END { if (line != "") print line }' <<<"$memo" | cat -s >"$out/dictation.txt"

# Half a second of room before the first word.
sox -R -n -r 22050 -c 1 -b 16 "$work/000.wav" trim 0 0.5
n=0
mapfile -t lines <<<"$memo"
for i in "${!lines[@]}"; do
    line=${lines[$i]}
    [[ -z $line ]] && continue
    n=$((n + 1))
    next=${lines[$((i + 1))]:-}
    pause=$sentence_pause
    [[ -z $next ]] && pause=$paragraph_pause
    espeak-ng -v "$voice" -s "$speed" -p "$pitch" -w "$work/raw.wav" -- "$(spoken <<<"$line")"
    # The reader's own silence at both ends is cut, then the pause is put back
    # as a fixed length.
    sox -R -D "$work/raw.wav" -r 22050 -c 1 -b 16 "$(printf '%s/%03d.wav' "$work" "$n")" \
        silence 1 0.02 0.1% reverse silence 1 0.02 0.1% reverse pad 0 "$pause"
done

sox -R -D "$work"/[0-9][0-9][0-9].wav "$work/all.wav" gain -n -1.5
ffmpeg -loglevel error -y -i "$work/all.wav" -ac 1 -ar 48000 \
    -c:a libopus -b:a 48k -application voip \
    -map_metadata -1 -metadata title="Quillmere demo dictation" \
    -fflags +bitexact -flags:a +bitexact \
    "$out/dictation.ogg"

seconds=$(sox --i -D "$work/all.wav")
printf 'dictation.ogg: %.1f s, %s bytes; dictation.txt: %s words\n' \
    "$seconds" "$(stat -c %s "$out/dictation.ogg")" "$(wc -w <"$out/dictation.txt")"
