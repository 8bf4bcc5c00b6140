#include "window/Card.h"

#include "components/Palette.h"
#include "presentation/Levels.h"
#include "presentation/test/RandomSnapshot.h"
#include "window/CardModel.h"
#include "window/OverviewCards.h"
#include "window/test/TestMachine.h"

#include <QMetaProperty>
#include <QSignalSpy>

#include <gtest/gtest.h>

#include <limits>
#include <map>
#include <memory>
#include <random>
#include <string>

namespace tavero {
namespace {

Card cardOf(Section section, const LiveSnapshot& snapshot, bool isDark = false) {
    Graphs graphs;
    graphs.feed(snapshot);
    return card(section, {.snapshot = snapshot, .graphs = graphs, .isDark = isDark});
}

TEST(Card, TellsTheHeadlineOfItsMetric) {
    const Card cpu = cardOf(Section::cpu, {.cpu = TestMachine::quietCpu()});
    EXPECT_EQ(cpu.title, "CPU");
    EXPECT_EQ(cpu.value, "12");
    EXPECT_EQ(cpu.unit, "%");
    EXPECT_EQ(cpu.note, "Load 1.4 of 8");
    EXPECT_EQ(cpu.status, "Normal");
    EXPECT_EQ(cpu.symbol, "cpu");
    EXPECT_EQ(cpu.color, QColor(0x2772AF));
    EXPECT_EQ(cpu.stats.front(), (StatRow{.label = "User", .value = "9%"}));
    EXPECT_EQ(cpu.points.size(), 1u);
}

TEST(Card, IsOneSentenceForAScreenReader) {
    const Card cpu = cardOf(Section::cpu, {.cpu = TestMachine::quietCpu()});
    EXPECT_EQ(cpu.spoken, "CPU, 12 %, Normal, Load 1.4 of 8");
    EXPECT_EQ(cpu.spokenDetail, "Your Mac is mostly idle. 88% of the CPU is free. User 9%, "
                                "System 3%, Load avg 1.42, Temp –");
    const Card memory = cardOf(Section::memory, {.memory = TestMachine::halfFullMemory()});
    EXPECT_EQ(memory.status, "Normal");
    EXPECT_EQ(memory.note, ""); // would say the same
    EXPECT_EQ(memory.spoken, "Memory, 7.6 / 16 GB, Normal");
    EXPECT_TRUE(memory.spokenDetail.contains("Apps 5.0 GB, Wired 1.9 GB"));
}

TEST(Card, TellsTheVerdictAndWhy) {
    const Card cpu = cardOf(Section::cpu, {.cpu = TestMachine::quietCpu()});
    EXPECT_EQ(cpu.verdict, "Your Mac is mostly idle.");
    EXPECT_EQ(cpu.wholeVerdict, "Your Mac is mostly idle. 88% of the CPU is free.");
    const Card network = cardOf(Section::network, {.networkInPerSecond = 1e7});
    EXPECT_EQ(network.verdict, "Downloading at 9.5 MB/s");
    EXPECT_EQ(network.wholeVerdict,
              "Downloading at 9.5 MB/s. Something is pulling in a lot of data right now.");
    const Card quiet = cardOf(Section::network, {});
    EXPECT_EQ(quiet.wholeVerdict, quiet.verdict);
    EXPECT_EQ(quiet.verdict, "The network is quiet.");
}

TEST(Card, WithoutFiguresShowsThePlaceholder) {
    const Card cpu = cardOf(Section::cpu, {});
    EXPECT_EQ(cpu.value, "–");
    EXPECT_TRUE(cpu.cores.isEmpty());
    EXPECT_TRUE(cpu.points.empty());
    EXPECT_EQ(cpu.spoken, "CPU, – %, Normal");
    const Card memory = cardOf(Section::memory, {});
    EXPECT_TRUE(memory.segments.empty());
    EXPECT_EQ(memory.status, "");
    EXPECT_EQ(memory.spoken, "Memory, – GB");
}

TEST(Card, CountsKindsOfCoresOnlyIfTheyMakeUpAllOfThem) {
    CPUSnapshot cpu = TestMachine::quietCpu();
    const auto note = [&cpu] { return cardOf(Section::cpu, {.cpu = cpu}).coresNote; };
    EXPECT_EQ(note(), "4 P · 4 E cores");
    cpu.efficiencyCores = 2;
    EXPECT_EQ(note(), "8 cores");
    cpu.efficiencyCores = 0;
    cpu.performanceCores = 8;
    EXPECT_EQ(note(), "8 cores");
    cpu.performanceCores = std::numeric_limits<std::int64_t>::max();
    cpu.efficiencyCores = cpu.performanceCores;
    EXPECT_EQ(note(), "8 cores");
    cpu.perCore = {0.5};
    EXPECT_EQ(note(), "1 core");
    cpu.perCore.clear();
    EXPECT_EQ(note(), "");
}

TEST(Card, ColorsFollowTheAppearance) {
    const LiveSnapshot snapshot{.memory = TestMachine::halfFullMemory()};
    EXPECT_EQ(cardOf(Section::memory, snapshot, false).color, QColor(0xE0782A));
    EXPECT_EQ(cardOf(Section::memory, snapshot, true).color, QColor(0xFF9F45));
    EXPECT_EQ(cardOf(Section::memory, snapshot, true).statusColor, QColor(0x6FD08A));
    EXPECT_EQ(cardOf(Section::memory, snapshot, true).statusBackground, QColor(0x1D3325));
}

TEST(Card, AHotTemperatureIsTintedSoThatItReads) {
    const Card cpu = cardOf(Section::cpu, {.cpuTemperature = 86.0});
    const QColor tint = cpu.stats.back().tint;
    EXPECT_EQ(cpu.stats.back().value, "86°C");
    ASSERT_TRUE(tint.isValid());
    EXPECT_GE(contrast(tint, Palette::of(false).card), readableContrast);
    EXPECT_FALSE(cpu.stats.front().tint.isValid());
}

TEST(Card, TheNetworkHasASecondCurve) {
    const Card network = cardOf(Section::network, {.networkOutPerSecond = 1000});
    EXPECT_EQ(network.uploadPoints.size(), 1u);
    EXPECT_TRUE(network.uploadColor.isValid());
    EXPECT_TRUE(cardOf(Section::disk, {}).uploadPoints.empty());
}

TEST(Card, ASectionWithoutAMetricHasAnEmptyOne) { EXPECT_EQ(cardOf(Section::sound, {}), Card{}); }

TEST(Card, AnySnapshotGivesAVerdictAndAFigure) {
    std::mt19937_64 random(6);
    for (int round = 0; round < 300; ++round) {
        const LiveSnapshot snapshot = randomSnapshot(random);
        for (const Section section : orderedCards("")) {
            const Card any = cardOf(section, snapshot, round % 2 == 0);
            EXPECT_FALSE(any.symbol.isEmpty());
            EXPECT_FALSE(any.value.isEmpty());
            EXPECT_FALSE(any.verdict.isEmpty());
            EXPECT_TRUE(any.wholeVerdict.startsWith(any.verdict));
            for (const QString& text : {any.spoken, any.spokenDetail})
                EXPECT_FALSE(text.contains("nan") || text.contains("inf")) << text.toStdString();
        }
        if (HasFailure()) FAIL() << "in round " << round;
    }
}

// The names of the properties whose change is told.
class Told {
  public:
    explicit Told(CardModel& model) {
        const QMetaObject& type = CardModel::staticMetaObject;
        for (int at = type.propertyOffset(); at < type.propertyCount(); ++at) {
            const QMetaProperty property = type.property(at);
            if (property.hasNotifySignal())
                spies_[property.name()] =
                    std::make_unique<QSignalSpy>(&model, property.notifySignal());
        }
    }
    std::string names() const {
        std::string names;
        for (const auto& [name, spy] : spies_)
            if (!spy->isEmpty()) names += name + ' ';
        return names;
    }

  private:
    std::map<std::string, std::unique_ptr<QSignalSpy>> spies_;
};

TEST(CardModel, AnEqualCardTellsNobodyAndAChangeOnlyWhatChanged) {
    CardModel model;
    Card card = cardOf(Section::cpu, {.cpu = TestMachine::quietCpu(), .cpuTemperature = 90.0});
    model.show(card);
    const Told told(model);
    std::string lists;
    QObject::connect(model.series(), &GraphSeries::changed, [&] { lists += "series "; });
    QObject::connect(model.stats(), &StatList::dataChanged, [&] { lists += "stats "; });
    QObject::connect(model.segments(), &SegmentList::rowsInserted, [&] { lists += "segments "; });
    model.show(card);
    EXPECT_EQ(told.names() + lists, "");

    card.value = "13";
    card.cores[3] = 0.5;
    card.stats[1].value = "4%";
    model.show(card);
    EXPECT_EQ(told.names() + lists, "cores value stats ");
    EXPECT_EQ(model.value(), "13");

    card.segments = {{.name = "Apps"}};
    model.show(card);
    EXPECT_EQ(told.names() + lists, "cores hasSegments value stats segments ");
}

} // namespace
} // namespace tavero
