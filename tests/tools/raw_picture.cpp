// SPDX-FileCopyrightText: 2026 The Ulmaro Assistant developers
// SPDX-License-Identifier: MIT

#include "tests/tools/raw_picture.h"

#include <fstream>
#include <iterator>

namespace {

std::uint32_t LittleEndian(const std::vector<std::uint8_t>& bytes, std::size_t at) {
    std::uint32_t value = 0;
    for (std::size_t i = 0; i < 4; ++i) value |= std::uint32_t{bytes[at + i]} << (8 * i);
    return value;
}

}  // namespace

RawPicture ReadRawPicture(const std::string& path) {
    std::ifstream in(path, std::ios::binary);
    const std::vector<std::uint8_t> bytes{std::istreambuf_iterator<char>(in), {}};
    RawPicture picture;
    picture.bytes = bytes.size();
    if (bytes.size() < 8) return picture;
    picture.width = LittleEndian(bytes, 0);
    picture.height = LittleEndian(bytes, 4);
    if (!picture.Whole()) return picture;
    for (std::size_t i = 8; i < bytes.size(); i += 4) {
        picture.texels.push_back({bytes[i], bytes[i + 1], bytes[i + 2], bytes[i + 3]});
    }
    return picture;
}
