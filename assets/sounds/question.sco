; The owl puts on its hat and has a question: "hm, hoo", two little hoots that fall from G#4 to F4 as the owl thinks, a
; breath drawn in, and a long one that turns up at its end as a question does, from G4 to C#5. A hop at the end is the hat.

;          start length  from top  to   loud mouth wobble
i "Hoot"   0.02  0.32    424  415  394  -3.5 0.20  0
i "Hoot"   0.37  0.26    343  349  351  -3   0.25  0
i "Breath" 0.60  0.26    700  1500      -28
i "Hoot"   0.88  0.74    340  396  545  -4   0.30  0
i "Hoot"   1.70  0.24    440  535  565  -4   0.20  0

i "Wood"   0     2.50    -5.2 0.45
e
