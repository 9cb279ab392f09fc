height = 860
load here."/style.gnuplot"
name = "Vetra controllers: the gains that the schedule chooses by the speed of a move"
set multiplot layout 3, 1 title name font ",18"
set logscale x
set xrange [1:7200]
set xtics (1, 3, 10, 30, 100, 150, 300, 600, 1510, 3000, 7200) font ",11"
moves = "'pan continuously' 'tilt continuously' 'pan to a position' 'tilt to a position'"
# The wide lines stay to be seen below those that cover them.
array width[4] = [7, 2.5, 7, 2.5]
array gain[3] = ["speed P", "speed I", "position P"]
array top[3] = [5600, 5600, 44]
array below[3] = ["", "", "speed of the move; full speed is 7200"]
do for [n = 1:3] {
  set ylabel "gain: ".gain[n]
  set yrange [-top[n] / 20.0:top[n]]
  set xlabel below[n]
  plot for [m = 1:4] data index word(moves, m).": ".gain[n] with steps linestyle m linewidth width[m] \
       title word(moves, m)
}
unset multiplot
