// SPDX-FileCopyrightText: 2026 The Ulmaro Assistant developers
// SPDX-License-Identifier: MIT

// Every allocation of the program's own code fails once, and every one from there on: the program goes on, or
// ends with a status and its last words, and the store on the disk is whole.
//
// Each try is a process of its own, since the program may end.
#include <fcntl.h>
#include <sys/mman.h>
#include <sys/wait.h>
#include <unistd.h>

#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <functional>
#include <new>
#include <ostream>
#include <set>
#include <string>
#include <string_view>
#include <vector>

#include "app/input.h"
#include "app/out_of_memory.h"
#include "app/sounds.h"
#include "engine/BMP_Loader.h"
#include "engine/MilkShape.h"
#include "engine/texture.h"
#include "engine/wav_file.h"
#include "tests/allocations/failing_allocations.h"
#include "tests/unit/bitmap_files.h"
#include "tests/unit/calendar_fixture.h"
#include "tests/unit/effect_files.h"

int UlmaroMain(int argc, char** argv);

namespace {

/// What a try came to, in memory that it shares with the test.
struct Outcome {
    bool finished;  ///< it came to its end
    bool held;      ///< what it checked at its end did hold
    bool caught;    ///< a std::bad_alloc came out, where the caller has to expect it
    AllocationCounts allocations;
    int status;  ///< as waitpid() gives it
};

/// What is tried.
struct Attempt {
    std::function<void()> act;                                  ///< its allocations fail
    std::function<bool()> holds_after = [] { return true; };    ///< asked in the process of the try
    std::function<bool()> whole_on_disk = [] { return true; };  ///< asked once it has ended
    std::function<void()> prepare = [] {};                      ///< in the process of the try, nothing fails
    bool throws = false;              ///< std::bad_alloc may come out: the caller's to catch
    std::set<int> may_end_with = {};  ///< exit statuses
    bool says_why = true;             ///< when it ends the program, a line says so
    int at_least = 1;                 ///< allocations that it makes
};

class OutOfMemory : public CalendarTest, public testing::WithParamInterface<Shortage> {
  protected:
    void SetUp() override {
        CalendarTest::SetUp();
        outcome_ = static_cast<Outcome*>(
            mmap(nullptr, sizeof(Outcome), PROT_READ | PROT_WRITE, MAP_SHARED | MAP_ANONYMOUS, -1, 0));
        ASSERT_NE(outcome_, MAP_FAILED);
    }
    void TearDown() override { munmap(outcome_, sizeof(Outcome)); }

    /// Lets the allocations of a attempt fail, the first, the second ... until it is through without failure.
    void FailEach(const Attempt& attempt) {
        int number = 1;
        for (; number < 100'000; ++number) {
            Try(attempt, number);
            const std::string which = "allocation " + std::to_string(number);
            ASSERT_TRUE(attempt.whole_on_disk()) << which << " leaves the store neither old nor new";
            ASSERT_TRUE(WIFEXITED(outcome_->status))
                << which << " is a crash: signal " << WTERMSIG(outcome_->status) << ", " << ReadFile("said");
            const int status = WEXITSTATUS(outcome_->status);
            if (outcome_->allocations.failed == 0) {
                EXPECT_EQ(status, 0) << ReadFile("said");
                EXPECT_TRUE(outcome_->finished && outcome_->held) << "without any failure";
                break;
            }
            if (status == 0) {
                ASSERT_TRUE(outcome_->finished) << which;
                ASSERT_TRUE(outcome_->held) << which;
                ASSERT_TRUE(attempt.throws || !outcome_->caught) << which;
                continue;
            }
            ASSERT_EQ(attempt.may_end_with.count(status), 1U) << which << " ends the program with " << status;
            if (attempt.says_why) {
                ASSERT_NE(ReadFile("said").find("memoria"), std::string::npos) << which << ReadFile("said");
            }
        }
        EXPECT_GT(number, attempt.at_least) << "so few allocations were tried";
        std::printf("           %d allocations\n", number - 1);
    }

  private:
    void Try(const Attempt& attempt, int number) {
        *outcome_ = {};
        std::fflush(nullptr);
        const pid_t child = fork();
        ASSERT_GE(child, 0);
        if (child == 0) Act(attempt, number);
        int status = 0;
        ASSERT_EQ(waitpid(child, &status, 0), child);
        outcome_->status = status;
    }

