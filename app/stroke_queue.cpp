// SPDX-FileCopyrightText: 2026 The Ulmaro Assistant developers
// SPDX-License-Identifier: MIT

#include "app/stroke_queue.h"

#include <algorithm>
#include <cstddef>
#include <deque>

namespace {

/// As many characters as the largest field takes, an event's description. More could only wait to be ignored,
/// and a press behind them would wait as well: strokes leave one a frame.
constexpr std::size_t kLongestQueue = 345;

struct StrokeQueue {
    std::deque<Stroke> waiting;      ///< oldest first
    std::size_t place_of_press = 0;  ///< so many of them came before the press that was marked last
};

StrokeQueue queue;

}  // namespace

void EnqueueCharacter(unsigned char character) {
    if (queue.waiting.size() < kLongestQueue) queue.waiting.push_back({character});
}

void EnqueueTogether(std::string_view characters) {
    if (queue.waiting.size() + characters.size() > kLongestQueue) return;
    auto together = static_cast<int>(characters.size());
    for (const char character : characters) {
        queue.waiting.push_back({static_cast<unsigned char>(character), together});
        together = 1;
    }
}

void MarkPress() {
    queue.place_of_press = queue.waiting.size();
}

void EnqueuePress(float x, float y, std::uint64_t time) {
    const std::size_t place = std::min(queue.place_of_press, queue.waiting.size());
    queue.waiting.insert(queue.waiting.begin() + static_cast<std::ptrdiff_t>(place), {0, 1, x, y, time});
}

bool DequeueStroke(Stroke& stroke) {
    if (queue.waiting.empty()) return false;
    stroke = queue.waiting.front();
    queue.waiting.pop_front();
    return true;
}

void DropStrokes(int count) {
    const auto dropped = std::min(static_cast<std::size_t>(count), queue.waiting.size());
    queue.waiting.erase(queue.waiting.begin(), queue.waiting.begin() + static_cast<std::ptrdiff_t>(dropped));
}

void DropCharacters() {
    const auto press = std::find_if(queue.waiting.begin(), queue.waiting.end(),
                                    [](const Stroke& stroke) { return stroke.IsPress(); });
    queue.waiting.erase(queue.waiting.begin(), press);
}

void ForgetStrokes() {
    queue = {};
}
