#include "TaveroApp.h"

#include "desktop/Instance.h"

#include <QGuiApplication>

// tavero: the application on this machine.
int main(int argc, char** argv) {
    using namespace tavero;
    QGuiApplication application(argc, argv);
    prepareApplication();
    const std::unique_ptr<Instance> instance = claimInstance();
    if (!instance) return 0;

    const std::unique_ptr<Clock> clock = hostClock();
    TaveroApp app(Machine::host(), *clock);
    QObject::connect(instance.get(), &Instance::activated, [&] { app.openMainWindow(); });
    app.launch();
    return QGuiApplication::exec();
}
