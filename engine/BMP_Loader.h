// SPDX-FileCopyrightText: 2026 The Ulmaro Assistant developers
// SPDX-License-Identifier: MIT

// The reader of Windows bitmap files: 2, 16 and 256 colours and 24 bits, without compression.
//
// Pixels come out as plain RGB, ready for a texture. Rows keep the order of the file, so the first is the
// bottom row of a normal bitmap. The file's layout:
//   https://learn.microsoft.com/en-us/windows/win32/gdi/bitmap-storage
//   https://learn.microsoft.com/en-us/windows/win32/api/wingdi/ns-wingdi-bitmapfileheader
//   https://learn.microsoft.com/en-us/windows/win32/api/wingdi/ns-wingdi-bitmapinfoheader
//
// Deliberate: padding bytes at the end of a file's rows are read as pixels, which shears the image.
// Deliberate: an image of 16 colours is taken to be 256 x 256, whatever its header says.
#pragma once

#include <string>

/// A decoded image.
class BMPClass {
  public:
    BMPClass() = default;
    ~BMPClass();
    BMPClass(const BMPClass&) = delete;
    BMPClass& operator=(const BMPClass&) = delete;

    /// Replaces the pixels by width x height black ones. Throws std::bad_alloc if that product is negative or
    /// there is no memory; `bytes` is null then, and the sizes are kept. The zeroed pages cost memory only
    /// once they are written to.
    void allocateMem();

    /// Returns a byte of a pixel: c is 0 red, 1 green, 2 blue. Nothing is checked.
    unsigned char& pixel(int x, int y, int c);

    int width = 0;                   ///< pixels, as the file says
    int height = 0;                  ///< rows, as the file says
    unsigned char* bytes = nullptr;  ///< width x height x 3, no padding; owned
};

/// Reads a bitmap file into `image`. Returns 0 or the code of an error (TranslateBMPError). After 'o' (no
/// file) and 'b' (no bitmap) the image is unchanged; after other errors it has the file's sizes, and its
/// pixels are of no use. Pixels that are missing from the file stay black; never more than width x height are
/// written. Throws as allocateMem() does; the image has the file's sizes then.
char BMPLoad(std::string path, BMPClass& image);

/// Reads a bitmap file, discards the image and returns the code alone.
char BMPLoad(std::string path);

/// Returns what a code of BMPLoad() means, in English.
std::string TranslateBMPError(char code);
