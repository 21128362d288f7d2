// SPDX-FileCopyrightText: 2026 The Ulmaro Assistant developers
// SPDX-License-Identifier: MIT

#include "tests/fakes/log.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <ostream>
#include <utility>

namespace fakes {
namespace {

std::vector<Call>& MutableLog() {
    static std::vector<Call> log;
    return log;
}

bool IsOneOf(std::string_view name, std::initializer_list<std::string_view> names) {
    return std::find(names.begin(), names.end(), name) != names.end();
}

std::string Line(std::string_view name, std::initializer_list<Arg> args, std::string_view text) {
    std::string line(name);
    line += '(';
    const char* separator = "";
    for (const Arg& arg : args) {
        line += separator + arg.name;
        separator = ", ";
    }
    if (!text.empty()) line += separator + ('"' + std::string(text) + '"');
    return line + ')';
}

}  // namespace

std::string Arg::Shortest(double number, bool single_precision) {
    constexpr double kExactIntegers = 1e15;
    char digits[64];
    std::to_chars_result end{};
    if (std::trunc(number) == number && std::abs(number) < kExactIntegers)
        end = std::to_chars(digits, digits + sizeof digits, static_cast<long long>(number));
    else if (single_precision)
        end = std::to_chars(digits, digits + sizeof digits, static_cast<float>(number));
    else
        end = std::to_chars(digits, digits + sizeof digits, number);
    return {digits, end.ptr};
}

void Record(std::string_view name, std::initializer_list<Arg> args, std::string_view text,
            std::vector<std::uint8_t> blob) {
    Call call;
    call.name = name;
    for (const Arg& arg : args) call.args.push_back(arg.value);
    call.text = text;
    call.blob = std::move(blob);
    call.line = Line(name, args, text);
    MutableLog().push_back(std::move(call));
}

const std::vector<Call>& Log() {
    return MutableLog();
}

std::vector<Call> Calls(std::string_view name) {
    std::vector<Call> found;
    for (const Call& call : Log()) {
        if (call.name == name) found.push_back(call);
    }
    return found;
}

std::size_t Count(std::string_view name) {
    return static_cast<std::size_t>(
        std::count_if(Log().begin(), Log().end(), [name](const Call& call) { return call.name == name; }));
}

std::size_t IndexOf(std::string_view name, std::size_t nth) {
    for (std::size_t i = 0; i < Log().size(); ++i) {
        if (Log()[i].name != name) continue;
        if (nth == 0) return i;
        --nth;
    }
    return kNever;
}

std::vector<std::string> Names() {
    std::vector<std::string> names;
    for (const Call& call : Log()) names.push_back(call.name);
    return names;
}

std::vector<std::string> Names(std::initializer_list<std::string_view> only) {
    std::vector<std::string> names;
    for (const Call& call : Log()) {
        if (IsOneOf(call.name, only)) names.push_back(call.name);
    }
    return names;
}

std::vector<std::string> Lines() {
    std::vector<std::string> lines;
    for (const Call& call : Log()) lines.push_back(call.line);
    return lines;
}

std::vector<std::string> Lines(std::initializer_list<std::string_view> only) {
    std::vector<std::string> lines;
    for (const Call& call : Log()) {
        if (IsOneOf(call.name, only)) lines.push_back(call.line);
    }
    return lines;
}

std::vector<std::string> Joined(const std::vector<std::vector<std::string>>& parts) {
    std::vector<std::string> all;
    for (const std::vector<std::string>& part : parts) all.insert(all.end(), part.begin(), part.end());
    return all;
}

void ClearLog() {
    MutableLog().clear();
}

std::ostream& operator<<(std::ostream& out, const Call& call) {
    return out << call.line;
}

}  // namespace fakes
