#include "platform/mac/FileDates.h"

#include <chrono>

#include <sys/stat.h>

namespace tavero {

std::optional<Date> creationDate(const std::filesystem::path& file) {
    struct stat status = {};
    if (::stat(file.c_str(), &status) != 0) return std::nullopt;
    const timespec& created = status.st_birthtimespec;
    return Date(std::chrono::seconds(created.tv_sec) + std::chrono::nanoseconds(created.tv_nsec));
}

} // namespace tavero
