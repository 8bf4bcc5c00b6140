#pragma once

#include <stdexcept>
#include <string>

namespace tavero {

// Why a history could not be opened.
struct HistoryError : std::runtime_error {
    enum class Kind {
        cannotOpen, // not even a connection
        query,      // a statement of the schema failed; what() is SQLite's own message
    };

    HistoryError(Kind why, const std::string& message) : std::runtime_error(message), kind(why) {}

    Kind kind;
};

} // namespace tavero
