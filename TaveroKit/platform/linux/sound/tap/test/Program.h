#pragma once

#include <cstdint>
#include <filesystem>
#include <string>
#include <vector>

#include <sys/types.h>

namespace tavero::test {

// A program that a test runs beside itself. Destroying it ends the program.
class Program {
  public:
    explicit Program(std::vector<std::string> command);
    ~Program();
    Program(const Program&) = delete;
    Program& operator=(const Program&) = delete;

    pid_t pid() const { return pid_; }
    // A line on its input.
    void say(const std::string& line) const;
    // The next line of its output, without its end. Empty if there is none within ten seconds.
    std::string line() const;
    // Ends it at once, in the middle of whatever it does, and waits until it is gone.
    void kill();

  private:
    pid_t pid_ = 0;
    int input_ = -1;
    int output_ = -1;
};

// A sound file of ten seconds with one level. It is gone with this.
class LevelFile {
  public:
    explicit LevelFile(float level);
    ~LevelFile();
    LevelFile(const LevelFile&) = delete;
    LevelFile& operator=(const LevelFile&) = delete;

    std::string path() const { return path_.string(); }

  private:
    std::filesystem::path path_;
};

} // namespace tavero::test
