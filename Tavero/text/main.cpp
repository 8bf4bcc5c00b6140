#include "monitor/Monitor.h"
#include "platform/Machine.h"
#include "settings/Settings.h"
#include "settings/SettingsFormat.h"
#include "text/Terminal.h"
#include "text/TextPage.h"
#include "time/ThreadWorker.h"

#include <QCoreApplication>

#include <clocale>
#include <memory>

// tavero-text: the live readings in a terminal.
int main(int argc, char** argv) {
    using namespace tavero;
    QCoreApplication application(argc, argv);
    QCoreApplication::setOrganizationName("Tavero");
    QCoreApplication::setOrganizationDomain("brimfold.com");
    QCoreApplication::setApplicationName("tavero");
    std::setlocale(LC_CTYPE, "C.UTF-8"); // for the widths of characters

    Settings settings;
    const std::unique_ptr<Clock> clock = hostClock();
    Monitor monitor(Machine::host(), std::make_unique<ThreadWorker>(), *clock, settings);
    Terminal terminal;

    const auto draw = [&] {
        const TextStyle style{.columns = terminal.columns(), .isColored = terminal.isColored()};
        terminal.show(textPage(monitor.snapshot(), monitor.graphs(), format(settings), {}, style));
    };
    QObject::connect(&monitor, &Monitor::snapshotChanged, draw);
    QObject::connect(&terminal, &Terminal::resized, draw);
    QObject::connect(&terminal, &Terminal::endRequested, &application, &QCoreApplication::quit,
                     Qt::QueuedConnection);

    // It only looks: history and alerts are the application's.
    monitor.viewAppeared(ViewKind::window);
    monitor.startPreview();
    const int result = QCoreApplication::exec();
    monitor.viewDisappeared(ViewKind::window);
    return result;
}
