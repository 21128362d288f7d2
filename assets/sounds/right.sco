; A right answer: glad. Up the major chord, D4, F#4, A4, in quick steps, and then a wide open "hoo-hoo!" on
; top that swings from D5 home to A4.

;          start length  from top  to   loud mouth wobble
i "Hoot"   0.02  0.22    270  294  296  -4   0.30  0
i "Hoot"   0.24  0.20    345  370  374  -3   0.35  0
i "Hoot"   0.43  0.24    410  440  446  -2   0.40  0
i "Hoot"   0.68  0.34    480  587  555  -1   0.45  0
i "Hoot"   1.04  0.62    415  444  434  -1   0.40  0

i "Wood"   0     2.30    -8.1 0.45
e
