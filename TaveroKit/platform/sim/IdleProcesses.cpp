#include "platform/sim/IdleProcesses.h"

#include "platform/sim/IdleDaemons.h"

#include <string_view>
#include <utility>

namespace tavero {

namespace {

constexpr double minute = 60;
constexpr double hour = 60 * minute;
constexpr double day = 24 * hour;
constexpr double megabyte = 1024.0 * 1024;

constexpr std::size_t efficiencyCores = 4;
constexpr double boot = -2 * day + 20; // when the first daemon began

constexpr std::string_view finder = "/System/Library/CoreServices/Finder.app";
constexpr std::string_view dock = "/System/Library/CoreServices/Dock.app";
constexpr std::string_view controlCentre = "/System/Library/CoreServices/ControlCenter.app";
constexpr std::string_view spotlight = "/System/Library/CoreServices/Spotlight.app";
constexpr std::string_view mail = "/System/Applications/Mail.app";
constexpr std::string_view music = "/System/Applications/Music.app";
constexpr std::string_view browser = "/Applications/Wayfarer.app";
constexpr std::string_view editor = "/Applications/Inkwell.app";
constexpr std::string_view chat = "/Applications/Parley.app";
constexpr std::string_view drive = "/Applications/Cirrus.app";
constexpr std::string_view sketches = "/Applications/Sketchbook.app";
constexpr std::string_view olderSketches = "/Users/ana/Downloads/Sketchbook.app";

std::string inside(std::string_view bundle, const std::string& path) {
    return std::string(bundle) + "/Contents/" + path;
}

std::string program(std::string_view bundle, const std::string& name) {
    return inside(bundle, "MacOS/" + name);
}

std::string helper(std::string_view bundle, const std::string& name) {
    return program(inside(bundle, "Frameworks/" + name + ".app"), name);
}

Curve megabytes(double amount) { return amount * megabyte; }

// Fills in what can be counted off: pids in the order of starting, and moments that fit.
class ProcessList {
  public:
    void continueAt(std::int32_t pid, double begins) {
        pid_ = pid;
        begins_ = begins;
    }

    void add(Scenario::Process process) {
        if (process.life.begins == 0) process.life.begins = begins_;
        process.pid = pid_;
        pid_ += 2;
        begins_ += 0.4;
        all_.push_back(std::move(process));
    }

    void add(const IdleDaemon& daemon, bool isRefused) {
        add({.path = std::string(daemon.path),
             .isRefused = isRefused,
             .threads = daemon.threads,
             .core = all_.size() % efficiencyCores,
             .cpu = daemon.cpu,
             .system = 0.4,
             .memory = megabytes(daemon.megabytes)});
    }

    std::vector<Scenario::Process> take() { return std::move(all_); }

