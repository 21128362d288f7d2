; SPDX-FileCopyrightText: 2026 The Ulmaro Assistant developers
; SPDX-License-Identifier: MIT

; The owl's voice, and the wood at night that it sits in. The scores (*.sco) share this file; a score is a
; list of hoots and breaths, and tools/bake_sounds makes a WAVE file of each.
;
; What a score can say (times in seconds from the start of the sound, lengths in seconds):
;
;   i "Hoot"      start  length  pitch at start, at its top, at its end (Hz)  loudness (dB)  mouth  wobble
;   i "Breath"    start  length  color at start, at end (Hz)                  loudness (dB)
;   i "LaughHoot" 0      length  shake, then as "Hoot" from the pitches on
;   i "Wood"      0      length of the whole file   level (dB)  fade at the end (s)
;
; - Pitches: this owl is at home between 260 and 560 Hz, about C4 to C#5, as real owls of its size are. The "top" is
;   where the pitch turns, a third of the way; it may also be the lowest or lie between the others.
; - Loudness: 0 is a full hoot, -6 a soft one; a breath of 0 would be a gale as loud as a full hoot.
; - Mouth: 0 is a closed, round "hoo", 1 an open "hah".
; - Wobble: 0 is a steady voice, 1 one that trembles with grief (half a semitone up and down).
; - Length of a "LaughHoot": in shakes of the laughing owl, and so is the place where it begins, counted from 0.
; - Level: what the whole sound is turned up or down by, so that all come to -20 LUFS.
;
; No two hoots are quite alike, but there is no chance in it: all noise and all variation follow a fixed seed, so that a
; bake gives the same bytes every time.

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

; Returns a number between -iAmount and iAmount, another one each time.
opcode Vary, i, i
  iAmount xin
  iSeed NextSeed
  xout iAmount * (2 * frac(1000 * (1 + sin(100 * iSeed))) - 1)  ; the sine scatters the seeds' regular steps
endop

; Returns the second in which the laughing owl begins its n-th shake (n from 0, and not only whole ones). On the
; screen it shakes by the sine of 30 t / (1 + 0.025 t), and this is that angle's inverse at n whole turns.
opcode ShakeTime, i, i
  iShake xin
  iAngle = 2 * $M_PI * iShake
  xout iAngle / (30 - 0.025 * iAngle)
endop

; Returns the lead of a hoot of that length: for so long there is breath alone, since the lungs push before the throat
; sounds (s).
opcode Lead, i, i
  iLength xin
  xout min(0.03, 0.15 * iLength)
endop

