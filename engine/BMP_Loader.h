// SPDX-FileCopyrightText: 2026 The Ulmaro Assistant developers
// SPDX-License-Identifier: MIT

// The reader of Windows bitmap files: 2, 16 and 256 colours and 24 bits, without compression.
//
// Pixels come out as plain RGB, ready for a texture, rows in the order of the file: the first is the bottom
// row of a normal bitmap. The padding at the end of a file's rows is not skipped, so an image whose rows have
// a length in bytes that is not a multiple of 4 comes out sheared; the engine's images have suitable widths.
// The program's own pictures are raw textures; this is for models and other users of the engine.
#pragma once

#include <string>

/// A decoded image.
class BMPClass {
  public:
    BMPClass() = default;
    ~BMPClass();
    BMPClass(const BMPClass&) = delete;
    BMPClass& operator=(const BMPClass&) = delete;

    /// Makes room for width x height pixels, all black, in place of what was there. Throws std::bad_alloc for
    /// a negative product of the two and where there is no memory; `bytes` is null then, and the sizes are
    /// kept. The room takes real memory only where it is written to.
    void allocateMem();

    /// Returns a byte of a pixel: c is 0 red, 1 green, 2 blue. Nothing is checked.
    unsigned char& pixel(int x, int y, int c);

    int width = 0;                   ///< pixels, as the file says
    int height = 0;                  ///< rows, as the file says
    unsigned char* bytes = nullptr;  ///< width x height x 3, no padding; owned
};

/// Reads a bitmap file into `image`. Returns 0 or the code of what is wrong (TranslateBMPError): where there
/// is no file or it is no bitmap, the image stays as it was; after any other code it has the file's sizes and
/// pixels of no use. What the file is too short for stays black; no more than width x height pixels are
/// written. An image of 16 colours is taken to be 256 x 256, which is meant. Throws as allocateMem() does,
/// with the file's sizes.
char BMPLoad(std::string path, BMPClass& image);

/// Reads a bitmap file and forgets it; returns the code alone.
char BMPLoad(std::string path);

/// Returns what a code of BMPLoad() means, in English.
std::string TranslateBMPError(char code);
