#!/bin/sh
# The ray-casting host on a cube whose picks are known: cast_mesh.sh PROGRAM
set -eu
program=$1
. "$(dirname "$0")/common.sh"

# A cube of 1 m. Triangles 0 and 1 are its front; the last face is a triangle of no area.
cube='v 0 0 0
v 1 0 0
v 1 1 0
v 0 1 0
v 0 0 1
v 1 0 1
v 1 1 1
v 0 1 1
f 5 6 7
f 5 7 8
f 1 3 2
f 1 4 3
f 1 2 6
f 1 6 5
f 4 7 3
f 4 8 7
f 1 5 8
f 1 8 4
f 2 3 7
f 2 7 6
f 1 2 1'
echo "$cube" >cube.obj

# From 10 m away, with the middle of the picture in the middle of a pixel.
view='--field-of-view 10 --width 101 --height 101'
front='--azimuth 0 --elevation 0 --distance 10'
# shellcheck disable=SC2086 # a list of options
"$program" $view $front --pick 70 60 cube.obj --output cube.png >report.txt
diff - report.txt <<'TEXT' || fail "the report is wrong"
mesh           cube.obj: 13 triangles
scale          512, about the mesh's middle
eye            (0.5, 0.5, 10.5) m, 10 m from the mesh's middle
not seen       1 of the triangles, too small or too flat to be hit
pixel 70 60    triangle 0
point          (0.829165, 0.335417, 1) m
from the eye   range 9.50713 m, bearing 178.02, elevation -0.99193 degrees
picture        cube.png, 101 x 101 pixels
TEXT
is_png cube.png 101 101

# pick DESCRIPTION WANTED OPTION...: the line for a pixel.
pick() {
    what=$1
    wanted=$2
    shift 2
    # shellcheck disable=SC2086
    got=$("$program" $view "$@" --output pick.png | grep '^pixel')
    case $got in
    *"$wanted") ;;
    *) fail "$what: wanted $wanted, got $got" ;;
    esac
}
pick "the upper half of the front" "triangle 1" $front --pick 40 30 cube.obj
pick "below the cube" "the floor" $front --pick 50 100 cube.obj
pick "beside the cube" "nothing" $front --pick 95 10 cube.obj
pick "from above" "triangle 7" --azimuth 0 --elevation 90 --distance 10 --pick 40 60 cube.obj
pick "from below" "the floor" --azimuth 0 --elevation -90 --distance 10 --pick 40 60 cube.obj
pick "from the right" "triangle 10" --azimuth 90 --elevation 0 --distance 10 --pick 60 30 cube.obj
pick "turned by a quarter about Y, its left comes to the front" "triangle 9" $front --rotate 0 90 0 \
    --pick 40 30 cube.obj
pick "in units so small that no triangle could be hit as it is" "triangle 1" --from mm --to km \
    --azimuth 0 --elevation 0 --distance 1e-5 --pick 40 30 cube.obj
# An eye to the right sees the near face further to the left; what is as far as the middle stays.
pick "an eye to the right" "triangle 10" $front --eye-offset 2 --pick 79 30 cube.obj

refused "no faces" /dev/null --output out/bad.png
refused "a pixel outside" cube.obj --pick 1280 0 --output out/bad.png
refused "a picture of no size" cube.obj --width 0 --output out/bad.png
refused "a field of view that sees nothing" cube.obj --field-of-view 180 --output out/bad.png
refused "an infinite distance" cube.obj --distance inf --output out/bad.png
refused "a distance behind" cube.obj --distance -1 --output out/bad.png
refused "a place too far" cube.obj --position 3e38 3e38 3e38 --output out/bad.png
printf 'v 1 2 3\nv 1 2 3\nv 1 2 3\nf 1 2 3\n' >point.obj
refused "a mesh of no extent" point.obj --output out/bad.png

[ "$failures" -eq 0 ]
