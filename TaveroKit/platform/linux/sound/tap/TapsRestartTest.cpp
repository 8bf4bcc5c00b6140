#include "platform/linux/sound/tap/PipeWireTaps.h"

#include "platform/linux/sound/tap/test/TapsBench.h"
#include "platform/linux/sound/test/SoundSession.h"

#include <cerrno>

using namespace tavero;
using namespace tavero::test;

TEST_F(PipeWireTapsService, WithoutAServiceThereIsNoTap) {
    std::unique_ptr<RunningTap> running;
    std::unique_ptr<RunningTap> listening;
    TapCells cells;
    TapCells heard;
    AudioObjectID object = 0;
    {
        const Program app(player({"test.app", "level"}));
        object = process(app);
        running = tap(app, "test.headset", 0.5f, cells);
        listening = meter(app, heard);
        EXPECT_TRUE(becomes([&] { return running->isRunning() && listening->isRunning(); }));
        SoundSession::stopServices();
        const auto lock = graph->lock();
        EXPECT_TRUE(graph->waitUntil([this] { return !graph->isConnected(); }, patience));
    }
    EXPECT_FALSE(running->isRunning());
    EXPECT_FALSE(listening->isRunning());
    cells.latest = -1;
    for (const bool listenOnly : {false, true}) {
        const auto refused =
            taps.start({{object}, "test.headset", std::nullopt, listenOnly}, heard);
        ASSERT_EQ(refused.index(), 1u);
        EXPECT_EQ(std::get<1>(refused), (TapFailure{TapFailure::Step::tap, -ENOTCONN}));
    }
    SoundSession::startServices();
    {
        const auto isBack = [this] {
            return graph->isConnected() && graph->mirror().defaultSink == "test.speakers" &&
                   graph->mirror().named("test.headset") != nullptr;
        };
        const auto lock = graph->lock();
        EXPECT_TRUE(graph->waitUntil(isBack, std::chrono::seconds(20)));
    }
    EXPECT_FALSE(running->isRunning()) << "off for good";
    running.reset();
    listening.reset();
    EXPECT_EQ(cells.latest, -1);

    const Program app(player({"test.app", "level"}));
    const auto again = tap(app, "test.headset", 0.5f, cells);
    EXPECT_TRUE(TestGraph().waitUntil([&] { return again->isRunning(); }));
}
