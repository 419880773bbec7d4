#!/bin/sh
# The example host on a small mesh whose numbers are known, and on everything that can be wrong:
# place_mesh.sh PROGRAM PIXEL-READER
set -eu
program=$1
pixel=$2
. "$(dirname "$0")/common.sh"

# A wedge, 1 by 2 by 4 m, with a polygon of four corners among its faces.
wedge='v 0 0 0
v 1 0 0
v 0 2 0
v 0 0 4
v 1 0 4
f 1 3 2
f 1 2 5 4
f 1 4 3
f -3/1/1 -2/2/2 -1/3/3
f 2 3 5'
echo "$wedge" >wedge.obj

# A quarter turn about Z takes (x, y, z) to (-y, x, z), before the mesh is moved by (10, 0, 0).
"$program" wedge.obj --from m --to cm --position 1000 0 0 --rotate 0 0 90 --observer 900 -50 200 \
    --output placed.png >report.txt
diff - report.txt <<'TEXT' || fail "the report is wrong"
mesh           wedge.obj: 5 points, 6 triangles
own box        (0, 0, 0) to (100, 200, 400) cm
mid-point      (50, 100, 200) cm
diagonal       (100, 200, 400) cm, length 458.258 cm
position       (1000, 0, 0) cm
rotation       X 0, Y 0, Z 90 degrees, order YXZ
box placed     (800, 0, 0) to (1000, 100, 400) cm
box around     (800, 0, 0) to (1000, 100, 400) cm
observer       (900, -50, 200) cm
mid-point at   (900, 50, 200) cm
on the ground  range 0 cm, bearing 270 degrees
in space       range 100 cm, elevation 90, azimuth 0 degrees
read by rows   X 0, Y 0, Z 90 degrees, scale (1, 1, 1)
by columns     X 0, Y 0, Z 90 degrees, scale (1, 1, 1)
quaternion     (0, 0, 0.707107, 0.707107)
rebuilt        from each of the three: at most 4.4e-08 off
picture        placed.png, 1600 x 1200 pixels
TEXT

# Every unit: the wedge's 4 of it in metres, and one by its long name.
while read -r unit metres; do
    "$program" wedge.obj --from "$unit" --to m --output unit.png | grep -q "^own box .* $metres) m\$" ||
        fail "4 $unit are not $metres m"
done <<'TEXT'
mm 0.004
cm 0.04
km 4000
in 0.1016
ft 1.2192
yd 3.6576
mi 6437.38
nautical-mile 7408
TEXT
"$program" wedge.obj --from ft --to none --output unit.png | grep -q '^own box .* 4)$' || fail "no unit has a symbol"

# Of the two orders that differ here, each does its own: X then Z, and Z then X.
for order in zyx XYZ; do
    "$program" wedge.obj --rotate 90 0 90 --order $order --output order.png | grep 'box around'
done >orders.txt
diff - orders.txt <<'TEXT' || fail "the orders are wrong"
box around     (0, 0, 0) to (4, 1, 2) m
box around     (-2, -4, 0) to (0, 0, 1) m
TEXT

# Angles from rows are those of the order XYZ, angles from columns those of YXZ.
for order in XYZ YXZ; do
    "$program" wedge.obj --rotate 20 30 40 --order $order --output order.png | grep -E 'by|rebuilt'
done >read.txt
diff - read.txt <<'TEXT' || fail "the placement is read back wrong"
read by rows   X 20, Y 30, Z 40 degrees, scale (1, 1, 1)
by columns     X 17.2294, Y 31.5667, Z 50.3141 degrees, scale (1, 1, 1)
rebuilt        from each of the three: at most 6.0e-08 off
read by rows   X 22.7959, Y 28.0243, Z 28.8298 degrees, scale (1, 1, 1)
by columns     X 20, Y 30, Z 40 degrees, scale (1, 1, 1)
rebuilt        from each of the three: at most 6.0e-08 off
TEXT

# The sheet: what is where, and that it is neither mirrored, upside down, shifted nor without its boxes.
"$program" wedge.obj --from m --to cm --position 1000 0 0 --rotate 20 30 40 --observer 900 -50 200 \
    --output sheet.png >report.txt
