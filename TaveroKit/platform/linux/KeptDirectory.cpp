#include "platform/linux/KeptDirectory.h"

#include <dirent.h>

#include <algorithm>
#include <cstddef>
#include <cstring>
#include <utility>

namespace tavero {

namespace {

constexpr std::size_t readSize = 4096;
constexpr std::size_t largestListing = 1 << 20;

} // namespace

KeptDirectory::KeptDirectory(std::filesystem::path path) : path_(std::move(path)) {}

bool KeptDirectory::changed() {
    std::swap(listing_, previous_);
    list();
    const bool isFirst = !std::exchange(isListed_, true);
    return isFirst || listing_ != previous_;
}

void KeptDirectory::list() {
    listing_.clear();
    if (!folder_.isOpen()) folder_ = FileDescriptor(path_.c_str(), O_RDONLY | O_DIRECTORY);
    if (!folder_.isOpen()) return;
    ssize_t count = ::lseek(folder_.number(), 0, SEEK_SET);
    std::size_t length = 0;
    while (count >= 0 && length < largestListing) {
        listing_.resize(length + readSize);
        count = ::getdents64(folder_.number(), listing_.data() + length, readSize);
        if (count <= 0) break;
        length += static_cast<std::size_t>(count);
    }
    listing_.resize(length);
    if (count < 0) folder_.close();
}

std::vector<std::string> KeptDirectory::names() const {
    std::vector<std::string> names;
    for (std::size_t at = 0; at + offsetof(dirent64, d_name) < listing_.size();) {
        unsigned short length = 0;
        std::memcpy(&length, &listing_[at + offsetof(dirent64, d_reclen)], sizeof length);
        std::string name = &listing_[at + offsetof(dirent64, d_name)];
        if (!name.starts_with('.')) names.push_back(std::move(name));
        at += length;
    }
    std::sort(names.begin(), names.end());
    return names;
}

} // namespace tavero
