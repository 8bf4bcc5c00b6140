#include "window/OverviewModel.h"
#include "window/ToastModel.h"
#include "window/UsingTheMost.h"
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
    Q_PROPERTY(tavero::UsingTheMost* usingTheMost READ usingTheMost CONSTANT FINAL)
    Q_PROPERTY(tavero::ToastModel* toast READ toast CONSTANT FINAL)
    Q_PROPERTY(QString quits READ quits FINAL)

  public:
    Bench() {
        machine_.cpu = TestMachine::quietCpu();
        machine_.memory = TestMachine::halfFullMemory();
        machine_.network = NetworkSnapshot{.bytesIn = 1000};
        machine_.services.askToQuit = [this](const std::string& path) {
            quits_ += QString::fromStdString(path) + ' ';
            return std::optional<std::function<bool()>>([] { return true; });
        };
        machine_.start();
        usingTheMost_ =
            std::make_unique<UsingTheMost>(*machine_.monitor, machine_.settings, machine_.theme);
        toast_ = std::make_unique<ToastModel>(*machine_.monitor);
        overview_ = std::make_unique<OverviewModel>(*machine_.monitor, machine_.settings,
                                                    machine_.theme, "Machine · 16 GB");
    }

    Theme& theme() { return machine_.theme; }
    OverviewModel* overview() const { return overview_.get(); }
    UsingTheMost* usingTheMost() const { return usingTheMost_.get(); }
    ToastModel* toast() const { return toast_.get(); }
    QString quits() const { return quits_; } // the paths of those that were asked to, so far

    Q_INVOKABLE void run(int seconds) { machine_.run(std::chrono::seconds(seconds)); }
    Q_INVOKABLE void setUser(double fraction) { machine_.cpu->user = fraction; }
    Q_INVOKABLE void setDetails(bool shown) { machine_.settings.set(keys::cardDetails, shown); }
    Q_INVOKABLE void setDark(bool isDark) { machine_.appearance.set({.isDark = isDark}); }
    // A full pass over apps of these names, the first of which uses the most, and over a tool.
    Q_INVOKABLE void setApps(const QStringList& names) {
        machine_.processes.clear();
        double cpu = 0.8;
        for (const QString& name : names) {
            machine_.processes.push_back(TestMachine::app(name.toStdString(), cpu, 500));
            cpu /= 2;
        }
        machine_.processes.push_back({.name = "tool",
                                      .path = "/usr/bin/tool",
                                      .cpu = 0.01,
                                      .memory = 1 << 20,
                                      .hasUsage = true,
                                      .app = {AppIdentity::Kind::tool, "tool"}});
        machine_.monitor->viewAppeared(ViewKind::window);
        run(1);
        machine_.monitor->viewDisappeared(ViewKind::window);
    }
    Q_INVOKABLE void setOrder(const QString& order) {
        machine_.settings.set(keys::overviewCardOrder, order.toStdString());
    }

  private:
    TestMachine machine_;
    std::unique_ptr<OverviewModel> overview_;
    std::unique_ptr<UsingTheMost> usingTheMost_;
    std::unique_ptr<ToastModel> toast_;
    QString quits_;
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
