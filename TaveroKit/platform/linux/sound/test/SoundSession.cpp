#include "platform/linux/sound/test/SoundSession.h"

#include <array>
#include <csignal>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <fcntl.h>
#include <fstream>
#include <memory>
#include <stdexcept>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

namespace tavero {

namespace {

void request(const char* word) {
    const char* pipe = std::getenv("SOUND_SESSION_CONTROL");
    if (!pipe) throw std::runtime_error("run this through sound-session");
    std::ofstream(pipe) << word << '\n';
}

void put(std::ostream& file, std::uint32_t value, int bytes) {
    for (int i = 0; i < bytes; ++i) file.put(static_cast<char>(value >> (8 * i)));
}

void writeSilence(const std::filesystem::path& path) {
    constexpr std::uint32_t rate = 48000;
    constexpr std::uint32_t bytes = rate * 4 * 60;
    std::ofstream file(path, std::ios::binary);
    file << "RIFF";
    put(file, bytes + 36, 4);
    file << "WAVEfmt ";
    put(file, 16, 4);
    put(file, 1, 2);
    put(file, 2, 2);
    put(file, rate, 4);
    put(file, rate * 4, 4);
    put(file, 4, 2);
    put(file, 16, 2);
    file << "data";
    put(file, bytes, 4);
    file << std::string(bytes, '\0');
}

} // namespace

void SoundSession::stopServices() { request("stop"); }
void SoundSession::startServices() { request("start"); }

std::string SoundSession::output(const std::string& command) {
    struct Close {
        void operator()(std::FILE* file) const { ::pclose(file); }
    };
    const std::unique_ptr<std::FILE, Close> file(::popen(command.c_str(), "r"));
    std::string text;
    std::array<char, 4096> part;
    while (const std::size_t count = std::fread(part.data(), 1, part.size(), file.get()))
        text.append(part.data(), count);
    while (!text.empty() && text.back() == '\n') text.pop_back();
    return text;
}

std::filesystem::path SoundSession::file(const std::string& name) {
    const char* folder = std::getenv("XDG_RUNTIME_DIR");
    return std::filesystem::path(folder ? folder : "") / name;
}

std::filesystem::path SoundSession::silence() {
    std::filesystem::path path = file("silence.wav");
    if (!std::filesystem::exists(path)) writeSilence(path);
    return path;
}

bool SoundSession::waitUntil(PipeWireGraph& graph, const std::function<bool()>& reached) {
    const auto lock = graph.lock();
    return graph.waitUntil(reached, patience);
}

RunningProgram::RunningProgram(const std::vector<std::string>& arguments) {
    std::vector<std::string> copies = arguments;
    std::vector<char*> words;
    words.reserve(copies.size() + 1);
    for (std::string& copy : copies) words.push_back(copy.data());
    words.push_back(nullptr);
    pid_ = ::fork();
    if (pid_ != 0) return;
    ::prctl(PR_SET_PDEATHSIG, SIGKILL);
    const int nothing = ::open("/dev/null", O_RDWR | O_CLOEXEC);
    for (const int descriptor : {0, 1, 2}) ::dup2(nothing, descriptor);
    ::execvp(words[0], words.data());
    ::_exit(127);
}

RunningProgram::~RunningProgram() {
    ::kill(pid_, SIGKILL);
    ::waitpid(pid_, nullptr, 0);
}

} // namespace tavero
