// SPDX-FileCopyrightText: 2026 The Ulmaro Assistant developers
// SPDX-License-Identifier: MIT

#include "app/textures.h"

#include <GL/gl.h>
#include <sys/stat.h>

#include <array>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <new>
#include <vector>

#include "app/desktop.h"
#include "app/state.h"
#include "engine/file.h"

unsigned int background, tree, eye_l, eye_r, hat, cloud, circle;
unsigned int owl[kPoses];
unsigned int owl_ce[kPoses];
unsigned int font;
unsigned int button[kCheckBoxes];
unsigned int button_close, button_add, button_trash, button_check, button_arrow_u, button_arrow_d;
unsigned int icns[kIcons];
unsigned int GUI[kPanelScreens];
unsigned int notify_circle;

namespace {

/// Whether texture coordinates beyond the edge repeat the picture (GL's default) or stay at its edge.
enum class Wrap { kRepeat, kClamp };

struct RawTexture {
    const char* file;
    unsigned int* name;
    Wrap wrap = Wrap::kRepeat;
};

/// How the files of the numbered icons are called; they count from 1.
constexpr char kIconFile[] = "ic%d";

/// The pictures in loading order: what the program asks for. Deliberate: a list of its own beside the
/// manifest, assets/data_files.txt, which says what is baked. A row whose file is kIconFile stands for all of
/// icns.
constexpr RawTexture kTextures[] = {
    {"font", &font, Wrap::kClamp},
    {"background", &background},
    {"eye_left", &eye_l},
    {"eye_right", &eye_r},
    {"hat", &hat},
    {"sleep", &owl[kSleeping]},
    {"sleep_close_eyes", &owl_ce[kSleeping]},
    {"stand_01", &owl[kStanding]},
    {"stand_01_close_eyes", &owl_ce[kStanding]},
    {"stand_02", &owl[kPerching]},
    {"stand_02_close_eyes", &owl_ce[kPerching]},
    {"tree", &tree},
    {"cloud", &cloud},
    {"circle", &circle},
    {"button_uncheck", &button[kUnchecked]},
    {"button_check", &button[kChecked]},
    {"close", &button_close},
    {"add", &button_add},
    {"trash", &button_trash},
    {"check", &button_check},  // not "button_check": that file is the checked box
    {"arrow_up", &button_arrow_u},
    {"arrow_down", &button_arrow_d},
    {kIconFile, icns},
    {"GUI_01", &GUI[kListScreen]},
    {"GUI_02", &GUI[kEditorScreen]},
    {"GUI_03", &GUI[kQuizScreen]},
    {"notify", &notify_circle},
};

constexpr std::uint64_t kHeaderBytes = 8;
constexpr std::uint64_t kPixelBytes = 4;

struct RawImage {
    std::uint32_t width = 0;
    std::uint32_t height = 0;
    std::vector<std::uint8_t> pixels;
};

/// Reads the file's bytes after checking its sizes against its length. Bytes behind the pixels are not looked
/// at. Returns null, or the reason why it is not a picture.
const char* ReadPixels(std::FILE* file, std::uint64_t length, RawImage& image) {
    if (std::fread(&image.width, sizeof image.width, 1, file) != 1) return "il file e' troncato";
    if (std::fread(&image.height, sizeof image.height, 1, file) != 1) return "il file e' troncato";

    GLint largest = 0;
    glGetIntegerv(GL_MAX_TEXTURE_SIZE, &largest);
    const auto limit = static_cast<std::uint32_t>(largest);
    if (image.width == 0 || image.height == 0) return "le sue dimensioni sono zero";
    if (image.width > limit || image.height > limit) return "le sue dimensioni sono troppo grandi";

    const std::uint64_t bytes = std::uint64_t{image.width} * image.height * kPixelBytes;
    if (length < kHeaderBytes + bytes) return "il file e' troncato";
    image.pixels.resize(bytes);
    if (std::fread(image.pixels.data(), 1, bytes, file) != bytes) return "il file non si riesce a leggere";
    return nullptr;
}

/// Reads a raw texture file. Returns null, or the reason why it cannot be used.
const char* ReadRawImage(const char* path, RawImage& image) try {
    struct stat status {};
    if (stat(path, &status) != 0) return "il file non c'e'";
    if (!S_ISREG(status.st_mode)) return "non e' un file";
    const File file(std::fopen(path, "rb"));
    if (file == nullptr) return "il file non si riesce ad aprire";
    return ReadPixels(file.get(), static_cast<std::uint64_t>(status.st_size), image);
} catch (const std::bad_alloc&) {
    return "la memoria non basta";
}

/// Makes a texture from a raw file; a picture that cannot be used leaves none. The image's memory serves the
/// next picture too.
void LoadRawTexture(const char* path, unsigned int& name, Wrap wrap, RawImage& image) {
    glGenTextures(1, &name);
    glBindTexture(GL_TEXTURE_2D, name);
    if (wrap == Wrap::kClamp) {
        glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_WRAP_S, GL_CLAMP);
        glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_WRAP_T, GL_CLAMP);
    }
    glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_MAG_FILTER, GL_LINEAR);
    glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_MIN_FILTER, GL_LINEAR);

    if (const char* reason = ReadRawImage(path, image)) {
        glDeleteTextures(1, &name);
        name = 0;
        std::fprintf(stderr, "Ulmaro Assistant: non riesco a usare l'immagine \"%s\": %s.\n", path, reason);
        std::exit(EXIT_FAILURE);
    }
    glTexImage2D(GL_TEXTURE_2D, 0, GL_RGBA, static_cast<GLsizei>(image.width),
                 static_cast<GLsizei>(image.height), 0, GL_RGBA, GL_UNSIGNED_BYTE, image.pixels.data());
}

void LoadIcons(RawImage& image) {
    int number = 1;
    for (unsigned int& icon : icns) {
        std::array<char, 128> path{};
        std::snprintf(path.data(), path.size(), kIconFile, number++);
        LoadRawTexture(path.data(), icon, Wrap::kRepeat, image);
    }
}

}  // namespace

void SetWindowClassAndIcon() {
    RawImage image;
    WindowIcon icon;
    if (ReadRawImage("window_icon", image) == nullptr) {
        icon = {static_cast<int>(image.width), static_cast<int>(image.height), image.pixels.data()};
    }
    SetWindowIdentity(kProgramName, icon);
}

void LoadTextures() {
    RawImage image;
    for (const RawTexture& texture : kTextures) {
        if (texture.file == kIconFile) {
            LoadIcons(image);
        } else {
            LoadRawTexture(texture.file, *texture.name, texture.wrap, image);
        }
    }
    GUI[kViewScreen] = GUI[kEditorScreen];
}
