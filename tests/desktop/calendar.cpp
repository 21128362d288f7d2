// SPDX-FileCopyrightText: 2026 The Ulmaro Assistant developers
// SPDX-License-Identifier: MIT

#include "tests/desktop/calendar.h"

#include <fcntl.h>
#include <sys/mman.h>
#include <unistd.h>

#include <algorithm>
#include <cstddef>
#include <cstdlib>
#include <cstring>
#include <ctime>
#include <optional>

namespace desktop {

namespace {

constexpr std::size_t kCountBytes = 4;
constexpr std::size_t kNameBytes = 20;
constexpr std::size_t kDescriptionBytes = 512;
constexpr std::size_t kRecordBytes = 572;

/// Returns a number's four bytes, little-endian.
std::string Bytes(std::uint32_t number) {
    std::string bytes;
    for (int shift = 0; shift < 32; shift += 8) bytes += static_cast<char>(number >> shift & 0xFFU);
    return bytes;
}

std::uint32_t Bits(float number) {
    std::uint32_t bits = 0;
    std::memcpy(&bits, &number, sizeof bits);
    return bits;
}

std::string Padded(std::string text, std::size_t bytes) {
    text.resize(bytes, '\0');
    return text;
}

std::string RecordBytes(const Record& r) {
    std::string bytes = Padded(r.name, kNameBytes) + Padded(r.description, kDescriptionBytes);
    for (const std::int32_t number : {r.day, r.month, r.year, r.hour, r.minute, r.wday, r.kind, r.repeat}) {
        bytes += Bytes(static_cast<std::uint32_t>(number));
    }
    bytes += Bytes(Bits(r.elapsed));
    for (const std::uint8_t flag : {r.warned_60, r.warned_30, r.done}) bytes += static_cast<char>(flag);
    return Padded(bytes, kRecordBytes);
}

/// Takes a record apart, field by field.
class Reader {
  public:
    explicit Reader(std::string bytes) : bytes_(std::move(bytes)) {}

    std::string Text(std::size_t length) {
        const std::string field = Take(length);
        return field.substr(0, field.find('\0'));
    }

    std::uint8_t Byte() { return static_cast<std::uint8_t>(Take(1)[0]); }

    std::int32_t Number() { return static_cast<std::int32_t>(Word()); }

    float Float() {
        const std::uint32_t bits = Word();
        float number = 0;
        std::memcpy(&number, &bits, sizeof number);
        return number;
    }

  private:
    std::string Take(std::size_t length) {
        at_ += length;
        return bytes_.substr(at_ - length, length);
    }

    std::uint32_t Word() {
        std::uint32_t word = 0;
        for (int shift = 0; shift < 32; shift += 8) word |= std::uint32_t{Byte()} << shift;
        return word;
    }

    std::string bytes_;
    std::size_t at_ = 0;
};

Record ReadRecord(const std::string& bytes) {
    Reader reader(bytes);
    Record r;
    r.name = reader.Text(kNameBytes);
    r.description = reader.Text(kDescriptionBytes);
    for (std::int32_t* number :
         {&r.day, &r.month, &r.year, &r.hour, &r.minute, &r.wday, &r.kind, &r.repeat}) {
        *number = reader.Number();
    }
    r.elapsed = reader.Float();
    for (std::uint8_t* flag : {&r.warned_60, &r.warned_30, &r.done}) *flag = reader.Byte();
    return r;
}

}  // namespace

std::string StoreBytes(const std::vector<Record>& records) {
    std::string bytes = Bytes(static_cast<std::uint32_t>(records.size()));
    for (const Record& record : records) bytes += RecordBytes(record);
    return bytes;
}

std::vector<Record> ReadStore(const std::string& bytes) {
    std::vector<Record> records;
    for (std::size_t at = kCountBytes; at + kRecordBytes <= bytes.size(); at += kRecordBytes) {
        records.push_back(ReadRecord(bytes.substr(at, kRecordBytes)));
    }
    return records;
}

// ---- The clock on the wall ----

namespace {

constexpr char kItalianTime[] = "CET-1CEST,M3.5.0,M10.5.0/3";

/// Returns the seconds since 1970 at an Italian local time; stops the test where the text is none.
std::int64_t ItalianSeconds(const std::string& time) {
    std::tm local = {};
    if (strptime(time.c_str(), "%Y-%m-%d %H:%M:%S", &local) == nullptr) Fail("this is no time: " + time);
    local.tm_isdst = -1;
    const char* zone = std::getenv("TZ");
    const std::optional<std::string> before =
        zone != nullptr ? std::optional<std::string>(zone) : std::nullopt;
    setenv("TZ", kItalianTime, 1);
    tzset();
    const std::time_t seconds = std::mktime(&local);
    if (before) {
        setenv("TZ", before->c_str(), 1);
    } else {
        unsetenv("TZ");
    }
    tzset();
    return seconds;
}

}  // namespace

WallClock::WallClock(const std::string& time) {
    folder_.Write("wall", std::string(sizeof(Wall), '\0'));
    const int file = open(folder_.Path("wall").c_str(), O_RDWR | O_CLOEXEC);
    void* wall = mmap(nullptr, sizeof(Wall), PROT_READ | PROT_WRITE, MAP_SHARED, file, 0);
    if (file >= 0) close(file);
    if (wall == MAP_FAILED) Fail("no clock for the wall");
    wall_ = static_cast<Wall*>(wall);
    Set(time);
}

WallClock::~WallClock() {
    munmap(wall_, sizeof(Wall));
}

void WallClock::Set(const std::string& time) const {
    constexpr int kHour = 3600;
    const bool stands = time.find('h') == std::string::npos;
    wall_->seconds = stands ? ItalianSeconds(time) : kHour * std::strtol(time.c_str(), nullptr, 10);
    wall_->stands = stands;
}

void WallClock::Rule(Start& start) const {
    start.environment[kWallVariable] = folder_.Path("wall");
    start.environment["TZ"] = kItalianTime;
}

}  // namespace desktop
