; An appointment is due: a gentle call of two notes, a fourth up, E4 and A4. It returns every 35 seconds for as long as
; nobody looks, so nothing in it insists: soft starts, a round mouth. The last note stays where it is, as a call does;
; one that sinks is sorry.

;          start length  from top  to   loud mouth wobble
i "Hoot"   0.02  0.38    326  330  329  -3   0.20  0
i "Hoot"   0.48  0.98    438  440  440  -2   0.15  0

i "Wood"   0     1.95    -7.1 0.45
e
