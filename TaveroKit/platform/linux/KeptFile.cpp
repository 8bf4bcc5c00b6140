#include "platform/linux/KeptFile.h"

#include <cerrno>
#include <cstddef>
#include <utility>

namespace tavero {

namespace {

constexpr std::size_t page = 4096;
// Beyond this it is no kernel's table, and the rest is left unread.
constexpr std::size_t largestFile = 16 << 20;

// Reads from the start to the end. False if the file refuses.
bool readAll(const FileDescriptor& file, std::size_t shortestFullRead, std::vector<char>& buffer,
             std::size_t& length) {
    length = 0;
    while (length < largestFile) {
        if (buffer.size() < length + page) buffer.resize(2 * length + 2 * page);
        const ssize_t count = ::pread(file.number(), buffer.data() + length, buffer.size() - length,
                                      static_cast<off_t>(length));
        if (count < 0 && errno == EINTR) continue;
        if (count < 0) return false;
        length += static_cast<std::size_t>(count);
        if (static_cast<std::size_t>(count) < shortestFullRead) break;
    }
    return true;
}

} // namespace

KeptFile::KeptFile(std::filesystem::path path) : path_(std::move(path)) {}

std::optional<std::string_view> KeptFile::read(std::vector<char>& buffer) {
    // The kernel hands out whole records and stops at the first that doesn't fit its page. The
    // records of the files that are kept are short, so a read of under half a page reached the end.
    constexpr std::size_t shortestFullRead = page / 2;

    if (!file_.isOpen()) file_ = FileDescriptor(path_.c_str(), O_RDONLY);
    if (!file_.isOpen()) return std::nullopt;
    std::size_t length = 0;
    if (!readAll(file_, shortestFullRead, buffer, length)) {
        file_.close();
        return std::nullopt;
    }
    return std::string_view(buffer.data(), length);
}

std::optional<std::string> readFile(const std::filesystem::path& path) {
    const FileDescriptor file(path.c_str(), O_RDONLY);
    if (!file.isOpen()) return std::nullopt;
    std::vector<char> buffer;
    std::size_t length = 0;
    if (!readAll(file, 1, buffer, length)) return std::nullopt;
    return std::string(buffer.data(), length);
}

std::string readAttribute(const std::filesystem::path& path) {
    std::string text = readFile(path).value_or("");
    if (text.ends_with('\n')) text.pop_back();
    return text;
}

} // namespace tavero
