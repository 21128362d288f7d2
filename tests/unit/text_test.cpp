// SPDX-FileCopyrightText: 2026 The Ulmaro Assistant developers
// SPDX-License-Identifier: MIT

// Index: the font's cells, a line, a centred line, what a line leaves, a box, the toolkit's own font.
#include <array>
#include <cstddef>
#include <functional>
#include <ostream>
#include <set>
#include <string>
#include <vector>

#include "engine/host.h"
#include "engine/text.h"
#include "tests/fakes/fakes.h"
#include "tests/unit/text_reader.h"

namespace {

/// Returns the calls that every text begins with, for glyphs of that size.
std::vector<std::string> Entering(const std::string& size) {
    return {"glBindTexture(GL_TEXTURE_2D, 77)",
            "glMatrixMode(GL_PROJECTION)",
            "glPushMatrix()",
            "glLoadIdentity()",
            "glOrtho(0, 512, 0, 512, -1, 1)",
            "glMatrixMode(GL_MODELVIEW)",
            "glPushMatrix()",
            "glLoadIdentity()",
            "glPushMatrix()",
            "glEnable(GL_TEXTURE_2D)",
            "glEnable(GL_BLEND)",
            "glDepthMask(GL_FALSE)",
            "glBlendFunc(GL_SRC_ALPHA, GL_ONE_MINUS_SRC_ALPHA)",
            "glTranslatef(" + size + ", " + size + ", 0)"};
}

/// Returns the calls of a glyph at a place.
std::vector<std::string> Drawing(const std::string& x, const std::string& y) {
    return {"glPushMatrix()",
            "glTranslatef(" + x + ", " + y + ", 0)",
            "glEnableClientState(GL_VERTEX_ARRAY)",
            "glEnableClientState(GL_TEXTURE_COORD_ARRAY)",
            "glVertexPointer(3, GL_FLOAT, 0)",
            "glTexCoordPointer(2, GL_FLOAT, 0)",
            "glDrawArrays(GL_TRIANGLES, 0, 6)",
            "glDisableClientState(GL_TEXTURE_COORD_ARRAY)",
            "glPopMatrix()"};
}

/// Returns the calls that every text ends with.
std::vector<std::string> Leaving() {
    return {
        "glDisable(GL_BLEND)", "glDepthMask(GL_TRUE)",       "glPopMatrix()", "glMatrixMode(GL_PROJECTION)",
        "glPopMatrix()",       "glMatrixMode(GL_MODELVIEW)", "glPopMatrix()"};
}

class TextTest : public fakes::Test {
  protected:
    void SetUp() override {
        fakes::Test::SetUp();
        font = 77;
    }
    void TearDown() override {
        font = 0;
        fakes::Test::TearDown();
    }

    /// Prints one character in size 8 at (100, 60) and returns the glyph that was drawn.
    static fakes::Primitive Glyph(char c) {
        fakes::gl().primitives.clear();
        glPrintText(100, 60, 8, false, "%c", c);
        EXPECT_EQ(fakes::gl().primitives.size(), 1U) << "character " << static_cast<int>(c);
        return fakes::gl().primitives.empty() ? fakes::Primitive() : fakes::gl().primitives[0];
    }

