height = 720
load here."/style.gnuplot"
turn = 2.62 # seconds: then comes the end stop
set multiplot layout 2, 1 title "Motors of a DF033 over time" font ",18"
set ylabel "steps from the middle of the travel"
set title "Together 400 steps forward, then 150 back"
set xrange [0:turn]
set yrange [-20:440]
plot data index "zoom1" using 1:2 with lines linestyle 1 title "zoom 1", \
     data index "zoom3" using 1:2 with lines linestyle 2 title "zoom 3", \
     data index "focus" using 1:2 with lines linestyle 3 title "focus", \
     data index "zoom1" using 1:3 with steps linestyle 11 title "zoom 1, asked", \
     data index "zoom3" using 1:3 with steps linestyle 12 title "zoom 3, asked", \
     data index "focus" using 1:3 with steps linestyle 13 title "focus, asked"
set title "Zoom 3 against its end stop: the counter does not see that the motor stands"
set xlabel "time, s"
set xrange [turn:5.3]
set yrange [0:2500]
plot data index "zoom3" using 1:4 with lines linestyle 4 linewidth 5 title "its counter", \
     data index "zoom3" using 1:2 with lines linestyle 2 title "zoom 3", \
     data index "zoom3" using 1:3 with steps linestyle 12 title "zoom 3, asked", \
     2000 with lines linestyle 20 title "end stop"
unset multiplot