  private:
    std::vector<Scenario::Process> all_;
    std::int32_t pid_ = 0;
    double begins_ = 0;
};

void addDaemons(ProcessList& list) {
    list.continueAt(0, boot);
    list.add({.isRefused = true}); // the kernel, which is in the list but tells nothing
    list.continueAt(1, boot);
    list.add({"/sbin/launchd", 0.003, 22, 4}, true);
    list.continueAt(88, boot + 5);
    for (const IdleDaemon& daemon : idleSystemDaemons()) list.add(daemon, true);
    list.continueAt(391, boot + 40);
    for (const IdleDaemon& daemon : idleUserDaemons()) list.add(daemon, false);
}

void addSystemApps(ProcessList& list) {
    list.add({.path = program(dock, "Dock"),
              .threads = 5,
              .core = 1,
              .cpu = 0.002,
              .memory = megabytes(58),
              .gpu = 0.0005});
    list.add({.path = program(finder, "Finder"),
              .threads = 6,
              .core = 2,
              .cpu = 0.004 + Curve::wave(0.002, 71),
              .memory = megabytes(140),
              .disk = {.read = 2e3, .written = 1e3}});
    list.add({.path = program(controlCentre, "ControlCenter"),
              .threads = 5,
              .core = 3,
              .cpu = 0.003,
              .memory = megabytes(74)});
    list.add({.path = program(spotlight, "Spotlight"),
              .threads = 4,
              .core = 0,
              .cpu = 0.002,
              .memory = megabytes(66)});
}

// A page loads every couple of minutes: one renderer lays it out while another process draws it.
void addBrowser(ProcessList& list) {
    list.add({.path = program(browser, "Wayfarer"),
              .threads = 38,
              .core = 1,
              .cpu = 0.045 + Curve::wave(0.02, 47),
              .memory = 390 * megabyte + Curve::wave(30 * megabyte, 9 * minute),
              .disk = {.read = 30e3 + Curve::wave(20e3, 41),
                       .written = 60e3 + Curve::wave(50e3, 29) + Curve::pulses(9e6, 130, 4, 30)},
              .sound = Scenario::Sound{}});
    list.add({.path = helper(browser, "Wayfarer Helper (GPU)"),
              .threads = 14,
              .core = 5,
              .cpu = 0.02 + Curve::wave(0.01, 23) + Curve::pulses(0.45, 130, 5, 27),
              .memory = megabytes(280),
              .gpu = 0.012 + Curve::wave(0.006, 23) + Curve::pulses(0.3, 130, 6, 27)});
    // Its network, and the sound of its tabs: of a clip that is watched now and then.
    list.add({.path = helper(browser, "Wayfarer Helper"),
              .threads = 12,
              .core = 2,
              .cpu = 0.015 + Curve::wave(0.008, 31) + Curve::pulses(0.05, 130, 8, 25),
              .memory = megabytes(62),
              .disk = {.read = Curve::pulses(18e6, 130, 6, 26), .written = 20e3},
              .network =
                  Scenario::Network{
                      .in = 3e3 + Curve::wave(2.5e3, 31) + Curve::pulses(2.4e6, 130, 8, 25),
                      .out = 1.2e3 + Curve::wave(0.9e3, 31) + Curve::pulses(160e3, 130, 8, 25)},
              .sound = Scenario::Sound{.loudness =
                                           0.07 + Curve::wave(0.03, 3.1) + Curve::wave(0.02, 0.7),
                                       .plays = {.begins = -20, .lasts = 240, .every = 420}}});
    const std::string renderer = helper(browser, "Wayfarer Helper (Renderer)");
    list.add({.path = renderer,
              .threads = 16,
              .core = 4,
              .cpu = 0.012 + Curve::wave(0.006, 61) + Curve::pulses(0.72, 130, 9, 25),
              .system = 0.17,
              .memory = 310 * megabyte + Curve::wave(60 * megabyte, 11 * minute)});
    for (int tab = 0; tab < 9; ++tab)
        list.add({.path = renderer,
                  .threads = 15,
                  .core = static_cast<std::size_t>(tab) % efficiencyCores,
                  .cpu = 0.004 + Curve::wave(0.003, 37 + 11 * tab),
                  .memory = megabytes(85 + 11 * tab)});
}

void addEditor(ProcessList& list) {
    list.add({.path = program(editor, "Inkwell"),
              .threads = 28,
              .core = 3,
              .cpu = 0.01 + Curve::wave(0.004, 53),
              .memory = megabytes(230),
              .disk = {.read = 1e3, .written = 4e3}});
    list.add({.path = helper(editor, "Inkwell Helper (GPU)"),
              .threads = 11,
              .core = 2,
              .cpu = 0.008,
              .memory = megabytes(140),
              .gpu = 0.004 + Curve::wave(0.002, 43)});
    list.add({.path = helper(editor, "Inkwell Helper (Renderer)"),
              .threads = 17,
              .core = 0,
              .cpu = 0.018 + Curve::wave(0.01, 43),
              .memory = 330 * megabyte + Curve::wave(25 * megabyte, 7 * minute)});
    list.add({.path = inside(editor, "Resources/app/extension-host"),
              .threads = 13,
              .core = 7,
              .cpu = 0.008 + Curve::wave(0.004, 67),
              .memory = megabytes(290),
              .disk = {.read = 6e3, .written = 2e3}});
    list.add({.path = "/Library/Developer/CommandLineTools/usr/bin/sourcekit-lsp",
              .threads = 6,
              .core = 6,
              .cpu = 0.004,
              .memory = megabytes(165)});
}

void addOtherApps(ProcessList& list) {
    list.add({.path = program(mail, "Mail"), // which is searched now and then
              .threads = 12,
              .core = 6,
              .cpu = 0.006 + Curve::wave(0.003, 59) + Curve::pulses(0.35, 410, 12, 200),
              .memory = megabytes(270),
              .disk = {.read = 8e3, .written = 10e3 + Curve::pulses(120e3, 600, 20, 90)},
              .network = Scenario::Network{.in = 120 + Curve::pulses(500e3, 600, 20, 90),
                                           .out = 60 + Curve::pulses(6e3, 600, 20, 90)}});
    list.add({.path = program(music, "Music"),
              .threads = 24,
              .core = 3,
              .cpu = 0.022 + Curve::wave(0.004, 19),
              .memory = megabytes(230),
              .disk = {.read = 35e3 + Curve::wave(10e3, 17), .written = 3e3},
              .sound = Scenario::Sound{.loudness = 0.16 + Curve::wave(0.05, 7) +
                                                   Curve::wave(0.04, 0.9) + Curve::wave(0.03, 0.5),
                                       .plays = {.begins = -2 * hour}}});
    list.add(
        {.path = program(inside(music, "XPCServices/VisualizerService.xpc"), "VisualizerService"),
         .threads = 4,
         .core = 1,
         .cpu = 0.001,
         .memory = megabytes(22),
         .gpu = 0.015 + Curve::wave(0.005, 17)});
    list.add({.path = program(chat, "Parley"),
              .threads = 31,
              .core = 1,
              .cpu = 0.014 + Curve::wave(0.006, 37),
              .memory = megabytes(190),
              .disk = {.read = 2e3, .written = 6e3},
              .network = Scenario::Network{.in = 0.8e3 + Curve::wave(0.7e3, 37),
                                           .out = 0.4e3 + Curve::wave(0.3e3, 29)},
              // Messages that somebody spoke, which nobody else is to keep.
              .sound = Scenario::Sound{.loudness = 0.1 + Curve::wave(0.06, 1.3),
                                       .plays = {.begins = 75, .lasts = 40, .every = 400},
                                       .isProtected = true}});
    list.add({.path = helper(chat, "Parley Helper (Renderer)"),
              .threads = 18,
              .core = 2,
              .cpu = 0.012 + Curve::wave(0.005, 73),
              .memory = megabytes(310)});
    list.add({.path = helper(chat, "Parley Helper (GPU)"),
              .threads = 10,
              .core = 3,
              .cpu = 0.006,
              .memory = megabytes(96),
              .gpu = 0.002});
    list.add({.path = program(sketches, "Sketchbook"),
              .threads = 9,
              .core = 0,
              .cpu = 0.004,
              .memory = megabytes(240),
              .gpu = 0.003});
    list.add({.path = program(olderSketches, "Sketchbook"),
              .threads = 9,
              .core = 1,
              .cpu = 0.003,
              .memory = megabytes(210)});
    list.add({.path = program(drive, "Cirrus"),
              .threads = 8,
              .core = 2,
              .cpu = 0.004,
              .memory = megabytes(120)});
    list.add({.path = "/Library/Application Support/Cirrus/cirrus-sync",
              .threads = 7,
              .core = 3,
              .cpu = 0.006 + Curve::wave(0.004, 83),
              .memory = megabytes(84),
              .disk = {.read = 12e3, .written = 9e3 + Curve::wave(6e3, 47)},
              .network = Scenario::Network{.in = 2e3 + Curve::wave(1.8e3, 47),
                                           .out = 2.5e3 + Curve::wave(2.2e3, 83)}});
    list.add({.path = "/Users/ana/.local/share/tidewatch/versions/2.4.1",
              .threads = 5,
              .core = 0,
              .cpu = 0.003,
              .memory = megabytes(46)});
}

// They come, do their work and go, and the next one takes the number of the last.
void addVisitors(ProcessList& list) {
    list.add({.path = "/System/Library/Frameworks/CoreServices.framework/Versions/A/Frameworks/"
                      "Metadata.framework/Versions/A/Support/mdworker_shared",
              .threads = 4,
              .core = 3,
              .cpu = Curve::pulses(0.15, 600, 30, 95),
              .memory = megabytes(32),
              .disk = {.read = Curve::pulses(400e3, 600, 30, 95)},
              .life = {.begins = 90, .lasts = 60, .every = 600}});
    list.add({.path = "/Library/Developer/CommandLineTools/usr/bin/git",
              .core = 5,
              .cpu = Curve::pulses(0.25, 60, 2, 12),
              .memory = megabytes(18),
              .disk = {.read = Curve::pulses(900e3, 60, 2, 12)},
              .life = {.begins = 12, .lasts = 3, .every = 60}});
}

} // namespace

std::vector<Scenario::Process> idleProcesses() {
    ProcessList list;
    addDaemons(list);
    list.continueAt(611, boot + 70);
    addSystemApps(list);
    list.continueAt(702, -3 * hour);
    addBrowser(list);
    addEditor(list);
    list.continueAt(880, -2 * hour);
    addOtherApps(list);
    list.continueAt(4211, 0);
    addVisitors(list);
    return list.take();
}

std::map<std::string, BundleNames> idleBundles() {
    return {
        {std::string(finder), {.name = "Finder"}},
        {std::string(dock), {.displayName = "Dock", .name = "Dock"}},
        {std::string(controlCentre), {.displayName = "Control Center", .name = "ControlCenter"}},
        {std::string(spotlight), {.displayName = "Spotlight", .name = "Spotlight"}},
        {std::string(mail), {.displayName = "Mail", .name = "Mail"}},
        {std::string(music), {.displayName = "Music", .name = "Music"}},
        {std::string(browser), {.displayName = "Wayfarer", .name = "Wayfarer"}},
        {std::string(editor), {.displayName = "Inkwell", .name = "Inkwell"}},
        {std::string(chat),
         {.displayName = "\u200EParley", .name = "Parley"}}, // marked as written left to right
        {std::string(drive), {.name = "Cirrus"}},
        {std::string(sketches), {.displayName = "Sketchbook", .name = "Sketchbook"}},
        {std::string(olderSketches), {.displayName = "Sketchbook", .name = "Sketchbook"}},
    };
}

} // namespace tavero
