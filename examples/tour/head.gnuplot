height = 760
load here."/style.gnuplot"
set terminal svg size 1240,height font "Sans,14" background rgb "white"
set multiplot title "Axes of the head over time: the same commands for both families" font ",18"
families = "tasmere vetra"
names = "Tasmere Vetra"
left = "0.08 0.46"
right = "0.43 0.81"
set xrange [0:7.5]
do for [n = 1:2] {
  file = data.".".word(families, n)
  set lmargin at screen word(left, n)
  set rmargin at screen word(right, n)
  if (n == 2) { unset ylabel }

  set tmargin at screen 0.87
  set bmargin at screen 0.43
  set title word(names, n)." controllers"
  set format x ""
  unset xlabel
  if (n == 1) { set ylabel "position" }
  set format y (n == 1 ? "%g" : "")
  set yrange [0:65536]
  set ytics 10000
  if (n == 1) { unset key } else { set key at screen 0.825, screen 0.75 left top }
  plot file index "pan" using 1:2 with lines linestyle 1 title "pan", \
       file index "tilt" using 1:2 with lines linestyle 2 title "tilt", \
       file index "pan" using 1:3 with steps linestyle 11 title "pan, asked", \
       file index "tilt" using 1:3 with steps linestyle 12 title "tilt, asked", \
       10000 with lines linestyle 20 title "travel limits of pan", \
       55000 with lines linestyle 20 notitle

  set tmargin at screen 0.39
  set bmargin at screen 0.09
  unset title
  set format x "%g"
  set xlabel "time, s"
  if (n == 1) { set ylabel "positions a second" }
  set yrange [-40000:40000]
  unset key
  plot file index "pan" using 1:4 with lines linestyle 1 title "speed of pan", \
       file index "tilt" using 1:4 with lines linestyle 2 title "speed of tilt"
}
unset multiplot
