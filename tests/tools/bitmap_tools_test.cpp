// SPDX-FileCopyrightText: 2026 The Ulmaro Assistant developers
// SPDX-License-Identifier: MIT

// Bitmaps as another program writes them, ImageMagick's convert: they decode to the pixels that convert
// itself finds in them, and textures from them show these on a real GL.
#include <gtest/gtest.h>  // before X11, whose None and Bool it cannot live with

#include <GL/gl.h>
#include <GL/glx.h>
#include <X11/Xlib.h>
#include <fcntl.h>
#include <unistd.h>

#include <array>
#include <cstddef>
#include <cstdio>
#include <cstdlib>
#include <optional>
#include <ostream>
#include <string>
#include <utility>
#include <vector>

#include "engine/BMP_Loader.h"
#include "engine/texture.h"
#include "tests/desktop/process.h"
#include "tests/unit/temporary_folder.h"

namespace {

using desktop::Process;

/// Runs convert in the current folder.
void Convert(std::vector<std::string> words) {
    words.insert(words.begin(), "convert");
    desktop::Command command;
    command.words = std::move(words);
    command.error_file = "said";
    ASSERT_EQ(Process(command).WaitForEnd(60), 0) << ReadFile("said");
}

/// A bitmap that convert makes.
struct Picture {
    const char* name;
    int width, height;
    int bits;  ///< of the file that convert is expected to write
    std::vector<std::string> words;
};

std::ostream& operator<<(std::ostream& out, const Picture& picture) {
    return out << picture.name;
}

/// Writes "image.bmp" without compression and with the plain header of Windows 3.
void Write(const Picture& picture) {
    std::vector<std::string> words = {"-seed", "7", "-size",
                                      std::to_string(picture.width) + "x" + std::to_string(picture.height)};
    words.insert(words.end(), picture.words.begin(), picture.words.end());
    for (const char* word : {"-compress", "none", "BMP3:image.bmp"}) words.emplace_back(word);
    Convert(words);
    ASSERT_EQ(ReadFile("image.bmp").at(28), picture.bits) << "convert has written another depth";
}

/// Returns the pixels that convert finds in a bitmap, red first, the bottom row first.
std::string PixelsOf(const std::string& file) {
    Convert({file, "-flip", "-depth", "8", "rgb:pixels"});
    return ReadFile("pixels");
}

const std::vector<std::string> kNoise = {"xc:", "+noise", "Random", "-type", "TrueColor"};

const std::vector<std::string> kGrey = {"plasma:", "-colorspace", "Gray",  "+dither",
                                        "-colors", "256",         "-type", "Palette"};

const std::vector<Picture> kPictures = {
    {"Bits24", 64, 32, 24, kNoise},
    {"Bits24Wide", 1024, 3, 24, kNoise},
    {"Bits8", 64, 32, 8, {"plasma:", "+dither", "-colors", "256", "-type", "Palette"}},
    {"Bits8Grey", 32, 64, 8, kGrey},
    {"Bits8FewColours", 64, 64, 8, {"plasma:", "+dither", "-colors", "40", "-type", "Palette"}},
    {"Bits4", 256, 256, 4, {"plasma:", "+dither", "-colors", "16", "-type", "Palette"}},
    {"Bits1", 64, 32, 1, {"xc:", "+noise", "Random", "-threshold", "50%", "-type", "Bilevel"}},
    {"Bits1OfTwoColours",
     32,
     16,
     1,
     {"pattern:checkerboard", "-threshold", "50%", "+level-colors", "red,rgb(10,200,90)", "-type",
      "Palette"}},
};

class RealBitmaps : public testing::TestWithParam<Picture> {
    TemporaryFolder folder_;
};

TEST_P(RealBitmaps, DecodeToThePixelsThatConvertFinds) {
    const Picture& picture = GetParam();
    ASSERT_NO_FATAL_FAILURE(Write(picture));
    const std::string pixels = PixelsOf("image.bmp");
    BMPClass image;

    ASSERT_EQ(BMPLoad("image.bmp", image), 0);

    ASSERT_EQ(image.width, picture.width);
    ASSERT_EQ(image.height, picture.height);
    const std::size_t count = 3 * static_cast<std::size_t>(picture.width * picture.height);
    ASSERT_EQ(pixels.size(), count);
    EXPECT_NE(pixels, std::string(count, pixels[0])) << "the picture is a plain area";
    EXPECT_TRUE(pixels == std::string(reinterpret_cast<const char*>(image.bytes), count));
}

INSTANTIATE_TEST_SUITE_P(Depths, RealBitmaps, testing::ValuesIn(kPictures),
                         [](const auto& test) { return test.param.name; });

// ---- On a real GL ----

/// An X server of its own, and a window on it with a context that is current.
class RealGl {
  public:
    static constexpr int kEdge = 256;

    RealGl() {
        StartServer();
        setenv("LIBGL_ALWAYS_SOFTWARE", "1", 1);
        display_ = XOpenDisplay(name_.c_str());
        if (display_ == nullptr) desktop::Fail("cannot connect to the X server " + name_);
        int wanted[] = {GLX_RGBA, GLX_DOUBLEBUFFER, GLX_RED_SIZE, 8, GLX_GREEN_SIZE, 8, GLX_BLUE_SIZE, 8,
                        None};
        XVisualInfo* visual = glXChooseVisual(display_, DefaultScreen(display_), wanted);
        if (visual == nullptr) desktop::Fail("the X server has no visual for GL");
        XSetWindowAttributes attributes = {};
        attributes.colormap =
            XCreateColormap(display_, DefaultRootWindow(display_), visual->visual, AllocNone);
        window_ = XCreateWindow(display_, DefaultRootWindow(display_), 0, 0, kEdge, kEdge, 0, visual->depth,
                                InputOutput, visual->visual, CWColormap, &attributes);
        XMapWindow(display_, window_);
        context_ = glXCreateContext(display_, visual, nullptr, True);
        XFree(visual);
        if (glXMakeCurrent(display_, window_, context_) == False) desktop::Fail("there is no context");
    }
    ~RealGl() {
        glXMakeCurrent(display_, None, nullptr);
        glXDestroyContext(display_, context_);
        XCloseDisplay(display_);
    }
    RealGl(const RealGl&) = delete;
    RealGl& operator=(const RealGl&) = delete;