grep -E '^(box|on the|in space)' report.txt >turned.txt
diff - turned.txt <<'TEXT' || fail "the report of a turned mesh is wrong"
box placed     (914.866, -136.808, -19.263) to (1265.27, 204.372, 435.178) cm
box around     (914.866, -136.808, -19.263) to (1265.27, 143.969, 325.519) cm
on the ground  range 190.236 cm, bearing 87.603 degrees
in space       range 207.868 cm, elevation 23.769, azimuth 87.603 degrees
TEXT
pixels sheet.png <<'TEXT'
450 250 166 155 138 from above: a face
480 380 255 255 255 from above: paper, next to the mesh
700 102 216 91 95 from above: the line of Z = 0
400 512 225 115 25 from above: the placed box
330 850 75 70 63 from the front: a face away from the light
450 900 244 228 203 from the front: one towards it
1300 870 246 230 205 from the right: a face
1350 950 112 105 93 from the right: the other
1016 900 225 115 25 from the right: the placed box
1200 727 225 116 27 from the right: its upper side
1426 700 85 173 107 from the right: the line of Z = 0
700 41 43 51 64 the scale bar
676 41 43 51 64 its left end
670 41 247 248 250 nothing to the left of it
40 850 33 148 61 the arrow up, along Y
1186 1162 30 97 215 the arrow to the left, along Z
TEXT
# The dashed box: from the right, a line between Y = 143 and 144, half of it ink.
dashes=$(seq 1125 1435 | sed 's/$/ 784/' | xargs "$pixel" sheet.png | awk '$3 > $1 + 60' | wc -l)
[ "$dashes" -gt 100 ] || fail "the box around the points is not drawn: $dashes dots"

# So far out that a single has no digits for the shape, the drawing is the same and the labels count
# from the mesh.
"$program" wedge.obj --position 1e16 0 0 --output far.png >report.txt
"$program" wedge.obj --output near.png >report.txt
[ "$("$pixel" far.png 330 850 450 250 1300 900)" = "$("$pixel" near.png 330 850 450 250 1300 900)" ] ||
    fail "a mesh far from the origin is drawn differently"
pixels near.png <<'TEXT'
430 863 255 255 255 from the front: paper over the slanted edge
430 871 242 227 202 from the front: the face below it
TEXT

# What people's files have: a byte order mark, continued lines, old line ends, comments, textures
# without normals, several objects, numbers without a digit before the point, a concave polygon.
read_as() {
    wanted=$1
    what=$2
    printf '%b' "$3" >"$4"
    shift 3
    got=$("$program" "$@" --output read.png | grep -E '^(mesh|own box)' | sed 's/^[^:]*: //; s/^own box  *//')
    [ "$got" = "$wanted" ] || fail "$what: wanted $wanted, got $got"
}
one='3 points, 1 triangle
(0, 0, 0) to (1, 1, 0) m'
read_as "$one" "a byte order mark" '\0357\0273\0277v 0 0 0\nv 1 0 0\nv 0 1 0\nf 1 2 3\n' a.obj
read_as "$one" "continued lines" 'v 0 \\\n0 0\nv 1 0 0\nv 0 1 0\nf 1 2 \\\n 3' a.obj
read_as "$one" "old line ends" 'v 0 0 0\rv 1 0 0\rv 0 1 0\rf 1 2 3\r' a.obj
read_as "$one" "comments" 'v 0 0 0 # a\nv 1 0 0\nv 0 1 0\nf 1 2 3 # b\n' a.obj
read_as "$one" "textures" 'v 0 0 0\nv 1 0 0\nv 0 1 0\nvt 0 0\nf 1/ 2/1 3/1/\n' a.obj
read_as "$one" "numbers" 'v .0 -0 +0.\nv 1e0 0 0\nv 0 +1 0\nf 1 2 3\n' a.obj
read_as "$one" "faces first" 'f 1 2 3\nv 0 0 0\nv 1 0 0\nv 0 1 0\n' a.obj
read_as '4 points, 2 triangles
(0, 0, 0) to (1, 1, 0) m' "two objects" \
    'o a\nv 0 0 0\nv 1 0 0\nv 0 1 0\nf 1 2 3\no b\nv 1 -0 0\nv 1 1 0\nv -0 1 0\nf 4 5 6\n' a.obj
