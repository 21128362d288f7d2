// SPDX-FileCopyrightText: 2026 The Ulmaro Assistant developers
// SPDX-License-Identifier: MIT

#include "tests/desktop/calendar.h"

#include <algorithm>
#include <cstddef>
#include <cstring>
#include <filesystem>

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

void WallClock::Set(const std::string& time) const {
    folder_.Write("next", time + "\n");
    std::filesystem::rename(folder_.Path("next"), folder_.Path("now"));  // never read half written
}

void WallClock::Rule(Start& start) const {
    start.preload.emplace_back(ULMARO_FAKETIME_LIBRARY);
    start.environment["FAKETIME_TIMESTAMP_FILE"] = folder_.Path("now");
    start.environment["FAKETIME_NO_CACHE"] = "1";
    start.environment["FAKETIME_DONT_FAKE_MONOTONIC"] = "1";
    start.environment["NO_FAKE_STAT"] = "1";
    start.environment["TZ"] = "CET-1CEST,M3.5.0,M10.5.0/3";
}

}  // namespace desktop
