// SPDX-FileCopyrightText: 2026 The Ulmaro Assistant developers
// SPDX-License-Identifier: MIT

// Any bytes as a raw picture: the input is the file "font", the first that is loaded; the others are good.
// What becomes of it, or the line with which the program would end, is compared with what a second look at
// the bytes finds.
#include <GL/gl.h>

#include <csetjmp>
#include <cstdarg>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <string_view>
#include <vector>

#include "app/desktop.h"
#include "app/textures.h"
#include "fuzz/fuzzer.h"
#include "tests/unit/picture_folder.h"

// ---- Surviving the reader ----
//
// The end of the program is a jump back to the input (wav_fuzzer.cpp tells why), and its last words are kept.

namespace {

std::jmp_buf back;
bool reading = false;
int ended_with = 0;  ///< the status; 0 while the reader goes on
std::string said;

// What GL was handed.
constexpr GLint kLargest = 1024;
unsigned int made = 0;
unsigned int deleted = 0;
unsigned int uploads = 0;
GLsizei uploaded_width = 0;
GLsizei uploaded_height = 0;
std::string uploaded;

}  // namespace

/// Stands before the C library's: jumps out of the reader. Whoever else calls it ends the fuzzer as usual.
extern "C" void exit(int status) noexcept {
    if (!reading) fuzz::EndAsUsual(status);
    ended_with = status;
    std::longjmp(back, 1);
}

namespace {

/// Keeps what the reader says, and prints what others do.
int Print(std::FILE* file, const char* format, std::va_list arguments) {
    if (!reading || file != stderr) return std::vfprintf(file, format, arguments);
    char line[512] = "";
    const int length = std::vsnprintf(line, sizeof line, format, arguments);
    said += line;
    return length;
}

}  // namespace

/// Stands before the C library's. Serves libFuzzer, too.
// The parameters have other names than the C library's.
// NOLINTNEXTLINE(readability-inconsistent-declaration-parameter-name)
extern "C" int fprintf(std::FILE* file, const char* format, ...) {
    std::va_list arguments;
    va_start(arguments, format);
    const int length = Print(file, format, arguments);
    va_end(arguments);
    return length;
}

/// What fprintf() becomes in a build with _FORTIFY_SOURCE.
// NOLINTNEXTLINE(bugprone-reserved-identifier,readability-identifier-naming)
extern "C" int __fprintf_chk(std::FILE* file, int /*flag*/, const char* format, ...) {
    std::va_list arguments;
    va_start(arguments, format);
    const int length = Print(file, format, arguments);
    va_end(arguments);
    return length;
}

/// Stands for the desktop's, which the fuzzer has none of.
void SetWindowIdentity(const char* /*name*/, const WindowIcon& /*icon*/) {}

// ---- The GL of the fuzzer ----

extern "C" {

void glGenTextures(GLsizei /*n*/, GLuint* textures) {
    *textures = ++made;
}
void glDeleteTextures(GLsizei n, const GLuint* textures) {
    fuzz::Check(n == 1 && *textures == made, "the texture deleted is the one just made");
    ++deleted;
}
void glBindTexture(GLenum /*target*/, GLuint /*texture*/) {}
void glTexParameteri(GLenum /*target*/, GLenum /*name*/, GLint /*value*/) {}
void glGetIntegerv(GLenum what, GLint* number) {
    if (what == GL_MAX_TEXTURE_SIZE) *number = kLargest;
}
void glTexImage2D(GLenum /*target*/, GLint /*level*/, GLint /*internal_format*/, GLsizei width,
                  GLsizei height, GLint /*border*/, GLenum /*format*/, GLenum /*type*/, const void* texels) {
    fuzz::Check(width > 0 && height > 0 && width <= kLargest && height <= kLargest, "GL takes the size");
    if (++uploads != 1) return;
    uploaded_width = width;
    uploaded_height = height;
    uploaded.assign(static_cast<const char*>(texels),
                    std::size_t{4} * static_cast<std::size_t>(width) * static_cast<std::size_t>(height));
}

}  // extern "C"

