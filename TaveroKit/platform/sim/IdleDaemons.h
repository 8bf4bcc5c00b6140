#pragma once

#include <cstdint>
#include <span>
#include <string_view>

namespace tavero {

// A background process of the simulated Mac that does the same at all times.
struct IdleDaemon {
    std::string_view path;
    double cpu = 0.0005; // cores
    double megabytes = 6;
    std::int32_t threads = 3;
};

// Those of the system and its service accounts, without the first of all processes.
std::span<const IdleDaemon> idleSystemDaemons();

// Those of the user.
std::span<const IdleDaemon> idleUserDaemons();

} // namespace tavero
