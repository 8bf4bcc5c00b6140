#include "history/test/FaultyVfs.h"

#include <unistd.h>

#include <csignal>

namespace tavero {

// The real file lies behind this one in the same block of memory.
struct FaultyVfs::File : sqlite3_file {
    FaultyVfs* vfs;

    static File& of(sqlite3_file* file) { return *static_cast<File*>(file); }
    sqlite3_file* real() { return reinterpret_cast<sqlite3_file*>(this + 1); }
};

namespace {

// The default VFS may have anything as its application data, so the one shim stands here.
FaultyVfs* living = nullptr;

} // namespace

sqlite3_io_methods FaultyVfs::methods() {
    sqlite3_io_methods methods = {};
    methods.iVersion = 1;
    methods.xClose = [](sqlite3_file* file) {
        sqlite3_file* real = File::of(file).real();
        return real->pMethods->xClose(real);
    };
    methods.xRead = [](sqlite3_file* file, void* data, int size, sqlite3_int64 at) {
        sqlite3_file* real = File::of(file).real();
        return real->pMethods->xRead(real, data, size, at);
    };
    methods.xWrite = [](sqlite3_file* file, const void* data, int size, sqlite3_int64 at) {
        sqlite3_file* real = File::of(file).real();
        FaultyVfs& vfs = *File::of(file).vfs;
        if (vfs.count() == SQLITE_OK) return real->pMethods->xWrite(real, data, size, at);
        real->pMethods->xWrite(real, data, size / 2, at);
        return vfs.fail();
    };
    methods.xTruncate = [](sqlite3_file* file, sqlite3_int64 size) {
        sqlite3_file* real = File::of(file).real();
        FaultyVfs& vfs = *File::of(file).vfs;
        return vfs.count() == SQLITE_OK ? real->pMethods->xTruncate(real, size) : vfs.fail();
    };
    methods.xSync = [](sqlite3_file* file, int) {
        FaultyVfs& vfs = *File::of(file).vfs;
        return vfs.count() == SQLITE_OK ? SQLITE_OK : vfs.fail();
    };
    methods.xFileSize = [](sqlite3_file* file, sqlite3_int64* size) {
        sqlite3_file* real = File::of(file).real();
        return real->pMethods->xFileSize(real, size);
    };
    methods.xLock = [](sqlite3_file* file, int level) {
        sqlite3_file* real = File::of(file).real();
        return real->pMethods->xLock(real, level);
    };
    methods.xUnlock = [](sqlite3_file* file, int level) {
        sqlite3_file* real = File::of(file).real();
        return real->pMethods->xUnlock(real, level);
    };
    methods.xCheckReservedLock = [](sqlite3_file* file, int* result) {
        sqlite3_file* real = File::of(file).real();
        return real->pMethods->xCheckReservedLock(real, result);
    };
    methods.xFileControl = [](sqlite3_file* file, int operation, void* argument) {
        sqlite3_file* real = File::of(file).real();
        return real->pMethods->xFileControl(real, operation, argument);
    };
    methods.xSectorSize = [](sqlite3_file* file) {
        sqlite3_file* real = File::of(file).real();
        return real->pMethods->xSectorSize(real);
    };
    methods.xDeviceCharacteristics = [](sqlite3_file* file) {
        sqlite3_file* real = File::of(file).real();
        return real->pMethods->xDeviceCharacteristics(real);
    };
    return methods;
}

FaultyVfs::FaultyVfs() : real_(sqlite3_vfs_find(nullptr)), shim_(*real_) {
    living = this;
    shim_.zName = "faulty";
    shim_.pNext = nullptr;
    shim_.szOsFile = static_cast<int>(sizeof(File)) + real_->szOsFile;
    shim_.xOpen = [](sqlite3_vfs*, const char* name, sqlite3_file* made, int flags, int* out) {
        static const sqlite3_io_methods methods = FaultyVfs::methods();
        File& file = File::of(made);
        file.vfs = living;
        sqlite3_vfs* real = living->real_;
        const int result = real->xOpen(real, name, file.real(), flags, out);
        file.pMethods = file.real()->pMethods ? &methods : nullptr; // what there is, is closed
        return result;
    };
    shim_.xDelete = [](sqlite3_vfs*, const char* name, int sync) {
        sqlite3_vfs* real = living->real_;
        return living->count() == SQLITE_OK ? real->xDelete(real, name, sync) : living->fail();
    };
    sqlite3_vfs_register(&shim_, 1);
}

FaultyVfs::~FaultyVfs() {
    sqlite3_vfs_unregister(&shim_);
    sqlite3_vfs_register(real_, 1);
    living = nullptr;
}

void FaultyVfs::failFrom(int call, Fault fault) {
    first_ = calls_ + call;
    fault_ = fault;
}

int FaultyVfs::count() {
    calls_ += 1;
    return first_ > 0 && calls_ >= first_ ? SQLITE_ERROR : SQLITE_OK;
}

int FaultyVfs::fail() const {
    if (fault_ == Fault::killed) ::kill(::getpid(), SIGKILL);
    return fault_ == Fault::full ? SQLITE_FULL : SQLITE_IOERR;
}

} // namespace tavero
