; A wrong answer, third shade: grief, and not quite in earnest. Three steps down by semitones, G#4, G4 and F#4, each
; longer and more trembling than the one before, as from the smallest brass band in the wood.

;          start length  from top  to   loud mouth wobble
i "Hoot"   0.02  0.28    390  417  405  -3   0.50  0
i "Hoot"   0.33  0.30    372  394  382  -2   0.50  0.15
i "Hoot"   0.66  0.84    345  370  325  -1   0.40  1

i "Wood"   0     1.98    -8.3 0.40
e
