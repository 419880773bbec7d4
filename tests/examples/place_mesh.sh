#!/bin/sh
# The example host on a small mesh whose numbers are known, and on everything that can be wrong:
# place_mesh.sh PROGRAM
set -eu
program=$1
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
box carried    (800, 0, 0) to (1000, 100, 400) cm
box around     (800, 0, 0) to (1000, 100, 400) cm
observer       (900, -50, 200) cm
mid-point at   (900, 50, 200) cm
on the ground  range 0 cm, bearing 270 degrees
in space       range 100 cm, elevation 90, azimuth 0 degrees
read by rows   X 0, Y 0, Z 90 degrees, scale (1, 1, 1)
by columns     X 0, Y 0, Z 90 degrees, scale (1, 1, 1)
quaternion     (0, 0, 0.707107, 0.707107)
built again    from each of the three: at most 4.4e-08 off
picture        placed.png, 1600 x 1200 pixels
TEXT
is_png placed.png 1600 1200

# Of the two orders that differ here, each does its own: X then Z, and Z then X.
for order in ZYX XYZ; do
    "$program" wedge.obj --rotate 90 0 90 --order $order --output order.png | grep 'box around'
done >orders.txt
diff - orders.txt <<'TEXT' || fail "the orders are wrong"
box around     (0, 0, 0) to (4, 1, 2) m
box around     (-2, -4, 0) to (0, 0, 1) m
TEXT

# Angles from rows are those of the order XYZ, angles from columns those of YXZ.
for order in XYZ YXZ; do
    "$program" wedge.obj --rotate 20 30 40 --order $order --output order.png | grep -E 'by|again'
done >read.txt
diff - read.txt <<'TEXT' || fail "the placement is read back wrong"
read by rows   X 20, Y 30, Z 40 degrees, scale (1, 1, 1)
by columns     X 17.2294, Y 31.5667, Z 50.3141 degrees, scale (1, 1, 1)
built again    from each of the three: at most 6.0e-08 off
read by rows   X 22.7959, Y 28.0243, Z 28.8298 degrees, scale (1, 1, 1)
by columns     X 20, Y 30, Z 40 degrees, scale (1, 1, 1)
built again    from each of the three: at most 6.0e-08 off
TEXT

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
refused_mesh "two coordinates" "v 0 0 0\nv 1 0\nv 0 1 0\nf 1 2 3\n"
refused_mesh "a word for a coordinate" "v 0 0 0\nv 1 0 x\nv 0 1 0\nf 1 2 3\n"
refused_mesh "not a number" "v 0 0 0\nv 1 0 nan\nv 0 1 0\nf 1 2 3\n"
refused_mesh "infinite" "v 0 0 0\nv 1 0 inf\nv 0 1 0\nf 1 2 3\n"
refused_mesh "beyond a float" "v 0 0 0\nv 1 0 1e39\nv 0 1 0\nf 1 2 3\n"
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

# A picture that was there is lost neither when the new one fails nor before it is complete.
cp placed.png out/placed.png
"$program" bad.obj --output out/placed.png 2>/dev/null && fail "a bad mesh was accepted"
cmp -s placed.png out/placed.png || fail "the old picture is gone"
(ulimit -f 1 && trap '' XFSZ && ! "$program" wedge.obj --output out/placed.png >/dev/null 2>&1) ||
    fail "a picture cut short was accepted"
cmp -s placed.png out/placed.png || fail "the old picture is gone after a failed write"
[ "$(ls -A out)" = placed.png ] || fail "a part of a picture was left behind"

[ "$failures" -eq 0 ]
