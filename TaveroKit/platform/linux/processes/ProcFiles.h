#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string_view>

namespace tavero {

// The files of /proc that tell of a process. What can't be made out is absent.

// /proc/PID/stat, one line.
struct StatLine {
    std::string_view comm; // the name, 15 bytes that the process may choose freely
    char state = 0;
    std::int32_t parent = 0;
    bool isKernelThread = false;
    std::uint64_t cpuTicks = 0; // user and system, clock ticks
    std::int64_t threads = 0;
    std::uint64_t start = 0;    // clock ticks since boot
    std::uint64_t resident = 0; // pages, shared ones included
};
std::optional<StatLine> parseStat(std::string_view text);

// /proc/PID/statm: the resident pages that are no file's and not shared memory, so that pages which
// many processes map aren't counted for each. What was swapped out is not in it.
std::optional<std::uint64_t> parseOwnPages(std::string_view text);

// /proc/PID/io: bytes that went to and from storage.
struct DiskBytes {
    std::uint64_t read = 0;
    std::uint64_t written = 0;
};
std::optional<DiskBytes> parseDiskBytes(std::string_view text);

// /proc/stat: how many processes and threads were ever made.
std::optional<std::uint64_t> parseForks(std::string_view text);

// /proc/PID/cgroup: the path that the service manager gave the process.
std::string_view parseCgroup(std::string_view text);

// /proc/PID/cmdline: one argument; empty if there are not so many.
std::string_view argument(std::string_view commandLine, std::size_t index);

// The script that an interpreter runs: the first argument that is no option. Empty if it has none.
std::string_view scriptOf(std::string_view commandLine);

// /proc/PID/environ.
std::optional<std::string_view> variable(std::string_view environment, std::string_view name);

// /proc/PID/status: the pid that the process has for itself, in the innermost of the namespaces
// that it lives in.
std::optional<std::int32_t> parseInnermostPid(std::string_view text);

// /proc/PID/root/.flatpak-info: the app's id. Empty if this is no app's sandbox.
std::string_view parseFlatpakId(std::string_view text);

} // namespace tavero
