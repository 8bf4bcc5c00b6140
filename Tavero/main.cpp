#include "TaveroApp.h"

#include "apps/ProcessesOf.h"
#include "desktop/DisplayPlatform.h"
#include "desktop/Instance.h"
#include "desktop/RunningApps.h"
#include "history/HistoryStore.h"

#include <QGuiApplication>

namespace tavero {
namespace {

// With sources of its own: those of the engine are the worker's.
std::vector<std::int32_t> processesOfApp(const std::string& bundlePath) {
    const Machine machine = Machine::host();
    return machine.processes ? processesOf(*machine.processes, bundlePath)
                             : std::vector<std::int32_t>{};
}

} // namespace
} // namespace tavero

// tavero: the application on this machine.
int main(int argc, char** argv) {
    using namespace tavero;
    chooseDisplayPlatform();
    QGuiApplication application(argc, argv);
    prepareApplication();
    const std::unique_ptr<Instance> instance = claimInstance();
    if (!instance) return 0;

    const std::unique_ptr<Clock> clock = hostClock();
    const std::unique_ptr<RunningApps> runningApps = hostRunningApps(processesOfApp);
    Machine machine = Machine::host();
    machine.audio = hostAudio();
    TaveroApp app(
        {.machine = std::move(machine),
         .askToQuit =
             [&](const std::string& bundlePath) { return runningApps->askToQuit(bundlePath); },
         .notifications = hostNotifications(),
         .crashes = hostCrashReports(clock->now()),
         .bluetooth = hostBluetooth(),
         .historyFile = HistoryStore::defaultURL()},
        *clock);
    QObject::connect(instance.get(), &Instance::activated, [&] { app.openMainWindow(); });
    app.launch();
    return QGuiApplication::exec();
}
