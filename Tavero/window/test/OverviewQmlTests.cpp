#include "window/OverviewModel.h"
#include "window/test/TestMachine.h"

#include <QObject>
#include <QQmlEngine>
#include <QtQml/QQmlExtensionPlugin>
#include <QtQuickTest/quicktest.h>

#include <memory>

Q_IMPORT_QML_PLUGIN(Tavero_ComponentsPlugin)
Q_IMPORT_QML_PLUGIN(Tavero_WindowPlugin)

namespace tavero {

// The machine under the page, as far as a test turns it.
class Bench : public QObject {
    Q_OBJECT
    Q_PROPERTY(tavero::OverviewModel* overview READ overview CONSTANT FINAL)

  public:
    Bench() {
        machine_.cpu = TestMachine::quietCpu();
        machine_.memory = TestMachine::halfFullMemory();
        machine_.network = NetworkSnapshot{.bytesIn = 1000};
        machine_.start();
        overview_ = std::make_unique<OverviewModel>(*machine_.monitor, machine_.settings,
                                                    machine_.theme, "Machine · 16 GB");
    }

    Theme& theme() { return machine_.theme; }
    OverviewModel* overview() const { return overview_.get(); }

    Q_INVOKABLE void run(int seconds) { machine_.run(std::chrono::seconds(seconds)); }
    Q_INVOKABLE void setUser(double fraction) { machine_.cpu->user = fraction; }
    Q_INVOKABLE void setDetails(bool shown) { machine_.settings.set(keys::cardDetails, shown); }
    Q_INVOKABLE void setDark(bool isDark) { machine_.appearance.set({.isDark = isDark}); }
    Q_INVOKABLE void setOrder(const QString& order) {
        machine_.settings.set(keys::overviewCardOrder, order.toStdString());
    }

  private:
    TestMachine machine_;
    std::unique_ptr<OverviewModel> overview_;
};

class Setup : public QObject {
    Q_OBJECT

  public slots:
    void qmlEngineAvailable(QQmlEngine* engine) {
        engine->addImportPath(QStringLiteral("qrc:/qt/qml"));
        bench_.theme().install(*engine);
        qmlRegisterSingletonInstance("Tavero.Test", 1, 0, "Bench", &bench_);
    }

  private:
    Bench bench_;
};

} // namespace tavero

QUICK_TEST_MAIN_WITH_SETUP(Overview, tavero::Setup)

#include "OverviewQmlTests.moc"
