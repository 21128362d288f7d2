; A wrong answer, first shade: "uh-oh". Two short notes, G#4 and, a fourth lower, Eb4. The owl is sorry for you.

;          start length  from top  to   loud mouth wobble
i "Hoot"   0.02  0.32    400  417  402  -1   0.60  0
i "Hoot"   0.45  0.64    334  314  294  -2   0.60  0.15

i "Wood"   0     1.75    -7.8 0.45
e
