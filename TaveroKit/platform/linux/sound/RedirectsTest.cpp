#include "platform/linux/sound/Redirects.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <map>
#include <string_view>

namespace tavero {

namespace {

using Kind = SoundNode::Kind;

// Streams whose client's number stands for the process object. What is written is told back as the
// service does, but later.
class RedirectsTest : public testing::Test {
  protected:
    RedirectsTest() {
        play(1, 7);
        play(2, 7);
        play(3, 8);
    }

    void play(std::uint32_t id, AudioObjectID process, Kind kind = Kind::playback) {
        graph.nodes[id] = {.id = id, .kind = kind, .client = process};
    }
    void echo() {
        for (const auto& [node, key, value] : underWay)
            redirects.told(node, key, value ? value->c_str() : nullptr);
        underWay.clear();
    }
    std::string targetOf(std::uint32_t node, const char* key = "target.object") {
        return targets[{node, key}];
    }

    struct Written {
        std::uint32_t node;
        std::string key;
        std::optional<std::string> value;
    };

    SoundGraph graph;
    std::vector<Written> underWay;
    std::map<std::pair<std::uint32_t, std::string>, std::string> targets;
    int writes = 0;
    Redirects redirects{
        [this](std::uint32_t node, const char* key, const char* type, const char* value) {
            EXPECT_EQ(type != nullptr, value != nullptr);
            targets[{node, key}] = value ? value : "";
            underWay.push_back(
                {node, key, value ? std::optional<std::string>(value) : std::nullopt});
            if (std::string_view(key) == "target.object") ++writes;
        },
        [](const SoundNode& stream, const std::vector<AudioObjectID>& processes) {
            return std::find(processes.begin(), processes.end(), stream.client) != processes.end();
        }};
};

} // namespace

TEST_F(RedirectsTest, AllStreamsOfTheProcessesGoAndComeBack) {
    const auto id = redirects.add({7}, 50, graph);
    EXPECT_EQ(targetOf(1), "50");
    EXPECT_EQ(targetOf(2), "50");
    EXPECT_EQ(targetOf(3), "");
    echo();
    redirects.remove(id, graph);
    EXPECT_EQ(targetOf(1), "");
    EXPECT_EQ(targetOf(2), "");
    EXPECT_EQ(writes, 4);
}

TEST_F(RedirectsTest, AStreamToComeGoesAtOnceAndOnce) {
    redirects.add({9}, 50, graph);
    play(4, 9);
    redirects.apply(graph.nodes[4]);
    redirects.apply(graph.nodes[4]);
    EXPECT_EQ(targetOf(4), "50");
    EXPECT_EQ(writes, 1);
}

TEST_F(RedirectsTest, OnlyWhatAppsPlayIsSent) {
    play(4, 9, Kind::capture);
    play(5, 9, Kind::other);
    play(6, 9);
    graph.nodes[6].name = "com.brimfold.tavero.app-audio.1.out";
    redirects.add({9}, 50, graph);
    EXPECT_EQ(writes, 0);
}

TEST_F(RedirectsTest, TheLatestHoldsAndTheOneBeforeItEndsUnheard) {
    const auto first = redirects.add({7}, 50, graph);
    const auto second = redirects.add({7}, 60, graph);
    redirects.remove(first, graph);
    echo();
    EXPECT_EQ(targetOf(1), "60");
    redirects.remove(second, graph);
    EXPECT_EQ(targetOf(1), "");
}

TEST_F(RedirectsTest, TheOneBeforeHoldsAgainWhenTheLatestEnds) {
    redirects.add({7}, 50, graph);
    redirects.remove(redirects.add({7}, 60, graph), graph);
    EXPECT_EQ(targetOf(1), "50");
}

TEST_F(RedirectsTest, WhereTheUserHadSentTheStreamItGoesBackTo) {
    redirects.told(1, "target.object", "40");
    redirects.told(2, "target.node", "33");
    const auto id = redirects.add({7}, 50, graph);
    echo();
    redirects.remove(id, graph);
    EXPECT_EQ(targetOf(1), "40");
    EXPECT_EQ(targetOf(2), "");
    EXPECT_EQ(targetOf(2, "target.node"), "33"); // said anew, to be remembered as the last word
}

TEST_F(RedirectsTest, WhomTheUserSendsElsewhereMeanwhileStaysThere) {
    const auto id = redirects.add({7}, 50, graph);
    echo();
    redirects.told(1, "target.object", "40");
    const int before = writes;
    redirects.remove(id, graph);
    EXPECT_EQ(writes, before + 1); // of stream 2 alone
    EXPECT_EQ(targetOf(2), "");
}

TEST_F(RedirectsTest, AnEchoThatComesLateIsNoUser) {
    redirects.remove(redirects.add({7}, 50, graph), graph);
    const auto id = redirects.add({7}, 60, graph);
    echo(); // of all three
    redirects.remove(id, graph);
    EXPECT_EQ(targetOf(1), "");
}

TEST_F(RedirectsTest, AStreamThatWentIsForgotten) {
    const auto id = redirects.add({7}, 50, graph);
    graph.nodes.erase(1);
    redirects.gone(1);
    play(1, 8); // the id is given anew
    redirects.remove(id, graph);
    EXPECT_EQ(writes, 3);
}

TEST_F(RedirectsTest, TheSessionManagerForgetsWhereWeSentAStream) {
    const auto id = redirects.add({7}, 50, graph);
    EXPECT_EQ(targetOf(1, "target.node"), "-1");
    echo();
    redirects.remove(id, graph);
    EXPECT_EQ(targetOf(1, "target.node"), "");
}

TEST_F(RedirectsTest, WithTheConnectionAllEnds) {
    const auto id = redirects.add({7}, 50, graph);
    redirects.clear();
    redirects.applyAll(graph);
    redirects.remove(id, graph);
    EXPECT_EQ(writes, 2);
}

} // namespace tavero
