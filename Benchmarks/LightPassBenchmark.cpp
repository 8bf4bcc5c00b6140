#include "MonitorEngine.h"

#include <benchmark/benchmark.h>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <chrono>
#include <filesystem>
#include <string>
#include <vector>

namespace tavero {
namespace {

Date after(int passes) { return Date{} + std::chrono::seconds(1'800'000'000 + passes); }

LiveSnapshot lightPass(MonitorEngine& engine, int pass) {
    return engine.sample(MonitorEngine::Detail::light, 0, false, after(pass));
}

// What a pass costs while nothing is open.
void LightPass(benchmark::State& state) {
    MonitorEngine engine(readers(Machine::host()));
    int pass = 0;
    for (auto _ : state) {
        const LiveSnapshot snapshot = lightPass(engine, ++pass);
        benchmark::DoNotOptimize(&snapshot);
    }
}
BENCHMARK(LightPass);

std::vector<std::string> openFiles() {
    std::vector<std::string> files;
    for (const auto& entry : std::filesystem::directory_iterator("/proc/self/fd")) {
        std::error_code error;
        const std::filesystem::path target = read_symlink(entry.path(), error);
        if (!error && is_regular_file(target, error)) files.push_back(target);
    }
    return files;
}

// The least that it can cost: the kernel writing out the very files that a light pass keeps open.
void PreadFloor(benchmark::State& state) {
    std::vector<std::string> paths;
    {
        MonitorEngine engine(readers(Machine::host()));
        lightPass(engine, 1);
        paths = openFiles();
        // What this program has open without an engine is not the pass's.
        engine = MonitorEngine(Readers{});
        for (const std::string& other : openFiles()) std::erase(paths, other);
    }
    std::vector<int> files;
    files.reserve(paths.size());
    for (const std::string& path : paths) files.push_back(::open(path.c_str(), O_RDONLY));
    std::vector<char> buffer(1 << 17);
    for (auto _ : state)
        for (const int file : files)
            benchmark::DoNotOptimize(::pread(file, buffer.data(), buffer.size(), 0));
    for (const int file : files) ::close(file);
    state.counters["files"] = static_cast<double>(files.size());
}
BENCHMARK(PreadFloor);

} // namespace
} // namespace tavero
