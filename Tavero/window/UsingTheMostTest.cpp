#include "window/UsingTheMost.h"

#include "window/ToastModel.h"
#include "window/test/TestMachine.h"

#include <QAbstractItemModelTester>

#include <gtest/gtest.h>

#include <limits>
#include <memory>
#include <string>

namespace tavero {
namespace {

using namespace std::chrono_literals;

class UsingTheMostTest : public testing::Test {
  protected:
    TestMachine machine;
    std::string quits; // the paths of those that were asked to, so far
    bool quitWorks = true;
    std::unique_ptr<UsingTheMost> model;

    void SetUp() override {
        machine.cpu = TestMachine::quietCpu();
        machine.memory = TestMachine::halfFullMemory();
        machine.services.askToQuit =
            [this](const std::string& path) -> std::optional<std::function<bool()>> {
            if (!quitWorks) return std::nullopt;
            quits += path + ' ';
            return [] { return true; };
        };
        // Eight cores, 16 GB: 10%, 5%, 2.5%, 1.25% of either.
        machine.processes = {app("Editor", 0.8, 10), app("Mail", 0.1, 820), app("Music", 0.2, 10),
                             app("Photos", 0.1, 10)};
    }

    static ProcessSample app(const std::string& name, double cpu, std::uint64_t memory) {
        return TestMachine::app(name, cpu, memory);
    }
    UsingTheMost& make(std::string ownBundlePath = {}) {
        machine.start().viewAppeared(ViewKind::window);
        model = std::make_unique<UsingTheMost>(*machine.monitor, machine.settings, machine.theme,
                                               UsingTheMost::Icons(), std::move(ownBundlePath));
        machine.run(0s);
        return *model;
    }
    void pass() { machine.run(1s); }
    const UsingTheMostRow& row(std::size_t at) const { return model->apps()->rows().at(at); }
    QVariant shown(int at, UsingTheMostList::Role role) const {
        return model->apps()->index(at).data(role);
    }
    std::string names() const {
        std::string names;
        for (const UsingTheMostRow& row : model->apps()->rows())
            names += row.name.toStdString() + ' ';
        return names;
    }
    ProcessSample& process(const std::string& name) {
        for (ProcessSample& process : machine.processes)
            if (process.name == name) return process;
        throw std::out_of_range(name);
    }
    void end(const std::string& name) {
        std::erase_if(machine.processes, [&](const auto& process) { return process.name == name; });
    }
};

TEST_F(UsingTheMostTest, TheFirstFourByTheirShareOfTheMachine) {
    machine.processes.push_back(app("Notes", 0.01, 10));
    make();
    EXPECT_EQ(model->title(), "Using the most");
    EXPECT_EQ(names(), "Editor Mail Music Photos ");
}

TEST_F(UsingTheMostTest, WithoutAppsThereIsNothingToShow) {
    machine.processes.clear();
    make();
    EXPECT_FALSE(model->hasApps());
    machine.processes = {app("Editor", 0, 1)};
    pass();
    EXPECT_TRUE(model->hasApps());
}

TEST_F(UsingTheMostTest, FiguresAndBars) {
    make();
    EXPECT_EQ(row(0).cpu, "80%");
    EXPECT_EQ(row(0).memory, "Memory 10 MB");
    EXPECT_EQ(row(0).cpuLevel, 1);
    EXPECT_NEAR(row(0).memoryLevel, 10.0 / 820, 1e-9);
    EXPECT_EQ(row(1).cpu, "10%");
    EXPECT_EQ(row(1).memory, "Memory 820 MB");
    EXPECT_NEAR(row(1).cpuLevel, 0.125, 1e-9);
    EXPECT_EQ(row(1).memoryLevel, 1);
    EXPECT_EQ(row(0).spoken, "Editor, CPU 80%, Memory 10 MB");
}

TEST_F(UsingTheMostTest, ABarIsScaledByAllAppsAndNotOnlyByThoseShown) {
    machine.memory->total = std::uint64_t{1} << 60; // memory counts for nothing then
    machine.processes.push_back(app("Archive", 0, 8200));
    make();
    EXPECT_EQ(names(), "Editor Music Mail Photos ");
    EXPECT_NEAR(row(2).memoryLevel, 0.1, 1e-9);
}

TEST_F(UsingTheMostTest, WhatIsNoNumberIsShownAsNotKnown) {
    machine.processes = {app("Editor", std::numeric_limits<double>::quiet_NaN(), 0)};
    make();
    EXPECT_EQ(row(0).cpu, "–%");
    EXPECT_EQ(row(0).cpuLevel, 0);
    EXPECT_EQ(row(0).memory, "Memory 0 MB");
    EXPECT_EQ(row(0).memoryLevel, 0);
}

TEST_F(UsingTheMostTest, AToolHasATileOfItsOwnAndOffersNoQuit) {
    machine.processes = {app("Editor", 0.8, 10)};
    machine.processes.push_back({.name = "compiler",
                                 .path = "/usr/bin/compiler",
                                 .cpu = 0.4,
                                 .memory = 1 << 20,
                                 .hasUsage = true,
                                 .app = {AppIdentity::Kind::tool, "compiler"}});
    make();
    EXPECT_EQ(row(0).kind, AppIconItem::App);
    EXPECT_EQ(row(1).kind, AppIconItem::Tool);
    EXPECT_EQ(shown(0, UsingTheMostList::canQuitRole), true);
    EXPECT_EQ(shown(0, UsingTheMostList::quitTextRole), "Quit Editor");
    EXPECT_EQ(shown(1, UsingTheMostList::canQuitRole), false);
    model->ask(1);
    EXPECT_FALSE(model->isConfirming());
}

TEST_F(UsingTheMostTest, ARowSaysWhatAnAppIsMostlyAndThatTheSystemIsUnusual) {
    machine.processes = {app("Editor", 0.1, 10), app("Editor", 0.9, 10)};
    machine.processes.back().name = "renderer";
    machine.processes.push_back({.name = "indexer",
                                 .path = "/usr/libexec/indexer",
                                 .cpu = 0.7,
                                 .hasUsage = true,
                                 .app = AppIdentity::system});
    machine.systemActivity = SystemActivity{.process = "indexer", .description = "indexing"};
    make();
    machine.run(15s);
    EXPECT_EQ(names(), "Editor macOS · indexing ");
    EXPECT_EQ(row(0).note, "mostly renderer");
    EXPECT_EQ(row(0).flag, "");
    EXPECT_EQ(row(0).spoken, "Editor, CPU 100%, Memory 20 MB, mostly renderer");
    EXPECT_EQ(row(1).note, "");
    EXPECT_EQ(row(1).flag, "Unusual");
    EXPECT_EQ(row(1).kind, AppIconItem::System);
    EXPECT_EQ(shown(1, UsingTheMostList::canQuitRole), false);
}

TEST_F(UsingTheMostTest, TaveroOffersNoQuitForItself) {
    make("/Applications/Mail.app");
    EXPECT_EQ(shown(0, UsingTheMostList::canQuitRole), true);
    EXPECT_EQ(shown(1, UsingTheMostList::canQuitRole), false);
}

TEST_F(UsingTheMostTest, AnIconIsAskedForByTheBundlePath) {
    machine.start();
    QImage image(32, 32, QImage::Format_RGB32);
    image.fill(Qt::red);
    model = std::make_unique<UsingTheMost>(
        *machine.monitor, machine.settings, machine.theme, [&](const std::string& path) {
            return path == "/Applications/Editor.app" ? image : QImage();
        });
    machine.run(0s);
    EXPECT_EQ(row(0).icon, image);
    EXPECT_TRUE(row(1).icon.isNull());
}

TEST_F(UsingTheMostTest, RowsMoveWithTheirFiguresAndAreNeverReset) {
    make();
    const QAbstractItemModelTester tester(model->apps(),
                                          QAbstractItemModelTester::FailureReportingMode::Fatal);
    std::string told;
    QObject::connect(model->apps(), &UsingTheMostList::rowsMoved, [&] { told += "moved "; });
    QObject::connect(model->apps(), &UsingTheMostList::rowsInserted, [&] { told += "inserted "; });
    QObject::connect(model->apps(), &UsingTheMostList::modelReset, [&] { told += "reset "; });
    process("Photos").cpu = 3;
    pass();
    EXPECT_EQ(names(), "Photos Editor Mail Music ");
    EXPECT_EQ(told, "moved ");
}

TEST_F(UsingTheMostTest, APassThatChangesNothingTellsNobody) {
    make();
    pass();
    int told = 0;
    QObject::connect(model->apps(), &UsingTheMostList::dataChanged, [&] { ++told; });
    QObject::connect(model.get(), &UsingTheMost::hasAppsChanged, [&] { ++told; });
    QObject::connect(model.get(), &UsingTheMost::isConfirmingChanged, [&] { ++told; });
    pass();
    EXPECT_EQ(told, 0);
}

TEST_F(UsingTheMostTest, UnderThePointerRowsStayWhileTheirFiguresGoOn) {
    make();
    model->setHovered(true);
    process("Photos").cpu = 3;
    pass();
    EXPECT_EQ(names(), "Editor Mail Music Photos ");
    EXPECT_EQ(row(3).cpu, "300%");
    model->setHovered(false);
    EXPECT_EQ(names(), "Photos Editor Mail Music ");
}

TEST_F(UsingTheMostTest, UnderThePointerAnAppThatEndsLeavesItsRowWithoutFigures) {
    make();
    model->setHovered(true);
    end("Mail");
    machine.processes.push_back(app("Notes", 2, 10));
    pass();
    EXPECT_EQ(names(), "Editor Mail Music Photos ");
    EXPECT_EQ(row(1).cpu, "–%");
    EXPECT_EQ(row(1).memory, "Memory –");
    EXPECT_EQ(row(1).memoryLevel, 0);
    EXPECT_EQ(shown(1, UsingTheMostList::canQuitRole), false);
    model->setHovered(false);
    EXPECT_EQ(names(), "Notes Editor Music Photos ");
}

TEST_F(UsingTheMostTest, UnderThePointerRoomThatIsLeftIsFilled) {
    machine.processes = {app("Editor", 0.8, 10)};
    make();
    model->setHovered(true);
    machine.processes.insert(machine.processes.begin(), app("Notes", 2, 10));
    pass();
    EXPECT_EQ(names(), "Editor Notes ");
}

TEST_F(UsingTheMostTest, WhileItAsksRowsStay) {
    make();
    model->ask(1);
    EXPECT_TRUE(model->isConfirming());
    EXPECT_FALSE(row(0).isConfirming);
    EXPECT_TRUE(row(1).isConfirming);
    process("Photos").cpu = 3;
    pass();
    EXPECT_EQ(names(), "Editor Mail Music Photos ");
    EXPECT_TRUE(row(1).isConfirming);
    model->cancel();
    EXPECT_FALSE(model->isConfirming());
    EXPECT_EQ(names(), "Photos Editor Mail Music ");
    EXPECT_EQ(quits, "");
}

TEST_F(UsingTheMostTest, OneQuestionAtATime) {
    make();
    model->ask(0);
    model->ask(2);
    EXPECT_FALSE(row(0).isConfirming);
    EXPECT_TRUE(row(2).isConfirming);
}

TEST_F(UsingTheMostTest, QuitAsksTheAppOfTheQuestion) {
    make();
    model->ask(1);
    model->quit();
    EXPECT_EQ(quits, "/Applications/Mail.app ");
    EXPECT_FALSE(model->isConfirming());
    model->quit(); // nothing is asked any more
    EXPECT_EQ(quits, "/Applications/Mail.app ");
}

TEST_F(UsingTheMostTest, WhenNobodyCanBeAskedTheQuestionJustCloses) {
    quitWorks = false;
    make();
    model->ask(1);
    model->quit();
    EXPECT_FALSE(model->isConfirming());
    EXPECT_EQ(names(), "Editor Mail Music Photos ");
}

TEST_F(UsingTheMostTest, TheQuestionClosesWhenTheAppHasEndedByItself) {
    make();
    model->ask(1);
    model->setHovered(true);
    end("Mail");
    pass();
    EXPECT_FALSE(model->isConfirming());
    EXPECT_FALSE(row(1).isConfirming);
    EXPECT_EQ(names(), "Editor Mail Music Photos ");
    model->quit();
    EXPECT_EQ(quits, "");
}

TEST_F(UsingTheMostTest, RowsThatAreNotCannotBeAsked) {
    make();
    model->ask(-1);
    model->ask(4);
    EXPECT_FALSE(model->isConfirming());
    EXPECT_FALSE(model->apps()->data(QModelIndex(), UsingTheMostList::nameRole).isValid());
}

TEST_F(UsingTheMostTest, ColorsFollowTheTheme) {
    make();
    const QColor light = model->flagColor();
    int told = 0;
    QObject::connect(model.get(), &UsingTheMost::colorsChanged, [&] { ++told; });
    machine.appearance.set({.isDark = true});
    EXPECT_NE(model->flagColor(), light);
    EXPECT_EQ(told, 1);
}

TEST_F(UsingTheMostTest, TheToastSaysWhatWasFreedAndGoesAfterThreeSeconds) {
    make();
    const ToastModel toast(*machine.monitor);
    int told = 0;
    QObject::connect(&toast, &ToastModel::textChanged, [&] { ++told; });
    EXPECT_EQ(toast.text(), "");
    model->ask(1);
    model->quit();
    machine.run(1s);
    EXPECT_EQ(toast.text(), "820 MB freed");
    machine.run(3s);
    EXPECT_EQ(toast.text(), "");
    EXPECT_EQ(told, 2);
}

} // namespace
} // namespace tavero
