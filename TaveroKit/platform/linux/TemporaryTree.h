#pragma once

#include <stdlib.h>

#include <filesystem>
#include <fstream>
#include <initializer_list>
#include <stdexcept>
#include <string>
#include <string_view>

namespace tavero {

// A small tree of files for a test, deleted with this object.
class TemporaryTree {
  public:
    struct File {
        std::string path;
        std::string text;
    };

    TemporaryTree(std::initializer_list<File> files = {}) {
        std::string pattern = (std::filesystem::temp_directory_path() / "tavero-XXXXXX").string();
        if (!::mkdtemp(pattern.data())) throw std::runtime_error("no temporary folder");
        root_ = pattern;
        for (const auto& [path, text] : files) write(path, text);
    }
    ~TemporaryTree() {
        std::error_code ignored;
        std::filesystem::remove_all(root_, ignored);
    }
    TemporaryTree(const TemporaryTree&) = delete;
    TemporaryTree& operator=(const TemporaryTree&) = delete;

    const std::filesystem::path& root() const { return root_; }

    // An existing file keeps its identity, as a kernel's does.
    void write(const std::string& path, std::string_view text) const {
        make(path);
        std::ofstream(root_ / path, std::ios::binary) << text;
    }
    void link(const std::string& path, const std::string& target) const {
        make(path);
        std::filesystem::create_symlink(target, root_ / path);
    }
    void folder(const std::string& path) const { make(path + "/"); }
    void remove(const std::string& path) const { std::filesystem::remove_all(root_ / path); }

  private:
    void make(const std::string& path) const {
        std::filesystem::create_directories((root_ / path).parent_path());
    }

    std::filesystem::path root_;
};

} // namespace tavero
