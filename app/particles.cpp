// SPDX-FileCopyrightText: 2026 The Ulmaro Assistant developers
// SPDX-License-Identifier: MIT

#include "app/particles.h"

#include <cstdio>

#include "app/owl.h"
#include "app/state.h"

vector3f cam;
ZelvarFX sleep_fx, smoke_fx;

namespace {

constexpr float kSmokeHaste = 5;  ///< how many times as fast as real time the smoke moves

void LoadEffect(ZelvarFX& effect, const char* file) {
    if (effect.load(file)) return;
    std::fprintf(
        stderr,
        "Ulmaro Assistant: non riesco a leggere l'effetto \"%s\": manca o non e' un file di effetti.\n",
        file);
}

}  // namespace

void LoadParticles() {
    ZFX::SetWatcher(&cam.x, &cam.y, &cam.z);
    LoadEffect(sleep_fx, "sleep.zfx");
    LoadEffect(smoke_fx, "smoke.zfx");
}

void DrawSleep() {
    if (anim == kSleeping && character.sleep_state == kAsleep) {
        sleep_fx.render(36, 130, 0, 50, global_time);
    } else {
        sleep_fx.reset();
    }
}

void DrawSmoke() {
    if (spawn_question) {
        smoke_fx.render(-8, 185, 0, 45, kSmokeHaste * global_time);
    } else {
        smoke_fx.reset();
    }
}
