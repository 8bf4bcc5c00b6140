#pragma once

#include <sqlite3.h>

namespace tavero {

// While it lives, SQLite reaches its files through it. It counts the calls that change a file:
// writing, truncating, syncing and deleting. From one of them on it can fail all of them, as a full
// or a broken disk does, or end the process. A write that fails has written its first half. Nothing
// really waits for the disk, which only a power cut could tell.
class FaultyVfs {
  public:
    enum class Fault { full, broken, killed };

    FaultyVfs();
    ~FaultyVfs();
    FaultyVfs(const FaultyVfs&) = delete;
    FaultyVfs& operator=(const FaultyVfs&) = delete;

    int calls() const { return calls_; }
    // The calls from this one on, 1 being the next.
    void failFrom(int call, Fault fault);
    void heal() { first_ = 0; }

  private:
    struct File;
    static sqlite3_io_methods methods();

    // What a changing call has to return instead of doing its work; SQLITE_OK if it may.
    int count();
    int fail() const;

    sqlite3_vfs* real_;
    sqlite3_vfs shim_;
    int calls_ = 0;
    int first_ = 0; // that fails; 0 for none
    Fault fault_ = Fault::full;
};

} // namespace tavero
