# Draws the pictures of docs/meshes-and-rays.md, from its table of sizes and from `meshes --grid`.
set terminal pngcairo size 1000,500 font "sans,13"
set output "docs/pictures/first_edge.png"
unset key; unset colorbox; unset tics; unset border
set palette defined (0 "#ffffff", 1 "#a8c4e0", 2 "#c01818", 3 "#f0a000")
set cbrange [0:3]
set size ratio -1
set margins 0,0,0,2
set label "begun at the corner that came first" at 150,310 center
set label "begun by kx\\_triangle" at 450,310 center
plot "build/accuracy/grid.txt" matrix with image

reset
set terminal pngcairo size 800,420 font "sans,13"
set output "docs/pictures/small_meshes.png"
set datafile separator "|"
set logscale x
set xlabel "diagonal of the mesh, in units"
set ylabel "triangles that can't be hit, %"
set yrange [0:100]
set grid ytics lc "#dddddd"
set style data linespoints
rows = "<sed -n '/^| 0.1 /,/^| 1000 /p' docs/meshes-and-rays.md"
plot rows using 2:6 lc "#c01818" pt 7 title "worst of 30 meshes", \
     rows using 2:5 lc "#4070a0" pt 7 title "median"
