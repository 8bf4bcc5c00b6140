#pragma once

#include <QObject> // first, for moc 6.4

#include "platform/AudioSystem.h"
#include "platform/TaskQueue.h"
#include "records/SoundSnapshot.h"
#include "settings/Settings.h"
#include "sound/AudioActivityWatcher.h"
#include "sound/AudioApps.h"
#include "sound/AudioSettings.h"
#include "sound/tap/AppAudioTap.h"
#include "time/Clock.h"
#include "time/ClockQueue.h"

#include <bitset>
#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <set>
#include <span>
#include <string>
#include <utility>
#include <vector>

namespace tavero {

// The observable state of the sound of apps. It keeps each app's volume, mute and output, and taps
// an app's sound only while that differs from what the app would do by itself. Besides it finds out
// which apps sound, as long as somebody wants to know. A value that stays equal tells nobody, and
// whoever is told sees all values of that moment. Main thread only; not to be destroyed by one of
// its own signals.
class AppAudioRouter : public QObject {
    Q_OBJECT

  public:
    using Setting = AudioSetting;
    using Taps = std::map<std::string, std::unique_ptr<AppAudioTap>>; // by the id of an app
    using Permission = AudioCapturePermission::Status;

    // A machine without sound has empty entries: then there is never an app. What begins and ends
    // to play is watched on the queue, or on the main thread if that is null. The clock and the
    // settings must outlive this.
    AppAudioRouter(AudioSystem audio, std::unique_ptr<TaskQueue> activityQueue, Clock& clock,
                   Settings& settings);
    ~AppAudioRouter() override;

    // From the first call on, apps and taps are kept up to date.
    void start();
    // A surface that shows sound opened. From then on the lists are kept fresh, with surfaces or
    // without.
    void pageAppeared();

    // Looks at the permission anew, which the user may have changed elsewhere.
    void checkPermission();
    // Lets the system ask the user, and then calls `done`.
    void requestPermission(std::function<void()> done = {});

    // Makes the taps what settings, apps and outputs ask for; before that, asks the system for its
    // apps and outputs again, if it should.
    void refresh(bool rescan);

    Setting setting(const AudioApp& app) const;
    // The volume in force where the app plays.
    double volume(const AudioApp& app) const;

    // At once, and stored a moment later. The volume is a fraction, cut to 0...1, and for the
    // output on which the app plays; no number changes nothing.
    void setVolume(double volume, const AudioApp& app);
    void setMuted(bool muted, const AudioApp& app);
    // Absent: wherever the system plays.
    void setOutput(const std::optional<std::string>& uid, const AudioApp& app);

    // The level of the loudest of these apps in this moment, before its volume; 0 if it isn't
    // measured.
    float liveLevel(std::span<const std::string> ids) const;

    // Whether playing() is wanted. It takes meters, so only while something shows it.
    bool nowPlayingWanted() const { return nowPlayingWanted_; }
    void setNowPlayingWanted(bool wanted);

    // The apps that the audio system knows.
    const std::vector<AudioApp>& apps() const { return apps_; }
    // Those of them, by id, whose sound turned out to be out of reach.
    const std::set<std::string>& protectedApps() const { return protectedApps_; }
    const std::vector<AudioOutput>& outputs() const { return outputs_; }
    // Where the system plays. Absent if there is no such output, or it isn't known yet.
    const std::optional<std::string>& defaultOutputUID() const { return defaultOutputUID_; }
    Permission permission() const { return permission_; }
    const AudioSettings& settings() const { return settings_; }
    // Those that really sound, within a second; at most six, and none while nobody wants to know.
    const std::vector<AudioApp>& playing() const { return playing_; }
    // Those that may.
    const std::vector<AudioApp>& candidates() const { return candidates_; }
    const Taps& taps() const { return taps_; }     // what apps play goes through them
    const Taps& meters() const { return meters_; } // only listen

