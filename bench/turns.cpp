// SPDX-FileCopyrightText: 2026 The Ulmaro Assistant developers
// SPDX-License-Identifier: MIT

#include "bench/turns.h"

#include <unistd.h>

#include <algorithm>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <ctime>
#include <exception>
#include <fstream>

#include "bench/table.h"
#include "tests/desktop/process.h"

namespace bench {

double ProcessorSeconds(pid_t process) {
    clockid_t clock = 0;
    timespec time = {};
    if (clock_getcpuclockid(process, &clock) != 0 || clock_gettime(clock, &time) != 0) {
        desktop::Fail("a program's processor time cannot be read");
    }
    return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_nsec) / 1e9;
}

void Runner::Stop() const {
    kill(process, SIGSTOP);
}

void Runner::Continue() const {
    kill(process, SIGCONT);
}

Cost Runner::FrameCost(double seconds) const {
    Continue();
    const std::uint64_t warm = frames() + 3;
    if (!desktop::WaitUntil([&] { return frames() >= warm; }, 20)) desktop::Fail("a program draws no frames");
    const std::uint64_t before = frames();
    const double start = desktop::Now();
    const double processor = ProcessorSeconds(process);
    desktop::SleepSeconds(seconds);
    const double drawn = static_cast<double>(frames() - before) / 1000;
    const Cost cost = {(desktop::Now() - start) / drawn, (ProcessorSeconds(process) - processor) / drawn};
    Stop();
    return cost;
}

double ResidentMebibytes(pid_t process) {
    std::ifstream pages("/proc/" + std::to_string(process) + "/statm");
    double total = 0;
    double resident = 0;
    if (!(pages >> total >> resident)) desktop::Fail("a program's memory cannot be read");
    return resident * static_cast<double>(sysconf(_SC_PAGESIZE)) / (1 << 20);
}

void Series::Add(double measured, double compared) {
    measured_.push_back(measured);
    compared_.push_back(compared);
    ratios_.push_back(measured / compared);
}

bool Series::Print(const std::string& what, double limit, const std::string& unit) const {
    return PrintRow(what, Median(measured_), Median(compared_), Median(ratios_), limit, unit);
}

bool CompareFrames(const std::string& what, const Runner& measured, const Runner& compared, int pairs,
                   double seconds, double limit) {
    Series real, processor;
    measured.Stop();
    compared.Stop();
    for (int i = 0; i < pairs; ++i) {
        const Cost a = measured.FrameCost(seconds);
        const Cost b = compared.FrameCost(seconds);
        real.Add(a.real, b.real);
        processor.Add(a.processor, b.processor);
    }
    const bool good = real.Print(what + ", real time", limit);
    return processor.Print(what + ", processor time", limit) && good;
}

int RunComparison(int argc, char** argv, int pairs, const std::function<bool(int pairs)>& compare) {
    if (argc > 1) pairs = std::atoi(argv[1]);
    try {
        return compare(std::max(pairs, 1)) ? 0 : 1;
    } catch (const std::exception& error) {
        std::fprintf(stderr, "%s: %s\n", argv[0], error.what());
        return 2;
    }
}

}  // namespace bench