    /// Returns where the glyphs were drawn, x alone, in order.
    static std::vector<double> Columns() {
        std::vector<double> columns;
        for (const fakes::Primitive& glyph : fakes::gl().primitives) {
            columns.push_back(fakes::Bounds(glyph).left);
        }
        return columns;
    }
};

/// Expects the six corners of a glyph's two triangles, their texture from a cell of the font.
void ExpectCell(const fakes::Primitive& glyph, int column, int row, float size) {
    const float left = static_cast<float>(column) / 16;
    const float right = static_cast<float>(column + 1) / 16;
    const float top = 1 - static_cast<float>(row) / 16;
    const float bottom = 1 - static_cast<float>(row + 1) / 16;
    struct Corner {
        fakes::Vec3 place;
        fakes::Vec2 texcoord;
    };
    const std::array<Corner, 6> corners = {{
        {{-size, size, 0}, {left, top}},
        {{-size, -size, 0}, {left, bottom}},
        {{size, size, 0}, {right, top}},
        {{size, size, 0}, {right, top}},
        {{size, -size, 0}, {right, bottom}},
        {{-size, -size, 0}, {left, bottom}},
    }};
    EXPECT_EQ(glyph.mode, static_cast<GLenum>(GL_TRIANGLES));
    ASSERT_EQ(glyph.vertices.size(), corners.size());
    for (std::size_t i = 0; i < corners.size(); ++i) {
        EXPECT_EQ(glyph.vertices[i].object, corners[i].place) << "corner " << i;
        EXPECT_EQ(glyph.vertices[i].texcoord, corners[i].texcoord) << "corner " << i;
    }
}

// ---- The font's cells ----

TEST(ConvertCharToGlAscii, CountsTheCellsFromTheBlank) {
    EXPECT_EQ(ConvertCharToGlASCII(' '), 0);
    EXPECT_EQ(ConvertCharToGlASCII('!'), 1);
    EXPECT_EQ(ConvertCharToGlASCII('0'), 16);
    EXPECT_EQ(ConvertCharToGlASCII('A'), 33);
    EXPECT_EQ(ConvertCharToGlASCII('~'), 94);
    for (char c = ' '; c <= '~'; ++c) EXPECT_EQ(ConvertCharToGlASCII(c), c - 32);
}

TEST(ConvertCharToGlAscii, OfAControlCharacterIsNegative) {
    EXPECT_EQ(ConvertCharToGlASCII('\0'), -32);
    EXPECT_EQ(ConvertCharToGlASCII('\n'), -22);
    EXPECT_EQ(ConvertCharToGlASCII('\x1f'), -1);
}

TEST(ConvertCharToGlAscii, OfAByteOf128OrAboveIsNegativeBecauseACharacterIsSigned) {
    EXPECT_EQ(ConvertCharToGlASCII('\x80'), -160);
    EXPECT_EQ(ConvertCharToGlASCII('\xe8'), -56);
    EXPECT_EQ(ConvertCharToGlASCII('\xff'), -33);
}

TEST_F(TextTest, EveryPrintableCharacterShowsItsCell) {
    for (char c = ' '; c <= '~'; ++c) {
        SCOPED_TRACE(c);

        ExpectCell(Glyph(c), (c - 32) % 16, (c - 32) / 16, 8);
    }
}

TEST_F(TextTest, TheTildeIsInColumn14OfRow5) {
    ExpectCell(Glyph('~'), 14, 5, 8);
}

TEST_F(TextTest, AControlCharacterShowsTheBlank) {
    for (char c = 1; c < ' '; ++c) {
        SCOPED_TRACE(static_cast<int>(c));

        ExpectCell(Glyph(c), 0, 0, 8);
    }
}

TEST_F(TextTest, DeleteShowsTheCellAfterTheLastCharacter) {
    ExpectCell(Glyph('\x7f'), 15, 5, 8);
}

TEST_F(TextTest, AByteOf128OrAboveShowsTheBlank) {
    for (int byte = 128; byte <= 255; ++byte) {
        SCOPED_TRACE(byte);

        ExpectCell(Glyph(static_cast<char>(byte)), 0, 0, 8);
    }
}

// ---- A line ----

TEST_F(TextTest, ALineSetsUpDrawsGlyphByGlyphAndRestores) {
    glPrintText(100, 50, 8, false, "Hi!");

    EXPECT_EQ(fakes::Lines(), fakes::Joined({Entering("8"), Drawing("100", "50"), Drawing("108.2", "50"),
                                             Drawing("116.399994", "50"), Leaving()}));
}

TEST_F(TextTest, ALineReadsAsItWasWritten) {
    std::string all;
    for (char c = ' '; c <= '~'; ++c) all += c;

    glPrintText(12.5F, 300, 2.5F, false, "%s", all.c_str());

    const std::vector<PrintedLine> lines = PrintedText();
    EXPECT_EQ(Words(lines), (std::vector<std::string>{all}));
    EXPECT_NEAR(lines.at(0).x, 12.5, 1e-3);
    EXPECT_NEAR(lines.at(0).y, 300, 1e-3);
    EXPECT_NEAR(lines.at(0).size, 2.5, 1e-3);
}

TEST_F(TextTest, ALineIsFormattedAsPrintfDoes) {
    glPrintText(0, 0, 5, false, "%s %d/%02d %.1f%%", "ore", 7, 5, 2.5);

    EXPECT_EQ(Words(PrintedText()), (std::vector<std::string>{"ore 7/05 2.5%"}));
}

TEST_F(TextTest, TheFirstGlyphsSquareHasItsBottomLeftCornerAtThePlace) {
    glPrintText(30, 40, 10, false, "A");

    EXPECT_EQ(fakes::Bounds(fakes::gl().primitives.at(0)), (fakes::Rect{30, 40, 50, 60}));
}

TEST_F(TextTest, TheGlyphsAdvanceByTheSizeAndAFortiethOfIt) {
    glPrintText(10, 20, 16, false, "abcde");

    const std::vector<double> columns = Columns();
    ASSERT_EQ(columns.size(), 5U);
    for (std::size_t i = 0; i < columns.size(); ++i) {
        EXPECT_NEAR(columns[i], 10 + 16.4 * static_cast<double>(i), 1e-3) << "glyph " << i;
    }
}

TEST_F(TextTest, ABlankIsDrawnAndAdvancesLikeAnyGlyph) {
    glPrintText(10, 20, 10, false, " a  b ");

    EXPECT_EQ(fakes::gl().primitives.size(), 6U);
    EXPECT_EQ(Words(PrintedText()), (std::vector<std::string>{" a  b "}));
}

TEST_F(TextTest, ANewlineInALineIsABlank) {
    glPrintText(10, 20, 10, false, "a\nb");

    EXPECT_EQ(Words(PrintedText()), (std::vector<std::string>{"a b"}));
}

TEST_F(TextTest, GlyphsAreBlendedInTheCallersColorWithoutWritingDepth) {
    glColor4f(0.25F, 0.5F, 0.75F, 0.5F);

    glPrintText(10, 20, 10, false, "a");

    const fakes::Primitive glyph = fakes::gl().primitives.at(0);
    EXPECT_EQ(glyph.texture, 77U);
    EXPECT_TRUE(glyph.textured);
    EXPECT_TRUE(glyph.from_arrays);
    EXPECT_EQ(glyph.color, (fakes::Rgba{0.25F, 0.5F, 0.75F, 0.5F}));
    EXPECT_TRUE(glyph.blend);
    EXPECT_EQ(glyph.blend_source, static_cast<GLenum>(GL_SRC_ALPHA));
    EXPECT_EQ(glyph.blend_destination, static_cast<GLenum>(GL_ONE_MINUS_SRC_ALPHA));
    EXPECT_FALSE(glyph.depth_mask);
    EXPECT_EQ(fakes::gl().color, (fakes::Rgba{0.25F, 0.5F, 0.75F, 0.5F}));
}

TEST_F(TextTest, ALineIsOnTheCanvasWhateverTheMatricesAndTheWindow) {
    fakes::gl().viewport = {0, 0, 900, 70};
    glMatrixMode(GL_PROJECTION);
    glOrtho(-3, 3, -9, 9, -1, 1);
    glMatrixMode(GL_MODELVIEW);
    glTranslatef(50, 60, 70);
    glScalef(3, 3, 3);

    glPrintText(30, 40, 10, false, "A");

    EXPECT_EQ(fakes::Bounds(fakes::gl().primitives.at(0)), (fakes::Rect{30, 40, 50, 60}));
}

TEST_F(TextTest, ALineOf255CharactersIsWhole) {
    glPrintText(0, 0, 1, false, "%s", std::string(255, 'x').c_str());

    EXPECT_EQ(Words(PrintedText()), (std::vector<std::string>{std::string(255, 'x')}));
}

TEST_F(TextTest, ALongerLineIsCutAfter255Characters) {
    for (const std::size_t length : {256U, 257U, 5000U}) {
        fakes::gl().primitives.clear();

        glPrintText(0, 0, 1, false, "%s%s", std::string(255, 'x').c_str(),
                    std::string(length - 255, 'y').c_str());

        EXPECT_EQ(Words(PrintedText()), (std::vector<std::string>{std::string(255, 'x')})) << length;
    }
}

// ---- A centred line ----

TEST_F(TextTest, ACentredCharacterMovesLeftByHalfItsAdvance) {
    glPrintText(256, 40, 10, true, "A");

    EXPECT_NEAR(PrintedText().at(0).x, 256 - 10 * 0.5125, 1e-3);
    EXPECT_NEAR(PrintedText().at(0).y, 40, 1e-3);
}

TEST_F(TextTest, ACentredLineHasItsMiddleOnThePlace) {
    for (const std::string text : {"A", "ab", "Ulmaro", "una frase un poco piu' lunga"}) {
        fakes::gl().primitives.clear();

        glPrintText(300, 40, 7, true, "%s", text.c_str());

        const PrintedLine line = PrintedText().at(0);
        EXPECT_EQ(line.text, text);
        EXPECT_NEAR(line.x, 300 - 7 * 1.025 * static_cast<double>(text.size()) * 0.5, 1e-3) << text;
        EXPECT_NEAR(line.centre_x, 300, 1e-3) << text;
    }
}

TEST_F(TextTest, ACentredLineThatIsCutIsCentredAsItIsShown) {
    glPrintText(300, 40, 1, true, "%s", std::string(400, 'x').c_str());

    EXPECT_NEAR(PrintedText().at(0).x, 300 - 1.025 * 255 * 0.5, 0.01);
}

TEST_F(TextTest, ACentredLineMakesTheSameCallsAsAnother) {
    glPrintText(100, 50, 8, true, "Hi");

    EXPECT_EQ(fakes::Lines(),
              fakes::Joined({Entering("8"), Drawing("91.8", "50"), Drawing("100", "50"), Leaving()}));
}

// ---- What a text leaves, and texts of nothing ----

TEST_F(TextTest, WhatCannotBeFormattedDrawsNothing) {
    const wchar_t euro[] = L"\u20AC";  // has no byte in the C locale

    glPrintText(100, 50, 8, false, "ab%ls", euro);
    glPrintTextBox(100, 50, 8, 10, "ab%ls", euro);

    EXPECT_TRUE(fakes::gl().primitives.empty());
}

/// One of the printers, with a text that it prints in size 8 at (100, 50).
struct Printer {
    std::string name;
    std::function<void(const char*)> print;
};

std::ostream& operator<<(std::ostream& out, const Printer& printer) {
    return out << printer.name;
}

class EveryPrinter : public TextTest, public testing::WithParamInterface<Printer> {};

TEST_P(EveryPrinter, DoesNothingAtAllWithoutAFormat) {
    fakes::gl().enabled = {GL_BLEND};
    fakes::gl().depth_mask = false;
    fakes::gl().matrix_mode = GL_PROJECTION;
    fakes::gl().bound_texture = 5;

    GetParam().print(nullptr);

    EXPECT_EQ(fakes::Lines(), (std::vector<std::string>{}));
    EXPECT_EQ(fakes::gl().enabled, (std::set<GLenum>{GL_BLEND}));
    EXPECT_FALSE(fakes::gl().depth_mask);
    EXPECT_EQ(fakes::gl().matrix_mode, static_cast<GLenum>(GL_PROJECTION));
    EXPECT_EQ(fakes::gl().bound_texture, 5U);
}

TEST_P(EveryPrinter, SetsUpAndRestoresAllStateForAnEmptyFormatAndDrawsNothing) {
    GetParam().print("");

    EXPECT_EQ(fakes::Lines(), fakes::Joined({Entering("8"), Leaving()}));
    EXPECT_TRUE(fakes::gl().primitives.empty());
}

TEST_P(EveryPrinter, LeavesBlendingOffDepthWrittenAndTheMatrixModeModelView) {
    for (const char* text : {"", "abc"}) {
        glEnable(GL_BLEND);
        glDepthMask(GL_FALSE);
        glMatrixMode(GL_PROJECTION);

        GetParam().print(text);

        EXPECT_FALSE(fakes::gl().Enabled(GL_BLEND));
        EXPECT_TRUE(fakes::gl().depth_mask);
        EXPECT_EQ(fakes::gl().matrix_mode, static_cast<GLenum>(GL_MODELVIEW));
    }
}

TEST_P(EveryPrinter, LeavesTheTextureEnabledAndTheFontBound) {
    GetParam().print("abc");

    EXPECT_TRUE(fakes::gl().Enabled(GL_TEXTURE_2D));
    EXPECT_EQ(fakes::gl().bound_texture, 77U);
}

TEST_P(EveryPrinter, LeavesTheVertexArrayEnabledAndTheTextureArrayNot) {
    GetParam().print("abc");

    EXPECT_TRUE(fakes::gl().vertex_array.enabled);
    EXPECT_FALSE(fakes::gl().texcoord_array.enabled);
}

TEST_P(EveryPrinter, RestoresTheMatrices) {
    glMatrixMode(GL_PROJECTION);
    glOrtho(-3, 3, -9, 9, -1, 1);
    glMatrixMode(GL_MODELVIEW);
    glPushMatrix();
    glTranslatef(50, 60, 70);
    const std::vector<fakes::Mat4> modelview = fakes::gl().modelview;
    const std::vector<fakes::Mat4> projection = fakes::gl().projection;

    for (const char* text : {"", "abc"}) GetParam().print(text);

    EXPECT_EQ(fakes::gl().modelview, modelview);
    EXPECT_EQ(fakes::gl().projection, projection);
}

// The texts of these tests have nothing to format.
INSTANTIATE_TEST_SUITE_P(
    Text, EveryPrinter,
    testing::Values(Printer{"Line", [](const char* text) { glPrintText(100, 50, 8, false, text, 0); }},
                    Printer{"CentredLine", [](const char* text) { glPrintText(100, 50, 8, true, text, 0); }},
                    Printer{"Box", [](const char* text) { glPrintTextBox(100, 50, 8, 20, text, 0); }}),
    [](const auto& test) { return test.param.name; });

// ---- A box ----

class TextBoxTest : public TextTest {
  protected:
    /// Returns the lines of a text in a box of that width, size 10, at (20, 400).
    static std::vector<PrintedLine> Box(int width, const std::string& text) {
        fakes::gl().primitives.clear();
        glPrintTextBox(20, 400, 10, width, "%s", text.c_str());
        return PrintedText();
    }
};

TEST_F(TextBoxTest, OfWidth10Shows25CharactersInLinesOf11And10And4) {
    EXPECT_EQ(Words(Box(10, "abcdefghijklmnopqrstuvwxy")),
              (std::vector<std::string>{"abcdefghijk", "lmnopqrstu", "vwxy"}));
}

TEST_F(TextBoxTest, EveryLineStartsBelowTheFirst) {
    const std::vector<PrintedLine> lines = Box(10, "abcdefghijklmnopqrstuvwxyzabcdefghijklmn");

    ASSERT_EQ(lines.size(), 4U);
    for (std::size_t i = 0; i < lines.size(); ++i) {
        EXPECT_NEAR(lines[i].x, 20, 1e-3) << "line " << i;
        EXPECT_NEAR(lines[i].y, 400 - 20.5 * static_cast<double>(i), 1e-3) << "line " << i;
        EXPECT_NEAR(lines[i].size, 10, 1e-3) << "line " << i;
        EXPECT_EQ(lines[i].goes_on, i > 0) << "line " << i;
    }
}

TEST_F(TextBoxTest, MakesOneTextOfAllItsLines) {
    glPrintTextBox(100, 50, 8, 1, "abc");

    EXPECT_EQ(fakes::Lines(), fakes::Joined({Entering("8"), Drawing("100", "50"), Drawing("108.2", "50"),
                                             Drawing("100", "33.6"), Leaving()}));
}

TEST_F(TextBoxTest, ThatIsWideEnoughIsALine) {
    const std::vector<PrintedLine> lines = Box(30, "una frase");

    EXPECT_EQ(Words(lines), (std::vector<std::string>{"una frase"}));
    EXPECT_NEAR(lines.at(0).x, 20, 1e-3);
    EXPECT_NEAR(lines.at(0).y, 400, 1e-3);
}

TEST_F(TextBoxTest, HoldsOneCharacterMoreThanItsWidthInTheFirstLine) {
    EXPECT_EQ(Words(Box(5, "abcdef")), (std::vector<std::string>{"abcdef"}));
    EXPECT_EQ(Words(Box(5, "abcdefg")), (std::vector<std::string>{"abcdef", "g"}));
    EXPECT_EQ(Words(Box(5, "abcdefghijk")), (std::vector<std::string>{"abcdef", "ghijk"}));
    EXPECT_EQ(Words(Box(5, "abcdefghijkl")), (std::vector<std::string>{"abcdef", "ghijk", "l"}));
}

TEST_F(TextBoxTest, OfWidth0OrLessShowsOneCharacterALine) {
    for (const int width : {0, -1, -10}) {
        EXPECT_EQ(Words(Box(width, "abc")), (std::vector<std::string>{"a", "b", "c"})) << width;
    }
}

TEST_F(TextBoxTest, SplitsWordsAndKeepsBlanksWhereverTheyFall) {
    EXPECT_EQ(Words(Box(4, "uno due  tre")), (std::vector<std::string>{"uno d", "ue  ", "tre"}));
    EXPECT_EQ(Words(Box(4, "unoxx due")), (std::vector<std::string>{"unoxx", " due"}));
}

TEST_F(TextBoxTest, DoesNotBreakItsLineAtANewline) {
    EXPECT_EQ(Words(Box(10, "uno\ndue")), (std::vector<std::string>{"uno due"}));
}

TEST_F(TextBoxTest, IsFormattedAsPrintfDoes) {
    glPrintTextBox(20, 400, 10, 40, "%d volte %s", 3, "ciao");

    EXPECT_EQ(Words(PrintedText()), (std::vector<std::string>{"3 volte ciao"}));
}

TEST_F(TextBoxTest, OfTheSameTextAndWidthEnoughMakesTheCallsOfALine) {
    glPrintText(100, 50, 8, false, "Hi");
    const std::vector<std::string> line = fakes::Lines();
    fakes::ClearLog();

    glPrintTextBox(100, 50, 8, 10, "Hi");

    EXPECT_EQ(fakes::Lines(), line);
}

TEST_F(TextBoxTest, Of511CharactersIsWhole) {
    const std::vector<PrintedLine> lines = Box(600, std::string(511, 'x'));

    EXPECT_EQ(Words(lines), (std::vector<std::string>{std::string(511, 'x')}));
}

TEST_F(TextBoxTest, WithALongerTextIsCutAfter511Characters) {
    for (const std::size_t length : {512U, 513U, 5000U}) {
        Box(600, std::string(511, 'x') + std::string(length - 511, 'y'));

        EXPECT_EQ(fakes::gl().primitives.size(), 511U) << length;
        EXPECT_EQ(Words(PrintedText()), (std::vector<std::string>{std::string(511, 'x')})) << length;
    }
}

// ---- The reader itself ----

TEST_F(TextTest, TwoTextsSideBySideReadAsTwo) {
    glPrintText(10, 20, 10, false, "uno");
    glPrintText(10 + 3 * 10.25F, 20, 10, false, "due");

    const std::vector<PrintedLine> lines = PrintedText();
    EXPECT_EQ(Words(lines), (std::vector<std::string>{"uno", "due"}));
    EXPECT_FALSE(lines.at(1).goes_on);
}

// ---- The toolkit's own font ----

TEST_F(TextTest, TheToolkitsFontIsDrawnInTheProjectionsSpaceWithoutADepthTest) {
    std::string text = "Ulm";

    glPrint(3, 4, text.data());

    EXPECT_EQ(fakes::Lines(),
              (std::vector<std::string>{"glDisable(GL_DEPTH_TEST)", "glPushMatrix()", "glLoadIdentity()",
                                        "glRasterPos3f(3, 4, -10)", "glutBitmapCharacter(85)",
                                        "glutBitmapCharacter(108)", "glutBitmapCharacter(109)",
                                        "glPopMatrix()", "glEnable(GL_DEPTH_TEST)"}));
    ASSERT_EQ(fakes::glut().bitmap_characters.size(), 3U);
    for (const fakes::BitmapCharacter& drawn : fakes::glut().bitmap_characters) {
        EXPECT_EQ(drawn.font, GLUT_BITMAP_TIMES_ROMAN_24);
    }
}

TEST_F(TextTest, TheToolkitsFontIsAskedForBytesAbove127AsTheyAre) {
    std::string text = "\xe8";

    glPrint(3, 4, text.data());

    EXPECT_EQ(fakes::Lines({"glutBitmapCharacter"}), (std::vector<std::string>{"glutBitmapCharacter(232)"}));
}

TEST_F(TextTest, TheToolkitsFontDrawsNothingForAnEmptyText) {
    std::string text;

    glPrint(3, 4, text.data());

    EXPECT_EQ(fakes::Lines(), (std::vector<std::string>{"glDisable(GL_DEPTH_TEST)", "glPushMatrix()",
                                                        "glLoadIdentity()", "glRasterPos3f(3, 4, -10)",
                                                        "glPopMatrix()", "glEnable(GL_DEPTH_TEST)"}));
}

}  // namespace
