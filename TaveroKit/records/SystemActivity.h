#pragma once

#include <string>

namespace tavero {

// The busiest process of the operating system, when it works unusually hard.
struct SystemActivity {
    static constexpr double unusualCPU = 0.6; // cores

    std::string process;     // the executable's name
    std::string description; // what it does, in plain words
    double cpu = 0;          // cores

    bool operator==(const SystemActivity&) const = default;
};

} // namespace tavero
