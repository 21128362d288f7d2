; The owl puts on its hat and has a question: two curious little hoots that climb, D4 and F#4, a breath drawn in, and
; a long one that turns up at its end as a question does, from G4 to C#5. A hop at the end is the hat.

;          start length  from top  to   loud mouth wobble
i "Hoot"   0.02  0.26    275  294  300  -4   0.20  0
i "Hoot"   0.32  0.28    340  370  378  -3   0.25  0
i "Breath" 0.60  0.26    700  1500      -28
i "Hoot"   0.88  0.72    330  400  545  -1   0.35  0
i "Hoot"   1.68  0.20    440  540  560  -4   0.20  0

i "Wood"   0     2.50    -4.5 0.45
e
