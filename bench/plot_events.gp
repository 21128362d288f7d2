# SPDX-FileCopyrightText: 2026 The Ulmaro Assistant developers
# SPDX-License-Identifier: MIT
#
# Draws what bench/event_scaling printed: a frame, the start to the first frame, load and save against the number of
# events. Both axes are logarithmic; "no events" stands at the place of 1.
#
# usage: gnuplot -e "data='events.tsv'; picture='events.svg'" bench/plot_events.gp

set terminal svg size 860,520 dynamic font "DejaVu Sans,Verdana,sans-serif,14" background "#ffffff" linewidth 1
set output picture
set datafile separator "\t"
stats data using 1 nooutput
last = STATS_records - 1

ink = "#333333"
set border 3 linecolor rgb "#999999"
set tics nomirror textcolor rgb ink scale 0.5
set grid xtics ytics linetype 1 linecolor rgb "#e6e6e6"
set title "What events of random dates cost" textcolor rgb ink font ",17" offset 0,0.3
set xlabel "events" textcolor rgb ink
unset key
set rmargin 16
set lmargin 10

set logscale xy
set xrange [0.8:1300000]
set yrange [0.001:10000]
set xtics ("0" 1, "10" 10, "100" 100, "1,000" 1000, "10,000" 10000, "100,000" 100000, "1,000,000" 1000000)
set ytics ("1 µs" 0.001, "10 µs" 0.01, "0.1 ms" 0.1, "1 ms" 1, "10 ms" 10, "0.1 s" 100, "1 s" 1000, "10 s" 10000)

place(events) = events < 1 ? 1 : events

# The name of a line stands at its right end, in its color.
array name[4] = ["frame", "first frame", "load", "save"]
array color[4] = ["#0072b2", "#333333", "#009e73", "#d55e00"]
array form[4] = [7, 5, 9, 13]

plot for [i = 1:4] data using (place($1)):(column(i + 1)) with linespoints \
         linecolor rgb color[i] linewidth 2.5 pointtype form[i] pointsize 0.8, \
     for [i = 1:4] data using (place($1)):(column(i + 1)):(name[i]) every ::last::last with labels \
         left offset 1.2,0 textcolor rgb color[i]