    /// Nothing gets out of it, as nothing gets through GLUT: not to GoogleTest, which would catch it.
    [[noreturn]] void Act(const Attempt& attempt, int number) noexcept {
        std::signal(SIGABRT, SIG_DFL);
        alarm(60);
        const int said = open("said", O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0600);
        if (said < 0 || dup2(said, STDERR_FILENO) < 0) std::_Exit(99);
        EndClearlyWithoutMemory();
        attempt.prepare();
        ActWatched(attempt, number);
        outcome_->finished = true;
        outcome_->held = attempt.holds_after();
        std::fflush(nullptr);
        std::_Exit(0);
    }

    void ActWatched(const Attempt& attempt, int number) {
        const FailingAllocations failing(number, GetParam(), outcome_->allocations);
        if (!attempt.throws) return attempt.act();
        try {
            attempt.act();
        } catch (const std::bad_alloc&) {
            outcome_->caught = true;
        }
    }

    Outcome* outcome_ = nullptr;
};

INSTANTIATE_TEST_SUITE_P(All, OutOfMemory, testing::Values(Shortage::kOnce, Shortage::kFromThere),
                         [](const auto& test) {
                             return test.param == Shortage::kOnce ? "Once" : "FromThere";
                         });

/// Returns a store's bytes with so many events, whose names begin with a letter.
std::string StoreOf(int count, char letter) {
    std::string bytes;
    const auto number = static_cast<std::uint32_t>(count);
    bytes.append(reinterpret_cast<const char*>(&number), sizeof number);
    for (int i = 0; i < count; ++i) {
        const Event event =
            MakeAppointment(letter + std::to_string(i), 1 + i % 28, 1 + i % 12, 2013, i % 24, i % 60);
        bytes.append(reinterpret_cast<const char*>(&event), sizeof event);
    }
    return bytes;
}

std::vector<std::string> NamesInOrder() {
    return NamesOf(events);
}

// ---- The store ----

constexpr int kFew = 60;
constexpr int kMany = 260;  // more than are written at once

TEST_P(OutOfMemory, WhileEventsAreLoadedEndsTheProgramAndLeavesTheStore) {
    const std::string store = StoreOf(kFew, 'a');
    WriteFile("database.bin", store);

    FailEach({.act = LoadEvents,
              .holds_after = [] { return events.size() == kFew; },
              .whole_on_disk = [&] { return ReadFile("database.bin") == store; },
              .may_end_with = {1},
              .at_least = kFew});
}

TEST_P(OutOfMemory, WhileADamagedStoreIsLoadedEndsTheProgramAndLeavesIt) {
    const std::string store = StoreOf(20, 'a').substr(0, 10'000);
    WriteFile("database.bin", store);

    FailEach({.act = LoadEvents,
              .holds_after = [] { return events.size() == 20; },
              .whole_on_disk = [&] { return ReadFile("database.bin") == store; },
              .may_end_with = {1},
              .at_least = 20});
}

/// Returns a attempt in which other events are saved over those in the file, and once more after a failure,
/// with enough memory.
Attempt SavingOver(const std::string& before, int added) {
    static std::string old_store, new_store;
    old_store = before;
    Attempt attempt;
    attempt.prepare = [=] {
        WriteFile("database.bin", old_store);
        std::filesystem::remove("database.bin.bak");
        LoadEvents();
        for (int i = 0; i < added; ++i) events.emplace_back(MakeEvent(kAppointment, "aggiunto"));
        const auto count = static_cast<std::uint32_t>(events.size());
        std::string bytes(reinterpret_cast<const char*>(&count), sizeof count);
        for (const Event& event : events) bytes.append(reinterpret_cast<const char*>(&event), sizeof event);
        WriteFile("expected", bytes);
    };
    attempt.act = [] {
        SaveEvents();
        RetrySave(1);  // from here a second counts
    };
    attempt.holds_after = [] {
        const bool saved = ReadFile("database.bin") == ReadFile("expected");
        if (saved == EventsAreUnsaved()) return false;
        RetrySave(5'000'000'000);
        return ReadFile("database.bin") == ReadFile("expected") && !EventsAreUnsaved() &&
               !std::filesystem::exists("database.bin.new");
    };
    attempt.whole_on_disk = [] {
        const std::string store = ReadFile("database.bin");
        return store == old_store || store == ReadFile("expected");
    };
    return attempt;
}

TEST_P(OutOfMemory, WhileEventsAreSavedIsAFailedSaveThatIsMadeGood) {
    FailEach(SavingOver(StoreOf(kMany, 'a'), 5));
}

TEST_P(OutOfMemory, WhileADamagedStoreIsReplacedLosesNothing) {
    Attempt attempt = SavingOver(StoreOf(20, 'a').substr(0, 10'000), 5);
    const auto holds = attempt.holds_after;
    attempt.holds_after = [holds] {
        return holds() && ReadFile("database.bin.bak") == StoreOf(20, 'a').substr(0, 10'000);
    };

    FailEach(attempt);
}

TEST_P(OutOfMemory, WhileAStoreThatCouldNotBeReadIsReadAgainLosesNothing) {
    const std::string store = StoreOf(30, 'a');
    Attempt attempt;
    attempt.prepare = [&] {
        WriteFile("database.bin", "");
        std::filesystem::remove("database.bin");
        std::filesystem::create_symlink("database.bin", "database.bin");  // a loop: cannot be read
        LoadEvents();
        std::filesystem::remove("database.bin");
        WriteFile("database.bin", store);
        events.emplace_back(MakeEvent(kAppointment, "aggiunto"));
    };
    attempt.act = [] { SaveEvents(); };
    attempt.holds_after = [] {
        if (EventsAreUnsaved()) SaveEvents();
        return events.size() == 31 && StoredEvents().size() == 31 && NameOf(events.back()) == "aggiunto";
    };
    attempt.whole_on_disk = [&] {
        const std::size_t size = ReadFile("database.bin").size();
        return size == store.size() || size == store.size() + sizeof(Event);
    };
    attempt.at_least = 30;

    FailEach(attempt);
}

// ---- Sorting ----

TEST_P(OutOfMemory, WhileAThousandEventsAreSortedLeavesTheListAsItWasOrSorted) {
    std::mt19937 random(7);
    for (int i = 0; i < 1000; ++i) Add(RandomEvent(random, std::to_string(i)));
    const std::vector<std::string> before = NamesInOrder();
    const std::vector<std::string> sorted = [] {
        std::list<ListedEvent> copy = events;
        copy.sort(sort_by_date);
        return NamesOf(copy);
    }();
    ASSERT_NE(before, sorted);

    FailEach({.act = SortEvents,
              .holds_after = [&] { return NamesInOrder() == before || NamesInOrder() == sorted; },
              .throws = true,
              .at_least = 4});
}

TEST_P(OutOfMemory, InAFrameThatSortsAThousandEventsEndsTheProgramClearly) {
    std::mt19937 random(7);
    for (int i = 0; i < 1000; ++i) Add(RandomEvent(random, std::to_string(i)));
    WriteFile("database.bin", StoreOf(20, 'a'));
    menu_case_id = kListScreen;

    FailEach({.act = display,
              .whole_on_disk = [] { return ReadFile("database.bin") == StoreOf(20, 'a'); },
              .may_end_with = {1},
              .at_least = 4});
}

// ---- Typing ----

/// Types and clicks as GLUT reports it, with frames meanwhile.
void TypeANameAndClick() {
    for (const char c : std::string_view("dentista alle nove"))
        TypeCharacter(static_cast<unsigned char>(c), 0, 0);
    for (int i = 0; i < 8; ++i) display();
    mouse(256, 404);
    mouse_event(GLUT_LEFT_BUTTON, GLUT_DOWN, 0, 0);
    for (int i = 0; i < 12; ++i) display();
}

TEST_P(OutOfMemory, WhileTypingGoesOnOrEndsTheProgramClearly) {
    edit_event = &AddAppointment("", 17, 5, 2012, 9, 0);
    menu_case_id = kEditorScreen;
    edit_tf = kNameField;

    FailEach({.act = TypeANameAndClick,
              .holds_after = [] { return NameOf(*edit_event) == "dentista alle nov"; },
              .may_end_with = {1},
              .at_least = 3});
}

TEST_P(OutOfMemory, WhileStrokesAreQueuedKeepsThoseThatWait) {
    FailEach({.act =
                  [] {
                      for (int i = 0; i < 345; ++i) EnqueueCharacter('a');
                  },
              .holds_after =
                  [] {
                      Stroke stroke;
                      while (DequeueStroke(stroke)) {
                          if (stroke.character != 'a') return false;
                      }
                      return true;
                  },
              .throws = true});
}

// ---- Pictures, effects, the whole start ----

class OutOfMemoryAtStart : public OutOfMemory {
  protected:
    void SetUp() override {
        OutOfMemory::SetUp();
        WriteEffect("sleep.zfx", 3, 0);
        WriteEffect("smoke.zfx", 5, 0);
        WriteFile("database.bin", StoreOf(20, 'a'));
        window = WindowState();
        listening_to_typing = listening_to_leaving = false;
    }

    PictureFolder pictures_;
};

INSTANTIATE_TEST_SUITE_P(All, OutOfMemoryAtStart, testing::Values(Shortage::kOnce, Shortage::kFromThere),
                         [](const auto& test) {
                             return test.param == Shortage::kOnce ? "Once" : "FromThere";
                         });

TEST_P(OutOfMemoryAtStart, WhilePicturesAreLoadedEndsTheProgramWithTheNameOfOne) {
    FailEach({.act = LoadTextures, .may_end_with = {1}});
}

TEST_P(OutOfMemoryAtStart, WhileTheWindowsIconIsLoadedLeavesIt) {
    PictureFolder::Write("window_icon", 4, 4, std::vector<std::uint8_t>(64, 1));

    FailEach({.act = SetWindowClassAndIcon});
}

TEST_P(OutOfMemoryAtStart, WhileEffectsAreLoadedEndsTheProgramClearly) {
    WriteEffect("sleep.zfx", 30, 0);
    WriteEffect("smoke.zfx", 50, 0);

    FailEach({.act = LoadParticles, .may_end_with = {1}, .at_least = 4});
}

TEST_P(OutOfMemoryAtStart, InMainEndsTheProgramClearlyOrGoesOn) {
    WriteEffect("sleep.zfx", 3, 0);
    WriteEffect("smoke.zfx", 5, 0);
    WriteFile("database.bin", StoreOf(20, 'a'));
    Attempt attempt;
    attempt.prepare = [] { std::set_terminate(std::abort); };  // so that only main's own end counts
    attempt.act = [] {
        char program[] = "ulmaro-assistant";
        char* arguments[] = {program, nullptr};
        UlmaroMain(1, arguments);
        for (int i = 0; i < 20; ++i) display();
    };
    attempt.holds_after = [] { return events.size() == 20; };
    attempt.whole_on_disk = [] { return ReadFile("database.bin") == StoreOf(20, 'a'); };
    attempt.may_end_with = {1};
    attempt.at_least = 30;

    FailEach(attempt);
}

// ---- Readers ----

TEST_P(OutOfMemory, WhileASoundIsReadEndsTheProgramWithTheStatusOfIt) {
    FailEach({.act =
                  [] {
                      int format = 0, size = 0, freq = 0;
                      void* data = nullptr;
                      double duration = 0;
                      LoadWAVFile("laugh.wav", &format, &data, &size, &freq, &duration);
                  },
              .may_end_with = {kOutOfMemory},
              .says_why = false});
}

TEST_P(OutOfMemory, WhileASoundIsPlayedEndsTheProgramWithTheStatusOfIt) {
    FailEach({.act = [] { PlayEffect("laugh.wav"); }, .may_end_with = {1, kOutOfMemory}, .says_why = false});
}

TEST_P(OutOfMemory, WhileABitmapIsReadIsThrownToTheCaller) {
    WriteFile("image.bmp", bitmaps::TrueColor(8, 8, bitmaps::Noise(192)));

    FailEach({.act = [] { BMPLoad("image.bmp"); }, .throws = true});
}

TEST_P(OutOfMemory, WhileTexturesAreMadeOfBitmapsGivesNone) {
    WriteFile("image.bmp", bitmaps::TrueColor(8, 8, bitmaps::Noise(192)));

    FailEach({.act =
                  [] {
                      unsigned int texture = 0;
                      LoadTexture(&texture, "image.bmp", true);
                      LoadTextureAlpha(&texture, "image.bmp", "image.bmp");
                  },
              .at_least = 3});
}

/// Returns a mesh file of three vertices, one triangle, one mesh and one material.
std::string OneTriangle() {
    const std::string floats36(36, '\0');
    std::string bytes = "MS3D000000" + Number(4, 4);
    bytes += Number(3, 2);
    for (int i = 0; i < 3; ++i) bytes += std::string(1 + 12 + 2, '\0');
    bytes += Number(1, 2) + std::string(2, '\0') + Number(0, 2) + Number(1, 2) + Number(2, 2) + floats36 +
             std::string(24 + 2, '\0');
    bytes += Number(1, 2) + std::string(33, '\0') + Number(1, 2) + Number(0, 2) + Number(0, 1);
    bytes += Number(1, 2) + std::string(32 + 64 + 4 + 5 + 128 + 128, '\0');
    return bytes;
}

TEST_P(OutOfMemory, WhileAMeshIsReadGivesNone) {
    WriteFile("owl.ms3d", OneTriangle());

    FailEach({.act =
                  [] {
                      MilkshapeModel model;
                      const bool loaded = model.loadModelData("owl.ms3d");
                      // Without memory for all of it the model is as it was: empty.
                      if (loaded != (model.vertex_count == 3)) std::abort();
                  },
              .at_least = 4});
}

}  // namespace
