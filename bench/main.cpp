// Measures one operation: kavlor_bench FOLDER NAME SIZE [Google Benchmark's options]
// Without a name it lists the operations. KAVLOR_SERVER names the server of the operation over HTTP.
// bench/run calls this and makes tables of what it says.

#include "operation.h"

#include <benchmark/benchmark.h>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <malloc.h>
#include <string>
#include <string_view>

namespace norvakavlor::bench {

std::string readBytes(const std::string& path) {
    std::ifstream file(path, std::ios::binary);
    if (!file) {
        std::fprintf(stderr, "%s cannot be read\n", path.c_str());
        std::exit(1);
    }
    return {std::istreambuf_iterator<char>(file), {}};
}

std::vector<std::string> filesOf(const std::string& folder) {
    std::vector<std::string> paths;
    for (const auto& entry : std::filesystem::directory_iterator(folder))
        paths.push_back(entry.path().string());
    return paths;
}

namespace {

double documentBytes(const std::string& path) {
    if (!std::filesystem::is_directory(path))
        return static_cast<double>(std::filesystem::file_size(path));
    double total = 0;
    for (const std::string& file : filesOf(path))
        total += static_cast<double>(std::filesystem::file_size(file));
    return total;
}

double heldBytes() {
    const struct mallinfo2 heap = mallinfo2();
    return static_cast<double>(heap.uordblks + heap.hblkhd);
}

/// A line of the process's status in bytes: "VmRSS:" is what it has in memory now, "VmHWM:" the most so far.
double processBytes(std::string_view name) {
    std::ifstream status("/proc/self/status");
    for (std::string line; std::getline(status, line);) {
        if (line.starts_with(name))
            return std::strtod(line.c_str() + name.size(), nullptr) * 1024;
    }
    return 0;
}

/// A round of its own for each repetition: the first finds a fresh heap, the later ones a warm one.
void measure(benchmark::State& state, const Operation& operation, const Documents& documents) {
    // Prepared once for the process: later repetitions are warm.
    static const Round round = operation.prepare(documents);
    // Each round pays for its own memory, as the one load of a program does: whether freed memory stays with
    // the process depends on what else lies on the heap, and would make a figure of chance.
    malloc_trim(0);
    const double resident = processBytes("VmRSS:");
    const double held = heldBytes();
    if (operation.isTiny) {
        for ([[maybe_unused]] auto unused : state)
            round();
        return;
    }
    double heldByResult = 0;
    double growth = 0;
    for ([[maybe_unused]] auto unused : state) {
        const std::function<void()> result = round();
        state.PauseTiming();
        // Nothing may be allocated here that stays: above the result it would keep the heap from shrinking.
        heldByResult = heldBytes() - held;
        growth = processBytes("VmHWM:") - resident;
        state.ResumeTiming();
    }
    state.counters["held"] = heldByResult;
    state.counters["growth"] = growth;
    if (operation.measuredBy)
        state.counters["bytes"] = documentBytes(operation.measuredBy(documents));
}

std::vector<Operation> everything() {
    std::vector<Operation> all = ownOperations();
    for (const std::vector<Operation>& more : {references(), generatedBinding()})
        all.insert(all.end(), more.begin(), more.end());
    return all;
}

} // namespace
} // namespace norvakavlor::bench

int main(int count, char** arguments) {
    using namespace norvakavlor::bench;
    const std::vector<Operation> all = everything();
    if (count < 4) {
        for (const Operation& operation : all)
            std::printf("%s\n", operation.name.c_str());
        return 2;
    }
    Documents documents{std::string(arguments[1]) + "/", std::atoi(arguments[3]), {}};
    if (const char* server = std::getenv("KAVLOR_SERVER"))
        documents.server = server;
    for (const Operation& operation : all) {
        if (operation.name != arguments[2])
            continue;
        auto* registered = benchmark::RegisterBenchmark(
            operation.name.c_str(), [&](benchmark::State& state) { measure(state, operation, documents); });
        if (operation.isTiny) {
            registered->Unit(benchmark::kNanosecond);
        } else {
            registered->Iterations(1)->Unit(benchmark::kMillisecond);
        }
        registered->MeasureProcessCPUTime();
        benchmark::Initialize(&count, arguments);
        benchmark::RunSpecifiedBenchmarks();
        return 0;
    }
    std::fprintf(stderr, "no operation of the name %s\n", arguments[2]);
    return 2;
}
