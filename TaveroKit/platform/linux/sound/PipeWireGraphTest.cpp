#include "platform/linux/sound/PipeWireGraph.h"
#include "platform/linux/sound/test/SoundSession.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <functional>
#include <set>
#include <unistd.h>

// With the real services, in a session of their own.

namespace tavero {

namespace {

// Writes down what it is told.
class Diary : public PipeWireObserver {
  public:
    explicit Diary(PipeWireGraph& graph) : graph_(graph) {
        const auto lock = graph_.lock();
        graph_.add(*this);
    }
    ~Diary() override {
        const auto lock = graph_.lock();
        graph_.remove(*this);
    }

    void connected() override { ++connections; }
    void disconnected() override {
        ++ends;
        hadCoreAtTheEnd = graph_.core() != nullptr;
    }
    void streamAppeared(const SoundNode& stream) override { streams.insert(stream.id); }
    void streamGone(std::uint32_t node) override { gone.insert(node); }
    void portAppeared(const SoundPort& port) override { ports.insert(port.node); }
    void changed() override { look(); }

    int connections = 0;
    int ends = 0;
    bool hadCoreAtTheEnd = false;
    std::set<std::uint32_t> streams;
    std::set<std::uint32_t> gone;
    std::set<std::uint32_t> ports;
    std::function<void()> look = [] {};

  private:
    PipeWireGraph& graph_;
};

class PipeWireGraphTest : public testing::Test {
  protected:
    PipeWireGraphTest() {
        EXPECT_TRUE(wait([&] { return graph.isConnected() && graph.mirror().sink(); }));
    }

    bool wait(const std::function<bool()>& reached) {
        return SoundSession::waitUntil(graph, reached);
    }
    const SoundNode* streamOf(pid_t pid) {
        for (const auto& [id, node] : graph.mirror().nodes)
            if (node.isStream() && node.isKnown && graph.mirror().pidOf(node) == pid) return &node;
        return nullptr;
    }
    // The names of the nodes that the process's streams are linked to.
    std::set<std::string> targetsOf(pid_t pid) {
        std::set<std::string> names;
        const SoundNode* stream = streamOf(pid);
        for (const auto& [id, link] : graph.mirror().links) {
            const SoundNode* to = graph.mirror().node(link.inNode);
            if (stream && link.outNode == stream->id && to) names.insert(to->name);
        }
        return names;
    }
    std::uint64_t serialOf(std::string_view name) { return graph.mirror().named(name)->serial; }
    AudioObjectID objectOf(pid_t pid) {
        return PipeWireGraph::processObject(graph.generation(), pid);
    }
    static RunningProgram play() {
        return RunningProgram({"pw-play", SoundSession::silence().string()});
    }

    // Sends a player to the headset before it plays. All that it was ever linked to.
    std::set<std::string> linksOfNewPlayer(const std::string& name);

