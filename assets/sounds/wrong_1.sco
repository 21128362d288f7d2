; A wrong answer, first shade: "uh-oh". Two short notes, F#4 and, a fourth lower, C#4. The owl is sorry for you.

;          start length  from top  to   loud mouth wobble
i "Hoot"   0.02  0.30    355  372  360  -1   0.45  0
i "Hoot"   0.44  0.62    300  282  262  -2   0.25  0.15

i "Wood"   0     1.75    -5.3 0.45
e
