// SPDX-FileCopyrightText: 2026 The Ulmaro Assistant developers
// SPDX-License-Identifier: MIT

// Index: loading, the z's of the owl's sleep and the smoke from its hat.
#include "app/particles.h"

#include <filesystem>
#include <fstream>
#include <string>
#include <vector>

#include "tests/unit/effect_files.h"
#include "tests/unit/owl_fixture.h"

namespace {

/// A test with effects whose particle shows where they are: a square about the effect's place.
class OwlParticlesTest : public OwlFixture {
  protected:
    void SetUp() override {
        OwlFixture::SetUp();
        WriteEffect("sleep.zfx", 1, 1);
        WriteEffect("smoke.zfx", 2, 1);
        LoadParticles();
    }
    void TearDown() override {
        EmptyEffects();
        OwlFixture::TearDown();
    }

    /// Lets both effects be as before they are loaded for the first time: without particles.
    static void EmptyEffects() {
        std::ofstream("empty.zfx") << "ZFX ver: 2\n";
        sleep_fx.load("empty.zfx");
        smoke_fx.load("empty.zfx");
    }

    /// Returns the particles drawn by the last frame: what has the texture of an effect, which GL has named,
    /// and not the fixture.
    static std::vector<fakes::Primitive> Drawn() {
        std::vector<fakes::Primitive> particles;
        for (const fakes::Primitive& drawn : fakes::gl().primitives) {
            if (0 < drawn.texture && drawn.texture < 100) particles.push_back(drawn);
        }
        return particles;
    }

    /// Returns their places, canvas units.
    static std::vector<fakes::Rect> Particles() {
        std::vector<fakes::Rect> places;
        for (const fakes::Primitive& drawn : Drawn()) places.push_back(fakes::Bounds(drawn));
        return places;
    }

