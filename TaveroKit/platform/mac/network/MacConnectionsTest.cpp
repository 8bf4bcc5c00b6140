#include "platform/mac/network/MacConnections.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <array>
#include <cstdint>
#include <limits>
#include <map>
#include <memory>
#include <string>

namespace tavero {
namespace {

using testing::IsEmpty;
using testing::Pair;
using testing::UnorderedElementsAre;

// The service as a test sets it. A source that it tells of is described as soon as somebody asks.
class FakeStatistics : public NetworkStatistics {
  public:
    struct Blocks {
        DictionaryBlock description;
        DictionaryBlock counts;
        std::function<void()> removed;
    };

    bool isThere = true;
    bool hasManager = true;
    std::map<std::string, std::string> constants{
        {"kNStatSrcKeyRxBytes", "rx"}, {"kNStatSrcKeyTxBytes", "tx"},
        {"kNStatSrcKeyPID", "pid"},    {"kNStatSrcKeyProcessName", "name"},
        {"kNStatSrcKeyEPID", "epid"},
    };
    std::map<Source, PropertyMap> descriptions;
    std::map<Source, Blocks> blocks;
    std::function<void(Source)> added;
    std::function<void()> onCreate;
    bool wantsTCP = false;
    bool wantsUDP = false;

    bool open() override { return isThere; }
    std::optional<std::string> constant(const char* name) override {
        const auto found = constants.find(name);
        return found == constants.end() ? std::nullopt : std::optional(found->second);
    }
    bool create(std::function<void(Source)> block) override {
        added = std::move(block);
        if (onCreate) onCreate();
        return hasManager;
    }
    void addAllTCP() override { wantsTCP = true; }
    void addAllUDP() override { wantsUDP = true; }
    void setDescriptionBlock(Source source, DictionaryBlock block) override {
        blocks[source].description = std::move(block);
    }
    void setCountsBlock(Source source, DictionaryBlock block) override {
        blocks[source].counts = std::move(block);
    }
    void setRemovedBlock(Source source, std::function<void()> block) override {
        blocks[source].removed = std::move(block);
    }
    void queryDescription(Source source) override {
        const auto found = descriptions.find(source);
        if (found != descriptions.end() && blocks[source].description)
            blocks[source].description(found->second);
    }
    void queryAllSources(std::function<void()> done) override { done(); }
};

PropertyMap description(std::int64_t pid, std::int64_t effectivePid) {
    return {{"pid", {pid}}, {"epid", {effectivePid}}, {"name", {std::string("Mail")}}};
}

PropertyMap counts(std::int64_t received, std::int64_t sent) {
    return {{"rx", {received}}, {"tx", {sent}}};
}

class MacConnectionsTest : public testing::Test {
  protected:
    std::shared_ptr<FakeStatistics> statistics = std::make_shared<FakeStatistics>();
    std::shared_ptr<Connections> connections = std::make_shared<Connections>();
    MacConnections service{statistics};
    std::array<char, 2> handles{};
    NetworkStatistics::Source source = &handles[0];

