#pragma once

#include "platform/AudioProcesses.h"
#include "platform/mac/MacBundles.h"
#include "platform/mac/MacProcesses.h"

#include <cstdint>
#include <memory>
#include <mutex>
#include <optional>
#include <string>

namespace tavero {

// Who the processes are that Core Audio knows: by their paths, as in the list of apps. Which apps
// the user knows is deliberately narrow: those in a folder for applications; none that runs from a
// disk image or a build folder.
class MacAudioProcesses final : public AudioProcesses {
  public:
    // `home` is the user's home directory, without a slash at its end.
    MacAudioProcesses(std::shared_ptr<MacProcessTable> table, std::shared_ptr<MacBundleInfo> info,
                      const std::string& home, std::int32_t ownPid);

    std::int32_t ownPid() override { return ownPid_; }
    std::optional<AppIdentity> identity(std::int32_t pid) override;
    std::string displayName(const AppIdentity& identity) override;
    bool isUserApp(const std::string& id) override;

  private:
    std::mutex mutex_; // over both
    MacProcesses processes_;
    MacBundles bundles_;
    std::string homeApplications_;
    std::int32_t ownPid_;
};

} // namespace tavero
