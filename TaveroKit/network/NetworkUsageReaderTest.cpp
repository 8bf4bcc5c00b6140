#include "network/NetworkUsageReader.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <array>
#include <condition_variable>
#include <cstdint>
#include <deque>
#include <memory>
#include <mutex>
#include <thread>
#include <utility>
#include <vector>

namespace tavero {
namespace {

using namespace std::chrono_literals;
using testing::IsEmpty;
using testing::Pair;
using testing::UnorderedElementsAre;

constexpr std::int32_t browser = 702;

// What a test sees of a service, which belongs to the reader and goes with it.
struct ServiceState {
    bool canStart = true;
    std::function<void()> onStart;
    std::function<void(std::function<void()> done)> onQuery;
    std::weak_ptr<Connections> connections;
};

class FakeService : public ConnectionService {
  public:
    explicit FakeService(std::shared_ptr<ServiceState> state) : state_(std::move(state)) {}

    bool start(std::weak_ptr<Connections> connections) override {
        state_->connections = std::move(connections);
        if (state_->onStart) state_->onStart();
        return state_->canStart;
    }

    void queryCounts(std::function<void()> done) override {
        state_->onQuery ? state_->onQuery(std::move(done)) : done();
    }

  private:
    std::shared_ptr<ServiceState> state_;
};

class NetworkUsageReaderTest : public testing::Test {
  protected:
    // Waits for nothing that isn't there at once.
    std::unique_ptr<NetworkUsageReader> start() {
        return NetworkUsageReader::start(std::make_unique<FakeService>(service), 0ms);
    }

    // One connection of the browser, and what it moved so far.
    void tell(std::uint64_t received, std::uint64_t sent) {
        if (const auto connections = service->connections.lock()) {
            connections->described(&handle, browser, "Wayfarer");
            connections->counted(&handle, {.received = received, .sent = sent});
        }
    }

