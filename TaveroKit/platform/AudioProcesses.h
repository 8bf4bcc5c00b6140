#pragma once

#include "records/AppIdentity.h"

#include <cstdint>
#include <optional>
#include <string>

namespace tavero {

// Who the processes are that the audio system knows by their pids. From any thread.
class AudioProcesses {
  public:
    virtual ~AudioProcesses() = default;

    // The pid of this program.
    virtual std::int32_t ownPid() = 0;

    // The app, the system or the tool that a process belongs to, the same as in the list of apps.
    // Absent if the process is gone.
    virtual std::optional<AppIdentity> identity(std::int32_t pid) = 0;

    virtual std::string displayName(const AppIdentity& identity) = 0;

    // Whether an app, by its id, is one that its user knows, and no part of the system's machinery.
    virtual bool isUserApp(const std::string& id) = 0;
};

} // namespace tavero
