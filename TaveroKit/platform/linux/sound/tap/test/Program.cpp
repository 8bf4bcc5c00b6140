#include "platform/linux/sound/tap/test/Program.h"

#include <array>
#include <csignal>
#include <cstring>
#include <fstream>
#include <stdexcept>

#include <fcntl.h>
#include <poll.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

namespace tavero::test {

Program::Program(std::vector<std::string> command) {
    std::array<int, 2> in{};
    std::array<int, 2> out{};
    if (pipe2(in.data(), O_CLOEXEC) != 0 || pipe2(out.data(), O_CLOEXEC) != 0)
        throw std::runtime_error("no pipe");
    std::vector<char*> words;
    words.reserve(command.size() + 1);
    for (std::string& word : command) words.push_back(word.data());
    words.push_back(nullptr);
    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    posix_spawn_file_actions_adddup2(&actions, in[0], STDIN_FILENO);
    posix_spawn_file_actions_adddup2(&actions, out[1], STDOUT_FILENO);
    const int failure = posix_spawnp(&pid_, words[0], &actions, nullptr, words.data(), environ);
    posix_spawn_file_actions_destroy(&actions);
    close(in[0]);
    close(out[1]);
    input_ = in[1];
    output_ = out[0];
    if (failure != 0) throw std::runtime_error("can't run " + command[0]);
}

Program::~Program() {
    kill();
    close(input_);
    close(output_);
}

void Program::kill() {
    if (pid_ == 0) return;
    ::kill(pid_, SIGKILL);
    waitpid(pid_, nullptr, 0);
    pid_ = 0;
}

void Program::say(const std::string& line) const {
    const std::string text = line + "\n";
    if (write(input_, text.data(), text.size()) != static_cast<ssize_t>(text.size()))
        throw std::runtime_error("it doesn't listen");
}

std::string Program::line() const {
    std::string text;
    for (char letter = 0; letter != '\n';) {
        pollfd waited{.fd = output_, .events = POLLIN};
        if (poll(&waited, 1, 10'000) != 1 || read(output_, &letter, 1) != 1) return "";
        if (letter != '\n') text += letter;
    }
    return text;
}

LevelFile::LevelFile(float level) {
    std::string name = (std::filesystem::temp_directory_path() / "level.XXXXXX.wav").string();
    const int made = mkstemps(name.data(), 4);
    if (made < 0) throw std::runtime_error("no file");
    close(made);
    path_ = name;
    constexpr std::uint32_t frames = 480'000;
    // RIFF, one channel of 16 bits at 48 kHz.
    const std::array<std::uint32_t, 11> header = {
        0x46464952, 36 + frames * 2, 0x45564157, 0x20746d66, 16,        0x00010001,
        48000,      96000,           0x00100002, 0x61746164, frames * 2};
    const std::vector<std::int16_t> samples(frames, static_cast<std::int16_t>(level * 32768));
    std::ofstream file(path_, std::ios::binary);
    file.write(reinterpret_cast<const char*>(header.data()), sizeof header);
    file.write(reinterpret_cast<const char*>(samples.data()), std::streamsize{frames} * 2);
}

LevelFile::~LevelFile() {
    std::error_code ignored;
    std::filesystem::remove(path_, ignored);
}

} // namespace tavero::test
