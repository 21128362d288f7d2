; The owl laughs at a wrong answer, for the 15.5 seconds that it shakes on the screen: a hoot on every shake, so that the
; laugh slows down with the shaking. Three bouts of loud hoots, each ending lower than it begins, and a last one that
; fades; between them the owl chuckles with its beak shut and gasps for air. Then it lets out a contented breath.
; No two neighbors have the same tune: hoots fall, rise, turn down at their tops or turn up again.

;             length shake   from top  to   loud mouth wobble
; It bursts out.
i "LaughHoot" 0 0.80 0     400  446  395  -2   0.50  0
i "LaughHoot" 0 0.80 1     482  459  410  -1   0.55  0
i "LaughHoot" 0 0.80 2     442  494  437  0    0.60  0
i "LaughHoot" 0 0.80 3     511  488  435  0    0.60  0
i "LaughHoot" 0 0.80 4     425  448  485  -1   0.55  0
i "LaughHoot" 0 0.80 5     482  459  410  -1   0.55  0
i "LaughHoot" 0 0.80 6     414  462  409  -1   0.55  0
i "LaughHoot" 0 0.80 7     446  408  434  -1   0.50  0
i "LaughHoot" 0 0.80 8     444  423  378  -2   0.50  0
i "LaughHoot" 0 0.80 9     378  422  374  -2   0.50  0
i "LaughHoot" 0 0.80 10    415  396  353  -3   0.45  0
; It tries to stop, beak shut, and cannot.
i "LaughHoot" 0 0.80 11    340  359  388  -6   0.10  0
i "LaughHoot" 0 0.80 12    376  344  365  -6   0.05  0
i "LaughHoot" 0 0.80 13    377  359  320  -6   0.05  0
i "LaughHoot" 0 0.80 14    363  383  415  -3   0.30  0
i "LaughHoot" 0 0.80 15    412  460  407  -1   0.50  0
i "LaughHoot" 0 0.80 16    492  469  419  0    0.60  0
i "LaughHoot" 0 0.80 17    425  475  420  -1   0.55  0
i "LaughHoot" 0 0.80 18    475  453  404  -1   0.55  0
i "LaughHoot" 0 0.80 19    449  411  437  -1   0.50  0
i "LaughHoot" 0 0.80 20    444  423  378  -1   0.50  0
i "LaughHoot" 0 0.80 21    378  422  374  -2   0.45  0
i "LaughHoot" 0 0.80 22    415  396  353  -2   0.45  0
i "LaughHoot" 0 0.80 23    340  359  388  -3   0.40  0
; It chuckles, then squeals as its voice breaks upwards, and tires.
i "LaughHoot" 0 0.80 24    374  357  318  -6   0.10  0
i "LaughHoot" 0 0.80 25    316  334  361  -6   0.10  0
i "LaughHoot" 0 0.80 26    367  550  446  -1   0.55  0
i "LaughHoot" 0 0.80 27    471  449  400  -1   0.50  0
i "LaughHoot" 0 0.80 28    400  446  395  -1   0.50  0
i "LaughHoot" 0 0.80 29    439  418  373  -1   0.50  0
i "LaughHoot" 0 0.80 30    416  380  404  -2   0.45  0
i "LaughHoot" 0 0.80 31    359  401  355  -3   0.40  0
i "LaughHoot" 0 0.80 32    396  377  337  -3   0.40  0
; It chuckles, and chuckles on.
i "LaughHoot" 0 0.80 33    362  331  352  -6   0.10  0
i "LaughHoot" 0 0.80 34    362  345  308  -6   0.08  0
i "LaughHoot" 0 0.80 35    317  335  362  -6   0.15  0
i "LaughHoot" 0 0.80 36    350  391  346  -2   0.35  0
i "LaughHoot" 0 0.80 37    387  369  329  -3   0.30  0
i "LaughHoot" 0 0.80 38    331  370  327  -3   0.30  0
i "LaughHoot" 0 0.80 39    366  349  311  -4   0.30  0
i "LaughHoot" 0 0.70 40    351  321  341  -4   0.25  0
i "LaughHoot" 0 0.70 41    349  333  297  -5   0.20  0
i "LaughHoot" 0 0.70 42    299  334  296  -6   0.20  0
i "LaughHoot" 0 0.70 43    287  303  328  -7   0.15  0
i "LaughHoot" 0 0.70 44    327  312  278  -8   0.15  0
; It thought that it was done.
i "LaughHoot" 0 0.70 45    294  310  336  -6   0.20  0
i "LaughHoot" 0 0.70 46    334  318  284  -7   0.15  0
i "LaughHoot" 0 0.70 47    284  317  281  -8   0.10  0
i "LaughHoot" 0 0.70 48    317  302  269  -10  0.10  0
i "LaughHoot" 0 0.70 49    302  276  294  -12  0.05  0

; Gasps under the chuckles (in seconds, as a breath is not bound to a shake).
i "Breath"    2.55  0.34     700  1700      -24
i "Breath"    5.75  0.38     600  1600      -24
i "Breath"    8.35  0.42     600  1500      -24
; Content.
i "Breath"    14.15 1.25     1000 360       -17

i "Wood"      0     15.50    -6.0 0.50
e
