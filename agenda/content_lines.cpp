// SPDX-FileCopyrightText: 2026 The Ulmaro Assistant developers
// SPDX-License-Identifier: MIT

#include "agenda/content_lines.h"

#include <algorithm>
#include <cctype>

namespace {

constexpr std::string_view kByteOrderMark = "\xEF\xBB\xBF";

bool IsNameCharacter(char c) {
    return std::isalnum(static_cast<unsigned char>(c)) != 0 || c == '-' || c == '_';
}

/// Returns where the colon before the value stands, outside of quotes; npos where there is none.
std::size_t ColonOf(std::string_view text) {
    bool quoted = false;
    for (std::size_t i = 0; i < text.size(); ++i) {
        if (text[i] == '"') quoted = !quoted;
        if (text[i] == ':' && !quoted) return i;
    }
    return std::string_view::npos;
}

}  // namespace

std::string ContentLine::Name() const {
    const auto end = std::find_if_not(text.begin(), text.end(), IsNameCharacter);
    if (end == text.end() || (*end != ':' && *end != ';')) return {};
    if (ColonOf(text) == std::string_view::npos) return {};
    std::string name(text.begin(), end);
    std::transform(name.begin(), name.end(), name.begin(),
                   [](char c) { return static_cast<char>(std::toupper(static_cast<unsigned char>(c))); });
    return name;
}

std::string_view ContentLine::Value() const {
    const std::size_t colon = ColonOf(text);
    return colon == std::string_view::npos ? std::string_view() : std::string_view(text).substr(colon + 1);
}

ContentLines::ContentLines(std::string_view bytes) : rest_(bytes) {
    if (rest_.starts_with(kByteOrderMark)) rest_.remove_prefix(kByteOrderMark.size());
}

std::string_view ContentLines::TakeLine() {
    const std::size_t end = rest_.find('\n');
    std::string_view line = rest_.substr(0, end);
    rest_.remove_prefix(end == std::string_view::npos ? rest_.size() : end + 1);
    if (line.ends_with('\r')) line.remove_suffix(1);
    ++number_;
    return line;
}

bool ContentLines::Next(ContentLine& line) {
    line.text.clear();
    while (line.text.empty() && !rest_.empty()) {
        line.text = TakeLine();
        line.number = number_;
    }
    while (!rest_.empty() && (rest_.front() == ' ' || rest_.front() == '\t'))
        line.text += TakeLine().substr(1);
    return !line.text.empty();
}
