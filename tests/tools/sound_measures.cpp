// SPDX-FileCopyrightText: 2026 The Ulmaro Assistant developers
// SPDX-License-Identifier: MIT

#include "tests/tools/sound_measures.h"

#include <ebur128.h>

#include <algorithm>
#include <cmath>
#include <complex>
#include <cstdint>
#include <fstream>
#include <iterator>
#include <limits>
#include <memory>
#include <numbers>
#include <numeric>

namespace sound {

namespace {

constexpr double kTurn = 2 * std::numbers::pi;

/// A filter of second order: y = b0 x + b1 x' + b2 x'' - a1 y' - a2 y''.
struct Filter {
    double b0, b1, b2, a1, a2;
};

Samples Filtered(const Samples& in, const Filter& f) {
    Samples out(in.size());
    double x1 = 0, x2 = 0, y1 = 0, y2 = 0;
    for (std::size_t i = 0; i < in.size(); ++i) {
        out[i] = f.b0 * in[i] + f.b1 * x1 + f.b2 * x2 - f.a1 * y1 - f.a2 * y2;
        x2 = x1;
        x1 = in[i];
        y2 = y1;
        y1 = out[i];
    }
    return out;
}

/// Returns how alike 30 ms of the samples are to what comes `lag` samples later, 1 being the same.
double Likeness(const Samples& samples, std::size_t begin, std::size_t lag) {
    double product = 0, here = 0, there = 0;
    for (std::size_t i = begin; i < begin + kRate * 3 / 100; i += 2) {
        product += samples[i] * samples[i + lag];
        here += samples[i] * samples[i];
        there += samples[i + lag] * samples[i + lag];
    }
    return product / std::sqrt(here * there + std::numeric_limits<double>::min());
}

/// Returns Pearson's correlation of two rows of the same length.
double Correlation(const std::vector<double>& a, const std::vector<double>& b) {
    const auto n = static_cast<double>(a.size());
    const double mean_a = std::accumulate(a.begin(), a.end(), 0.0) / n;
    const double mean_b = std::accumulate(b.begin(), b.end(), 0.0) / n;
    double product = 0, square_a = 0, square_b = 0;
    for (std::size_t i = 0; i < a.size(); ++i) {
        product += (a[i] - mean_a) * (b[i] - mean_b);
        square_a += (a[i] - mean_a) * (a[i] - mean_a);
        square_b += (b[i] - mean_b) * (b[i] - mean_b);
    }
    return product / std::sqrt(square_a * square_b);
}

/// Returns the magnitude at a frequency of values of which there are `rate` a second, without a window.
double PlainMagnitude(const std::vector<double>& values, double hertz, double rate) {
    const std::complex<double> step = std::polar(1.0, -kTurn * hertz / rate);
    std::complex<double> turn = 1, sum = 0;
    for (const double value : values) {
        sum += value * turn;
        turn *= step;
    }
    return std::abs(sum);
}

/// Returns the values through a Hann window.
std::vector<double> Windowed(std::vector<double> values) {
    const auto size = static_cast<double>(values.size());
    for (std::size_t i = 0; i < values.size(); ++i) {
        values[i] *= 0.5 - 0.5 * std::cos(kTurn * static_cast<double>(i) / size);
    }
    return values;
}

}  // namespace

std::string Bytes(const std::filesystem::path& file) {
    std::ifstream in(file, std::ios::binary);
    return {std::istreambuf_iterator<char>(in), {}};
}

unsigned Number(const std::string& bytes, std::size_t place, std::size_t size) {
    unsigned number = 0;
    for (std::size_t i = size; i-- > 0;) {
        number = number << 8 | static_cast<unsigned char>(bytes.at(place + i));
    }
    return number;
}

Stereo Read(const std::filesystem::path& file) {
    const std::string bytes = Bytes(file);
    const auto sample = [&](std::size_t place) {
        return static_cast<std::int16_t>(Number(bytes, place, 2)) / 32768.0;
    };
    Stereo sound;
    for (std::size_t i = kHeader; i + kFrameSize <= bytes.size(); i += kFrameSize) {
        sound.left.push_back(sample(i));
        sound.right.push_back(sample(i + 2));
    }
    if (sound.left.empty()) sound = {Samples(kRate), Samples(kRate)};
    return sound;
}

Samples Middle(const Stereo& sound) {
    Samples middle = sound.left;
    for (std::size_t i = 0; i < middle.size(); ++i) middle[i] = 0.5 * (middle[i] + sound.right.at(i));
    return middle;
}

std::size_t At(double time) {
    return static_cast<std::size_t>(std::max(0.0, time) * kRate);
}

Samples Part(const Samples& samples, double begin, double end) {
    const std::size_t last = std::min(At(end), samples.size());
    const std::size_t first = std::min(At(begin), last);
    return {samples.begin() + static_cast<std::ptrdiff_t>(first),
            samples.begin() + static_cast<std::ptrdiff_t>(last)};
}

// ---- Levels ----

double Decibels(double power) {
    return 10 * std::log10(power);
}

double Power(const Samples& samples, std::size_t begin, std::size_t count) {
    double sum = 0;
    for (std::size_t i = begin; i < begin + count; ++i) sum += samples.at(i) * samples[i];
    return sum / static_cast<double>(count);
}

double Level(const Samples& samples) {
    return Decibels(Power(samples, 0, samples.size()));
}

double Peak(const Samples& samples, double begin, double end) {
    double peak = 0;
    const std::size_t last = std::min(samples.size(), At(end));
    for (std::size_t i = At(begin); i < last; ++i) peak = std::max(peak, std::abs(samples[i]));
    return peak;
}

Loudness LoudnessOf(const Stereo& sound) {
    constexpr std::size_t kStep = kRate / 100;
    const auto destroy = [](ebur128_state* state) { ebur128_destroy(&state); };
    const std::unique_ptr<ebur128_state, decltype(destroy)> meter(
        ebur128_init(2, kRate, EBUR128_MODE_M | EBUR128_MODE_I), destroy);

    Loudness loudness = {-HUGE_VAL, -HUGE_VAL};
    for (std::size_t i = 0; i + kStep <= sound.left.size(); i += kStep) {
        std::vector<double> frames;
        for (std::size_t j = i; j < i + kStep; ++j) {
            frames.push_back(sound.left[j]);
            frames.push_back(sound.right.at(j));
        }
        ebur128_add_frames_double(meter.get(), frames.data(), kStep);
        if (i + kStep < kRate * 4 / 10) continue;
        double now = 0;
        ebur128_loudness_momentary(meter.get(), &now);
        loudness.momentary = std::max(loudness.momentary, now);
    }
    ebur128_loudness_global(meter.get(), &loudness.integrated);
    return loudness;
}

// ---- Filters ----

Samples HighPassed(const Samples& samples, double hertz) {
    const double k = std::tan(std::numbers::pi * hertz / kRate);  // bilinear transform of the analog filter
    const double q = std::numbers::sqrt2 / 2;
    const double a0 = 1 + k / q + k * k;
    return Filtered(samples, {1 / a0, -2 / a0, 1 / a0, 2 * (k * k - 1) / a0, (1 - k / q + k * k) / a0});
}

Stereo OnALaptop(const Stereo& sound) {
    return {HighPassed(sound.left, 500), HighPassed(sound.right, 500)};
}

// ---- Hoots and tunes ----

Samples Swell(const Samples& samples) {
    constexpr auto kStep = static_cast<std::size_t>(kRate / kSwellRate);
    constexpr std::size_t kWindow = kRate / 25;
    const std::vector<double> hann = Windowed(std::vector<double>(kWindow, 1));
    Samples swell;
    for (std::size_t middle = 0; middle < samples.size(); middle += kStep) {
        double sum = 0;
        for (std::size_t i = 0; i < kWindow; i += 4) {
            const std::size_t place = middle + i - kWindow / 2;  // before the start it is huge
            if (place < samples.size()) sum += hann[i] * samples[place] * samples[place];
        }
        swell.push_back(std::sqrt(sum / (kWindow / 8.0)));  // a Hann window's mean is a half
    }
    return swell;
}

std::vector<Hoot> Hoots(const Samples& samples, double share) {
    const Samples swell = Swell(samples);
    const double loudest = *std::max_element(swell.begin(), swell.end());
    std::vector<Hoot> hoots;
    std::size_t dip = 0;  // the end of the hoot before
    while (dip < swell.size()) {
        // From the dip on, climb to the top that is followed by a dip to half of it.
        std::size_t top = dip, end = dip;
        while (end < swell.size() && swell[end] >= 0.5 * swell[top]) {
            if (swell[end] > swell[top]) top = end;
            ++end;
        }
        const std::size_t to = end;
        // Go down as far as it goes before it climbs to twice that.
        std::size_t low = end;
        while (end < swell.size() && swell[end] <= 2 * swell[low]) {
            if (swell[end] < swell[low]) low = end;
            ++end;
        }
        if (swell[top] > share * loudest && swell[dip] <= 0.5 * swell[top]) {
            std::size_t begin = dip, from = top;
            for (std::size_t i = dip; i < top; ++i) {
                if (swell[i + 1] - swell[i] > swell[begin + 1] - swell[begin]) begin = i;
            }
            while (from > dip && swell[from] >= 0.5 * swell[top]) --from;
            const auto time = [](std::size_t i) { return static_cast<double>(i) / kSwellRate; };
            hoots.push_back({time(begin), time(top), time(from), time(to), swell[top]});
        }
        dip = low;
    }
    return hoots;
}

double Pitch(const Samples& samples, double time) {
    constexpr std::size_t kShortest = kRate / 800, kLongest = kRate / 180, kWindow = kRate * 3 / 100;
    const std::size_t begin = At(time - 0.015);
    if (begin + kWindow + kLongest > samples.size()) return 0;
    std::vector<double> likeness;
    likeness.reserve(kLongest - kShortest + 1);
    for (std::size_t lag = kShortest; lag <= kLongest; ++lag) {
        likeness.push_back(Likeness(samples, begin, lag));
    }

    const double best = *std::max_element(likeness.begin(), likeness.end());
    if (best < 0.75) return 0;
    for (std::size_t i = 1; i + 1 < likeness.size(); ++i) {
        const double before = likeness[i - 1], here = likeness[i], after = likeness[i + 1];
        if (here < before || here <= after || here < best - 0.08) continue;
        // A sample is 17 cents at A4, so the top is looked for between the samples, on a parabola.
        const double between = 0.5 * (before - after) / (before - 2 * here + after);
        return kRate / (static_cast<double>(kShortest + i) + between);
    }
    return 0;
}

std::vector<double> Tune(const Samples& samples, const Hoot& hoot, int places) {
    std::vector<double> tune;
    tune.reserve(static_cast<std::size_t>(places));
    for (int i = 0; i < places; ++i) {
        tune.push_back(Pitch(samples, hoot.from + (hoot.to - hoot.from) * i / (places - 1)));
    }
    return tune;
}

double LikenessOfTunes(const Samples& samples, const std::vector<Hoot>& hoots) {
    std::vector<std::vector<double>> tunes;
    for (const Hoot& hoot : hoots) {
        std::vector<double> tune = Tune(samples, hoot, 12);
        if (std::count(tune.begin(), tune.end(), 0.0) > 0) continue;
        for (double& pitch : tune) pitch = std::log(pitch);
        tunes.push_back(tune);
    }
    double sum = 0;
    int pairs = 0;
    for (std::size_t i = 0; i < tunes.size(); ++i) {
        for (std::size_t j = 0; j < i; ++j, ++pairs) sum += Correlation(tunes[i], tunes[j]);
    }
    return sum / pairs;
}

double Cents(double hertz, double from) {
    return 1200 * std::log2(hertz / from);
}

double ClosestNote(double hertz) {
    return 440 * std::exp2(std::round(12 * std::log2(hertz / 440)) / 12);
}

// ---- Color and pace ----

double Magnitude(const Samples& samples, double hertz) {
    return PlainMagnitude(Windowed(samples), hertz, kRate);
}

double HarmonicLevel(const Samples& samples, double fundamental, int n) {
    const Samples windowed = Windowed(samples);
    double largest = 0;
    for (double hertz = 0.97 * fundamental; hertz < 1.03 * fundamental; hertz += 1) {
        largest = std::max(largest, PlainMagnitude(windowed, n * hertz, kRate));
    }
    return 20 * std::log10(largest);
}

double Centroid(const Samples& samples) {
    const Samples windowed = Windowed(samples);
    double sum = 0, weighted = 0;
    for (double hertz = 50; hertz < 8000; hertz += 5) {
        const double magnitude = PlainMagnitude(windowed, hertz, kRate);
        sum += magnitude * magnitude;
        weighted += hertz * magnitude * magnitude;
    }
    return weighted / sum;
}

double ShareOfModulation(const Samples& samples, double low, double high) {
    Samples swell = Swell(samples);
    const auto size = static_cast<double>(swell.size());
    const double mean = std::accumulate(swell.begin(), swell.end(), 0.0) / size;
    for (double& value : swell) value -= mean;

    double all = 0, share = 0;
    for (double i = 1; i < size / 2; ++i) {
        const double hertz = i * kSwellRate / size;
        const double magnitude = PlainMagnitude(swell, hertz, kSwellRate);
        all += magnitude * magnitude;
        if (hertz >= low && hertz <= high) share += magnitude * magnitude;
    }
    return share / all;
}

double BreathPulse(const Samples& samples, double hertz) {
    // Four times over, so that the voice's upper harmonics are gone.
    Samples breath = samples;
    for (int i = 0; i < 4; ++i) breath = HighPassed(breath, 2500);
    for (double& sample : breath) sample *= sample;

    const Samples windowed = Windowed(breath);
    double largest = 0;
    for (double around = 0.98 * hertz; around < 1.02 * hertz; around += 1) {
        largest = std::max(largest, PlainMagnitude(windowed, around, kRate));
    }
    return 2 * largest / std::accumulate(windowed.begin(), windowed.end(), 0.0);
}

}  // namespace sound
