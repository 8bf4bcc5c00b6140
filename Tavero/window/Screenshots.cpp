// Renders the main window in its looks and sizes, without a display:
//   tavero-screenshots FOLDER
// The machine is one of plain values, so two runs give the same pictures.

#include "window/MainWindow.h"
#include "window/test/TestMachine.h"

#include <QDir>
#include <QGuiApplication>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QProcess>
#include <QQuickItem>
#include <QQuickWindow>

#include <cmath>
#include <cstdio>

namespace tavero {
namespace {

constexpr std::uint64_t mebibyte = std::uint64_t{1} << 20;

// A machine that does a little of everything for a minute and a half. What it lacks, it lacks.
void live(TestMachine& machine) {
    machine.start();
    machine.monitor->viewAppeared(ViewKind::window);
    for (int second = 0; second < 90; ++second) {
        const double wave = std::sin(second * 0.21) * std::sin(second * 0.047 + 1);
        if (machine.cpu) {
            CPUSnapshot& cpu = *machine.cpu;
            cpu.user = 0.14 + 0.09 * wave + (second % 31 == 0 ? 0.3 : 0);
            cpu.system = 0.05 + 0.02 * wave;
            for (std::size_t core = 0; core < cpu.perCore.size(); ++core) {
                const double own = std::sin(second * 0.3 + static_cast<double>(core) * 1.7);
                cpu.perCore[core] = std::abs(own) * 0.8 / (1 + static_cast<double>(core % 8));
            }
        }
        if (machine.memory)
            machine.memory->app += static_cast<std::uint64_t>(std::abs(wave) * 12 * mebibyte);
        if (machine.gpu) machine.gpu->device = 0.2 + 0.12 * wave;
        if (machine.disk) {
            machine.disk->bytesRead += static_cast<std::uint64_t>(std::abs(wave) * 6 * mebibyte);
            machine.disk->bytesWritten += second % 9 == 0 ? 14 * mebibyte : mebibyte / 4;
        }
        if (machine.network) {
            machine.network->bytesIn += static_cast<std::uint64_t>((1.2 + wave) * 1.1 * mebibyte);
            machine.network->bytesOut += static_cast<std::uint64_t>((1.1 - wave) * 0.2 * mebibyte);
        }
        machine.run(std::chrono::seconds(1));
    }
}

void addEverything(TestMachine& machine) {
    machine.cpu = TestMachine::quietCpu();
    machine.memory = TestMachine::halfFullMemory();
    machine.gpu = GPUSnapshot{.device = 0.2, .memoryInUse = 1240 * mebibyte, .cores = 10};
    machine.battery = BatterySnapshot{
        .percent = 76, .minutesToEmpty = 312, .cycleCount = 141, .health = 0.93, .watts = -8.4};
    machine.disk = DiskSnapshot{.bytesRead = 1,
                                .bytesWritten = 1,
                                .capacity = 494'384'795'648,
                                .available = 187'200'000'000,
                                .name = "Macintosh HD"};
    machine.network = NetworkSnapshot{.bytesIn = 8'412'000'000, .bytesOut = 911'000'000};
    machine.processes = {TestMachine::app("Browser", 0.62, 2900),
                         TestMachine::app("Editor", 0.4, 1800),
                         TestMachine::app("Music", 0.05, 410), TestMachine::app("Mail", 0.02, 380)};
    machine.processes.push_back(TestMachine::app("Browser", 1.9, 700)); // and a helper of its own
    machine.processes.back().name = "renderer";
    machine.processes.push_back({.name = "compiler",
                                 .path = "/usr/bin/compiler",
                                 .cpu = 1.7,
                                 .memory = 640 * mebibyte,
                                 .hasUsage = true,
                                 .app = {AppIdentity::Kind::tool, "compiler"}});
}

void twoCards(TestMachine& machine) {
    addEverything(machine);
    machine.gpu.reset();
    machine.battery.reset();
    machine.disk.reset();
    machine.network.reset();
    live(machine);
}

void everything(TestMachine& machine) {
    addEverything(machine);
    machine.systemActivity =
        SystemActivity{.process = "indexer", .description = "indexing for search", .cpu = 1.2};
    machine.processes.push_back({.name = "indexer",
                                 .path = "/usr/libexec/indexer",
                                 .cpu = 1.2,
                                 .memory = 240 * mebibyte,
                                 .hasUsage = true,
                                 .app = AppIdentity::system});
    live(machine);
}

void headlinesOnly(TestMachine& machine) {
    machine.settings.set(keys::cardDetails, false);
    everything(machine);
}

void notYet(TestMachine& machine) { machine.start(); }

void hardlyAnything(TestMachine& machine) {
    machine.battery = BatterySnapshot{.percent = 3, .isCharging = true, .onExternalPower = true};
    machine.disk = DiskSnapshot{.bytesRead = 1, .capacity = 0, .available = -5};
    machine.network = NetworkSnapshot{.bytesIn = 1};
    live(machine);
}

void tooMuch(TestMachine& machine) {
    addEverything(machine);
    machine.cpu->perCore.assign(64, 0.0);
    machine.cpu->loadAverage.one = 1234.5;
    machine.memory->total = std::uint64_t{2048} * 1024 * mebibyte;
    machine.memory->pressure = MemoryPressure::critical;
    machine.processes.front() =
        TestMachine::app("A <b>helper whose name nobody ever thought of shortening, not even here",
                         63.5, std::uint64_t{1500} * 1024);
    live(machine);
    machine.cpu->user = 0.97;
    machine.cpu->system = 0.03;
    machine.cpu->perCore.assign(64, 1.0);
    machine.run(std::chrono::seconds(1));
}

const char laptop[] = "MacBook Air · Apple M3 · 16 GB · 512 GB";
const char longSummary[] =
    "A workstation with quite a long name · Some processor with 64 cores and "
    "then some at 3.20 GHz · 2048 GB · 4096 GB";

// What the user does once the window is shown.
enum class Gesture { none, hover, ask, quit };

struct Scene {
    const char* name;
    void (*prepare)(TestMachine&);
    QSize size = {1180, 820};
    bool isDark = false;
    const char* summary = laptop;
    Gesture gesture = Gesture::none;
};

const Scene scenes[] = {
    {"two-cards", twoCards},
    {"two-cards-dark", twoCards, {1180, 820}, true, ""},
    {"all", everything},
    {"all-dark", everything, {1180, 820}, true},
    {"two-columns", everything, {800, 820}},
    {"narrow", everything, {560, 700}},
    {"narrow-dark", everything, {560, 700}, true},
    {"smallest", everything, {480, 420}},
    {"largest", everything, {2560, 1400}},
    {"headlines", headlinesOnly},
    {"waiting", notYet},
    {"absent-dark", hardlyAnything, {1180, 820}, true, ""},
    {"extreme", tooMuch, {1180, 820}, false, longSummary},
    {"extreme-narrow", tooMuch, {560, 700}, false, longSummary},
    {"apps-hover", twoCards, {1180, 820}, false, laptop, Gesture::hover},
    {"apps-hover-dark", twoCards, {1180, 820}, true, laptop, Gesture::hover},
    {"apps-ask", twoCards, {1180, 820}, false, laptop, Gesture::ask},
    {"apps-ask-dark", twoCards, {1180, 820}, true, laptop, Gesture::ask},
    {"apps-quit", twoCards, {1180, 820}, false, laptop, Gesture::quit},
    {"apps-quit-dark", twoCards, {1180, 820}, true, laptop, Gesture::quit},
    {"apps-narrow", tooMuch, {560, 700}, false, longSummary, Gesture::hover},
    {"apps-smallest", tooMuch, {480, 420}, false, longSummary, Gesture::ask},
};

QQuickWindow* shownWindow() {
    for (QWindow* window : QGuiApplication::topLevelWindows())
        if (auto* quick = qobject_cast<QQuickWindow*>(window)) return quick;
    return nullptr;
}

QQuickItem* find(QQuickItem* item, const QString& text) {
    if (item->isVisible() && item->property("text").toString() == text) return item;
    for (QQuickItem* child : item->childItems())
        if (QQuickItem* found = find(child, text)) return found;
    return nullptr;
}

void move(QQuickWindow& window, QPointF to) {
    QMouseEvent event(QEvent::MouseMove, to, to, Qt::NoButton, Qt::NoButton, Qt::NoModifier);
    QCoreApplication::sendEvent(&window, &event);
    QGuiApplication::processEvents();
}

void click(QQuickWindow& window, QPointF at) {
    move(window, at);
    for (const QEvent::Type type : {QEvent::MouseButtonPress, QEvent::MouseButtonRelease}) {
        QMouseEvent event(type, at, at, Qt::LeftButton, Qt::LeftButton, Qt::NoModifier);
        QCoreApplication::sendEvent(&window, &event);
    }
    QGuiApplication::processEvents();
    window.grabWindow(); // with a picture comes the layout
}

QPointF middle(const QQuickItem& item) {
    return item.mapToScene(QPointF(item.width() / 2, item.height() / 2));
}

// With the editor among the apps.
void perform(Gesture gesture, QQuickWindow& window, TestMachine& machine) {
    if (gesture == Gesture::none) return;
    QKeyEvent end(QEvent::KeyPress, Qt::Key_End, Qt::NoModifier);
    QCoreApplication::sendEvent(&window, &end);
    QGuiApplication::processEvents();
    QQuickItem* control = find(window.contentItem(), "Quit Editor");
    if (!control) return;
    move(window, middle(*control));
    if (gesture == Gesture::hover) return;
    click(window, middle(*control));
    if (gesture == Gesture::ask) return;
    if (QQuickItem* quit = find(window.contentItem(), "Quit")) click(window, middle(*quit));
    machine.run(std::chrono::seconds(1));
}

bool take(const Scene& scene, const QString& file) {
    TestMachine machine;
    machine.settings.set<std::string>(keys::theme, scene.isDark ? "dark" : "light");
    machine.appearance.set({.reducesMotion = true}); // a picture shows where a motion ends
    machine.services.askToQuit = [](const std::string&) {
        return std::optional<std::function<bool()>>([] { return true; });
    };
    scene.prepare(machine);
    MainWindow main(*machine.monitor, machine.settings, machine.theme,
                    {.summary = QString::fromUtf8(scene.summary), .surroundings = [] {
                         return Surroundings{.displays = 2, .openApps = 9, .uptime = "3 d 4 h"};
                     }});
    main.open();
    QQuickWindow* window = shownWindow();
    if (!window) return false;
    window->resize(scene.size);
    QGuiApplication::processEvents();
    perform(scene.gesture, *window, machine);
    QGuiApplication::processEvents();
    return window->grabWindow().save(file);
}

bool takeAll(const QDir& folder, const QString& suffix) {
    bool done = true;
    for (const Scene& scene : scenes)
        done = take(scene, folder.filePath(scene.name + suffix + ".png")) && done;
    return done;
}

} // namespace
} // namespace tavero

int main(int argc, char** argv) {
    qputenv("QT_QPA_PLATFORM", "offscreen");
    const QGuiApplication application(argc, argv);
    const QStringList arguments = QCoreApplication::arguments();
    if (arguments.size() < 2 || !QDir().mkpath(arguments[1])) {
        std::fputs("usage: tavero-screenshots FOLDER\n", stderr);
        return 2;
    }
    const bool isScaled = qEnvironmentVariable("QT_SCALE_FACTOR") == "2";
    if (!tavero::takeAll(QDir(arguments[1]), isScaled ? "@2x" : "")) return 1;
    if (isScaled) return 0;
    // The scale is fixed for the life of a program, so another one takes the others.
    qputenv("QT_SCALE_FACTOR", "2");
    return QProcess::execute(QCoreApplication::applicationFilePath(), {arguments[1]});
}