stl='solid\nfacet normal 0 0 1\nouter loop\nvertex 0 0 0\nvertex 1 0 0\nvertex 0 1 0\nendloop\nendfacet\n'
read_as "$one" "STL" "${stl}endsolid\n" a.stl
ply='ply\nformat ascii 1.0\nelement vertex 3\nproperty float x\nproperty float y\nproperty float z\nelement face 1\nproperty list uchar int vertex_indices\nend_header\n0 0 0\n1 0 0\n'
read_as "$one" "PLY" "${ply}0 1 0\n3 0 1 2\n" a.ply
# Binary: doubles and a wide count, high bytes first; and an STL file whose header begins like a text's.
zero='\0000\0000\0000\0000'
one_double="\0077\0360\0000\0000$zero"
binary="ply\nformat binary_big_endian 1.0\nelement vertex 3\nproperty double x\nproperty double y
property double z\nelement face 1\nproperty list int int vertex_indices\nend_header
$zero$zero$zero$zero$zero$zero$one_double$zero$zero$zero$zero$zero$zero$one_double"
read_as "$one" "binary PLY" \
    "$binary$zero$zero\0000\0000\0000\0003$zero\0000\0000\0000\0001\0000\0000\0000\0002" a.ply
one_single='\0000\0000\0200\0077'
read_as "$one" "binary STL" "solid$(printf '%075d' 0)\0001\0000\0000\0000$zero$zero$one_single\
$zero$zero$zero$one_single$zero$zero$zero$one_single$zero\0000\0000" a.stl
read_as '3 points, 1 triangle
(0, 0, -1) to (1, 0, 0) m' "Z up" 'v 0 0 0\nv 1 0 0\nv 0 1 0\nf 1 2 3\n' a.obj --up z
# The same triangle in glTF, once for each of two materials: its positions as three times three singles.
gltf='{"asset":{"version":"2.0"},"scene":0,"scenes":[{"nodes":[0]}],"nodes":[{"mesh":0}],
"meshes":[{"primitives":[{"attributes":{"POSITION":0},"material":0},{"attributes":{"POSITION":0},"material":1}]}],
"materials":[{"name":"red"},{"name":"blue"}],
"accessors":[{"bufferView":0,"componentType":5126,"count":3,"type":"VEC3","min":[0,0,0],"max":[1,1,0]}],
"bufferViews":[{"buffer":0,"byteLength":36}],"buffers":[{"byteLength":36,"uri":"data:application/octet-stream;base64,AAAAAAAAAAAAAAAAAACAPwAAAAAAAAAAAAAAAAAAgD8AAAAA"}]}'
read_as "$(echo "$one" | sed 's/1 triangle/2 triangles/')" "glTF" "$gltf" a.gltf

"$program" --help | grep -q '^Examples:' || fail "no help"
"$program" a.obj --output out/UPPER.PNG >report.txt && rm out/UPPER.PNG || fail "a picture's name in capitals is refused"

# Everything that can be wrong.
refused_mesh() {
    printf '%b' "$2" >bad.obj
    refused "$1" bad.obj --output out/bad.png
}
triangle='v 0 0 0\nv 1 0 0\nv 0 1 0\n'
refused "a missing file" missing.obj --output out/bad.png
refused "a folder" out --output out/bad.png
refused_mesh "an empty file" ''
refused_mesh "no faces" "$triangle"
refused_mesh "a corner outside" "${triangle}f 1 2 4\n"
refused_mesh "a corner outside, in a polygon" "${triangle}v 1 1 0\nf 1 2 3 9\n"
refused_mesh "a corner before the first" "${triangle}f 1 2 -4\n"
refused_mesh "corner 0" "${triangle}f 0 1 2\n"
refused_mesh "two corners, as in a truncated file" "${triangle}f 1 2"
refused_mesh "a word for a coordinate" "v 0 0 0\nv 1 0 x\nv 0 1 0\nf 1 2 3\n"
refused_mesh "not a number" "v 0 0 0\nv 1 0 nan\nv 0 1 0\nf 1 2 3\n"
refused_mesh "beyond a float" "v 0 0 0\nv 1 0 1e39\nv 0 1 0\nf 1 2 3\n"
# refused_with WORDS WHAT FILE CONTENTS: the sentence names the file and what is wrong.
refused_with() {
    printf '%b' "$4" >"$3"
    refused "$2" "$3" --output out/bad.png
    grep -q "^place_mesh: $3$1" stderr.txt || fail "$2: $(cat stderr.txt)"
}
refused_with ', line 4: .*three corners' "a cut face" bad.obj "${triangle}f 1 2"
refused_with ', line 5: .*vertex 9' "a corner outside" bad.obj "${triangle}f 1 2 3\nf 1 2 9"
refused_with ', line 3: .*three finite numbers' "a cut vertex after a continued line" bad.obj \
    'v 0 0 \\\n0\nv 1 0'
