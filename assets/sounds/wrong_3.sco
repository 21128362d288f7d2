; A wrong answer, third shade: grief, and not quite in earnest. Three steps down by semitones, each longer and more
; trembling than the one before, as from the smallest brass band in the wood.

;          start length  from top  to   loud mouth wobble
i "Hoot"   0.02  0.27    325  349  340  -3   0.50  0
i "Hoot"   0.32  0.29    310  330  318  -2   0.50  0.15
i "Hoot"   0.65  0.88    290  311  275  -1   0.40  1

i "Wood"   0     1.98    -6.5 0.35
e
