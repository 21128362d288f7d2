// SPDX-FileCopyrightText: 2026 The Ulmaro Assistant developers
// SPDX-License-Identifier: MIT

#include "agenda/store_check.h"

#include <algorithm>
#include <cmath>
#include <cstring>

#include "agenda/listing.h"
#include "agenda/wall_time.h"
#include "calendar/events.h"
#include "calendar/notices.h"

namespace {

constexpr std::int64_t kCountBytes = 4;
constexpr std::int64_t kRecordBytes = sizeof(Event);

/// Gathers what is wrong with a record.
class Findings {
  public:
    void Expect(bool good, const std::string& otherwise) {
        if (!good) all_ += (all_.empty() ? "" : "; ") + otherwise;
    }
    const std::string& All() const { return all_; }

  private:
    std::string all_;
};

bool IsPrintable(const std::string& text) {
    return std::all_of(text.begin(), text.end(), [](char c) { return c >= ' ' && c <= '~'; });
}

std::string Number(const char* what, std::int64_t number) {
    return std::string(what) + " e' " + std::to_string(number);
}

void CheckTime(const Event& event, Findings& findings) {
    findings.Expect(
        IsTime(event.time.hour, event.time.minute),
        "l'ora " + std::to_string(event.time.hour) + ':' + std::to_string(event.time.minute) + " non esiste");
}

void CheckDate(const Event& event, Findings& findings) {
    const Date& date = event.date;
    findings.Expect(IsDay({date.year, date.month, date.day}), "la data " + std::to_string(date.day) + '/' +
                                                                  std::to_string(date.month) + '/' +
                                                                  std::to_string(date.year) + " non esiste");
}

void CheckKind(const Event& event, Findings& findings) {
    switch (event.kind) {
        case kAppointment:
            CheckDate(event, findings);
            CheckTime(event, findings);
            return;
        case kWeekly:
            findings.Expect(event.wday >= 0 && event.wday <= 6,
                            Number("il giorno della settimana", event.wday));
            CheckTime(event, findings);
            return;
        case kReminder:
            findings.Expect(RepeatOf(event) != nullptr, Number("la ripetizione", event.repeat));
            findings.Expect(std::isfinite(event.elapsed) && event.elapsed >= 0,
                            "il tempo trascorso non e' un numero di secondi");
            return;
        default:
            findings.Expect(false, Number("il tipo", event.kind));
    }
}

/// Returns what is wrong with a record, in one text; empty for a good one.
std::string CheckRecord(const Event& event) {
    Findings findings;
    findings.Expect(IsPrintable(NameOf(event)), "il nome ha caratteri che il gufo non scrive");
    findings.Expect(IsPrintable(DescriptionOf(event)), "la descrizione ha caratteri che il gufo non scrive");
    CheckKind(event, findings);
    for (const std::uint8_t flag : {event.warned_60, event.warned_30, event.done})
        findings.Expect(flag <= 1, Number("un segno di avviso", flag));
    return findings.All();
}

}  // namespace

std::vector<std::string> CheckStore(std::string_view bytes, std::int64_t& records) {
    records = 0;
    if (std::ssize(bytes) < kCountBytes) return {"il file e' troppo corto: manca il numero degli eventi"};
    std::int32_t count = 0;
    std::memcpy(&count, bytes.data(), kCountBytes);
    const std::int64_t there = std::ssize(bytes) - kCountBytes;
    records = there / kRecordBytes;
    std::vector<std::string> findings;
    if (there != count * kRecordBytes)
        findings.push_back("il file dice di avere " + std::to_string(count) + " eventi e ne ha " +
                           std::to_string(records) +
                           (there % kRecordBytes == 0
                                ? ""
                                : ", piu' un pezzo di " + std::to_string(there % kRecordBytes) + " byte"));
    for (std::int64_t i = 0; i < records; ++i) {
        Event event;
        std::memcpy(static_cast<void*>(&event), bytes.data() + kCountBytes + i * kRecordBytes, kRecordBytes);
        const std::string wrong = CheckRecord(event);
        if (!wrong.empty())
            findings.push_back("evento " + std::to_string(i + 1) + " (\"" + PrintableName(event) +
                               "\"): " + wrong);
    }
    return findings;
}
