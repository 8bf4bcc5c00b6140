#include "TaveroApp.h"

#include "desktop/DisplayPlatform.h"
#include "desktop/mac/MacBluetooth.h"
#include "platform/sim/SimMachine.h"
#include "time/ThreadWorker.h"

#include <QCommandLineParser>
#include <QGuiApplication>
#include <QTimer>

#include <cstdio>

// tavero-demo: the same application on the simulated Mac, moved by a scenario.
namespace tavero {
namespace {

std::optional<Scenario> scenarioNamed(const std::string& name) {
    for (Scenario& scenario : scenarios())
        if (scenario.name == name) return std::move(scenario);
    return std::nullopt;
}

// An app of the simulated Mac always obeys, at once.
std::optional<std::function<bool()>> asked(SimMachine& machine, const std::string& bundlePath) {
    machine.quit(bundlePath);
    return [] { return true; };
}

} // namespace
} // namespace tavero

int main(int argc, char** argv) {
    using namespace tavero;
    chooseDisplayPlatform();
    QGuiApplication application(argc, argv);
    prepareApplication();
    QGuiApplication::setApplicationName("tavero-demo"); // with settings of its own

    QCommandLineParser arguments;
    QString names;
    for (const Scenario& scenario : scenarios())
        names += "\n  " + QString::fromStdString(scenario.name);
    arguments.setApplicationDescription("Tavero on a simulated Mac. Scenarios:" + names);
    arguments.addHelpOption();
    arguments.addPositionalArgument("scenario", "what happens on it", "[scenario]");
    arguments.process(application);

    std::optional<Scenario> scenario = idleAfternoon();
    if (const QStringList given = arguments.positionalArguments(); !given.isEmpty())
        scenario = scenarioNamed(given.join(' ').toStdString());
    if (!scenario) {
        std::fprintf(stderr, "There is no such scenario. There are:%s\n", qPrintable(names));
        return 2;
    }

    const std::unique_ptr<Clock> clock = hostClock();
    SimMachine machine(std::move(*scenario), [&] { return clock->now(); });
    TaveroApp app(
        {.machine = machine.machine(),
         .askToQuit = [&](const std::string& bundlePath) { return asked(machine, bundlePath); },
         .notifications = hostNotifications(),
         .bluetooth =
             std::make_unique<MacBluetooth>(machine.bluetoothReport(), machine.bluetoothCalls(),
                                            std::make_unique<ThreadWorker>())},
        *clock);
    app.launch();

    // The simulated sound card: without it nothing is heard, nor told of who plays.
    QTimer soundCard;
    QObject::connect(&soundCard, &QTimer::timeout, [&] { machine.audio().cycle(); });
    soundCard.start(50);
    return QGuiApplication::exec();
}
