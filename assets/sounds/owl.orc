; SPDX-FileCopyrightText: 2026 The Ulmaro Assistant developers
; SPDX-License-Identifier: MIT

; The owl's voice, and the wood at night that it sits in. The scores (*.sco) share this file; a score is a
; list of hoots and breaths, and tools/bake_sounds makes a WAVE file of each.
;
; What a score can say (times in seconds from the start of the sound, lengths in seconds):
;
;   i "Hoot"      start  length  pitch at start, at its top, at its end (Hz)  loudness (dB)  mouth  wobble
;   i "Breath"    start  length  colour at start, at end (Hz)                 loudness (dB)
;   i "LaughHoot" 0      length  beat, then as "Hoot" from the pitches on
;   i "Wood"      0      length of the whole file   level (dB)  fade at the end (s)
;
; - Pitches: this owl is at home between 260 and 560 Hz, about C4 to C#5, as real owls of its size are.
; - Loudness: 0 is a full hoot, -6 a soft one; a breath of 0 would be a gale as loud as a full hoot.
; - Mouth: 0 is a closed, round "hoo", 1 an open "hah".
; - Wobble: 0 is a steady voice, 1 one that trembles with grief (half a semitone up and down).
; - Level: what the whole sound is turned up or down by, so that all are equally loud.
;
; There is no chance in it: all noise has a fixed seed, so that a bake gives the same bytes every time.

sr     = 44100  ; samples a second, what the program's sounds have
ksmps  = 10     ; samples a control step: 4410 steps a second leave no audible stairs in a swell
nchnls = 2      ; the voice is in the middle, the trees answer from both sides
0dbfs  = 1      ; full scale

giCosine ftgen 1, 0, 16384, 11, 1  ; one cosine: what the harmonics are made of
giSeed   init  0.31                ; of the next hoot's noise, between 0 and 1
gaVoice  init  0                   ; what the owl says at this moment, before the wood has answered

; Returns the seed of another noise. Steps of the golden ratio never come near a seed that was used shortly before.
opcode NextSeed, i, 0
  giSeed = frac(giSeed + 0.6180339887)
  xout giSeed
endop

; Returns the second in which the laughing owl begins its n-th shake (n from 0). On the screen it shakes by the
; sine of 30 t / (1 + 0.025 t), and this is that angle's inverse at n whole turns.
opcode ShakeTime, i, i
  iBeat  xin
  iAngle = 2 * $M_PI * iBeat
  xout iAngle / (30 - 0.025 * iAngle)
endop

