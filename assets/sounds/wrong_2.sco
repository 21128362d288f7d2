; A wrong answer, second shade: a sigh. One long hoot starts high, with hope, slides down the best part of an
; octave, and runs out of voice before it runs out of breath.

;          start length  from top  to   loud mouth wobble
i "Hoot"   0.02  1.15    430  455  262  -1   0.30  0
i "Breath" 0.85  0.85    1100 420       -16

i "Wood"   0     1.95    -10.8 0.35
e
