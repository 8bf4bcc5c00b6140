#include "dropdown/DropdownModel.h"

#include "window/test/TestMachine.h"

#include <gtest/gtest.h>

#include <memory>
#include <string>

namespace tavero {
namespace {

using namespace std::chrono_literals;

class DropdownModelTest : public testing::Test {
  protected:
    TestMachine machine;
    std::unique_ptr<DropdownModel> panel;

    void SetUp() override {
        machine.cpu = TestMachine::quietCpu();
        machine.memory = TestMachine::halfFullMemory();
    }

    void open(Section section) {
        if (!machine.monitor) machine.start();
        panel = std::make_unique<DropdownModel>(section, *machine.monitor, machine.settings,
                                                machine.theme);
    }

    std::string titles() const {
        std::string titles;
        for (const CardRow& row : panel->cards()->rows())
            titles += row.card->title().toStdString() + ' ';
        return titles;
    }
    CardModel& card() const { return *panel->cards()->rows().at(0).card; }
};

TEST_F(DropdownModelTest, WaitsUntilTheFirstSnapshot) {
    open(Section::overview);
    EXPECT_TRUE(panel->isWaiting());
    EXPECT_EQ(panel->waitingText(), "Reading your Mac…");
    EXPECT_EQ(titles(), "");
    machine.run(0s);
    EXPECT_FALSE(panel->isWaiting());
    EXPECT_EQ(titles(), "CPU Memory ");
}

TEST_F(DropdownModelTest, AMetricOpensItsOwnCardLive) {
    open(Section::cpu);
    machine.run(0s);
    EXPECT_EQ(panel->title(), "CPU");
    EXPECT_FALSE(panel->isOverview());
    EXPECT_EQ(titles(), "CPU ");
    EXPECT_EQ(card().value(), "12");
    machine.cpu->user = 0.90;
    machine.run(5s);
    EXPECT_EQ(card().value(), "93");
    EXPECT_EQ(card().status(), "Busy");
}

TEST_F(DropdownModelTest, ACardThatTheOverviewHidesIsStillThere) {
    machine.settings.set(keys::overviewCard(Section::cpu), false);
    machine.settings.set(keys::cardDetails, false);
    open(Section::cpu);
    machine.run(0s);
    EXPECT_EQ(titles(), "CPU ");
    EXPECT_TRUE(card().showsDetails());
    open(Section::overview);
    EXPECT_EQ(titles(), "Memory ");
}

TEST_F(DropdownModelTest, AMetricThatTheMachineLacksHasNoFigure) {
    open(Section::gpu);
    machine.run(0s);
    EXPECT_EQ(titles(), "GPU ");
    EXPECT_EQ(card().value(), "–");
}

TEST_F(DropdownModelTest, ASectionWithoutAMetricOpensTheOverview) {
    for (const Section section : {Section::bluetooth, Section::sound, Section::insights}) {
        open(section);
        EXPECT_TRUE(panel->isOverview());
        EXPECT_EQ(panel->title(), "Overview");
    }
}

TEST_F(DropdownModelTest, ALineStaysWhenItsFiguresFailForAWhile) {
    machine.network = NetworkSnapshot{.bytesIn = 1000};
    open(Section::overview);
    machine.run(0s);
    machine.network.reset();
    machine.run(5s);
    EXPECT_EQ(titles(), "CPU Memory Network ");
}

TEST_F(DropdownModelTest, UnitsAndColorsFollow) {
    machine.network = NetworkSnapshot{.bytesIn = 1000};
    open(Section::network);
    machine.run(0s);
    EXPECT_EQ(card().unit(), "KB/s");
    const QColor light = card().color();
    machine.settings.set(keys::networkBits, true);
    machine.appearance.set({.isDark = true});
    EXPECT_EQ(card().unit(), "Kb/s");
    EXPECT_NE(card().color(), light);
}

} // namespace
} // namespace tavero