    /// Draws the bound texture over `width` x `height` pixels of a green window and returns these, red first,
    /// the bottom row first.
    static std::string Draw(int width, int height) {
        glViewport(0, 0, width, height);
        glClearColor(0, 1, 0, 1);
        glClear(GL_COLOR_BUFFER_BIT);
        glEnable(GL_TEXTURE_2D);
        glTexEnvi(GL_TEXTURE_ENV, GL_TEXTURE_ENV_MODE, GL_REPLACE);
        glBegin(GL_QUADS);
        for (const auto& [x, y] : {std::array{0, 0}, {1, 0}, {1, 1}, {0, 1}}) {
            glTexCoord2i(x, y);
            glVertex2i(2 * x - 1, 2 * y - 1);
        }
        glEnd();
        std::string pixels(3 * static_cast<std::size_t>(width * height), '\0');
        glPixelStorei(GL_PACK_ALIGNMENT, 1);
        glReadPixels(0, 0, width, height, GL_RGB, GL_UNSIGNED_BYTE, pixels.data());
        EXPECT_EQ(glGetError(), static_cast<GLenum>(GL_NO_ERROR));
        return pixels;
    }

  private:
    void StartServer() {
        int ready[2];
        if (pipe2(ready, O_CLOEXEC) != 0) desktop::Fail("cannot make a pipe");
        desktop::Command command;
        command.words = {"Xvfb",      "-displayfd", std::to_string(ready[1]), "-screen", "0", "640x480x24",
                         "-nolisten", "tcp"};
        command.inherited_pipe = ready[1];
        server_.emplace(command);
        close(ready[1]);
        name_ = ":";
        for (char digit = 0; read(ready[0], &digit, 1) == 1 && digit != '\n';) name_ += digit;
        close(ready[0]);
        if (name_ == ":") desktop::Fail("no X server");
    }

    std::optional<Process> server_;
    std::string name_;
    Display* display_ = nullptr;
    Window window_ = None;
    GLXContext context_ = nullptr;
};

class RealTextures : public testing::Test {
    TemporaryFolder folder_;

  protected:
    RealGl gl_;
};

TEST_F(RealTextures, AnOpaqueTextureShowsTheBitmapsPixels) {
    for (const Picture& picture : kPictures) {
        if (picture.width > RealGl::kEdge) continue;
        ASSERT_NO_FATAL_FAILURE(Write(picture));
        for (const bool mipmaps : {false, true}) {
            unsigned int texture = 0;
            ASSERT_TRUE(LoadTexture(&texture, "image.bmp", mipmaps)) << picture;
            EXPECT_TRUE(glIsTexture(texture)) << picture;
            EXPECT_TRUE(RealGl::Draw(picture.width, picture.height) == PixelsOf("image.bmp")) << picture;
        }
    }
}

TEST_F(RealTextures, AnOpaqueTextureHasAllItsLevelsEvenIfTheyAreNotUsed) {
    ASSERT_NO_FATAL_FAILURE(Write(kPictures[0]));  // 64 x 32
    unsigned int texture = 0;

    ASSERT_TRUE(LoadTexture(&texture, "image.bmp", false));

    for (int level = 0; level <= 7; ++level) {
        GLint width = -1;
        glGetTexLevelParameteriv(GL_TEXTURE_2D, level, GL_TEXTURE_WIDTH, &width);
        EXPECT_EQ(width, level <= 6 ? 64 >> level : 0) << level;
    }
}

TEST_F(RealTextures, ATextureWithAlphaLetsTheWindowThrough) {
    ASSERT_NO_FATAL_FAILURE(Write({"alpha", 64, 32, 8, kGrey}));
    const std::string alphas = PixelsOf("image.bmp");
    ASSERT_EQ(rename("image.bmp", "alpha.bmp"), 0);
    ASSERT_NO_FATAL_FAILURE(Write(kPictures[0]));
    const std::string colours = PixelsOf("image.bmp");
    unsigned int texture = 0;

    ASSERT_TRUE(LoadTextureAlpha(&texture, "image.bmp", "alpha.bmp"));
    const std::string plain = RealGl::Draw(64, 32);
    glEnable(GL_BLEND);
    glBlendFunc(GL_SRC_ALPHA, GL_ONE_MINUS_SRC_ALPHA);
    const std::string blended = RealGl::Draw(64, 32);

    EXPECT_TRUE(plain == colours);
    constexpr int kGreen[] = {0, 255, 0};
    for (std::size_t i = 0; i < colours.size(); ++i) {
        const double alpha = static_cast<unsigned char>(alphas[i / 3 * 3]) / 255.0;
        const double mixed = alpha * static_cast<unsigned char>(colours[i]) + (1 - alpha) * kGreen[i % 3];
        ASSERT_NEAR(static_cast<unsigned char>(blended[i]), mixed, 1.5) << "byte " << i;
    }
}

}  // namespace
