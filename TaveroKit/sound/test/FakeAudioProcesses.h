#pragma once

#include "platform/AudioProcesses.h"

#include <map>
#include <mutex>
#include <optional>
#include <string>
#include <utility>

namespace tavero {

// Processes that a test sets: who each is, and what the app is called. From any thread; the values
// are set before others ask, or through the functions.
class FakeAudioProcesses final : public AudioProcesses {
  public:
    static constexpr std::int32_t own = 4242;

    void run(std::int32_t pid, AppIdentity identity) {
        const std::lock_guard lock(mutex_);
        identities_[pid] = std::move(identity);
    }
    // A process of /Applications/NAME.app, which is called NAME.
    void runApp(std::int32_t pid, const std::string& name) {
        run(pid, {AppIdentity::Kind::app, "/Applications/" + name + ".app"});
    }
    void quit(std::int32_t pid) {
        const std::lock_guard lock(mutex_);
        identities_.erase(pid);
    }
    // What an app is called if not by its file.
    void call(const std::string& id, const std::string& name) {
        const std::lock_guard lock(mutex_);
        names_[id] = name;
    }

    std::int32_t ownPid() override { return own; }
    std::optional<AppIdentity> identity(std::int32_t pid) override {
        const std::lock_guard lock(mutex_);
        const auto found = identities_.find(pid);
        return found == identities_.end() ? std::nullopt : std::optional(found->second);
    }
    std::string displayName(const AppIdentity& identity) override {
        const std::lock_guard lock(mutex_);
        if (const auto found = names_.find(identity.id); found != names_.end())
            return found->second;
        if (identity.kind != AppIdentity::Kind::app) return identity.id;
        const std::string file = identity.id.substr(identity.id.rfind('/') + 1);
        return file.substr(0, file.rfind('.'));
    }
    bool isUserApp(const std::string& id) override { return id.starts_with("/Applications/"); }

  private:
    std::mutex mutex_;
    std::map<std::int32_t, AppIdentity> identities_;
    std::map<std::string, std::string> names_;
};

} // namespace tavero
