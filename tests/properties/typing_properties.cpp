// SPDX-FileCopyrightText: 2026 The Ulmaro Assistant developers
// SPDX-License-Identifier: MIT

// What must hold for any text typed at any speed: nothing is lost and nothing changes its place.
#include <string>
#include <string_view>
#include <vector>

#include "engine/typed_text.h"
#include "tests/unit/calendar_fixture.h"
// After GoogleTest.
#include <rapidcheck/gtest.h>

namespace {

constexpr std::size_t kLongestName = 17;
constexpr std::size_t kLongestDescription = 345;

/// Types a character at the end of a text, all that stands for it or nothing.
void TypeAt(std::string& text, std::size_t longest, unsigned char character) {
    if (character == 8 || character == 127) {
        if (!text.empty()) text.pop_back();
        return;
    }
    const std::string_view typed = TypedAs(character);
    if (text.size() + typed.size() <= longest) text += typed;
}

/// Returns characters as hands type them: mostly letters, some erased, some that type nothing.
rc::Gen<unsigned char> AnyCharacter() {
    return rc::gen::weightedOneOf<unsigned char>({
        {8, rc::gen::inRange<unsigned char>(' ', 127)},
        {2, rc::gen::element<unsigned char>(8, 127)},
        {2, rc::gen::inRange<unsigned char>(0xC0, 0xFF)},
        {1, rc::gen::arbitrary<unsigned char>()},
    });
}

class TypingProperties : public CalendarTest {
  protected:
    template <typename Property>
    static void Check(const Property& property) {
        rc::detail::checkGTest(property);
    }

    /// Opens the editor of a nameless appointment; no field has the focus.
    static void OpenEditor() {
        ForgetStrokes();
        events.clear();
        edit_event = &AddAppointment("", 17, 5, 2012, 9, 0);
        menu_case_id = kEditorScreen;
        edit_tf = kNoField;
    }

    static void Press(double x, double y) {
        PointAt(x, y);
        mouse_event(GLUT_LEFT_BUTTON, GLUT_DOWN, 0, 0);
    }

    static void DrawFrames(int count) {
        for (int i = 0; i < count; ++i) Frame();
    }
};

TEST_F(TypingProperties, ATextTypedAtAnySpeedArrivesWholeAndInOrder) {
    Check([] {
        OpenEditor();
        edit_tf = kDescriptionField;
        const auto strokes = *rc::gen::container<std::vector<std::pair<unsigned char, int>>>(
            rc::gen::pair(AnyCharacter(), rc::gen::inRange(0, 3)));
        std::string expected;
        for (const auto& [character, frames] : strokes) {
            TypeCharacter(character, 0, 0);
            TypeAt(expected, kLongestDescription, character);
            DrawFrames(frames);
        }
        DrawFrames(2 * static_cast<int>(strokes.size()) + 1);
        RC_ASSERT(DescriptionOf(*edit_event) == expected);
        RC_ASSERT(NameOf(*edit_event).empty());
    });
}

TEST_F(TypingProperties, APressWaitsBehindWhatWasTypedBeforeIt) {
    Check([] {
        OpenEditor();
        edit_tf = kNameField;
        const auto characters = rc::gen::container<std::vector<unsigned char>>(AnyCharacter());
        const std::vector<unsigned char> before = *characters;
        const std::vector<unsigned char> after = *characters;
        std::string name;
        std::string description;
        for (const unsigned char character : before) {
            TypeCharacter(character, 0, 0);
            TypeAt(name, kLongestName, character);
        }
        Press(256, 108);  // the description's field
        for (const unsigned char character : after) {
            TypeCharacter(character, 0, 0);
            TypeAt(description, kLongestDescription, character);
        }
        DrawFrames(2 * static_cast<int>(before.size() + after.size()) + 2);
        RC_ASSERT(NameOf(*edit_event) == name);
        RC_ASSERT(DescriptionOf(*edit_event) == description);
    });
}

}  // namespace