  signals:
    void appsChanged();
    void protectedAppsChanged();
    void outputsChanged();
    void defaultOutputUIDChanged();
    void permissionChanged();
    void settingsChanged();
    void playingChanged();
    void candidatesChanged();
    void tapsChanged(); // one came or went
    void metersChanged();
    void nowPlayingWantedChanged();

  private:
    enum class Change {
        apps,
        protectedApps,
        outputs,
        defaultOutputUID,
        permission,
        settings,
        playing,
        candidates,
        taps,
        meters,
        nowPlayingWanted,
        count
    };
    // What changes while one exists is told when the last of them ends.
    class Telling {
      public:
        explicit Telling(AppAudioRouter& router) : router_(router) { ++router_.tellings_; }
        ~Telling() {
            if (--router_.tellings_ == 0) router_.tell();
        }
        Telling(const Telling&) = delete;
        Telling& operator=(const Telling&) = delete;

      private:
        AppAudioRouter& router_;
    };
    void changed(Change change) { changes_.set(static_cast<std::size_t>(change)); }
    template <typename Value>
    void assign(Value& member, Value value, Change change) {
        if (member == value) return;
        member = std::move(value);
        changed(change);
    }
    void tell();

    bool hasSound() const { return audio_.objects != nullptr; }
    void readPermission();
    std::optional<std::string> target(const std::optional<std::string>& uid) const;
    std::unique_ptr<AppAudioTap> makeTap(const AudioApp& app, TapRequest request, float volume);

    // Settings
    template <typename Edit>
    void edit(const AudioApp& app, Edit change);
    void store(const std::string& id, const Setting& setting);
    void loadSettings();
    void scheduleSave();
    void flushSave();

    // Taps
    void rescan();
    void notePlaying(Date now);
    void refreshTap(const AudioApp& app, Date now);
    bool isInOrder(const AppAudioTap& tap, const AudioApp& app, const std::string& target) const;
    bool isSilentCapture(const AppAudioTap& tap, const AudioApp& app, float gain, Date now) const;
    bool hasIdled(const AudioApp& app, Date now) const;
    std::unique_ptr<AppAudioTap> makeTap(const AudioApp& app, const std::string& target,
                                         float gain);
    void keepTap(const std::string& id, std::unique_ptr<AppAudioTap> tap);
    void removeTap(const std::string& id);
    void protect(const std::string& id);
    bool anyRunning() const;

    // What plays now
    void updateNowPlaying(bool rescan);
    void findCandidates();
    void forgetNowPlaying();
    void listen(const AudioApp& app, Date now);
    AppAudioTap* meter(const AudioApp& app);
    void removeMeter(const std::string& id);
    void removeMeters();
    void forgetOthers();
    std::vector<AudioApp> sounding(Date now) const;

    // The loop
    void startLoop();
    void sleep(std::chrono::nanoseconds time, std::int64_t tick);
    void turn(std::int64_t tick);

    AudioSystem audio_;
    Clock& clock_;
    Settings& store_;
    ClockQueue mainQueue_;
    std::unique_ptr<TaskQueue> activityQueue_; // until start

    std::vector<AudioApp> apps_;
    std::set<std::string> protectedApps_;
    std::vector<AudioOutput> outputs_;
    Permission permission_ = Permission::notAsked;
    std::vector<AudioApp> playing_;
    std::optional<std::string> defaultOutputUID_;
    AudioSettings settings_;
    Taps taps_;
    std::map<std::string, Date> playingSince_; // without a break
    std::map<std::string, Date> lastPlayed_;
    Timer saveTask_;
    Taps meters_;
    std::vector<AudioApp> candidates_;
    std::map<std::string, Date> lastSound_; // when a candidate last really sounded
    bool nowPlayingWanted_ = false;
    Timer loop_;             // the wait for the next turn
    std::int64_t loops_ = 0; // how many were started
    bool visible_ = false;   // some surface has been open in this run

    int tellings_ = 0;
    std::bitset<static_cast<std::size_t>(Change::count)> changes_;
    std::unique_ptr<AudioActivityWatcher> watcher_; // ends first: it calls in from its queue
};

} // namespace tavero
