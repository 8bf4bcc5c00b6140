#include "platform/linux/sound/SoundGraph.h"

#include <gtest/gtest.h>

namespace tavero {

namespace {

using Kind = SoundNode::Kind;
constexpr std::int32_t app = 500;
constexpr std::int32_t own = 900;

// An app that plays to speakers and records from a microphone, as clients 10 and 11.
class SoundGraphTest : public testing::Test {
  protected:
    SoundGraphTest() {
        add({.id = 1, .kind = Kind::sink, .name = "speakers"});
        add({.id = 2, .kind = Kind::source, .name = "microphone"});
        graph.clients[10] = {.id = 10, .isKnown = true, .pid = app, .hadStream = true};
        graph.clients[11] = {.id = 11, .isKnown = true, .pid = app, .hadStream = true};
        add({.id = 20, .kind = Kind::playback, .client = 10, .isRunning = true});
        add({.id = 21, .kind = Kind::capture, .client = 11, .isRunning = true});
        link(30, 2, 21);
    }

    void add(const SoundNode& node) { graph.nodes[node.id] = node; }
    void link(std::uint32_t id, std::uint32_t from, std::uint32_t to, bool isMonitor = false) {
        graph.ports[id + 100] = {.id = id + 100,
                                 .node = from,
                                 .direction = SoundPort::Direction::out,
                                 .isMonitor = isMonitor};
        graph.links[id] = {.id = id, .outNode = from, .outPort = id + 100, .inNode = to};
    }

    SoundGraph graph;
};

} // namespace

TEST_F(SoundGraphTest, TwoConnectionsOfAProcessAreOneProcess) {
    EXPECT_EQ(graph.processes(own), std::vector<std::int32_t>{app});
    EXPECT_TRUE(graph.isPlaying(app));
    EXPECT_TRUE(graph.isRecording(app));
    graph.nodes.erase(20); // still connected, and had a stream
    EXPECT_EQ(graph.processes(own), std::vector<std::int32_t>{app});
    EXPECT_FALSE(graph.isPlaying(app));
}

TEST_F(SoundGraphTest, OwnProcessAndOwnStreamsAreNoApp) {
    EXPECT_TRUE(graph.processes(app).empty());
    graph.nodes[20].name = "com.brimfold.tavero.meter";
    EXPECT_FALSE(graph.isPlaying(app));
    graph.nodes[21].name = "com.brimfold.tavero.meter";
    EXPECT_FALSE(graph.isRecording(app));
}

TEST_F(SoundGraphTest, AClientWithoutAStreamOrAPidIsNoProcess) {
    graph.clients[12] = {.id = 12, .isKnown = true, .pid = 501};
    graph.clients[13] = {.id = 13, .isKnown = true, .hadStream = true};
    graph.clients[14] = {.id = 14, .isKnown = false, .pid = 502, .hadStream = true};
    EXPECT_EQ(graph.processes(own), std::vector<std::int32_t>{app});
}

TEST_F(SoundGraphTest, AStreamThatRestsNeitherPlaysNorRecords) {
    graph.nodes[20].isRunning = false;
    graph.nodes[21].isRunning = false;
    EXPECT_FALSE(graph.isPlaying(app));
    EXPECT_FALSE(graph.isRecording(app));
}

TEST_F(SoundGraphTest, WhoHearsASinkDoesNotRecord) {
    graph.links.clear();
    link(31, 1, 21, true);
    EXPECT_FALSE(graph.isRecording(app));
}

TEST_F(SoundGraphTest, AllPortsOfAVirtualInputAreMonitorsAndCount) {
    graph.links.clear();
    link(31, 2, 21, true);
    EXPECT_TRUE(graph.isRecording(app));
}

TEST_F(SoundGraphTest, OfADeviceOfBothDirectionsOnlyTheInputCounts) {
    add({.id = 3, .kind = Kind::duplex});
    graph.links.clear();
    link(31, 3, 21, true);
    EXPECT_FALSE(graph.isRecording(app));
    link(32, 3, 21, false);
    EXPECT_TRUE(graph.isRecording(app));
}

TEST_F(SoundGraphTest, ALinkFromNowhereIsNoInput) {
    graph.nodes.erase(2);
    EXPECT_FALSE(graph.isRecording(app));
}

TEST_F(SoundGraphTest, TheRoutesVolumeCountsBeforeTheNodes) {
    SoundNode& node = graph.nodes[1];
    EXPECT_FALSE(graph.levelOf(node));
    node.level = SoundLevel{{0.5F}};
    EXPECT_EQ(graph.levelOf(node), (SoundLevel{{0.5F}}));
    node.device = 40;
    node.profileDevice = 6;
    graph.hardware[40].routes[7] = {.index = 1, .level = {{0.1F}}}; // another end of the card
    EXPECT_EQ(graph.levelOf(node), (SoundLevel{{0.5F}}));
    graph.hardware[40].routes[6] = {.index = 2};
    EXPECT_EQ(graph.levelOf(node), (SoundLevel{{0.5F}})); // it has no volume
    EXPECT_EQ(graph.routeOf(node)->index, 2);
    graph.hardware[40].routes[6].level = {{0.25F}};
    EXPECT_EQ(graph.levelOf(node), (SoundLevel{{0.25F}}));
    graph.asking[1] = {{0.75F}};
    EXPECT_EQ(graph.levelOf(node), (SoundLevel{{0.75F}}));
    EXPECT_EQ(graph.toldLevelOf(node), (SoundLevel{{0.25F}}));
}

TEST_F(SoundGraphTest, TheDefaultIsTheNodeOfThatName) {
    EXPECT_FALSE(graph.sink());
    graph.defaultSink = "speakers";
    EXPECT_EQ(graph.sink()->id, 1U);
    graph.askedSink = "gone";
    EXPECT_FALSE(graph.sink());
    graph.defaultSource = "microphone";
    EXPECT_EQ(graph.source()->id, 2U);
}

TEST_F(SoundGraphTest, AnOutputThatATapMadeIsNoDefault) {
    add({.id = 3, .kind = Kind::sink, .name = "com.brimfold.tavero.app-audio.1"});
    graph.defaultSink = "com.brimfold.tavero.app-audio.1";
    EXPECT_FALSE(graph.sink());
    EXPECT_TRUE(graph.lacksSink());
    graph.nodes.erase(1);
    EXPECT_FALSE(graph.lacksSink());
}

TEST_F(SoundGraphTest, ADefaultIsLackingAsLongAsNoOutputIsIt) {
    EXPECT_TRUE(graph.lacksSink());
    graph.defaultSink = "gone";
    EXPECT_TRUE(graph.lacksSink());
    graph.defaultSink = "speakers";
    EXPECT_FALSE(graph.lacksSink());
    EXPECT_FALSE(SoundGraph().lacksSink());
}

} // namespace tavero
