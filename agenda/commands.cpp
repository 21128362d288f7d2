// SPDX-FileCopyrightText: 2026 The Ulmaro Assistant developers
// SPDX-License-Identifier: MIT

// Index: messages, files, the store, elenco, esporta, importa, controlla, RunAgenda.

#include "agenda/commands.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdarg>
#include <cstdint>
#include <cstdio>
#include <cstring>
#include <ctime>
#include <filesystem>
#include <list>
#include <optional>
#include <utility>

#include "agenda/calendar_export.h"
#include "agenda/calendar_file.h"
#include "agenda/calendar_import.h"
#include "agenda/command_line.h"
#include "agenda/folder.h"
#include "agenda/listing.h"
#include "agenda/store_check.h"
#include "calendar/events.h"
#include "calendar/store.h"
#include "engine/file.h"
#include "engine/local_time.h"
#include "engine/open_file.h"
#include "engine/replace_file.h"

namespace {

constexpr char kStandardStream[] = "-";

// ---- Messages ----

/// Says what is wrong in one line on standard error and returns the status.
[[gnu::format(printf, 2, 3)]] Status Fail(Status status, const char* format, ...) {
    std::va_list values;
    va_start(values, format);
    std::fputs("ulmaro-agenda: ", stderr);
    std::vfprintf(stderr, format, values);
    std::fputs(".\n", stderr);
    va_end(values);
    return status;
}

/// Returns what a system's error is, in Italian where it is a common one.
std::string WordsFor(int error) {
    switch (error) {
        case EACCES:
        case EPERM:
        case EROFS:
            return "manca il permesso";
        case ENOENT:
            return "non c'e'";
        case EISDIR:
            return "e' una cartella";
        case ENOSPC:
        case EDQUOT:
            return "il disco e' pieno";
        case EIO:
            return "il disco ha dato un errore";
        default:
            return std::string("errore di sistema, ") + std::strerror(error);
    }
}

/// Ends what was printed. Returns the status, or that of a failure where not all could be written.
Status EndOutput(Status status) {
    if (std::fflush(stdout) == 0 && std::ferror(stdout) == 0) return status;
    return Fail(kFailed, "non riesco a scrivere sullo standard output");
}

// ---- Files ----

/// Reads a stream to its end. Returns whether that worked.
bool ReadAll(std::FILE* stream, std::string& bytes) {
    char buffer[65536];
    for (std::size_t got = 1; got > 0;) {
        got = std::fread(buffer, 1, sizeof buffer, stream);
        bytes.append(buffer, got);
    }
    return std::ferror(stream) == 0;
}

/// Reads a file, or standard input. Returns whether that worked.
bool ReadInput(const std::string& path, std::string& bytes) {
    if (path == kStandardStream) return ReadAll(stdin, bytes);
    const File file = OpenRegularFile(path.c_str());
    return file != nullptr && ReadAll(file.get(), bytes);
}

// ---- The store ----

/// What is known of the store's file before it is loaded.
struct StoreFile {
    std::int64_t saved = 0;  ///< when, in seconds since the start of 1970
    bool exists = false;
};

/// Enters the owl's folder, if there is one, and looks at the store. Returns kDone, or says why it cannot be
/// read and returns a status.
Status EnterFolder(StoreFile& store) {
    std::string folder;
    if (const std::string why = FindFolder(folder); !why.empty()) return Fail(kFailed, "%s", why.c_str());
    if (chdir(folder.c_str()) != 0) {
        const int error = errno;
        if (error == ENOENT) return kDone;
        return Fail(kFailed, "non riesco ad aprire la cartella \"%s\": %s", folder.c_str(),
                    WordsFor(error).c_str());
    }
    OpenFile file;
    struct stat status {};
    int error = file.Open(kStoreFile, O_RDONLY | O_NONBLOCK);
    if (error == ENOENT) return kDone;
    if (error == 0) error = file.Status(status);
    const std::string path = folder + '/' + kStoreFile;
    if (error != 0)
        return Fail(kFailed, "non riesco a leggere gli eventi da \"%s\": %s", path.c_str(),
                    WordsFor(error).c_str());
    if (!S_ISREG(status.st_mode))
        return Fail(kFailed, "non riesco a leggere gli eventi da \"%s\": non e' un file normale",
                    path.c_str());
    store = {status.st_mtime, true};
    return kDone;
}

/// Loads the events, of a store that exists.
void Load(const StoreFile& store) {
    events.clear();
    if (store.exists) LoadEvents();
}

// ---- elenco ----

Status List(const CommandLine& line) {
    StoreFile store;
    if (const Status status = EnterFolder(store); status != kDone) return status;
    Load(store);
    SortEvents();
    const Moment now(LocalTime());
    const char* before = "[";
    for (const Event& event : events) {
        if (!TakesPlaceIn(event, line.range)) continue;
        if (line.json) {
            std::printf("%s\n%s", before, JsonOf(event, now).c_str());
            before = ",";
        } else {
            std::puts(LineOf(event, now).c_str());
        }
    }
    if (line.json) std::puts(*before == '[' ? "[]" : "\n]");
    return EndOutput(kDone);
}

// ---- esporta ----

/// Writes the events to standard output. Returns whether that worked.
std::vector<NotExported> ExportToOutput(std::int64_t saved) {
    return ExportEvents(events, saved, [](const std::string& text) {
        return std::fwrite(text.data(), 1, text.size(), stdout) == text.size();
    });
}

/// Replaces a file by the events, or leaves it as it is. Says why that failed.
Status ExportToFile(const std::string& path, std::int64_t saved, std::vector<NotExported>& left_out) {
    constexpr std::size_t kChunk = 1 << 18;
    std::string destination;
    ReplaceError error = FindDestination(path, destination);
    if (!error) {
        error = ReplaceFile(destination, [&](const OpenFile& file) {
            std::string chunk;
            int failure = 0;
            left_out = ExportEvents(events, saved, [&](const std::string& text) {
                chunk += text;
                if (chunk.size() < kChunk) return true;
                failure = file.Write(chunk.data(), chunk.size());
                chunk.clear();
                return failure == 0;
            });
            return failure != 0 ? failure : file.Write(chunk.data(), chunk.size());
        });
    }
    if (!error) return kDone;
    return Fail(kFailed, "non riesco a scrivere \"%s\": %s", path.c_str(),
                error.reason == ReplaceReason::kNotRegular ? "non e' un file normale"
                                                           : WordsFor(error.number).c_str());
}

Status Export(const CommandLine& line) {
    const bool to_output = line.files.empty() || line.files[0] == kStandardStream;
    std::error_code ignored;
    const std::string path = to_output ? "" : std::filesystem::absolute(line.files[0], ignored).string();
    StoreFile store;
    if (const Status status = EnterFolder(store); status != kDone) return status;
    Load(store);
    std::vector<NotExported> left_out;
    if (to_output) {
        left_out = ExportToOutput(store.saved);
        if (const Status status = EndOutput(kDone); status != kDone) return status;
    } else if (const Status status = ExportToFile(path, store.saved, left_out); status != kDone) {
        return status;
    }
    for (const NotExported& event : left_out)
        Fail(kSomeLeftOut, "\"%s\" resta fuori: %s", event.name.c_str(), event.why.c_str());
    return left_out.empty() ? kDone : kSomeLeftOut;
}

// ---- importa ----

/// Reads the files. Returns kDone, or says what is wrong with the first bad one and returns a status.
Status ReadFiles(const std::vector<std::string>& paths, std::vector<CalendarFile>& files) {
    for (const std::string& path : paths) {
        std::string bytes;
        if (!ReadInput(path, bytes))
            return Fail(kBadFile, "%s: il file non si riesce a leggere", path.c_str());
        const std::optional<FileProblem> problem = ReadCalendarFile(bytes, files.emplace_back());
        if (problem)
            return Fail(kBadFile, "%s, riga %d: %s", path.c_str(), problem->line, problem->what.c_str());
    }
    return kDone;
}

/// Locks the owl's folder, which is made if need be. Returns kDone, or says why it is not locked.
Status Lock(OpenFile& lock) {
    std::string folder;
    if (const std::string why = FindFolder(folder); !why.empty()) return Fail(kFailed, "%s", why.c_str());
    if (const int error = MakeFolder(folder); error != 0)
        return Fail(kFailed, "non riesco a creare la cartella \"%s\": %s", folder.c_str(),
                    WordsFor(error).c_str());
    switch (LockFolder(folder, lock)) {
        case Locking::kLocked:
            return kDone;
        case Locking::kTaken:
            return Fail(kOwlRuns, "il gufo e' in esecuzione: chiudilo e riprova");
        default:
            return Fail(kFailed, "non riesco a bloccare la cartella \"%s\"", folder.c_str());
    }
}

/// Prints what became of a file's events.
void Tell(const std::string& path, const Import& import, bool trial) {
    const Moment now(LocalTime());
    if (trial) {
        for (const Event& event : import.added) std::printf("+ %s\n", LineOf(event, now).c_str());
    }
    for (const LeftOut& event : import.left_out) {
        std::printf("%s, riga %d: \"%s\" resta fuori: %s.\n", path.c_str(), event.line,
                    event.name.empty() ? "evento senza nome" : event.name.c_str(), event.why.c_str());
    }
}

Status ImportFiles(const CommandLine& line) {
    std::vector<CalendarFile> files;
    if (const Status status = ReadFiles(line.files, files); status != kDone) return status;
    OpenFile lock;
    if (!line.trial) {
        if (const Status status = Lock(lock); status != kDone) return status;
    }
    StoreFile store;
    if (const Status status = EnterFolder(store); status != kDone) return status;
    Load(store);
    Importer importer(events, {LocalWallTime(std::time(nullptr)), line.all_day_time});
    std::vector<Import> imports;
    Import sum;
    for (CalendarFile& file : files) {
        const Import& import = imports.emplace_back(importer.Take(file));
        sum.added.insert(sum.added.end(), import.added.begin(), import.added.end());
        sum.left_out.insert(sum.left_out.end(), import.left_out.begin(), import.left_out.end());
        sum.known += import.known;
    }
    events.insert(events.end(), sum.added.begin(), sum.added.end());
    if (!line.trial && !sum.added.empty() && !SaveEvents()) return kFailed;
    for (std::size_t i = 0; i < imports.size(); ++i) Tell(line.files[i], imports[i], line.trial);
    std::printf("%s %zu, c'erano gia' %d, restano fuori %zu.\n", line.trial ? "Da aggiungere" : "Aggiunti",
                sum.added.size(), sum.known, sum.left_out.size());
    return EndOutput(sum.left_out.empty() ? kDone : kSomeLeftOut);
}

// ---- controlla ----

Status Check() {
    StoreFile store;
    if (const Status status = EnterFolder(store); status != kDone) return status;
    if (!store.exists) {
        std::puts("Non ci sono ancora eventi.");
        return EndOutput(kDone);
    }
    std::string bytes;
    if (!ReadInput(kStoreFile, bytes)) return Fail(kFailed, "non riesco a leggere gli eventi");
    std::int64_t records = 0;
    const std::vector<std::string> findings = CheckStore(bytes, records);
    for (const std::string& finding : findings) std::printf("%s.\n", finding.c_str());
    if (findings.empty()) std::printf("Eventi: %lld. Nessun danno.\n", static_cast<long long>(records));
    return EndOutput(findings.empty() ? kDone : kDamaged);
}

}  // namespace

int RunAgenda(const std::vector<std::string>& arguments) {
    CommandLine line;
    if (const std::string wrong = ReadCommandLine(arguments, line); !wrong.empty())
        return Fail(kWrongUse, "%s (ulmaro-agenda --help dice come si usa)", wrong.c_str());
    switch (line.command) {
        case Command::kList:
            return List(line);
        case Command::kExport:
            return Export(line);
        case Command::kImport:
            return ImportFiles(line);
        case Command::kCheck:
            return Check();
        case Command::kVersion:
            std::puts("ulmaro-agenda " ULMARO_VERSION);
            return EndOutput(kDone);
        default:
            std::fputs(kUsage, stdout);
            return EndOutput(kDone);
    }
}