    void startWith(const PropertyMap& described) {
        statistics->descriptions[source] = described;
        ASSERT_TRUE(service.start(connections));
        connections->collect();
        statistics->added(source);
    }
};

TEST_F(MacConnectionsTest, SubscribesToTCPAndUDP) {
    EXPECT_TRUE(service.start(connections));
    EXPECT_TRUE(statistics->wantsTCP && statistics->wantsUDP);
}

TEST_F(MacConnectionsTest, CannotStartWithoutTheFramework) {
    statistics->isThere = false;
    EXPECT_FALSE(service.start(connections));
    EXPECT_FALSE(statistics->added);
}

TEST_F(MacConnectionsTest, CannotStartWithoutAManager) {
    statistics->hasManager = false;
    EXPECT_FALSE(service.start(connections));
    EXPECT_FALSE(statistics->wantsTCP || statistics->wantsUDP);
}

TEST_F(MacConnectionsTest, CannotStartWithoutAnyKeyButThatOfTheEffectiveProcess) {
    const auto all = statistics->constants;
    for (const auto& [name, key] : all) {
        statistics->constants = all;
        statistics->constants.erase(name);
        EXPECT_EQ(service.start(connections), name == "kNStatSrcKeyEPID") << name;
    }
}

TEST_F(MacConnectionsTest, AsksForTheDescriptionOfEachNewSource) {
    startWith(description(881, 881));
    statistics->blocks[source].counts(counts(30, 4));
    EXPECT_THAT(connections->collect(),
                UnorderedElementsAre(Pair(881, NetworkBytes{.received = 30, .sent = 4})));
}

TEST_F(MacConnectionsTest, WhatOneProcessCarriesForAnotherIsTheOthers) {
    startWith(description(395, 881));
    EXPECT_THAT(connections->collect(), UnorderedElementsAre(Pair(881, NetworkBytes{})));
}

TEST_F(MacConnectionsTest, AnEffectiveProcessOfZeroOrBelowIsThePlainOne) {
    for (const std::int64_t none : {0, -1}) {
        const StatisticsKeys keys = *StatisticsKeys::of(*statistics);
        EXPECT_EQ(ownerPid(description(395, none), keys), 395);
    }
}

TEST_F(MacConnectionsTest, WithoutTheKeyOfTheEffectiveProcessThePlainOneCounts) {
    statistics->constants.erase("kNStatSrcKeyEPID");
    startWith(description(395, 881));
    statistics->blocks[source].counts(counts(1, 2));
    EXPECT_THAT(connections->collect(),
                UnorderedElementsAre(Pair(395, NetworkBytes{.received = 1, .sent = 2})));
}

TEST_F(MacConnectionsTest, ASourceThatIsRemovedGivesItsLastBytes) {
    startWith(description(881, 881));
    statistics->blocks[source].counts(counts(30, 4));
    statistics->blocks[source].removed();
    EXPECT_THAT(connections->collect(),
                UnorderedElementsAre(Pair(881, NetworkBytes{.received = 30, .sent = 4})));
    EXPECT_THAT(connections->collect(), IsEmpty());
}

TEST_F(MacConnectionsTest, ASourceThatComesBeforeTheManagerIsToldOf) {
    statistics->descriptions[source] = description(881, 0);
    statistics->onCreate = [&] { statistics->added(source); };
    service.start(connections);
    connections->collect();
    statistics->blocks[source].counts(counts(7, 8));
    EXPECT_THAT(connections->collect(),
                UnorderedElementsAre(Pair(881, NetworkBytes{.received = 7, .sent = 8})));
}

TEST_F(MacConnectionsTest, NothingHappensOnceNobodyListens) {
    startWith(description(881, 881));
    connections.reset();
    statistics->blocks[source].description(description(1, 1));
    statistics->blocks[source].counts(counts(1, 1));
    statistics->blocks[source].removed();
    statistics->added(&handles[1]);
    EXPECT_EQ(statistics->blocks.count(&handles[1]), 0u);
}

TEST_F(MacConnectionsTest, ItsBlocksHoldTheServiceNoLonger) {
    startWith(description(881, 881));
    const auto added = statistics->added;
    std::weak_ptr<FakeStatistics> gone = statistics;
    service = MacConnections(nullptr);
    statistics.reset();
    EXPECT_TRUE(gone.expired());
    added(source);
}

TEST_F(MacConnectionsTest, CountsPast63BitsAreHandedOutAsNegativeNumbers) {
    const StatisticsKeys keys = *StatisticsKeys::of(*statistics);
    EXPECT_EQ(
        byteCounts(counts(std::numeric_limits<std::int64_t>::min(), -1), keys),
        (NetworkBytes{.received = 1ull << 63, .sent = std::numeric_limits<std::uint64_t>::max()}));
    EXPECT_EQ(byteCounts({{"rx", {9223372036854775808.0}}, {"tx", {0.9}}}, keys),
              (NetworkBytes{.received = 1ull << 63, .sent = 0}));
}

TEST_F(MacConnectionsTest, WhatIsMissingOrOfAnotherKindIsZero) {
    const StatisticsKeys keys = *StatisticsKeys::of(*statistics);
    const std::vector<PropertyValue> hostile{
        {std::string("881")},
        {true},
        {PropertyData(8)},
        {PropertyList{{std::int64_t{881}}}},
        {PropertyMap{{"pid", {std::int64_t{881}}}}},
        {std::numeric_limits<double>::quiet_NaN()},
        {std::numeric_limits<double>::infinity()},
    };
    EXPECT_EQ(ownerPid({}, keys), 0);
    EXPECT_EQ(byteCounts({}, keys), NetworkBytes{});
    for (const PropertyValue& value : hostile) {
        EXPECT_EQ(ownerPid({{"pid", value}, {"epid", value}}, keys), 0);
        EXPECT_EQ(ownerPid({{"pid", {std::int64_t{5}}}, {"epid", value}}, keys), 5);
        EXPECT_EQ(byteCounts({{"rx", value}, {"tx", value}}, keys), NetworkBytes{});
    }
}

TEST_F(MacConnectionsTest, ANumberThatIsNoPidIsNobody) {
    const StatisticsKeys keys = *StatisticsKeys::of(*statistics);
    for (const std::int64_t pid : {std::int64_t{1} << 31, (std::int64_t{1} << 32) + 5,
                                   std::numeric_limits<std::int64_t>::min()})
        EXPECT_EQ(ownerPid(description(pid, pid), keys), 0);
    EXPECT_EQ(ownerPid(description(2147483647, 0), keys), 2147483647);
}

TEST_F(MacConnectionsTest, ANameThatIsNoTextDoesNotMatter) {
    PropertyMap odd = description(881, 881);
    odd["name"] = {std::int64_t{5}};
    startWith(odd);
    EXPECT_THAT(connections->collect(), UnorderedElementsAre(Pair(881, NetworkBytes{})));
}

} // namespace
} // namespace tavero
