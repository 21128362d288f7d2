// SPDX-FileCopyrightText: 2026 The Ulmaro Assistant developers
// SPDX-License-Identifier: MIT

// Textures from bitmap files.
//
// Both functions make a new texture, write its name to `texture` and leave it bound. They return false, make
// none and leave `texture` alone where a bitmap cannot be loaded (BMP_Loader.h) or there is no memory for it,
// and for the sizes named below. Below those limits a texture takes the memory of the sizes in the file's
// header, however short the file is.
#pragma once

/// Makes an opaque texture with all its mipmaps; `mipmap_filter` says whether they are used. Texels are not
/// smoothed. Returns false for an image of more than 2^31 - 1 bytes, at 3 bytes a pixel. An image of no
/// pixels, or of two negative sizes, makes a texture without a picture.
bool LoadTexture(unsigned int* texture, const char* file, bool mipmap_filter);

/// Makes a texture of the colours of one bitmap, with the red of another as alpha. Smoothed, without mipmaps.
/// Pixels are matched by their order in the file, also if the two widths differ. Returns false where the
/// second has fewer pixels than the first, and where a size of the first is negative or more than GL takes.
bool LoadTextureAlpha(unsigned int* texture, const char* color_file, const char* alpha_file);
