#include "window/OverviewModel.h"

#include "window/test/TestMachine.h"

#include <gtest/gtest.h>

#include <memory>
#include <string>

namespace tavero {
namespace {

using namespace std::chrono_literals;

class OverviewModelTest : public testing::Test {
  protected:
    TestMachine machine;
    std::unique_ptr<OverviewModel> overview;

    void SetUp() override {
        machine.cpu = TestMachine::quietCpu();
        machine.memory = TestMachine::halfFullMemory();
    }

    OverviewModel& make() {
        machine.start();
        overview = std::make_unique<OverviewModel>(*machine.monitor, machine.settings,
                                                   machine.theme, "Machine · 16 GB");
        return *overview;
    }

    std::string titles() const {
        std::string titles;
        for (const CardRow& row : overview->cards()->rows())
            titles += row.card->title().toStdString() + ' ';
        return titles;
    }
    CardModel& card(std::size_t at) const { return *overview->cards()->rows().at(at).card; }
};

TEST_F(OverviewModelTest, WaitsUntilTheFirstSnapshot) {
    make();
    EXPECT_EQ(overview->title(), "Overview");
    EXPECT_EQ(overview->summary(), "Machine · 16 GB");
    EXPECT_EQ(overview->waitingText(), "Reading your Mac…");
    EXPECT_TRUE(overview->isWaiting());
    EXPECT_EQ(titles(), "");
    machine.run(0s);
    EXPECT_FALSE(overview->isWaiting());
    EXPECT_EQ(titles(), "CPU Memory ");
}

TEST_F(OverviewModelTest, MadeLateItShowsWhatIsKnownAtOnce) {
    machine.start();
    machine.run(30s);
    overview = std::make_unique<OverviewModel>(*machine.monitor, machine.settings, machine.theme,
                                               QString());
    EXPECT_FALSE(overview->isWaiting());
    EXPECT_EQ(card(0).value(), "12");
    EXPECT_EQ(card(0).series()->points().size(), 7u);
}

TEST_F(OverviewModelTest, FollowsTheMachine) {
    make();
    machine.run(0s);
    machine.cpu->user = 0.90;
    machine.run(5s);
    EXPECT_EQ(card(0).value(), "93");
    EXPECT_EQ(card(0).status(), "Busy");
}

TEST_F(OverviewModelTest, EveryMetricThatTheMachineHasGetsItsCard) {
    machine.gpu = GPUSnapshot{.device = 0.5};
    machine.battery = BatterySnapshot{.percent = 80};
    machine.disk = DiskSnapshot{.bytesRead = 1, .capacity = 1000, .available = 500};
    machine.network = NetworkSnapshot{.bytesIn = 1};
    make();
    machine.run(0s);
    EXPECT_EQ(titles(), "CPU Memory GPU Power Disk Network ");
    EXPECT_EQ(card(3).value(), "80");
    EXPECT_EQ(card(4).status(), "50% used");
}

TEST_F(OverviewModelTest, ACardStaysWhenItsFiguresFailForAWhile) {
    machine.network = NetworkSnapshot{.bytesIn = 1000};
    make();
    machine.run(0s);
    machine.network.reset();
    machine.memory.reset();
    machine.run(5s);
    EXPECT_EQ(titles(), "CPU Memory Network ");
    EXPECT_EQ(card(1).value(), "–");
}

TEST_F(OverviewModelTest, TheUsersOrderMovesCardsThatStay) {
    make();
    machine.run(0s);
    const CardModel* memory = &card(1);
    int moves = 0;
    int others = 0;
    QObject::connect(overview->cards(), &CardList::rowsMoved, [&] { ++moves; });
    QObject::connect(overview->cards(), &CardList::rowsInserted, [&] { ++others; });
    QObject::connect(overview->cards(), &CardList::rowsRemoved, [&] { ++others; });
    QObject::connect(overview->cards(), &CardList::modelReset, [&] { ++others; });
    machine.settings.set<std::string>(keys::overviewCardOrder, "memory,cpu");
    EXPECT_EQ(titles(), "Memory CPU ");
    EXPECT_EQ(&card(0), memory);
    EXPECT_EQ(moves, 1);
    EXPECT_EQ(others, 0);
}

TEST_F(OverviewModelTest, HidingAllCardsLeavesTheTitle) {
    make();
    machine.run(0s);
    for (const Section section : {Section::cpu, Section::memory})
        machine.settings.set(keys::overviewCard(section), false);
    EXPECT_EQ(titles(), "");
    EXPECT_FALSE(overview->isWaiting());
    machine.settings.set(keys::overviewCard(Section::memory), true);
    EXPECT_EQ(titles(), "Memory ");
}

TEST_F(OverviewModelTest, UnitsAndDetailsFollowTheSettings) {
    machine.network = NetworkSnapshot{.bytesIn = 1000};
    make();
    machine.run(0s);
    EXPECT_TRUE(overview->showsDetails());
    EXPECT_EQ(card(2).unit(), "KB/s");
    machine.settings.set(keys::networkBits, true);
    machine.settings.set(keys::cardDetails, false);
    EXPECT_EQ(card(2).unit(), "Kb/s");
    EXPECT_FALSE(overview->showsDetails());
}

TEST_F(OverviewModelTest, ColorsFollowTheTheme) {
    make();
    machine.run(0s);
    const QColor light = card(0).color();
    machine.appearance.set({.isDark = true});
    EXPECT_NE(card(0).color(), light);
}

TEST_F(OverviewModelTest, AnUneventfulPassTellsOnlyTheCurves) {
    make();
    machine.run(0s);
    std::string told;
    QObject::connect(overview->cards(), &CardList::dataChanged, [&] { told += "cards "; });
    QObject::connect(&card(0), &CardModel::valueChanged, [&] { told += "value "; });
    QObject::connect(&card(0), &CardModel::coresChanged, [&] { told += "cores "; });
    QObject::connect(&card(0), &CardModel::spokenChanged, [&] { told += "spoken "; });
    QObject::connect(card(0).stats(), &StatList::dataChanged, [&] { told += "stats "; });
    QObject::connect(card(0).series(), &GraphSeries::changed, [&] { told += "series "; });
    QObject::connect(overview.get(), &OverviewModel::isWaitingChanged, [&] { told += "waiting "; });
    machine.run(5s);
    EXPECT_EQ(told, "series ");
}

TEST_F(OverviewModelTest, ItAsksForTheSurroundingsOnEveryPass) {
    machine.start();
    std::int64_t apps = 3;
    OverviewModel model(*machine.monitor, machine.settings, machine.theme, QString(),
                        [&apps] { return Surroundings{.openApps = apps}; });
    machine.run(0s);
    const auto openApps = [&model] { return model.cards()->rows()[1].card->stats()->rows()[2]; };
    EXPECT_EQ(openApps().value, "3");
    apps = 4;
    machine.run(5s);
    EXPECT_EQ(openApps(), (StatRow{.label = "Apps open", .value = "4"}));
}

} // namespace
} // namespace tavero
