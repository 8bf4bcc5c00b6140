// Renders the main window in its looks and sizes, without a display:
//   tavero-screenshots FOLDER
// The machine is one of plain values, so two runs give the same pictures.

#include "window/MainWindow.h"
#include "window/test/TestMachine.h"

#include <QDir>
#include <QGuiApplication>
#include <QProcess>
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
    machine.processes = {{.pid = 1,
                          .name = "editor",
                          .path = "/opt/editor",
                          .cpu = 0.4,
                          .memory = 1800 * mebibyte,
                          .hasUsage = true,
                          .app = {AppIdentity::Kind::tool, "editor"}}};
}

void twoCards(TestMachine& machine) {
    machine.cpu = TestMachine::quietCpu();
    machine.memory = TestMachine::halfFullMemory();
    live(machine);
}

void everything(TestMachine& machine) {
    addEverything(machine);
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
    ProcessSample& process = machine.processes.front();
    process.name = "A <b>helper</b> whose name nobody ever thought of shortening";
    process.app.id = process.name;
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

struct Scene {
    const char* name;
    void (*prepare)(TestMachine&);
    QSize size = {1180, 820};
    bool isDark = false;
    const char* summary = laptop;
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
};

QQuickWindow* shownWindow() {
    for (QWindow* window : QGuiApplication::topLevelWindows())
        if (auto* quick = qobject_cast<QQuickWindow*>(window)) return quick;
    return nullptr;
}

bool take(const Scene& scene, const QString& file) {
    TestMachine machine;
    machine.settings.set<std::string>(keys::theme, scene.isDark ? "dark" : "light");
    scene.prepare(machine);
    MainWindow main(*machine.monitor, machine.settings, machine.theme,
                    QString::fromUtf8(scene.summary),
                    [] { return Surroundings{.displays = 2, .openApps = 9, .uptime = "3 d 4 h"}; });
    main.open();
    QQuickWindow* window = shownWindow();
    if (!window) return false;
    window->resize(scene.size);
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
