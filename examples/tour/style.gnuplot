# What the pictures share.
set terminal svg size 960,height font "Sans,14" background rgb "white"
set style line 1 linecolor rgb "#0072b2" linewidth 2
set style line 2 linecolor rgb "#d55e00" linewidth 2
set style line 3 linecolor rgb "#009e73" linewidth 2
set style line 4 linecolor rgb "#aa4499" linewidth 2
# What was asked, in the colour of what came of it.
set style line 11 linecolor rgb "#0072b2" linewidth 1 dashtype (6, 4)
set style line 12 linecolor rgb "#d55e00" linewidth 1 dashtype (6, 4)
set style line 13 linecolor rgb "#009e73" linewidth 1 dashtype (6, 4)
# What nothing gets beyond.
set style line 20 linecolor rgb "#555555" linewidth 1 dashtype (2, 3)
set style line 21 linecolor rgb "#e0e0e0" linewidth 1
set grid linestyle 21
set border 3 linecolor rgb "#555555"
set tics nomirror
set key outside right center reverse Left samplen 3 spacing 1.3
set lmargin 11
set rmargin 26
