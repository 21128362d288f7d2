// SPDX-FileCopyrightText: 2026 The Ulmaro Assistant developers
// SPDX-License-Identifier: MIT

#include "tests/store/workshop.h"

#include <fcntl.h>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <csignal>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <sstream>
#include <stdexcept>

#include "tests/scratch.h"

namespace store {

namespace files = std::filesystem;

std::string FileBytes(int version) {
    std::string bytes(4, '\0');
    for (int byte = 0; byte < 4; ++byte)
        bytes[static_cast<std::size_t>(byte)] = static_cast<char>(version >> (8 * byte));
    for (int i = 0; i < version; ++i) bytes += RecordBytes(version, i);
    return bytes;
}

// ---- Folder ----

namespace {

files::path PathOf(Place place) {
    return place == Place::kMemory ? ScratchRoot() : files::temp_directory_path();
}

}  // namespace

Folder::Folder(Place place) : path_((PathOf(place) / "ulmaro-store-XXXXXX").string()) {
    if (mkdtemp(path_.data()) == nullptr) throw std::runtime_error("cannot make " + path_);
}

Folder::~Folder() {
    std::error_code ignored;
    files::permissions(path_, files::perms::owner_all, ignored);
    files::remove_all(path_, ignored);
}

void Folder::Write(const std::string& file, const std::string& bytes) const {
    std::ofstream(Path(file), std::ios::binary) << bytes;
}

std::optional<std::string> Folder::Read(const std::string& file) const {
    std::ifstream in(Path(file), std::ios::binary);
    if (!in) return {};
    std::ostringstream bytes;
    bytes << in.rdbuf();
    return bytes.str();
}

std::vector<std::string> Folder::Names() const {
    std::vector<std::string> names;
    for (const auto& entry : files::directory_iterator(path_)) names.push_back(entry.path().filename());
    std::sort(names.begin(), names.end());
    return names;
}

void Folder::Empty() const {
    for (const auto& entry : files::directory_iterator(path_)) files::remove_all(entry.path());
}

// ---- Worker ----

namespace {

struct Pipe {
    int read_end, write_end;
};

Pipe NewPipe() {
    int ends[2];
    if (pipe2(ends, O_CLOEXEC) != 0) throw std::runtime_error("cannot make a pipe");
    return {ends[0], ends[1]};
}

/// Reads to the end and closes.
std::string Drain(int& file) {
    std::string text;
    char buffer[4096];
    for (ssize_t n = 0; (n = read(file, buffer, sizeof buffer)) > 0;)
        text.append(buffer, static_cast<std::size_t>(n));
    close(file);
    file = -1;
    return text;
}

/// Turns the forked child into the worker; never returns.
[[noreturn]] void BecomeWorker(const Folder& folder, const std::string& words, const Worker::Start& start) {
    prctl(PR_SET_PDEATHSIG, SIGKILL);
    for (const auto& [name, value] : start.environment) setenv(name.c_str(), value.c_str(), 1);
    if (chdir(folder.Path().c_str()) != 0) _exit(126);
    // Opened first, because `before` may give up the right to reach the worker's folder.
    const int worker = open(ULMARO_STORE_WORKER, O_RDONLY | O_CLOEXEC);
    start.before();
    std::istringstream in(words);
    std::vector<std::string> texts{ULMARO_STORE_WORKER};
    texts.insert(texts.end(), std::istream_iterator<std::string>(in), {});
    std::vector<char*> arguments;
    for (std::string& text : texts) arguments.push_back(text.data());
    arguments.push_back(nullptr);
    fexecve(worker, arguments.data(), environ);
    _exit(127);
}

}  // namespace

int End::ExitStatus() const {
    return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
}

bool End::Killed() const {
    return WIFSIGNALED(status) && WTERMSIG(status) == SIGKILL;
}

Worker::Worker(const Folder& folder, const std::string& words, const Start& start) {
    const Pipe in = NewPipe();
    const Pipe out = NewPipe();
    const Pipe error = NewPipe();
    id_ = fork();
    if (id_ < 0) throw std::runtime_error("cannot start a worker");
    if (id_ == 0) {
        dup2(in.read_end, STDIN_FILENO);
        dup2(out.write_end, STDOUT_FILENO);
        dup2(error.write_end, STDERR_FILENO);
        BecomeWorker(folder, words, start);
    }
    close(in.read_end);
    close(out.write_end);
    close(error.write_end);
    in_ = in.write_end;
    out_ = out.read_end;
    error_ = error.read_end;
}

Worker::~Worker() {
    if (id_ < 0) return;
    Kill();
    WaitForEnd();
}

std::string Worker::Line() {
    std::string line;
    for (char c = 0; read(out_, &c, 1) == 1 && c != '\n';) line += c;
    return line;
}

void Worker::GoOn() const {
    if (write(in_, "\n", 1) != 1) throw std::runtime_error("the worker does not listen");
}

void Worker::Kill() const {
    kill(id_, SIGKILL);
}

End Worker::WaitForEnd() {
    End end;
    close(in_);
    end.out = Drain(out_);
    end.error = Drain(error_);
    waitpid(id_, &end.status, 0);
    id_ = -1;
    return end;
}

End RunWorker(const Folder& folder, const std::string& words, const Worker::Start& start) {
    return Worker(folder, words, start).WaitForEnd();
}

std::string LinesWith(const std::string& part, const std::string& text) {
    std::string lines;
    std::istringstream in(text);
    for (std::string line; std::getline(in, line);) {
        if (line.find(part) != std::string::npos) lines += line + "\n";
    }
    return lines;
}

bool IsOneComplaint(const std::string& text, const std::string& reason) {
    const std::string start = "Ulmaro Assistant: non riesco a salvare gli eventi in \"database.bin\": ";
    const std::string end = reason + ".\n";
    return text.starts_with(start) && text.ends_with(end) && text.size() > start.size() + 2 &&
           std::count(text.begin(), text.end(), '\n') == 1;
}

}  // namespace store
