// SPDX-FileCopyrightText: 2026 The Ulmaro Assistant developers
// SPDX-License-Identifier: MIT

// A folder full of raw texture files, for tests that load the program's pictures.
//
// Every file gets a size and bytes of its own, so that a test can tell from a texture which file it came
// from. The program looks its files up in the current directory, so the folder is the current directory while
// it exists.
#pragma once

#include <cstddef>
#include <cstdint>
#include <fstream>
#include <string>
#include <vector>

#include "app/owl.h"
#include "app/state.h"
#include "app/textures.h"
#include "tests/unit/temporary_folder.h"

/// A picture file and the global that receives its texture.
struct Picture {
    const char* file;
    unsigned int* name;
};

/// Every picture of the program, in loading order. A list of its own on purpose, beside the program's table
/// and the manifest in assets/data_files.txt: it is what the table is tested against.
inline const std::vector<Picture>& Pictures() {
    static const std::vector<Picture> pictures = {
        {"font", &font},
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
        {"check", &button_check},
        {"arrow_up", &button_arrow_u},
        {"arrow_down", &button_arrow_d},
        {"ic1", &icns[kPlanIcon]},
        {"ic2", &icns[kSpareIcon]},
        {"ic3", &icns[kInteractIcon]},
        {"ic4", &icns[kSoundOnIcon]},
        {"ic5", &icns[kSoundOffIcon]},
        {"ic6", &icns[kOfferIcon]},
        {"ic7", &icns[kNoticeIcon]},
        {"ic8", &icns[kBrowserIcon]},
        {"ic9", &icns[kWebSiteIcon]},
        {"GUI_01", &GUI[kListScreen]},
        {"GUI_02", &GUI[kEditorScreen]},
        {"GUI_03", &GUI[kQuizScreen]},
        {"notify", &notify_circle},
    };
    return pictures;
}

/// A temporary folder, the current directory meanwhile, with a whole set of pictures.
class PictureFolder : public TemporaryFolder {
  public:
    /// The width of the nth file (from 0) is n + 1, and every byte of it is n + 1. The height is the same for
    /// all, so that two folders can be told apart.
    explicit PictureFolder(std::uint32_t height = 2) {
        std::uint32_t number = 1;
        for (const Picture& picture : Pictures()) {
            Write(picture.file, number, height,
                  std::vector<std::uint8_t>(std::size_t{number} * height * 4, Byte(number)));
            ++number;
        }
    }

    /// Writes a raw texture file whose header and bytes need not belong together.
    static void Write(const std::string& file, std::uint32_t width, std::uint32_t height,
                      const std::vector<std::uint8_t>& pixels) {
        std::vector<std::uint8_t> bytes;
        for (const std::uint32_t size : {width, height}) {
            for (int shift = 0; shift < 32; shift += 8) bytes.push_back(Byte(size >> shift));
        }
        bytes.insert(bytes.end(), pixels.begin(), pixels.end());
        WriteBytes(file, bytes);
    }

    /// Writes any file.
    static void WriteBytes(const std::string& file, const std::vector<std::uint8_t>& bytes) {
        std::ofstream out(file, std::ios::binary | std::ios::trunc);
        for (const std::uint8_t byte : bytes) out.put(static_cast<char>(byte));
    }

  private:
    static std::uint8_t Byte(std::uint32_t number) { return static_cast<std::uint8_t>(number & 0xFFU); }
};
