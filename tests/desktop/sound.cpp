// SPDX-FileCopyrightText: 2026 The Ulmaro Assistant developers
// SPDX-License-Identifier: MIT

#include "tests/desktop/sound.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <filesystem>
#include <fstream>
#include <iterator>

#include "tests/tools/data_files.h"

namespace desktop {

namespace {

constexpr int kRate = 44100;

/// Waveforms are compared at a lower rate, which the owl's voice still fits into.
constexpr int kStep = 16;

/// Seconds of a sound that are looked for: so many that the first half second, which may sound before the
/// next click ends it, is not enough.
constexpr double kCompared = 1.3;

/// Two waveforms more alike than this are the same sound.
constexpr double kSame = 0.8;

std::uint32_t Number(const std::string& bytes, std::size_t at, int count) {
    std::uint32_t number = 0;
    for (int i = count - 1; i >= 0; --i) {
        number = number << 8U | static_cast<unsigned char>(bytes[at + static_cast<std::size_t>(i)]);
    }
    return number;
}

/// Returns the waveform at the lower rate.
std::vector<double> Coarse(const Waveform& waveform) {
    std::vector<double> coarse(waveform.size() / kStep);
    for (std::size_t i = 0; i < coarse.size(); ++i) {
        for (std::size_t j = 0; j < kStep; ++j) coarse[i] += waveform[i * kStep + j];
    }
    return coarse;
}

double Energy(const std::vector<double>& samples, std::size_t from, std::size_t count) {
    double energy = 0;
    for (std::size_t i = from; i < from + count; ++i) energy += samples[i] * samples[i];
    return energy;
}

}  // namespace

Waveform ReadWaveform(const std::string& path) {
    std::ifstream file(path, std::ios::binary);
    const std::string bytes{std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
    const std::size_t format = bytes.find("fmt ");
    const std::size_t data = bytes.find("data");
    if (format == std::string::npos || data == std::string::npos) return {};
    const std::uint32_t channels = Number(bytes, format + 10, 2);
    if (Number(bytes, format + 12, 4) != kRate || Number(bytes, format + 22, 2) != 16) {
        Fail(path + " is not of 16 bits and 44.1 kHz");
    }
    const std::size_t frame_bytes = channels * 2UL;
    Waveform waveform;
    for (std::size_t at = data + 8; at + frame_bytes <= bytes.size(); at += frame_bytes) {
        float sum = 0;
        for (std::size_t channel = 0; channel < channels; ++channel) {
            sum += static_cast<float>(static_cast<std::int16_t>(Number(bytes, at + 2 * channel, 2)));
        }
        waveform.push_back(sum / 32768 / static_cast<float>(channels));
    }
    return waveform;
}

// ---- Recorder ----

Recorder::Recorder() {
    folder_.Write("alsoft.conf",
                  "[general]\ndrivers = wave\nchannels = stereo\nfrequency = 44100\n"
                  "sample-type = int16\ndither = false\nstereo-mode = speakers\noutput-limiter = false\n"
                  "[wave]\nfile = " +
                      folder_.Path(kFile) + "\n");
}

void Recorder::Record(Start& start) const {
    start.environment["ALSOFT_CONF"] = folder_.Path("alsoft.conf");
    start.environment["ALSOFT_DRIVERS"] = "wave";
}

void Recorder::Wait(double seconds) const {
    constexpr double kFrameBytes = 4;
    constexpr double kAsleep = 1;  // seconds without a new sample
    const auto length = [&] { return static_cast<double>(std::filesystem::file_size(folder_.Path(kFile))); };
    const double wanted = length() + seconds * kRate * kFrameBytes;
    const double end = Now() + 20 + 4 * seconds;
    for (double before = -1; length() < wanted && length() > before && Now() < end;) {
        before = length();
        WaitUntil([&] { return length() >= wanted; }, kAsleep);
    }
}

// ---- Finding ----

Match Find(const Waveform& recording, const std::string& sound, double from) {
    const std::vector<double> heard = Coarse(recording);
    std::vector<double> wanted = Coarse(ReadWaveform(std::string(ULMARO_DATA) + "/" + sound));
    wanted.resize(std::min(wanted.size(), static_cast<std::size_t>(kCompared * kRate / kStep)));
    if (wanted.empty()) Fail("there is no sound " + sound);
    const double energy = Energy(wanted, 0, wanted.size());
    Match best;
    for (auto at = static_cast<std::size_t>(from * kRate / kStep); at + wanted.size() <= heard.size(); ++at) {
        const double around = Energy(heard, at, wanted.size());
        if (around < energy / 1000) continue;  // silence
        double product = 0;
        for (std::size_t i = 0; i < wanted.size(); ++i) product += wanted[i] * heard[at + i];
        const double likeness = product / std::sqrt(energy * around);
        if (likeness > best.likeness) best = {static_cast<double>(at) * kStep / kRate, likeness};
    }
    return best;
}

std::vector<std::string> SoundsIn(const Waveform& recording, double from) {
    std::vector<std::pair<double, std::string>> found;
    for (const std::string& sound : NamesFrom(".sco")) {
        const Match match = Find(recording, sound, from);
        if (match.likeness > kSame) found.emplace_back(match.start, sound);
    }
    std::sort(found.begin(), found.end());
    std::vector<std::string> names;
    for (const auto& [start, name] : found) names.push_back(name);
    return names;
}

}  // namespace desktop
