#pragma once

#include <fcntl.h>
#include <unistd.h>

#include <utility>

namespace tavero {

// An open file, closed with this object.
class FileDescriptor {
  public:
    FileDescriptor() = default;
    explicit FileDescriptor(int number) : number_(number) {} // takes over one that is open
    FileDescriptor(const char* path, int flags) : number_(::open(path, flags | O_CLOEXEC)) {}
    ~FileDescriptor() { close(); }
    FileDescriptor(FileDescriptor&& other) noexcept : number_(std::exchange(other.number_, -1)) {}
    FileDescriptor& operator=(FileDescriptor&& other) noexcept {
        std::swap(number_, other.number_);
        return *this;
    }

    bool isOpen() const { return number_ >= 0; }
    int number() const { return number_; }
    void close() {
        if (isOpen()) ::close(number_);
        number_ = -1;
    }

  private:
    int number_ = -1;
};

} // namespace tavero
