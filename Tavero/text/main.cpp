#include "bluetooth/Bluetooth.h"
#include "history/HistoryStore.h"
#include "insights/InsightsPage.h"
#include "monitor/Monitor.h"
#include "platform/Machine.h"
#include "settings/Settings.h"
#include "settings/SettingsFormat.h"
#include "sound/AppAudioRouter.h"
#include "text/DeviceLines.h"
#include "text/ListeningTaps.h"
#include "text/ReportPage.h"
#include "text/SoundLines.h"
#include "text/Terminal.h"
#include "text/TextDrawing.h"
#include "text/TextPage.h"
#include "text/TextPen.h"
#include "time/ThreadWorker.h"

#include <QCommandLineParser>
#include <QCoreApplication>

#include <algorithm>
#include <clocale>
#include <filesystem>
#include <iterator>
#include <memory>
#include <optional>
#include <string>
#include <system_error>
#include <utility>
#include <vector>

namespace tavero {
namespace {

// The history that the application keeps, if there is one: whoever only looks leaves none behind.
std::optional<std::filesystem::path> existingHistory() {
    std::optional<std::filesystem::path> file = HistoryStore::defaultURL();
    std::error_code error;
    if (file && !std::filesystem::exists(*file, error)) file.reset();
    return file;
}

AudioSystem listening(AudioSystem audio) {
    if (audio.taps) audio.taps = std::make_shared<ListeningTaps>(std::move(audio.taps));
    return audio;
}

// What tavero-text shows: the live readings, or the report on the last days.
class TextProgram : public QObject {
  public:
    TextProgram(Machine machine, Clock& clock, Settings& settings, Terminal& terminal)
        : settings_(settings), terminal_(terminal), surroundings_{.systemName = machine.systemName},
          sound_(listening(machine.audio), nullptr, clock, settings),
          monitor_(std::move(machine), std::make_unique<ThreadWorker>(), clock, settings),
          history_(existingHistory(), std::make_unique<ThreadWorker>(), clock, settings),
          insights_(history_, clock, settings),
          bluetooth_({.control = hostBluetooth()}, clock, settings) {
        connect(&monitor_, &Monitor::snapshotChanged, this, [this] { draw(); });
        connect(&bluetooth_, &Bluetooth::snapshotChanged, this, [this] { draw(); });
        connect(&insights_, &InsightsPage::reportChanged, this, [this] { draw(); });
        connect(&insights_, &InsightsPage::daysChanged, this, [this] { draw(); });
        connect(&terminal_, &Terminal::resized, this, [this] { draw(); });
        connect(&terminal_, &Terminal::keyPressed, this, [this](char key) { obey(key); });
    }
    ~TextProgram() override { leave(); }

    void show(bool report) {
        leave();
        showsReport_ = report;
        if (report) {
            insights_.appear();
        } else {
            // It only looks: history and alerts are the application's.
            monitor_.viewAppeared(ViewKind::window);
            monitor_.startPreview();
            bluetooth_.surfaceAppeared();
            sound_.start();
            sound_.pageAppeared();
            sound_.setNowPlayingWanted(true); // for the levels
            isLive_ = true;
        }
        draw();
    }

  private:
    void leave() {
        if (std::exchange(isLive_, false)) {
            monitor_.viewDisappeared(ViewKind::window);
            bluetooth_.surfaceDisappeared();
            sound_.setNowPlayingWanted(false);
        }
        insights_.disappear();
    }

    void obey(char key) {
        if (key == '\t') show(!showsReport_);
        if (key == '7') insights_.setDays(7);
        if (key == '3') insights_.setDays(30);
    }

    void draw() {
        const TextStyle style{.columns = terminal_.columns(), .isColored = terminal_.isColored()};
        std::vector<std::string> lines =
            showsReport_ ? reportPage(insights_.content(), insights_.days(), style)
                         : livePage(style);
        if (terminal_.isInteractive()) lines.insert(lines.begin(), keys(style));
        // In a file or a pipe a picture is for good: one that only asks for patience is left out.
        else if (showsReport_ && !insights_.report())
            return;
        terminal_.show(lines);
        if (showsReport_ && !terminal_.isInteractive()) QCoreApplication::quit();
    }

    std::vector<std::string> livePage(const TextStyle& style) const {
        std::vector<std::string> lines = textPage(monitor_.snapshot(), monitor_.graphs(),
                                                  format(settings_), surroundings_, style);
        const TextPen pen{style.isColored};
        const auto add = [&](std::vector<std::string> more) {
            std::move(more.begin(), more.end(), std::back_inserter(lines));
        };
        add(soundLines(monitor_.snapshot(), appSounds(sound_), format(settings_), pen,
                       style.columns));
        add(deviceLines(bluetooth_.snapshot(), pen, style.columns));
        return lines;
    }

    std::string keys(const TextStyle& style) const {
        return TextPen{style.isColored}.dim(
            fitted(showsReport_ ? "Tab: live  7, 3: days  q: quit" : "Tab: Insights  q: quit",
                   style.columns - 1));
    }

    Settings& settings_;
    Terminal& terminal_;
    Surroundings surroundings_;
    AppAudioRouter sound_;
    Monitor monitor_;
    History history_;
    InsightsPage insights_;
    Bluetooth bluetooth_;
    bool showsReport_ = false;
    bool isLive_ = false;
};

} // namespace
} // namespace tavero

// tavero-text: the live readings in a terminal, and the report on the last days.
int main(int argc, char** argv) {
    using namespace tavero;
    QCoreApplication application(argc, argv);
    QCoreApplication::setOrganizationName("Tavero");
    QCoreApplication::setOrganizationDomain("brimfold.com");
    QCoreApplication::setApplicationName("tavero");
    std::setlocale(LC_CTYPE, "C.UTF-8"); // for the widths of characters

    QCommandLineParser arguments;
    arguments.setApplicationDescription("Tavero in a terminal. Tab changes the view, q ends it.");
    arguments.addHelpOption();
    const QCommandLineOption report("report", "Start with the report on the last days.");
    arguments.addOption(report);
    arguments.process(application);

    Settings settings;
    const std::unique_ptr<Clock> clock = hostClock();
    Terminal terminal;
    QObject::connect(&terminal, &Terminal::endRequested, &application, &QCoreApplication::quit,
                     Qt::QueuedConnection);
    Machine machine = Machine::host();
    machine.audio = hostAudio();
    TextProgram program(std::move(machine), *clock, settings, terminal);
    program.show(arguments.isSet(report));
    return QCoreApplication::exec();
}