namespace {

using fuzz::Check;

constexpr char kFile[] = "font";

/// Writes a good picture of every name, once.
void WriteGoodPictures() {
    static bool written = false;
    if (written) return;
    constexpr char kPicture[] = "\1\0\0\0\1\0\0\0rgb";  // with the closing 0 for alpha
    for (const ::Picture& picture : Pictures()) fuzz::WriteFile(picture.file, kPicture, sizeof kPicture);
    written = true;
}

/// Loads the pictures, up to the first that cannot be used.
void Load() {
    made = deleted = uploads = 0;
    ended_with = 0;
    said.clear();
    font = 0;
    reading = true;
    if (setjmp(back) == 0) LoadTextures();
    reading = false;
}

// ---- What it has to do ----

/// Returns one of the two numbers that a file begins with.
std::uint64_t Size(std::string_view file, std::size_t which) {
    std::uint64_t number = 0;
    for (std::size_t i = 0; i < 4; ++i) {
        number |= std::uint64_t{static_cast<unsigned char>(file[4 * which + i])} << (8 * i);
    }
    return number;
}

/// Returns what is wrong with a file, as the reader puts it; nothing where it is a picture.
std::string Fault(std::string_view file) {
    if (file.size() < 8) return "il file e' troncato";
    const std::uint64_t width = Size(file, 0);
    const std::uint64_t height = Size(file, 1);
    if (width == 0 || height == 0) return "le sue dimensioni sono zero";
    if (width > kLargest || height > kLargest) return "le sue dimensioni sono troppo grandi";
    const std::uint64_t whole = 8 + 4 * width * height;
    if (file.size() < whole) return "il file e' troncato";
    return "";
}

std::string LastWords(const std::string& fault) {
    return std::string("Ulmaro Assistant: non riesco a usare l'immagine \"") + kFile + "\": " + fault + ".\n";
}

void CheckLoaded(std::string_view file) {
    Check(ended_with == 0 && said.empty(), "a picture is taken without a word");
    const auto all = static_cast<unsigned int>(Pictures().size());
    Check(made == all && uploads == all && deleted == 0, "all pictures are loaded");
    Check(font == 1, "a picture's texture is kept under its name");
    Check(static_cast<std::uint64_t>(uploaded_width) == Size(file, 0) &&
              static_cast<std::uint64_t>(uploaded_height) == Size(file, 1),
          "the sizes are the file's");
    Check(uploaded == file.substr(8, 4 * Size(file, 0) * Size(file, 1)), "the texels are the file's");
}

void CheckRefused(const std::string& fault) {
    Check(ended_with == EXIT_FAILURE, "the program ends with status 1");
    Check(said == LastWords(fault), "the line says what is wrong first");
    Check(made == 1 && deleted == 1 && font == 0 && uploads == 0, "no texture is left of what is no picture");
}

// ---- Seeds ----

std::string RawPicture(std::uint32_t width, std::uint32_t height, std::size_t bytes) {
    std::string file;
    for (const std::uint32_t size : {width, height}) {
        for (unsigned i = 0; i < 4; ++i) file += static_cast<char>(size >> (8 * i));
    }
    for (std::size_t i = 0; i < bytes; ++i) file += static_cast<char>(i * 7 + 1);
    return file;
}

}  // namespace

std::vector<std::string> fuzz::Seeds() {
    return {
        "",
        "abc",
        RawPicture(1, 1, 4),
        RawPicture(2, 1, 8).substr(0, 7),
        RawPicture(3, 5, 60),
        RawPicture(3, 5, 59),
        RawPicture(3, 5, 61),
        RawPicture(3, 5, 6000),
        RawPicture(0, 5, 0),
        RawPicture(5, 0, 0),
        RawPicture(1, 1024, 4096),
        RawPicture(1, 1025, 4100),
        RawPicture(1025, 1, 4100),
        RawPicture(16, 16, 1024),
        RawPicture(1024, 1024, 10),
        RawPicture(0x8000, 0x8000, 0),
        RawPicture(0x80000000, 1, 4),
        RawPicture(0xFFFFFFFF, 0xFFFFFFFF, 4),
    };
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const fuzz::InOwnFolder here;
    const std::string_view file(reinterpret_cast<const char*>(data), size);
    WriteGoodPictures();
    fuzz::WriteFile(kFile, data, size);

    Load();
    const std::string fault = Fault(file);
    if (fault.empty())
        CheckLoaded(file);
    else
        CheckRefused(fault);
    return 0;
}