    /// Expects that one particle is drawn, and in the canvas's plane.
    static void ExpectOneInThePlane() {
        const std::vector<fakes::Primitive> particles = Drawn();
        ASSERT_EQ(particles.size(), 1U);
        for (const fakes::Vertex& corner : particles[0].vertices) EXPECT_EQ(corner.eye[2], 0);
    }
};

using Places = std::vector<fakes::Rect>;

// ---- Loading ----

TEST_F(OwlParticlesTest, AreWatchedFromTheCanvassLowerLeftCorner) {
    ZFX::SetWatcher(nullptr, nullptr, nullptr);

    LoadParticles();

    EXPECT_EQ(ZFX::watcher_x, &cam.x);
    EXPECT_EQ(ZFX::watcher_y, &cam.y);
    EXPECT_EQ(ZFX::watcher_z, &cam.z);
    EXPECT_EQ(cam.x, 0);
    EXPECT_EQ(cam.y, 0);
    EXPECT_EQ(cam.z, 0);
}

TEST_F(OwlParticlesTest, EachShowsThePictureOfItsOwnFile) {
    FallAsleep();
    RunFrame(0.125F);
    ASSERT_EQ(Drawn().size(), 1U);
    EXPECT_EQ(fakes::gl().textures.at(Drawn()[0].texture).width, 1);

    anim = kStanding;
    spawn_question = true;
    RunFrame(0.125F);
    ASSERT_EQ(Drawn().size(), 1U);
    EXPECT_EQ(fakes::gl().textures.at(Drawn()[0].texture).width, 2);
}

TEST_F(OwlParticlesTest, ShowNothingWithoutTheirFiles) {
    std::filesystem::remove("sleep.zfx");
    std::filesystem::remove("smoke.zfx");
    EmptyEffects();

    LoadParticles();

    FallAsleep();
    RunFrame(0.125F);
    EXPECT_TRUE(Drawn().empty());

    spawn_question = true;
    RunFrame(0.125F);
    EXPECT_TRUE(Drawn().empty());
}

/// Returns what loading the effects says on standard error.
std::string SaidOfLoading() {
    testing::internal::CaptureStderr();
    LoadParticles();
    return testing::internal::GetCapturedStderr();
}

std::string EffectComplaint(const std::string& file) {
    return "Ulmaro Assistant: non riesco a leggere l'effetto \"" + file +
           "\": manca o non e' un file di effetti.\n";
}

TEST_F(OwlParticlesTest, AreLoadedWithoutAWord) {
    EXPECT_EQ(SaidOfLoading(), "");
}

TEST_F(OwlParticlesTest, AreMissedInALineEach) {
    std::filesystem::remove("smoke.zfx");
    EXPECT_EQ(SaidOfLoading(), EffectComplaint("smoke.zfx"));

    std::filesystem::remove("sleep.zfx");
    EXPECT_EQ(SaidOfLoading(), EffectComplaint("sleep.zfx") + EffectComplaint("smoke.zfx"));
}

TEST_F(OwlParticlesTest, ThatAreNotAcceptedAreToldInALine) {
    std::ofstream("sleep.zfx") << "ZFX ver: 3\n";

    EXPECT_EQ(SaidOfLoading(), EffectComplaint("sleep.zfx"));
}

// ---- The z's and the smoke ----

TEST_F(OwlParticlesTest, ASleepingOwlSnoresOverItsHead) {
    FallAsleep();

    RunFrame(0.125F);

    const double moved = 0.125 * 50;  // one unit of its size a second
    EXPECT_EQ(Particles(),
              (Places{{271 + 36 - 50 + moved, 265 + 130 - 50, 271 + 36 + 50 + moved, 265 + 130 + 50}}));
}

TEST_F(OwlParticlesTest, LieInThePlaneOfTheCanvas) {
    FallAsleep();
    RunFrame(0.125F);
    ExpectOneInThePlane();

    spawn_question = true;
    RunFrame(0.125F);
    ExpectOneInThePlane();
}

TEST_F(OwlParticlesTest, AnOwlThatIsNotFastAsleepDoesNotSnore) {
    for (const int stage : {kDozing, kNodding, kWaking}) {
        anim = kSleeping;
        character.sleep_state = stage;
        character.te = 0;

        RunFrame(0.125F);

        EXPECT_TRUE(Particles().empty()) << stage;
    }
    anim = kStanding;
    character.sleep_state = kAsleep;
    RunFrame(0.125F);
    EXPECT_TRUE(Particles().empty());
}

TEST_F(OwlParticlesTest, TheSnoresParticlesVanishWithTheSleepAndComeAnewWithTheNext) {
    FallAsleep();
    RunFrame(0.125F);
    const Places first = Particles();
    character.sleep_state = kWaking;
    RunFrame(0.125F);
    EXPECT_TRUE(Particles().empty());

    character.sleep_state = kAsleep;
    RunFrame(0.125F);
    EXPECT_EQ(Particles(), first) << "a burst at once, where the last one began";
}

TEST_F(OwlParticlesTest, AnOfferSmokesAtTheHatFiveTimesAsFastAsTime) {
    spawn_question = true;

    RunFrame(0.125F);

    const double moved = 5 * 0.125 * 45;  // one unit of its size a second
    EXPECT_EQ(Particles(),
              (Places{{271 - 8 - 45 + moved, 265 + 185 - 45, 271 - 8 + 45 + moved, 265 + 185 + 45}}));
    RunFrame(0.125F);
    ASSERT_EQ(Particles().size(), 1U);
    EXPECT_NEAR(Particles()[0].left, 271 - 8 - 45 + 2 * moved, 1e-3);
}

TEST_F(OwlParticlesTest, TheSmokeVanishesWithTheOfferAndComesAnewWithTheNext) {
    spawn_question = true;
    RunFrame(0.125F);
    const Places first = Particles();
    spawn_question = false;

    RunFrame(0.125F);
    EXPECT_TRUE(Particles().empty());

    spawn_question = true;
    RunFrame(0.125F);
    EXPECT_EQ(Particles(), first);
}

TEST_F(OwlParticlesTest, AnOfferStillSmokesInTheFrameInWhichItsTimeIsUp) {
    spawn_question = true;
    character.sqte = 20;

    RunFrame(0.125F);
    EXPECT_FALSE(spawn_question);
    EXPECT_EQ(Particles().size(), 1U);

    RunFrame(0.125F);
    EXPECT_TRUE(Particles().empty());
}

TEST_F(OwlParticlesTest, AreDrawnAfterTheMenuAndTheNotices) {
    spawn_question = true;

    RunFrame(0.125F);

    EXPECT_EQ(fakes::Bounds(fakes::gl().primitives.back()), Particles().back());
}

}  // namespace