refused_with ', line 3: .*PLY header' "a PLY count that is none" bad.ply 'ply\nformat ascii 1.0\nelement vertex many\n'
refused_with ' is cut off: .*header' "a PLY header cut off" bad.ply 'ply\nformat ascii 1.0\nelement vertex 3\n'
refused_with ' is cut off.*2 of 3.*vertex' "PLY vertices cut off" bad.ply "$ply"
refused_with ' is cut off.*2 of 3.*vertex' "binary PLY vertices cut off" bad.ply "$binary"
refused_with ' is cut off.*0 of 1.*face' "a PLY face cut off" bad.ply "${ply}0 1 0\n3 0 1"
refused_with ' cannot be read.*range' "a PLY corner outside" bad.ply "${ply}0 1 0\n3 0 1 9\n"
refused_with ' is cut off.*endsolid' "a text STL cut off" bad.stl "$stl"
refused_with ' is cut off.*0 of its 1 ' "a binary STL cut off" bad.stl \
    "$(printf '%080d' 0)\0001\0000\0000\0000abc"
refused_with ' is cut off.*4000000000 vertices' "an OFF file that would fill the memory" bad.off 'OFF\n4000000000 1 0\n'
refused_with ' is in UTF-16' "another encoding" bad.obj '\0377\0376v\0000 \00000\0000'
refused_with ' is in UTF-16' "another encoding, high bytes first" bad.obj '\0376\0377\0000v\0000 \00000'
refused_with ' is damaged' "glTF cut off" bad.gltf "$(echo "$gltf" | head -c 200)"
refused_with ' has no triangles' "points alone" bad.ply \
    'ply\nformat ascii 1.0\nelement vertex 1\nproperty float x\nproperty float y\nproperty float z\nend_header\n0 0 0\n'
refused "a picture that is no PNG file" wedge.obj --output out/bad.svg
refused "a binary file" "$program" --output out/bad.png
refused "no such unit" wedge.obj --from furlong --output out/bad.png
refused "no such order" wedge.obj --order XYY --output out/bad.png
refused "two numbers for three" wedge.obj --output out/bad.png --position 1 2
refused "an infinite place" wedge.obj --position inf 0 0 --output out/bad.png
refused "a place too far" wedge.obj --from km --to mm --position 3.4e38 0 0 --rotate 0 45 0 \
    --observer -3.4e38 0 0 --output out/bad.png
refused "no such option" wedge.obj --nonsense --output out/bad.png
refused "no such folder" wedge.obj --output nowhere/bad.png
refused "a folder for a picture" wedge.obj --output .
refused "a device for a picture" wedge.obj --output /dev/full
! "$program" wedge.obj --output full.png >/dev/full 2>stderr.txt || fail "a report that nobody gets was a success"

# Through a link, the file that it leads to is the one that is written.
: >linked.png
ln -s linked.png link.png
"$program" wedge.obj --output link.png >report.txt
[ -L link.png ] || fail "a link is replaced"
same linked.png near.png "a picture through a link"

# A picture that was there is lost neither when the new one fails nor before it is complete.
cp placed.png out/placed.png
"$program" bad.obj --output out/placed.png 2>/dev/null && fail "a bad mesh was accepted"
cmp -s placed.png out/placed.png || fail "the old picture is gone"
(ulimit -f 1 && trap '' XFSZ && ! "$program" wedge.obj --output out/placed.png >/dev/null 2>&1) ||
    fail "a picture cut short was accepted"
cmp -s placed.png out/placed.png || fail "the old picture is gone after a failed write"
[ "$(ls -A out)" = placed.png ] || fail "a part of a picture was left behind"

[ "$failures" -eq 0 ]