    std::shared_ptr<ServiceState> service = std::make_shared<ServiceState>();
    const char handle = 0;
};

TEST_F(NetworkUsageReaderTest, DoesNotExistWithoutTheService) {
    service->canStart = false;
    EXPECT_EQ(start(), nullptr);
    tell(1, 1); // nobody listens
    EXPECT_TRUE(service->connections.expired());
}

TEST_F(NetworkUsageReaderTest, TheFirstReadIsEmptyAndTheNextTellsTheGrowth) {
    const auto reader = start();
    tell(5'000, 700);
    EXPECT_THAT(reader->read(), IsEmpty());
    tell(5'030, 704);
    EXPECT_THAT(reader->read(),
                UnorderedElementsAre(Pair(browser, NetworkBytes{.received = 30, .sent = 4})));
}

TEST_F(NetworkUsageReaderTest, ReadsTheCountsThatItAskedFor) {
    const auto reader = start();
    reader->read();
    service->onQuery = [&](const std::function<void()>& done) {
        tell(900, 80);
        done();
    };
    EXPECT_THAT(reader->read(),
                UnorderedElementsAre(Pair(browser, NetworkBytes{.received = 900, .sent = 80})));
}

TEST_F(NetworkUsageReaderTest, AServiceThatNeverAnswersGivesWhatHasArrived) {
    const auto reader = start();
    service->onQuery = [](const std::function<void()>&) {};
    reader->read();
    tell(900, 80);
    EXPECT_THAT(reader->read(),
                UnorderedElementsAre(Pair(browser, NetworkBytes{.received = 900, .sent = 80})));
}

TEST_F(NetworkUsageReaderTest, CountsThatComeTooLateArePartOfTheNextRead) {
    const auto reader = start();
    reader->read();
    std::function<void()> late;
    service->onQuery = [&](std::function<void()> done) { late = std::move(done); };
    EXPECT_THAT(reader->read(), IsEmpty());
    tell(900, 80);
    late();
    EXPECT_THAT(reader->read(),
                UnorderedElementsAre(Pair(browser, NetworkBytes{.received = 900, .sent = 80})));
}

TEST_F(NetworkUsageReaderTest, AnAnswerGivenTwiceOrToALaterReadIsHarmless) {
    const auto reader = start();
    std::vector<std::function<void()>> answers;
    service->onQuery = [&](std::function<void()> done) { answers.push_back(std::move(done)); };
    reader->read();
    reader->read();
    for (const auto& answer : answers) answer(), answer();
    EXPECT_THAT(reader->read(), IsEmpty());
}

TEST_F(NetworkUsageReaderTest, CallbacksBeforeTheStartHasEndedCount) {
    service->onStart = [&] { tell(40, 50); };
    const auto reader = start();
    reader->read();
    tell(41, 52);
    EXPECT_THAT(reader->read(),
                UnorderedElementsAre(Pair(browser, NetworkBytes{.received = 1, .sent = 2})));
}

TEST_F(NetworkUsageReaderTest, CallbacksAfterItsEndDoNothing) {
    auto reader = start();
    std::function<void()> late;
    service->onQuery = [&](std::function<void()> done) { late = std::move(done); };
    reader->read();
    reader.reset();
    tell(1, 1);
    late();
    EXPECT_TRUE(service->connections.expired());
}

// A service as the system has it: all its callbacks come from one thread, in the order given.
class ThreadedService : public ConnectionService {
  public:
    ~ThreadedService() override { finish(); }

    // Makes all calls that were given, and then no more.
    void finish() {
        if (!thread_.joinable()) return;
        then([this] { isDone_ = true; });
        thread_.join();
    }

    bool start(std::weak_ptr<Connections> connections) override {
        connections_ = std::move(connections);
        thread_ = std::thread([this] { run(); });
        return true;
    }

    void queryCounts(std::function<void()> done) override { then(std::move(done)); }

    void then(std::function<void()> call) {
        const std::lock_guard lock(mutex_);
        calls_.push_back(std::move(call));
        added_.notify_one();
    }

    void tell(const std::function<void(Connections&)>& what) {
        then([this, what] {
            if (const auto connections = connections_.lock()) what(*connections);
        });
    }

  private:
    void run() {
        while (!isDone_) {
            std::unique_lock lock(mutex_);
            added_.wait(lock, [&] { return !calls_.empty(); });
            const std::function<void()> call = std::move(calls_.front());
            calls_.pop_front();
            lock.unlock();
            call();
        }
    }

    std::weak_ptr<Connections> connections_;
    std::mutex mutex_;
    std::condition_variable added_;
    std::deque<std::function<void()>> calls_;
    bool isDone_ = false;
    std::thread thread_;
};

// One life of a connection, for which its owner is told at some moment between.
void tellLife(ThreadedService& service, Connections::Source source, int life, std::uint64_t steps) {
    service.tell([=](Connections& connections) { connections.opened(source); });
    for (std::uint64_t step = 1; step <= steps; ++step)
        service.tell([=](Connections& connections) {
            connections.counted(source, {.received = 10 * step, .sent = step});
            if (step == static_cast<std::uint64_t>(life) % steps + 1)
                connections.described(source, life % 3 + 1, "");
        });
    service.tell([=](Connections& connections) { connections.removed(source); });
}

TEST(NetworkUsageReader, WaitsForTheServicesOwnThread) {
    auto owned = std::make_unique<ThreadedService>();
    ThreadedService& service = *owned;
    const auto reader = NetworkUsageReader::start(std::move(owned), 1min);
    reader->read();
    static constexpr char handle = 0;
    for (int life = 0; life < 50; ++life) {
        tellLife(service, &handle, life, 20);
        EXPECT_THAT(reader->read(), UnorderedElementsAre(Pair(
                                        life % 3 + 1, NetworkBytes{.received = 200, .sent = 20})));
    }
}

TEST(NetworkUsageReader, EveryByteIsReportedOnceThoughItReadsWhileTheServiceCallsBack) {
    constexpr int lives = 500;
    constexpr std::uint64_t steps = 20;
    auto owned = std::make_unique<ThreadedService>();
    ThreadedService& service = *owned;
    const auto reader = NetworkUsageReader::start(std::move(owned), 0ms); // waits for nothing
    reader->read();

    NetworkBytes total;
    const auto collect = [&] {
        for (const auto& [pid, bytes] : reader->read()) {
            EXPECT_TRUE(pid == 1 || pid == 2 || pid == 3);
            total.received += bytes.received;
            total.sent += bytes.sent;
        }
    };
    static constexpr std::array<char, 7> handles{}; // given again and again
    for (int life = 0; life < lives; ++life) {
        tellLife(service, &handles[static_cast<std::size_t>(life) % 7], life, steps);
        collect();
    }
    service.finish();
    collect();
    EXPECT_EQ(total, (NetworkBytes{.received = 10 * steps * lives, .sent = steps * lives}));
    EXPECT_THAT(reader->read(), IsEmpty());
}

TEST(NetworkUsageReader, MayEndWhileTheServiceIsCallingBack) {
    auto owned = std::make_unique<ThreadedService>();
    ThreadedService& service = *owned;
    auto reader = NetworkUsageReader::start(std::move(owned), 0ms);
    static constexpr char handle = 0;
    for (int call = 0; call < 1'000; ++call)
        service.tell([](Connections& connections) { connections.counted(&handle, {}); });
    reader->read();
    reader.reset();
}

} // namespace
} // namespace tavero