; One hoot: a soft tone from the throat, three resonances, and the breath that carries it.
instr Hoot
  iFrom   = p4
  iTop    = p5
  iTo     = p6
  iLoud   = ampdb(p7)
  iMouth  = p8
  iWobble = p9

  ; The breath comes 30 ms before the voice: the lungs push before the throat sounds.
  iLead    = 0.03
  iAttack  = min(0.11, 0.30 * p3)  ; s; slower than a whistle's (10 ms), so that a hoot never clicks
  iRelease = min(0.35, 0.45 * p3)  ; s; the voice sinks away
  iBody    = p3 - iLead - iAttack - iRelease
  aSwell cosseg 0, iLead, 0, iAttack, 1, iBody, 0.78, iRelease, 0
  kSwell downsamp aSwell

  ; The pitch scoops up to its top, then falls; a quiver of 0.5 % comes when the note is held (5.3 Hz, an ordinary
  ; vibrato), and a restlessness of 0.4 %, 11 times a second, keeps it from being a machine's.
  kPitch   cosseg iFrom, 0.35 * p3, iTop, 0.65 * p3, iTo
  kHeld    cosseg 0, 0.25, 0, 0.3, 1, 10, 1
  kVibrato lfo    0.005 * kHeld, 5.3
  iSeed    NextSeed
  kRestless randi 0.004, 11, iSeed
  kTremble lfo    iWobble, 6.5  ; Hz: a sob is quicker than a vibrato
  kHz      = kPitch * (1 + kVibrato + kRestless) * semitone(0.5 * kTremble)

  ; The mouth opens with the swell and closes again: "hwoo", not an organ's "oo".
  kMouth = iMouth * (0.35 + 0.65 * kSwell)

  ; Ten harmonics, each weaker than the one before by this factor: the louder and the more open, the brighter.
  ; 0.20 is 14 dB a harmonic (almost a flute), 0.45 is 7 dB (a throat).
  kBright = 0.16 + 0.12 * kSwell + 0.22 * kMouth
  aTone   gbuzz 1, kHz, 10, 1, kBright, giCosine

  ; The throat (400 to 560 Hz), the mouth (850 to 1250 Hz) and the beak (1.5 to 2 kHz): what makes "hoo" of a hum,
  ; and "hah" of "hoo".
  aThroat reson aTone, 400 + 160 * kMouth, 180, 1
  aMouth  reson aTone, 850 + 400 * kMouth, 420, 1
  aBeak   reson aTone, 1500 + 500 * kMouth, 700, 1

  ; A throat full of feathers is not even either: 7 % louder and softer, 31 times a second, and a sob swells too.
  iSeed    NextSeed
  kShimmer randi 0.07, 31, iSeed
  kSob     = 1 + 0.12 * kTremble
  aVoice   = (0.38 * aTone + 0.32 * aThroat + 0.5 * aMouth + 0.85 * aBeak) * aSwell * (1 + kShimmer) * kSob

  ; Breath: noise around the second harmonic (it is blown through the same throat) and air above it (1.2 to 3.5 kHz).
  ; Strongest when the note starts, 20 to 30 dB below the voice while it lasts, and a little left over at its end.
  iSeed  NextSeed
  aNoise rand 1, iSeed, 1
  aNear  reson aNoise, 2 * kHz, 0.8 * kHz, 1
  aAir   butterbp aNoise, 2300, 2200
  aPuff  cosseg 0, 0.045, 1, 0.10, 0.55, p3 - 0.045 - 0.10 - 0.5 * iRelease, 0.50, 0.5 * iRelease, 0
  aSoft  butterlp 0.45 * aNear + 0.26 * aAir, 3200  ; Hz: a hiss has no place in a wood
  aBreath = aSoft * aPuff

  gaVoice = gaVoice + iLoud * (aVoice + aBreath)
endin

; Breath alone, in or out: a band of noise whose colour glides. Rising it is drawn in, sinking it is let out.
instr Breath
  iFrom = p4
  iTo   = p5
  iLoud = ampdb(p6)

  aSwell  cosseg 0, 0.35 * p3, 1, 0.65 * p3, 0
  kColour cosseg iFrom, p3, iTo
  iSeed   NextSeed
  aNoise  rand 1, iSeed, 1
  aBreath reson aNoise, kColour, 0.7 * kColour, 1
  aSoft   butterlp aBreath, 3200
  gaVoice = gaVoice + iLoud * 2 * aSoft * aSwell
endin

; A hoot on a beat of the laughing owl's shaking, given by the beat's number.
instr LaughHoot
  iStart ShakeTime p4
  event_i "i", "Hoot", iStart, p3, p5, p6, p7, p8, p9, p10
endin

; The wood around the owl and the end of the chain: trees close by, the depth behind them, level and fades.
instr Wood
  iLevel = ampdb(p4)
  iFade  = p5

  ; Six trunks, 3 to 13 m away: the way there and back at 343 m/s is 17 to 76 ms. Bark swallows the highs.
  aBark  tone gaVoice, 2200
  aBuf   delayr 0.1
  aLeft1  deltap 0.0171
  aRight1 deltap 0.0233
  aRight2 deltap 0.0379
  aLeft2  deltap 0.0457
  aLeft3  deltap 0.0613
  aRight3 deltap 0.0761
         delayw aBark
  aTreesL = 0.15 * aLeft1  + 0.11 * aLeft2  + 0.08 * aLeft3
  aTreesR = 0.15 * aRight1 + 0.11 * aRight2 + 0.08 * aRight3

  ; The depth: a tail that sinks by 40 dB a second, dark (2.6 kHz) as leaves make it.
  aDeepL, aDeepR reverbsc gaVoice + aTreesL, gaVoice + aTreesR, 0.80, 2600

  ; 12 Hz takes away what is not sound, and the fades end the file in silence (4 ms at the start: no click).
  aLeft  buthp gaVoice + aTreesL + 0.30 * aDeepL, 12
  aRight buthp gaVoice + aTreesR + 0.30 * aDeepR, 12
  aFade  cosseg 0, 0.004, 1, p3 - 0.004 - iFade - 0.01, 1, iFade, 0, 0.01, 0
  outs iLevel * aFade * aLeft, iLevel * aFade * aRight
  gaVoice = 0
endin
