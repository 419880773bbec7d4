#!/bin/sh
# The ray-casting host on a cube whose picks are known: cast_mesh.sh PROGRAM PIXEL-READER
set -eu
program=$1
pixel=$2
pictures=$(cd "$(dirname "$0")/../../docs/pictures" && pwd)
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
enlarged       512 times for the casting, to a diagonal of 886.8: the library's tolerances are absolute
eye            (0.5, 0.5, 10.5) m, 10 m from the mesh's middle
not seen       1 triangle, too small or too flat to be hit
pixel 70 60    triangle 0
point          (0.829165, 0.335417, 1) m
from the eye   range 9.50713 m, bearing 178.02, elevation -0.9919 degrees
picture        cube.png, 101 x 101 pixels
TEXT

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

# Each of a cube's faces counts alike in its corners' normals, into however many triangles it is cut there.
# shellcheck disable=SC2086
"$program" $view $front cube.obj --smooth 180 --light-azimuth 0 --light-elevation 0 --output round.png >report.txt
pixels round.png <<'TEXT'
22 78 192 179 158 the lower left corner
78 78 192 179 158 the lower right corner
22 22 208 194 171 the upper left corner
78 22 208 194 171 the upper right corner
TEXT

pick "far from the origin" "triangle 1" $front --position 1e16 0 0 --pick 40 30 cube.obj
pick "the file's Z is up: its front is the cube's Y = 0" "triangle 5" $front --up z --pick 40 30 cube.obj

# The documents' picture, and an L, 3 by 3 by 1 m, seen from the front and a little from above, with the
# light from the left: what is drawn and what is picked are the same, neither mirrored, upside down,
# shifted, without shadow nor with its colours exchanged. The front is one concave polygon.
bunny=/usr/share/glmark2/models/bunny.obj # the demo's mesh, without which there is nothing to compare
if [ -n "${KX_NO_SKIP-}" ] || [ -f $bunny ]; then
    "$program" --from cm --to mm --rotate 0 10 0 --output demo.png >report.txt
    same demo.png "$pictures/cast_mesh.png" "the documents' picture"
fi
echo 'v 0 0 1
v 3 0 1
v 3 1 1
v 1 1 1
v 1 3 1
v 0 3 1
v 0 0 0
v 3 0 0
v 3 1 0
v 1 1 0
v 1 3 0
v 0 3 0
f 3 4 5 6 1 2
f 12 11 10 9 8 7
f 1 7 8 2
f 2 8 9 3
f 3 9 10 4
f 4 10 11 5
f 5 11 12 6
f 6 12 7 1' >L.obj
view='--width 160 --height 120 --azimuth 0 --elevation 20'
# The same L lying in its file, and stood up again: light, floor and sky are the world's, not the file's.
awk '/^v/ { $0 = "v " $3 " " $4 " " $2 } 1' L.obj >lying.obj
light='--light-azimuth -60 --light-elevation 40 --pick 40 60'
# shellcheck disable=SC2086 # lists of options
{
    "$program" L.obj $view $light --output L.png | grep -E '^(eye|point|from)' >L.txt
    "$program" lying.obj --rotate 90 0 90 --order ZXY $view $light --output lying.png |
        grep -E '^(eye|point|from)' | diff L.txt - || fail "a mesh that is stood up is elsewhere"
    "$program" L.obj $view --light-azimuth -10 --light-elevation 8 --output low.png >report.txt
}
same lying.png L.png "a mesh that is stood up"
pixels L.png <<'TEXT'
80 5 227 233 242 the sky
90 40 205 208 212 the notch, with the floor at the back of it
132 100 174 163 144 the front at its right edge
136 100 126 127 129 the shadow next to it
80 110 174 163 144 the front at its lower edge
80 119 194 197 200 the floor before it, in the last row
TEXT
pixels low.png <<'TEXT'
90 30 183 187 192 a shadow on the floor, twice as long as the mesh
TEXT
pick "the sky" "nothing" L.obj --pick 80 5
pick "the notch" "the floor" L.obj --pick 90 40
pick "the front at its right edge" "triangle 0" L.obj --pick 132 100
pick "the shadow next to it" "the floor" L.obj --pick 136 100
pick "the front at its lower edge" "triangle 3" L.obj --pick 80 110
pick "the floor before it" "the floor" L.obj --pick 80 117

# The whole of a mesh is in the picture, from wherever it is seen and whatever its proportions are.
# framed WIDTH HEIGHT OPTION...: nothing of it at the border.
framed() {
    width=$1
    height=$2
    shift 2
    for at in "0 0" "$((width - 1)) 0" "0 $((height - 1))" "$((width - 1)) $((height - 1))" \
        "$((width / 2)) 0" "0 $((height / 2))" "$((width - 1)) $((height / 2))" "$((width / 2)) $((height - 1))"; do
        # shellcheck disable=SC2086 # a column and a row
        case $("$program" --width "$width" --height "$height" --output framed.png "$@" --pick $at |
            grep '^pixel') in
        *triangle*) fail "framed $*: the mesh reaches pixel $at" ;;
        esac
    done
}
framed 160 120 cube.obj
framed 90 200 L.obj --azimuth 45
framed 200 90 L.obj --field-of-view 100 --elevation 60
framed 160 120 L.obj --rotate 0 0 45
printf 'v -1 -1 0\nv 1 -1 0\nv 0 1 0\nv 0 0 -5\nf 1 2 3\nf 1 4 2\nf 2 4 3\nf 3 4 1\n' >wide_in_front.obj
framed 160 120 wide_in_front.obj --azimuth 0 --elevation 0

