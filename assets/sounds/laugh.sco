; The owl laughs at a wrong answer, for the 15.5 seconds that it shakes on the screen. A hoot falls on every second
; shake, so the laugh slows down with the shaking; where a beat is left out the owl gasps for air. Four bouts: it
; bursts out, it tries to stop and cannot, it squeals and tires, it chuckles. Then it lets out a contented breath.
; The hoots grow longer as the beats grow apart, and each bout ends lower than the one before.

;             length  beat  from top  to   loud mouth wobble
; It bursts out.
i "LaughHoot" 0 0.30  0     400  430  395  -2   0.50  0
i "LaughHoot" 0 0.30  2     440  480  430  0    0.60  0
i "LaughHoot" 0 0.30  4     425  462  412  -1   0.55  0
i "LaughHoot" 0 0.30  6     410  440  392  -1   0.55  0
i "LaughHoot" 0 0.30  8     390  415  370  -2   0.50  0
i "LaughHoot" 0 0.30  10    370  392  350  -3   0.45  0
; It tries to stop, beak shut, and cannot.
i "LaughHoot" 0 0.26  14    345  360  350  -8   0     0
i "LaughHoot" 0 0.26  16    360  378  366  -6   0.05  0
i "LaughHoot" 0 0.34  18    420  458  405  0    0.60  0
i "LaughHoot" 0 0.34  20    380  405  362  -2   0.50  0
i "LaughHoot" 0 0.34  22    355  380  338  -3   0.45  0
; A squeal: the voice breaks upwards. Then it tires.
i "LaughHoot" 0 0.46  26    360  555  440  0    0.55  0
i "LaughHoot" 0 0.36  28    385  412  368  -1   0.55  0
i "LaughHoot" 0 0.38  30    365  390  348  -2   0.50  0
i "LaughHoot" 0 0.40  32    345  368  325  -3   0.40  0
; It chuckles.
i "LaughHoot" 0 0.42  36    335  360  320  -2   0.35  0
i "LaughHoot" 0 0.44  38    325  345  305  -3   0.30  0
i "LaughHoot" 0 0.46  40    312  330  292  -4   0.25  0
i "LaughHoot" 0 0.50  42    300  318  280  -5   0.20  0
i "LaughHoot" 0 0.48  44    294  310  272  -6   0.15  0
; It thought that it was done.
i "LaughHoot" 0 0.55  48    300  318  268  -5   0.20  0

; Gasps on the beats that are left out (12, 24 and 34; in seconds as a breath is not bound to a beat).
i "Breath"    2.62  0.34    700  1700      -24
i "Breath"    5.62  0.38    600  1600      -24
i "Breath"    8.42  0.42    600  1500      -24
; Content.
i "Breath"    13.95 1.40    1000 360       -17

i "Wood"      0     15.50   -4.3 0.50
e
