#!/bin/bash
# usage: make_tour_gif.sh DIRECTORY
# Makes tour.gif of the pictures film-NNN-HELD.png that the tour has left in its directory, the steps
# of one drag, and takes them away. Needs ImageMagick. The caption of a step says what is held.
set -u
shopt -s nullglob
cd "$1" || exit 1
steps=(film-*.png)
[ ${#steps[@]} -gt 0 ] || { echo "make_tour_gif.sh:0: $1 holds no steps of a drag, play the tour" >&2; exit 1; }

# The perspective view, on the screen of the tour.
part=538x392+542+490
font=/usr/share/fonts/truetype/dejavu/DejaVuSans-Bold.ttf
command=(convert -background '#115e68' -fill white -font "$font" -pointsize 17 -delay 12)
for step in "${steps[@]}"; do
    case ${step%.png} in
        *-alt-left-middle) caption='Alt + left + middle button: zoom' ;;
        *-alt-left) caption='Alt + left button: orbit' ;;
        *) echo "make_tour_gif.sh:0: $step is no step of this drag" >&2; exit 1 ;;
    esac
    command+=('(' "$step" -crop "$part" +repage -gravity north -splice 0x30
        -gravity northwest -annotate +12+5 "$caption" ')')
done
"${command[@]}" -loop 0 -layers optimize -colors 48 tour.gif || exit 1
rm -f "${steps[@]}"