; One hoot: the throat opens and shuts and lets the breath through in pulses; three resonances shape them. Every length
; within it is also bounded by a share of the whole, so that the shortest hoot has all its parts.
instr Hoot
  iVary   Vary 0.5  ; dB
  iFrom   = p4
  iTop    = p5
  iTo     = p6
  iLoud   = ampdb(p7 + iVary)
  iMouth  = p8
  iWobble = p9

  ; The shares add up to at most 0.15 + 0.33 + 0.42, which leaves the body at least a tenth of the hoot.
  iLead    Lead p3
  iVary    Vary 0.3
  iAttack  = min(0.11, 0.25 * p3) * (1 + iVary)  ; s; slower than a whistle's (10 ms), so that a hoot never clicks
  iVary    Vary 0.2
  iRelease = min(0.35, 0.42 * p3) * (0.8 + iVary)  ; s; the voice sinks away
  iBody    = p3 - iLead - iAttack - iRelease
  iVary    Vary 0.12
  aSwell cosseg 0, iLead, 0, iAttack, 1, iBody, 0.72 + iVary, iRelease, 0
  kSwell downsamp aSwell

  ; The pitch turns at its top, somewhere around a third of the way. A quiver of 0.3 % comes when the note is held
  ; (5.3 Hz, less than any singer's vibrato: owls have next to none), and a restlessness of 0.3 %, 11 times a second,
  ; keeps it from being a machine's.
  iVary     Vary 0.12
  iTurn     = 0.35 + iVary
  kPitch    cosseg iFrom, iTurn * p3, iTop, (1 - iTurn) * p3, iTo
  kHeld     cosseg 0, 0.25, 0, 0.3, 1, 10, 1
  kVibrato  lfo    0.003 * kHeld, 5.3
  iSeed     NextSeed
  kRestless randi  0.003, 11, iSeed
  kTremble  lfo    iWobble, 6.5  ; Hz: a sob is quicker than a vibrato
  kHz       = kPitch * (1 + kVibrato + kRestless) * semitone(0.5 * kTremble)

  ; A held note quavers: 10 % louder and softer, 7 to 11 times a second, never quite in time. A throat full of feathers
  ; is not even either (6 %, 31 times a second), and a sob swells with its pitch.
  iSeed    NextSeed
  kHurry   randi 2, 3, iSeed
  kQuaver  lfo   0.10 * kHeld, 9 + kHurry
  iSeed    NextSeed
  kShimmer randi 0.06, 31, iSeed
  kUneven  = (1 + kShimmer) * (1 + kQuaver + 0.12 * kTremble)

  ; The mouth opens with the swell and closes again: "hwoo", not an organ's "oo".
  kMouth = iMouth * (0.35 + 0.65 * kSwell)

  ; The throat's pulses: a raised cosine to a power. At 2 there is only the octave above the note, 12 dB below it; the
  ; louder and the more open the mouth, the sharper the pulses and the more harmonics.
  kSharp = 1.6 + 0.9 * kSwell + 6.5 * kMouth
  aPhase phasor kHz
  aRound tablei aPhase, giCosine, 1
  aPulse = pow(0.5 + 0.5 * aRound, kSharp)
  aTone  dcblock aPulse

  ; The throat is tuned to the octave above the note, as birds do it, and is strongest in low notes. The mouth (750 Hz
  ; to 1.6 kHz) and the beak (1.6 to 2.6 kHz) move as they open. They make "hoo" of a hum, and "hah" of "hoo".
  iVary     Vary 0.05
  kThroatHz = 2 * kHz * (1 + iVary)
  iVary     Vary 0.07
  kMouthHz  = (750 + 850 * kMouth) * (1 + iVary)
  kBeakHz   = (1600 + 1000 * kMouth) * (1 + iVary)
  aThroat   butterbp aTone, kThroatHz, 0.35 * kHz
  aMouth    reson aTone, kMouthHz, 350, 1
  aBeak     reson aTone, kBeakHz, 600, 1
  kThroat   = (0.7 - 0.3 * kMouth) * 400 / kHz
  aShaped   = aTone + kThroat * aThroat + (0.3 + 1.2 * kMouth) * aMouth + (0.5 + 8 * kMouth) * aBeak

  ; Resonances must not decide how loud a note is, so its power is made that of a plain tone; an open mouth lets out
  ; a little more.
  aPlain oscili  0.5 * (1 + 0.15 * kMouth), kHz, giCosine
  aEven  balance aShaped, aPlain, 15
  aVoice = aEven * aSwell * kUneven

  ; Breath: noise that the same throat lets through in the same pulses, around the throat's resonance, and air above it
  ; (1.2 to 3.5 kHz), the more the wider the mouth is open. Strongest when the note starts, 20 to 30 dB below the voice
  ; while it lasts, and a little left over at its end.
  iVary   Vary 2  ; dB
  iSeed   NextSeed
  aNoise  rand 1, iSeed, 1
  aBlown  = ampdb(iVary) * (1 + 0.6 * kMouth) * aNoise * (0.3 + 1.1 * aPulse)
  aNear   reson aBlown, kThroatHz, 0.8 * kHz, 1
  aAir    butterbp aBlown, 2300, 2200
  aSoft   butterlp 0.35 * aNear + 0.22 * aAir, 3200  ; Hz: a hiss has no place in a wood
  iGust   = min(0.045, 0.20 * p3)
  iSettle = min(0.10, 0.25 * p3)
  iEbb    = 0.5 * iRelease
  aPuff   cosseg 0, iGust, 1, iSettle, 0.55, p3 - iGust - iSettle - iEbb, 0.50, iEbb, 0

  gaVoice = gaVoice + iLoud * (aVoice + aSoft * aPuff)
endin

; Breath alone, in or out: a band of noise whose color glides. Rising it is drawn in, sinking it is let out.
instr Breath
  iFrom = p4
  iTo   = p5
  iLoud = ampdb(p6)

  aSwell  cosseg 0, 0.35 * p3, 1, 0.65 * p3, 0
  kColor cosseg iFrom, p3, iTo
  iSeed   NextSeed
  aNoise  rand 1, iSeed, 1
  aBreath reson aNoise, kColor, 0.7 * kColor, 1
  aSoft   butterlp aBreath, 3200
  gaVoice = gaVoice + iLoud * 2 * aSoft * aSwell
endin

; A hoot of the laughing owl, given in shakes. Its voice begins a little before the owl goes up, so that it is loudest when
; the owl is at the top, a quarter of a shake later.
instr LaughHoot
  iStart  ShakeTime p4
  iEnd    ShakeTime p4 + p3
  iLength = iEnd - iStart
  iLead   Lead iLength
  event_i "i", "Hoot", max(0, iStart - iLead - 0.08 * iLength), iLength, p5, p6, p7, p8, p9, p10
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
  aLeft  buthp gaVoice + aTreesL + 0.20 * aDeepL, 12
  aRight buthp gaVoice + aTreesR + 0.20 * aDeepR, 12
  aFade  cosseg 0, 0.004, 1, p3 - 0.004 - iFade - 0.01, 1, iFade, 0, 0.01, 0
  outs iLevel * aFade * aLeft, iLevel * aFade * aRight
  gaVoice = 0
endin
