#pragma once

#include "sound/AppAudioRouter.h"
#include "sound/test/CountingAudio.h"
#include "sound/test/FakeAudio.h"
#include "sound/test/FakeAudioProcesses.h"
#include "sound/test/FakeCapturePermission.h"
#include "sound/test/FakeTaps.h"
#include "time/VirtualTime.h"

#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <chrono>
#include <string>
#include <vector>

namespace tavero {

// A clock that remembers how long it was asked to wait.
class NotedTime final : public Clock {
  public:
    explicit NotedTime(Clock& clock) : clock_(clock) {}

    std::vector<std::chrono::nanoseconds> waits;

    Date now() const override { return clock_.now(); }
    [[nodiscard]] Timer after(std::chrono::nanoseconds delay,
                              std::function<void()> action) override {
        waits.push_back(delay);
        return clock_.after(delay, std::move(action));
    }

  private:
    Clock& clock_;
};

// A machine with two outputs and some apps with one process each, and a router over it. Nothing
// plays yet, and nothing has been opened.
class SoundWorld : public testing::Test {
  protected:
    static constexpr AudioObjectID speakers = 10;
    static constexpr AudioObjectID headphones = 11;
    static constexpr AudioObjectID music = 50;
    static constexpr AudioObjectID browser = 60;

    SoundWorld() {
        audio->addDevice(speakers, "Speakers", "speakers");
        audio->addDevice(headphones, "Headphones", "headphones");
        makeDefault(speakers);
        addApp(music, "Music");
        addApp(browser, "Browser");
        restart();
    }

    // The program ends and begins again, over the same store.
    void restart() {
        router.reset();
        router = std::make_unique<AppAudioRouter>(AudioSystem{counted, processes, taps, permission},
                                                  nullptr, clock, settings);
    }

    static std::string idOf(const std::string& name) { return "/Applications/" + name + ".app"; }
    void addApp(AudioObjectID process, const std::string& name) {
        const auto pid = static_cast<std::int32_t>(process) + 1000;
        processes->runApp(pid, name);
        audio->addProcess(process, pid);
    }
    void play(AudioObjectID process, bool plays = true) {
        audio->put(process, {AudioSelector::processIsRunningOutput}, std::uint32_t{plays});
        audio->put(process, {AudioSelector::processIsRunning}, std::uint32_t{plays});
    }
    void makeDefault(AudioObjectID device) {
        audio->put(audioSystem, {AudioSelector::defaultOutput}, device);
    }
    void passed(std::chrono::nanoseconds duration) { time.advance(duration); }

    // As the router knows it.
    AudioApp app(const std::string& name) const {
        for (const AudioApp& app : router->apps())
            if (app.id == idOf(name)) return app;
        ADD_FAILURE() << "no app " << name;
        return {};
    }
    bool isTapped(const std::string& name) const { return router->taps().contains(idOf(name)); }
    const AppAudioTap& tap(const std::string& name) const { return *router->taps().at(idOf(name)); }
    AudioSetting setting(const std::string& name) const {
        return router->setting({.id = idOf(name)});
    }
    static std::vector<std::string> names(const std::vector<AudioApp>& apps) {
        std::vector<std::string> names;
        names.reserve(apps.size());
        for (const AudioApp& app : apps) names.push_back(app.name);
        return names;
    }
    std::string stored() const {
        const Bytes bytes = settings.get(keys::appAudioSettings);
        return {bytes.begin(), bytes.end()};
    }
    void store(const std::string& text) {
        settings.set(keys::appAudioSettings, Bytes(text.begin(), text.end()));
    }

    QTemporaryDir folder;
    Settings settings{folder.filePath("settings.ini")};
    VirtualTime time;
    NotedTime clock{time};
    std::shared_ptr<FakeAudio> audio = std::make_shared<FakeAudio>();
    std::shared_ptr<CountingAudio> counted = std::make_shared<CountingAudio>(*audio);
    std::shared_ptr<FakeAudioProcesses> processes = std::make_shared<FakeAudioProcesses>();
    std::shared_ptr<FakeTaps> taps = std::make_shared<FakeTaps>();
    std::shared_ptr<FakeCapturePermission> permission = std::make_shared<FakeCapturePermission>();
    std::unique_ptr<AppAudioRouter> router;
};

} // namespace tavero
