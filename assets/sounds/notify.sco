; An appointment is due: a gentle call of three notes, E4, G4 and home to E4 and sinking. It returns every 35 seconds for
; as long as nobody looks, so nothing in it insists: soft starts, round mouth, the last note sinks and lets go.

;          start length  from top  to   loud mouth wobble
i "Hoot"   0.02  0.42    310  330  322  -3   0.10  0
i "Hoot"   0.50  0.42    368  392  384  -2   0.15  0
i "Hoot"   1.02  0.95    350  330  300  -2   0.05  0
i "Breath" 1.75  0.60    900  500       -30

i "Wood"   0     2.70    -7.5 0.50
e
