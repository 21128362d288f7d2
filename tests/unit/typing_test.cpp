// SPDX-FileCopyrightText: 2026 The Ulmaro Assistant developers
// SPDX-License-Identifier: MIT

// Index: from the window system to a field, what types what, whole or not at all, where nothing is typed,
// clicks between characters, listening, keys that others set, special keys.
#include "app/typing.h"

#include <algorithm>
#include <cctype>
#include <ios>
#include <iterator>
#include <map>
#include <string>
#include <utility>
#include <vector>

#include "tests/unit/calendar_fixture.h"

namespace {

/// Returns the codes set in key_state.
std::vector<int> KeysSet() {
    std::vector<int> keys;
    for (int key = 0; key < 256; ++key) {
        if (key_state[key]) keys.push_back(key);
    }
    return keys;
}

/// The editor on an event without texts, with the focus on its description.
class TypingTest : public CalendarTest {
  protected:
    void SetUp() override {
        CalendarTest::SetUp();
        ListenToTyping();
        edit_event = &Add(MakeAppointment("", 20, 9, 2013, 15, 20));
        menu_case_id = kEditorScreen;
        edit_tf = kDescriptionField;
    }

    static void TypeCode(int code) { TypeCharacter(static_cast<unsigned char>(code), 0, 0); }
    static std::string Description() { return DescriptionOf(events.front()); }
};

// ---- From the window system to a field ----

TEST_F(TypingTest, IsListenedToByGlutsKeyboardCallback) {
    listening_to_typing = false;

    ListenToTyping();

    EXPECT_EQ(fakes::glut().keyboard, &TypeCharacter);
    EXPECT_EQ(fakes::desktop().composed, &TypeComposed);
}

TEST_F(TypingTest, NothingIsDeliveredBeforeTypingIsListenedTo) {
    TypeCode('a');
    listening_to_typing = false;
    DeliverTyping(10);
    EXPECT_FALSE(key_state['a']);

    listening_to_typing = true;
    DeliverTyping(10);
    EXPECT_TRUE(key_state['a']) << "it has waited";
}

TEST_F(TypingTest, EachCharacterIsActivityAlsoOneThatTypesNothing) {
    for (const int code : {97, 8, 127, 0xE0, 27, 0xFF}) {
        window.active = false;

        TypeCode(code);

        EXPECT_TRUE(window.active) << code;
    }
    for (const char32_t character : {0x20ACU, 0xE8U, 0x4E00U}) {
        window.active = false;

        TypeComposed(character);

        EXPECT_TRUE(window.active) << static_cast<unsigned>(character);
    }
}

TEST_F(TypingTest, OneCharacterAFrameArrivesInTheOrderOfTyping) {
    for (const char c : std::string("zbba")) TypeCode(c);

    std::vector<std::string> texts;
    for (int i = 0; i < 5; ++i) {
        Frame();
        texts.push_back(Description());
    }

    EXPECT_EQ(texts, (std::vector<std::string>{"z", "zb", "zbb", "zbba", "zbba"}));
}

TEST_F(TypingTest, ACharacterIsDeliveredOnceAndOneAFrame) {
    TypeCode('a');
    TypeCode('a');
    TypeCode('b');

    std::vector<std::vector<int>> frames;
    for (int i = 0; i < 4; ++i) {
        DeliverTyping(EditorRoom());
        frames.push_back(KeysSet());
        ResetFrameInput();
    }

    EXPECT_EQ(frames, (std::vector<std::vector<int>>{{'a'}, {'a'}, {'b'}, {}}));
}

TEST_F(TypingTest, ASentenceArrivesWhole) {
    Type("Dentista, alle 9:30! (portare i documenti)");

    EXPECT_EQ(Description(), "Dentista, alle 9:30! (portare i documenti)");
}

TEST_F(TypingTest, TheNameTakesItsFirst17Characters) {
    edit_tf = kNameField;

    Type("abcdefghijklmnopqrst");

    EXPECT_EQ(NameOf(events.front()), "abcdefghijklmnopq");
}

TEST_F(TypingTest, TheDescriptionTakesItsFirst345Characters) {
    SetText(events.front().description, std::string(340, 'd'));

    Type("abcdefgh");

    EXPECT_EQ(Description(), std::string(340, 'd') + "abcde");
}

// ---- What types what ----

TEST_F(TypingTest, EveryPrintableAsciiCharacterTypesItself) {
    std::string all;
    for (char c = ' '; c <= '~'; ++c) all += c;

    Type(all);

    EXPECT_EQ(Description(), all);
}

TEST_F(TypingTest, BackspaceAndDeleteBothRemoveTheLastCharacter) {
    for (const int code : {8, 127}) {
        TypeCode(code);
        DeliverTyping(EditorRoom());
        EXPECT_EQ(KeysSet(), (std::vector<int>{127})) << code;
        ResetFrameInput();
    }

    Type("abc");
    Type("\x08");
    EXPECT_EQ(Description(), "ab");
    Type("\x7F");

    EXPECT_EQ(Description(), "a");
}

TEST_F(TypingTest, RemovingFromAnEmptyTextDoesNothing) {
    Type("\x08\x08\x7F");

    EXPECT_EQ(Description(), "");
}

TEST_F(TypingTest, EnterTabEscapeAndTheOtherControlCharactersTypeNothing) {
    for (int code = 0; code < ' '; ++code) {
        if (code == 8) continue;

        TypeCode(code);
        Frame();
        Frame();

        EXPECT_EQ(Description(), "") << code;
    }
}

TEST_F(TypingTest, ItalianAccentedLettersTypeThePlainLetterAndAnApostrophe) {
    struct Case {
        int latin1;
        const char* text;
    };
    const Case cases[] = {
        {0xE0, "a'"}, {0xE8, "e'"}, {0xE9, "e'"}, {0xEC, "i'"}, {0xF2, "o'"}, {0xF9, "u'"},
        {0xC0, "A'"}, {0xC8, "E'"}, {0xC9, "E'"}, {0xCC, "I'"}, {0xD2, "O'"}, {0xD9, "U'"},
    };
    for (const Case& row : cases) {
        SetText(events.front().description, "");

        Type(std::string(1, static_cast<char>(row.latin1)) + "x");

        EXPECT_EQ(Description(), std::string(row.text) + "x") << row.latin1;
    }
}

TEST_F(TypingTest, EveryCharacterOfLatin1BeyondAsciiTypesWhatItIsCommonlyWrittenAs) {
    // Controls and the soft hyphen, which is only seen where a line is broken, type nothing.
    std::map<int, std::string> texts;
    for (int code = 0x80; code < 0xA0; ++code) texts[code] = "";
    texts[0xAD] = "";
    const auto add = [&](const std::string& codes, const std::string& text) {
        for (const char code : codes) {
            EXPECT_EQ(texts.count(static_cast<unsigned char>(code)), 0U) << text;
            texts[static_cast<unsigned char>(code)] = text;
        }
    };
    // Italian vowels: the letter and an apostrophe.
    add("\xE0", "a'"), add("\xE8\xE9", "e'"), add("\xEC", "i'"), add("\xF2", "o'"), add("\xF9", "u'");
    add("\xC0", "A'"), add("\xC8\xC9", "E'"), add("\xCC", "I'"), add("\xD2", "O'"), add("\xD9", "U'");
    // Other letters: without their marks.
    add("\xE1\xE2\xE3\xE4\xE5\xAA", "a"), add("\xC1\xC2\xC3\xC4\xC5", "A");
    add("\xEA\xEB", "e"), add("\xCA\xCB", "E");
    add("\xED\xEE\xEF", "i"), add("\xCD\xCE\xCF", "I");
    add("\xF3\xF4\xF5\xF6\xF8\xBA\xB0", "o"), add("\xD3\xD4\xD5\xD6\xD8", "O");
    add("\xFA\xFB\xFC\xB5", "u"), add("\xDA\xDB\xDC", "U");
    add("\xFD\xFF", "y"), add("\xDD", "Y");
    add("\xE7\xA2", "c"), add("\xC7", "C"), add("\xF1", "n"), add("\xD1", "N"), add("\xF0", "d"),
        add("\xD0", "D");
    add("\xDF", "ss"), add("\xE6", "ae"), add("\xC6", "AE"), add("\xFE", "th"), add("\xDE", "TH");
    // Numbers, money and marks.
    add("\xB9", "1"), add("\xB2", "2"), add("\xB3", "3"), add("\xBC", "1/4"), add("\xBD", "1/2"),
        add("\xBE", "3/4");
    add("\xA4", "EUR"), add("\xA3", "GBP"), add("\xA5", "JPY");
    add("\xA0", " "), add("\xA1", "!"), add("\xBF", "?"), add("\xAB\xBB\xA8", "\""), add("\xB4", "'");
    add("\xAC\xAF", "-"), add("\xB1", "+-"), add("\xD7", "x"), add("\xF7", ":"), add("\xB7", "."),
        add("\xB8", ",");
    add("\xA6", "|"), add("\xA7", "par."), add("\xB6", "P"), add("\xA9", "(c)"), add("\xAE", "(r)");
    ASSERT_EQ(texts.size(), 128U) << "every code once";

    for (const auto& [code, text] : texts) {
        SetText(events.front().description, "");
        TypeCode(code);
        for (int i = 0; i < 6; ++i) Frame();
        EXPECT_EQ(Description(), text) << std::hex << code;

        SetText(events.front().description, "");
        TypeComposed(static_cast<char32_t>(code));
        for (int i = 0; i < 6; ++i) Frame();
        EXPECT_EQ(Description(), text) << "composed " << std::hex << code;
    }
}

TEST_F(TypingTest, ComposedCharactersBeyondLatin1TypeWhatTheyAreCommonlyWrittenAs) {
    const std::pair<std::u32string, const char*> cases[] = {
        {U"\u20AC", "EUR"},
        {U"\u2018\u2019\u201C\u201D\u201E", "''\"\"\""},
        {U"\u2013\u2014\u2026\u2022", "--...*"},
        {U"\u0152uvre c\u0153ur", "OEuvre coeur"},
        {U"\u010Cern\u00FD", "Cerny"},
        {U"Dvo\u0159\u00E1k", "Dvorak"},
        {U"\u0141\u00F3d\u017A", "Lodz"},
        {U"\u0160ibenik, \u0110akovo, Ple\u017Eice", "Sibenik, Dakovo, Plezice"},
        {U"Timi\u0219oara, Constan\u021Ba, Br\u0103ila", "Timisoara, Constanta, Braila"},
        {U"Szt\u0151kem\u0171", "Sztokemu"},
        {U"\u0130stanbul \u0131\u011F\u015F", "Istanbul igs"},
        {U"\u0132\u0133 \u0149 \u017F \u0178 \u1E9E", "IJij n s Y SS"},
        {U"^~`", "^~`"},
    };
    for (const auto& [typed, text] : cases) {
        SetText(events.front().description, "");
        for (const char32_t character : typed) TypeComposed(character);
        for (int i = 0; i < 60; ++i) Frame();

        EXPECT_EQ(Description(), text);
    }
}

TEST_F(TypingTest, EveryLetterOfLatinExtendedATypesSomethingInItsOwnCase) {
    for (char32_t character = 0x100; character < 0x180; ++character) {
        SetText(events.front().description, "");
        TypeComposed(character);
        for (int i = 0; i < 3; ++i) Frame();

        const std::string text = Description();
        EXPECT_FALSE(text.empty()) << static_cast<unsigned>(character);
        EXPECT_TRUE(std::all_of(text.begin(), text.end(), [](unsigned char c) {
            return std::isalpha(c) != 0;
        })) << text;
        EXPECT_TRUE(text.size() == 1 || text == "IJ" || text == "ij" || text == "OE" || text == "oe") << text;
    }
}

TEST_F(TypingTest, ComposedCharactersThatAreNotKnownTypeNothing) {
    for (const char32_t character :
         {0x1U, 0x1BU, 0x85U, 0x180U, 0x391U, 0x416U, 0x2603U, 0x4E00U, 0x1F989U}) {
        TypeComposed(character);
        Frame();
        Frame();

        EXPECT_EQ(Description(), "") << static_cast<unsigned>(character);
    }
}

// ---- Whole or not at all ----

TEST_F(TypingTest, AnAccentedLetterThatNoLongerFitsWholeIsNotTypedHalf) {
    edit_tf = kNameField;
    SetText(events.front().name, std::string(16, 'n'));

    Type("\xE8");
    EXPECT_EQ(NameOf(events.front()), std::string(16, 'n'));
    Type("\xE8x");
    EXPECT_EQ(NameOf(events.front()), std::string(16, 'n') + 'x') << "what fits is still typed";
}

TEST_F(TypingTest, AnAccentedLetterThatJustFitsIsTyped) {
    edit_tf = kNameField;
    SetText(events.front().name, std::string(15, 'n'));

    Type("\xE8");

    EXPECT_EQ(NameOf(events.front()), std::string(15, 'n') + "e'");
}

TEST_F(TypingTest, TheDescriptionTakesNoHalfOfALongSpellingEither) {
    SetText(events.front().description, std::string(343, 'd'));

    Type("\xA4");  // three characters
    EXPECT_EQ(Description(), std::string(343, 'd'));
    Type("\xDF");
    EXPECT_EQ(Description(), std::string(343, 'd') + "ss");
    Type("\xDFx");

    EXPECT_EQ(Description(), std::string(343, 'd') + "ss");
}

TEST_F(TypingTest, WhatWasErasedInTheMeantimeMakesRoomForAnAccentedLetter) {
    edit_tf = kNameField;
    SetText(events.front().name, std::string(17, 'n'));

    Type("\x08\x08\xE8");

    EXPECT_EQ(NameOf(events.front()), std::string(15, 'n') + "e'");
}

TEST_F(TypingTest, AnAccentedLetterThatWasDroppedHoldsUpNoClickBehindIt) {
    edit_tf = kNameField;
    SetText(events.front().name, std::string(16, 'n'));
    TypeCode(0xE8);

    ClickAt(256, 108);
    EXPECT_EQ(edit_tf, kNameField);
    Frame();

    EXPECT_EQ(edit_tf, kDescriptionField);
    EXPECT_EQ(NameOf(events.front()), std::string(16, 'n'));
}

// ---- Where nothing is typed ----

TEST_F(TypingTest, WhatIsTypedWithoutFocusIsDropped) {
    edit_tf = kNoField;
    TypeCode('a');
    TypeCode('b');
    Frame();
    edit_tf = kDescriptionField;

    for (int i = 0; i < 4; ++i) Frame();

    EXPECT_EQ(Description(), "");
    EXPECT_EQ(NameOf(events.front()), "");
}

TEST_F(TypingTest, WhatIsTypedOnAnotherScreenIsDropped) {
    for (const int screen : {kOwlScreen, kListScreen, kViewScreen, kQuizScreen}) {
        menu_case_id = screen;
        edit_event = &events.front();
        TypeCode('a');
        Frame();
        menu_case_id = kEditorScreen;
        edit_event = &events.front();

        Frame();
        Frame();

        EXPECT_EQ(Description(), "") << screen;
    }
}

TEST_F(TypingTest, NothingTypedChangesAnEventInTheView) {
    menu_case_id = kViewScreen;
    const Event before = events.front();
    for (const int field : {kNameField, kDescriptionField}) {
        edit_tf = field;

        Type("abc\x08");

        EXPECT_TRUE(SameBytes(events.front(), before));
    }
}

TEST_F(TypingTest, WhatWasTypedInTheViewDoesNotReachTheEditorLater) {
    menu_case_id = kViewScreen;
    Type("abc");
    menu_case_id = kEditorScreen;

    for (int i = 0; i < 4; ++i) Frame();

    EXPECT_EQ(Description(), "");
}

// ---- Clicks between characters ----

TEST_F(TypingTest, AClickOnConfirmWaitsUntilWhatWasTypedBeforeItIsInTheField) {
    for (const char c : std::string("abc")) TypeCode(c);

    ClickAt(476, 436);
    EXPECT_EQ(Description(), "a");
    EXPECT_EQ(menu_case_id, kEditorScreen);
    Frame();
    Frame();
    EXPECT_EQ(menu_case_id, kEditorScreen);
    Frame();

    EXPECT_EQ(menu_case_id, kListScreen);
    EXPECT_EQ(Description(), "abc");
    EXPECT_EQ(ReadFile("database.bin").substr(24, 4), std::string("abc\0", 4));
}

TEST_F(TypingTest, WhatWasTypedBeforeAClickOnAnotherFieldStaysInTheFirst) {
    for (const char c : std::string("abc")) TypeCode(c);
    PointAt(120, 220);
    mouse_event(GLUT_LEFT_BUTTON, GLUT_DOWN, 0, 0);
    for (const char c : std::string("xy")) TypeCode(c);

    for (int i = 0; i < 8; ++i) Frame();

    EXPECT_EQ(Description(), "abc");
    EXPECT_EQ(NameOf(events.front()), "xy");
}

TEST_F(TypingTest, AClickThatWaitsHappensWhereThePointerWasThen) {
    TypeCode('a');
    ClickAt(120, 220);
    PointAt(476, 436);

    Frame();

    EXPECT_EQ(edit_tf, kNameField);
    EXPECT_EQ(menu_case_id, kEditorScreen);
}

TEST_F(TypingTest, AClickThatWaitsHappensOnce) {
    TypeCode('a');
    ClickAt(120, 220);
    Frame();
    ASSERT_EQ(edit_tf, kNameField);
    edit_tf = kDescriptionField;

    for (int i = 0; i < 3; ++i) Frame();

    EXPECT_EQ(edit_tf, kDescriptionField);
}

TEST_F(TypingTest, TwoClicksWaitInTheirOrder) {
    for (const char c : std::string("abc")) TypeCode(c);
    ClickAt(120, 220);
    TypeCode('x');
    ClickAt(256, 108);
    TypeCode('d');

    for (int i = 0; i < 8; ++i) Frame();

    EXPECT_EQ(NameOf(events.front()), "x");
    EXPECT_EQ(Description(), "abcd");
}

TEST_F(TypingTest, AButtonReleasedBeforeTheFrameIsNoClickAlsoBehindCharacters) {
    TypeCode('a');
    PointAt(120, 220);
    mouse_event(GLUT_LEFT_BUTTON, GLUT_DOWN, 0, 0);
    mouse_event(GLUT_LEFT_BUTTON, GLUT_UP, 0, 0);

    for (int i = 0; i < 3; ++i) Frame();

    EXPECT_EQ(edit_tf, kDescriptionField);
    EXPECT_EQ(Description(), "a");
}

TEST_F(TypingTest, WhatWasTypedAfterAClickThatTakesTheFocusAwayIsDropped) {
    TypeCode('a');
    ClickAt(300, 300);
    for (const char c : std::string("bc")) TypeCode(c);
    Frame();
    ASSERT_EQ(edit_tf, kNoField);
    Frame();
    edit_tf = kDescriptionField;

    for (int i = 0; i < 4; ++i) Frame();

    EXPECT_EQ(Description(), "a");
}

TEST_F(TypingTest, WhatWasTypedWithoutAFocusIsDroppedAlsoWhenAClickGivesOne) {
    edit_tf = kNoField;
    TypeCode('a');

    ClickAt(120, 220);
    for (int i = 0; i < 3; ++i) Frame();

    EXPECT_EQ(edit_tf, kNameField);
    EXPECT_EQ(NameOf(events.front()), "");
}

TEST_F(TypingTest, WhatIsTypedRightAfterAClickGoesWhereTheClickLeads) {
    edit_tf = kNoField;
    PointAt(120, 220);
    mouse_event(GLUT_LEFT_BUTTON, GLUT_DOWN, 0, 0);
    TypeCode('a');

    Frame();
    EXPECT_EQ(NameOf(events.front()), "");
    Frame();

    EXPECT_EQ(NameOf(events.front()), "a");
}

TEST_F(TypingTest, AfterTheTrashNothingThatWaitedReachesAnotherEvent) {
    AddAppointment("altro", 1, 1, 2014, 0, 0);
    ClickAt(485, 486);
    for (const char c : std::string("abc")) TypeCode(c);
    ASSERT_EQ(NamesOf(events), (std::vector<std::string>{"altro"}));

    ClickAt(241, 390);  // the first row
    for (int i = 0; i < 5; ++i) Frame();

    ASSERT_EQ(menu_case_id, kEditorScreen);
    EXPECT_EQ(Description(), "");
}

TEST_F(TypingTest, AClickWaitsForNoMoreCharactersThanTheLargestFieldTakes) {
    for (int i = 0; i < 2000; ++i) TypeCode('a');

    ClickAt(120, 220);
    for (int i = 1; i < 345; ++i) Frame();
    EXPECT_EQ(edit_tf, kDescriptionField);
    Frame();

    EXPECT_EQ(edit_tf, kNameField);
    EXPECT_EQ(Description(), std::string(345, 'a'));
}

// ---- Listening ----

TEST_F(TypingTest, ListeningIsBegunOnceAndLosesNothing) {
    TypeCode('a');

    ListenToTyping();
    DeliverTyping(EditorRoom());

    EXPECT_EQ(fakes::Count("glutKeyboardFunc"), 0U);
    EXPECT_EQ(KeysSet().size(), 1U);
}

// ---- Keys that others set ----

TEST_F(TypingTest, WhatStandsInKeyStateIsTypedInTheOrderOfTheCodes) {
    for (const unsigned char key : {'z', 'B', '7', 'a'}) key_state[key] = true;

    Frame();
    EXPECT_EQ(Description(), "7Baz");
    Frame();

    EXPECT_EQ(Description(), "7Baz") << "in one frame only";
}

TEST_F(TypingTest, CodesAbove127AreTypedAsTheyAre) {
    for (const int key : {255, 128, 200}) key_state[key] = true;

    Frame();

    EXPECT_EQ(Description(), "\x80\xC8\xFF");
}

TEST_F(TypingTest, Code127ErasesAfterTheLettersAndBeforeTheCodesAboveIt) {
    SetText(events.front().description, "xy");
    key_state['a'] = key_state[127] = true;
    Frame();
    EXPECT_EQ(Description(), "xy");

    key_state[127] = key_state[200] = true;
    Frame();
    EXPECT_EQ(Description(), "x\xC8");
}

TEST_F(TypingTest, WhatStandsInKeyStateIsTypedBesideWhatTheQueueDelivers) {
    TypeCode('b');
    TypeCode('a');
    key_state['c'] = key_state['a'] = true;

    Frame();
    EXPECT_EQ(Description(), "abc");
    Frame();

    EXPECT_EQ(Description(), "abca");
}

TEST_F(TypingTest, WhatStandsInKeyStateIsTypedAlsoInAFrameWithAClick) {
    key_state['a'] = true;

    ClickAt(120, 220);

    EXPECT_EQ(NameOf(events.front()), "a");
}

// ---- Special keys ----

TEST_F(TypingTest, SpecialKeysNeverType) {
    for (int key = 0; key < 256; ++key) keyboard_down(key, 0, 0);
    Frame();
    EXPECT_EQ(Description(), "");

    keyboard_down(GLUT_KEY_SHIFT_L, 0, 0);  // shares its code with 'p'
    TypeCode('P');
    Frame();

    EXPECT_EQ(Description(), "P");
}

TEST_F(TypingTest, ASpecialKeyThatIsReleasedTakesNoCharacterAway) {
    TypeCode('p');
    keyboard_down('p', 0, 0);
    keyboard_up('p', 0, 0);

    Frame();

    EXPECT_EQ(Description(), "p");
}

TEST_F(TypingTest, ASpecialKeyTakesNoOtherKeyAway) {
    keyboard_down('p', 0, 0);
    keyboard_down(GLUT_KEY_LEFT, 0, 0);
    key_state['a'] = key_state['z'] = true;

    Frame();

    EXPECT_EQ(Description(), "az");
}

TEST_F(TypingTest, AKeyThatWasSetBeforeItsSpecialKeyWasPressedIsTyped) {
    key_state['p'] = true;
    keyboard_down('p', 0, 0);

    Frame();

    EXPECT_EQ(Description(), "p");
}

TEST_F(TypingTest, ARepeatedSpecialKeyTypesNothingEither) {
    keyboard_down('p', 0, 0);
    keyboard_down('p', 0, 0);

    Frame();

    EXPECT_EQ(Description(), "");
}

TEST_F(TypingTest, ASpecialKeyOfAnEarlierFrameOrThatIsReleasedTakesNothingAway) {
    keyboard_down('p', 0, 0);
    Frame();
    key_state['p'] = true;
    Frame();
    EXPECT_EQ(Description(), "p");

    keyboard_down('q', 0, 0);
    keyboard_up('q', 0, 0);
    key_state['q'] = true;
    Frame();
    EXPECT_EQ(Description(), "pq");
}

TEST_F(TypingTest, SpecialKeysTypeNothingInAFrameWithAClickEither) {
    keyboard_down('p', 0, 0);

    ClickAt(256, 108);

    EXPECT_EQ(Description(), "");
}

TEST_F(TypingTest, TheKeysAreClearedAtTheEndOfTheFrame) {
    TypeCode('a');

    Frame();

    EXPECT_TRUE(KeysSet().empty());
}

}  // namespace