# Two triangles that meet at 60 degrees: smooth shading makes their edge disappear, unless the angle
# is a crease.
printf 'v -1 0 0\nv 0 -1 0.6\nv 0 1 0.6\nv 1 0 0\nf 1 2 3\nf 2 4 3\n' >fold.obj
"$program" fold.obj $view --light-azimuth 20 --smooth 90 --output smooth.png >report.txt
"$program" fold.obj $view --light-azimuth 20 --smooth 30 --output crease.png >report.txt
"$program" fold.obj $view --light-azimuth 20 --output flat.png >report.txt
facet() { printf 'facet normal %s\nouter loop\nvertex %s\nvertex %s\nvertex %s\nendloop\nendfacet\n' "$@"; }
{
    echo solid
    facet '-0.5 0 1' '-1 0 0' '0 -1 0.6' '0 1 0.6'
    facet '0.5 0 1' '0 -1 0.6' '1 0 0' '0 1 0.6'
    echo endsolid
} >fold.stl
"$program" fold.stl $view --light-azimuth 20 --smooth 90 --output stl.png >report.txt
cmp -s stl.png smooth.png || fail "an STL file's normals, which are its triangles', are taken for the surface's"
cmp -s crease.png flat.png || fail "a crease is shaded smoothly"
# shellcheck disable=SC2046 # two lines of three numbers
[ $("$pixel" smooth.png 78 50 82 50 | awk 'NR == 1 { a = $1 } NR == 2 { print ($1 - a) ^ 2 < 100 }') = 1 ] ||
    fail "a fold is not shaded smoothly"
[ $("$pixel" flat.png 78 50 82 50 | awk 'NR == 1 { a = $1 } NR == 2 { print ($1 - a) ^ 2 < 100 }') = 0 ] ||
    fail "a fold is shaded smoothly unasked"

# Normals of the file come first. They turn with it where its Z is up, and stay with their corners in
# whatever order these come.
printf 'v -1 0 0\nv 0 -1 0.6\nv 0 1 0.6\nv 1 0 0\nvn -1 0 1\nvn 0 -1 1\nvn 0 1 1\nvn 1 0 1\n%b' \
    'f 1//1 2//2 3//3\nf 2//2 4//4 3//3\n' >own.obj
printf 'v -1 0 0\nv 0 -0.6 -1\nv 0 -0.6 1\nv 1 0 0\nvn -1 -1 0\nvn 0 -1 -1\nvn 0 -1 1\nvn 1 -1 0\n%b' \
    'f 2//2 1//1 3//3\nf 2//2 3//3 4//4\n' >own_z.obj
"$program" own.obj $view --light-azimuth 20 --smooth 0 --output own.png >report.txt
"$program" own_z.obj $view --light-azimuth 20 --smooth 0 --up z --output own_z.png >report.txt
! cmp -s own.png flat.png || fail "a file's normals are not used"
awk '/^vn/ { $0 = "vn " (-$2) " " (-$3) " " (-$4) } 1' own.obj >inward.obj
"$program" inward.obj $view --light-azimuth 20 --smooth 0 --output inward.png >report.txt
cmp -s own.png inward.png || fail "normals that point inward are shaded differently"
same own_z.png own.png "a file's normals, with Z up"

refused "no faces" /dev/null --output out/bad.png
refused "a pixel outside" cube.obj --pick 1280 0 --output out/bad.png
refused "a pixel below" cube.obj --pick 0 720 --output out/bad.png
refused "a pixel to the left" cube.obj --pick -1 0 --output out/bad.png
refused "a picture of no size" cube.obj --width 0 --output out/bad.png
refused "a field of view that sees nothing" cube.obj --field-of-view 180 --output out/bad.png
refused "an infinite distance" cube.obj --distance inf --output out/bad.png
refused "a distance behind" cube.obj --distance -1 --output out/bad.png
refused "an eye from which nothing is seen" cube.obj --distance 1e36 --output out/bad.png
printf 'v 2e38 0 0\nv 3e38 0 0\nv 2e38 1e38 0\nf 1 2 3\n' >far.obj
refused "a place too far" far.obj --position 2e38 0 0 --output out/bad.png
refused "a picture that is no PNG file" cube.obj --output out/bad.jpg
refused "one number for two" --output out/bad.png cube.obj --pick 1
printf 'v 1 2 3\nv 1 2 3\nv 1 2 3\nf 1 2 3\n' >point.obj
refused "a mesh of no extent" point.obj --output out/bad.png

[ "$failures" -eq 0 ]
