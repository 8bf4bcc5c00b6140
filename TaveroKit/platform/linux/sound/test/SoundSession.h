#pragma once

#include "platform/linux/sound/PipeWireGraph.h"

#include <chrono>
#include <filesystem>
#include <functional>
#include <string>
#include <sys/types.h>
#include <vector>

namespace tavero {

// The services that the script sound-session runs the tests in.
namespace SoundSession {

// How long a test waits for what must come. Only a failure ever takes so long.
inline constexpr std::chrono::seconds patience{15};

// Ends the services as a crash would, and starts them again; returns before it is done.
void stopServices();
void startServices();

// What a shell command writes, without the last line's end.
std::string output(const std::string& command);

// In a folder that goes with the session.
std::filesystem::path file(const std::string& name);
// A file of silence, two channels of 48 kHz, made at the first call; it lasts a minute.
std::filesystem::path silence();

// Waits for it with the graph locked only in between.
bool waitUntil(PipeWireGraph& graph, const std::function<bool()>& reached);

} // namespace SoundSession

// A program that runs until this is destroyed.
class RunningProgram {
  public:
    explicit RunningProgram(const std::vector<std::string>& arguments);
    ~RunningProgram();
    RunningProgram(const RunningProgram&) = delete;

    pid_t pid() const { return pid_; }

  private:
    pid_t pid_;
};

} // namespace tavero