    PipeWireGraph graph;
};

const std::set<std::string> onSpeakers{"test.speakers"};
const std::set<std::string> onHeadset{"test.headset"};

std::set<std::string> PipeWireGraphTest::linksOfNewPlayer(const std::string& name) {
    const std::string start = SoundSession::file(name).string();
    const RunningProgram player({"bash", "-c",
                                 "until [ -e " + start + " ]; do sleep 0.01; done; exec pw-play " +
                                     SoundSession::silence().string()});
    std::set<std::string> seen;
    Diary diary(graph);
    PipeWireGraph::RedirectID redirect = 0;
    {
        const auto lock = graph.lock();
        diary.look = [&] { seen.merge(targetsOf(player.pid())); };
        redirect = graph.redirect({objectOf(player.pid())}, serialOf("test.headset"));
    }
    SoundSession::output("touch " + start);
    EXPECT_TRUE(wait([&] { return targetsOf(player.pid()) == onHeadset; }));
    {
        const auto lock = graph.lock();
        graph.release(redirect);
        diary.look = [] {};
    }
    // The session manager must not remember the headset for the players to come.
    EXPECT_TRUE(wait([&] { return targetsOf(player.pid()) == onSpeakers; }));
    return seen;
}

} // namespace

TEST_F(PipeWireGraphTest, StreamsAndTheirPortsAreToldOf) {
    Diary diary(graph);
    std::uint32_t id = 0;
    {
        const RunningProgram player = play();
        EXPECT_TRUE(wait([&] {
            const SoundNode* stream = streamOf(player.pid());
            id = stream ? stream->id : 0;
            return stream && diary.streams.contains(id) && diary.ports.contains(id);
        }));
        const auto lock = graph.lock();
        EXPECT_EQ(graph.mirror().node(id)->kind, SoundNode::Kind::playback);
        EXPECT_FALSE(graph.mirror().portsOf(id, SoundPort::Direction::out).empty());
    }
    EXPECT_TRUE(wait([&] { return diary.gone.contains(id) && !graph.mirror().node(id); }));
}

TEST_F(PipeWireGraphTest, AStreamThatStandsIsSentElsewhereAndBack) {
    const RunningProgram player = play();
    ASSERT_TRUE(wait([&] { return targetsOf(player.pid()) == onSpeakers; }));
    PipeWireGraph::RedirectID redirect = 0;
    {
        const auto lock = graph.lock();
        redirect = graph.redirect({objectOf(player.pid())}, serialOf("test.headset"));
    }
    EXPECT_TRUE(wait([&] { return targetsOf(player.pid()) == onHeadset; }));
    {
        const auto lock = graph.lock();
        graph.release(redirect);
    }
    EXPECT_TRUE(wait([&] { return targetsOf(player.pid()) == onSpeakers; }));
}

TEST_F(PipeWireGraphTest, TheLatestRedirectHoldsAndTheOneBeforeItEndsUnheard) {
    const RunningProgram player = play();
    ASSERT_TRUE(wait([&] { return targetsOf(player.pid()) == onSpeakers; }));
    PipeWireGraph::RedirectID first = 0;
    PipeWireGraph::RedirectID second = 0;
    {
        const auto lock = graph.lock();
        first = graph.redirect({objectOf(player.pid())}, serialOf("test.speakers"));
        second = graph.redirect({objectOf(player.pid())}, serialOf("test.headset"));
        graph.release(first);
    }
    EXPECT_TRUE(wait([&] { return targetsOf(player.pid()) == onHeadset; }));
    {
        const auto lock = graph.lock();
        graph.release(second);
    }
    EXPECT_TRUE(wait([&] { return targetsOf(player.pid()) == onSpeakers; }));
}

// The session manager hears of a stream when we do, and asks more before it links it. Where the
// machine is so busy that our thread doesn't run meanwhile it is first, so there are a few tries;
// one who sent the stream any later than at its announcement would lose them all.
TEST_F(PipeWireGraphTest, AStreamToComeIsNeverLinkedToAnywhereElse) {
    bool hasWon = false;
    for (int i = 0; i < 5 && !hasWon; ++i)
        hasWon = linksOfNewPlayer("start" + std::to_string(i)) == onHeadset;
    EXPECT_TRUE(hasWon);
}

TEST_F(PipeWireGraphTest, WhomNobodyRedirectsIsLeftAlone) {
    const RunningProgram player = play();
    ASSERT_TRUE(wait([&] { return targetsOf(player.pid()) == onSpeakers; }));
    {
        const auto lock = graph.lock();
        graph.redirect({objectOf(::getpid()), 1, objectOf(player.pid()) + (1U << 22)},
                       serialOf("test.headset"));
    }
    SoundSession::output("pw-metadata 0 tavero.test 1"); // a round trip of somebody else's
    EXPECT_EQ(SoundSession::output("pw-metadata").find("target.object"), std::string::npos);
}

TEST_F(PipeWireGraphTest, PortsAreLinkedForAsLongAsTheLinkLives) {
    const auto isLinked = [&] {
        const auto& links = graph.mirror().links;
        return std::any_of(links.begin(), links.end(), [&](const auto& link) {
            return link.second.outNode == graph.mirror().named("test.mic")->id &&
                   link.second.inNode == graph.mirror().named("test.headset")->id;
        });
    };
    std::unique_ptr<PipeWireGraph::Link> link;
    {
        const auto lock = graph.lock();
        const auto out =
            graph.mirror().portsOf(graph.mirror().named("test.mic")->id, SoundPort::Direction::out);
        const auto in = graph.mirror().portsOf(graph.mirror().named("test.headset")->id,
                                               SoundPort::Direction::in);
        ASSERT_FALSE(out.empty());
        ASSERT_FALSE(in.empty());
        link = graph.link(out[0], in[0], true);
        ASSERT_TRUE(link);
    }
    EXPECT_TRUE(wait(isLinked));
    {
        const auto lock = graph.lock();
        link.reset();
    }
    EXPECT_TRUE(wait([&] { return !isLinked(); }));
}

TEST_F(PipeWireGraphTest, TheServiceMayGoAndComeBack) {
    Diary diary(graph);
    std::unique_ptr<PipeWireGraph::Link> link;
    PipeWireGraph::RedirectID redirect = 0;
    std::uint32_t before = 0;
    {
        const auto lock = graph.lock();
        before = graph.generation();
        const auto id = graph.mirror().named("test.headset")->id;
        link = graph.link(graph.mirror().portsOf(id, SoundPort::Direction::out).at(0),
                          graph.mirror().portsOf(id, SoundPort::Direction::in).at(0), true);
        redirect = graph.redirect({objectOf(::getpid())}, 1);
    }
    SoundSession::stopServices();
    EXPECT_TRUE(wait([&] { return diary.ends == 1 && !graph.isConnected() && !graph.core(); }));
    {
        const auto lock = graph.lock();
        EXPECT_TRUE(diary.hadCoreAtTheEnd);
        EXPECT_TRUE(graph.mirror().nodes.empty());
        EXPECT_FALSE(graph.link({}, {}, true));
        link.reset(); // outlives the connection
        graph.release(redirect);
    }
    SoundSession::startServices();
    EXPECT_TRUE(wait([&] { return diary.connections == 1 && graph.mirror().sink(); }));
    const auto lock = graph.lock();
    EXPECT_EQ(graph.generation(), before + 1);
}

TEST_F(PipeWireGraphTest, WithoutAServiceAllIsEmptyAndKnownAtOnce) {
    const std::string folder = SoundSession::file("empty").string();
    std::filesystem::create_directory(folder);
    const std::string real = ::getenv("PIPEWIRE_RUNTIME_DIR");
    ::setenv("PIPEWIRE_RUNTIME_DIR", folder.c_str(), 1);
    PipeWireGraph alone;
    {
        const auto lock = alone.lock();
        EXPECT_TRUE(alone.isSettled());
        EXPECT_FALSE(alone.isConnected());
        EXPECT_FALSE(alone.core());
        EXPECT_TRUE(alone.mirror().nodes.empty());
        EXPECT_EQ(alone.generation(), 0U);
    }
    // And when one comes it is found.
    std::filesystem::create_symlink(real + "/pipewire-0", folder + "/pipewire-0");
    EXPECT_TRUE(SoundSession::waitUntil(alone, [&] { return alone.isConnected(); }));
    ::setenv("PIPEWIRE_RUNTIME_DIR", real.c_str(), 1);
}

TEST_F(PipeWireGraphTest, AProcessObjectHoldsItsPidAndItsConnection) {
    const auto lock = graph.lock();
    constexpr std::int32_t greatest = (1 << 22) - 1;
    const std::uint32_t now = graph.generation();
    EXPECT_EQ(graph.pidOf(PipeWireGraph::processObject(now, greatest)), greatest);
    EXPECT_EQ(graph.pidOf(PipeWireGraph::processObject(now, 1)), 1);
    EXPECT_FALSE(graph.pidOf(PipeWireGraph::processObject(now + 1, 1)));
    EXPECT_FALSE(graph.pidOf(PipeWireGraph::processObject(now, 0)));
    EXPECT_FALSE(graph.pidOf(audioSystem));
    EXPECT_NE(PipeWireGraph::processObject(512, 7), PipeWireGraph::processObject(511, 7));
}

} // namespace tavero
