// SPDX-FileCopyrightText: 2026 The Ulmaro Assistant developers
// SPDX-License-Identifier: MIT

#include "tests/tools/raw_picture.h"

#include <cstring>
#include <fstream>

namespace {

/// Returns a file's bytes; none where it cannot be read. All at once: the pictures are megabytes.
std::vector<std::uint8_t> BytesOf(const std::string& path) {
    std::ifstream in(path, std::ios::binary | std::ios::ate);
    if (!in) return {};
    std::vector<std::uint8_t> bytes(static_cast<std::size_t>(in.tellg()));
    in.seekg(0);
    in.read(reinterpret_cast<char*>(bytes.data()), static_cast<std::streamsize>(bytes.size()));
    return bytes;
}

std::uint32_t LittleEndian(const std::vector<std::uint8_t>& bytes, std::size_t at) {
    std::uint32_t value = 0;
    for (std::size_t i = 0; i < 4; ++i) value |= std::uint32_t{bytes[at + i]} << (8 * i);
    return value;
}

}  // namespace

RawPicture ReadRawPicture(const std::string& path) {
    const std::vector<std::uint8_t> bytes = BytesOf(path);
    RawPicture picture;
    picture.bytes = bytes.size();
    if (bytes.size() < 8) return picture;
    picture.width = LittleEndian(bytes, 0);
    picture.height = LittleEndian(bytes, 4);
    if (!picture.Whole()) return picture;
    static_assert(sizeof(Texel) == 4);
    picture.texels.resize((bytes.size() - 8) / sizeof(Texel));
    std::memcpy(picture.texels.data(), bytes.data() + 8, bytes.size() - 8);
    return picture;
}
