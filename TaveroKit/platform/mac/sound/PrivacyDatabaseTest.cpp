#include "platform/mac/sound/PrivacyDatabase.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <utility>
#include <vector>

namespace tavero {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using Status = AudioCapturePermission::Status;

struct FakePrivacy {
    std::optional<int> answer;
    bool canRequest = true;
    std::function<void(bool)> completion; // of a request under way
};

class FakeCalls : public PrivacyCalls {
  public:
    explicit FakeCalls(FakePrivacy& privacy) : privacy_(privacy) {}
    std::optional<int> preflight() override { return privacy_.answer; }
    bool request(std::function<void(bool)> completion) override {
        if (privacy_.canRequest) privacy_.completion = std::move(completion);
        return privacy_.canRequest;
    }

  private:
    FakePrivacy& privacy_;
};

class PrivacyDatabaseTest : public testing::Test {
  protected:
    FakePrivacy privacy;
    PrivacyDatabase database{std::make_unique<FakeCalls>(privacy)};
    std::vector<bool> answers;

    Status statusOf(std::optional<int> answer) {
        privacy.answer = answer;
        return database.status();
    }
    void request() {
        database.request([this](bool granted) { answers.push_back(granted); });
    }
};

TEST_F(PrivacyDatabaseTest, ZeroIsGrantedOneDeniedAndAnythingElseNotAsked) {
    EXPECT_EQ(statusOf(0), Status::granted);
    EXPECT_EQ(statusOf(1), Status::denied);
    for (const int answer : {2, 3, -1, 1'000'000}) EXPECT_EQ(statusOf(answer), Status::notAsked);
}

TEST_F(PrivacyDatabaseTest, ASystemWithoutTheCallNeverAsked) {
    EXPECT_EQ(statusOf(std::nullopt), Status::notAsked);
}

TEST_F(PrivacyDatabaseTest, ARequestWithoutTheCallIsRefusedAtOnce) {
    privacy.canRequest = false;
    request();
    EXPECT_THAT(answers, ElementsAre(false));
}

TEST_F(PrivacyDatabaseTest, ARequestWaitsForTheAnswerAndPassesItOn) {
    request();
    EXPECT_THAT(answers, IsEmpty());
    privacy.completion(true);
    EXPECT_THAT(answers, ElementsAre(true));
}

TEST_F(PrivacyDatabaseTest, AfterADenialARequestIsFalseAndTheStatusStaysDenied) {
    privacy.answer = 1;
    request();
    privacy.completion(false); // at once, and without a prompt
    EXPECT_THAT(answers, ElementsAre(false));
    EXPECT_EQ(database.status(), Status::denied);
}

TEST_F(PrivacyDatabaseTest, OnlyTheFirstAnswerCounts) {
    request();
    privacy.completion(true);
    privacy.completion(false);
    EXPECT_THAT(answers, ElementsAre(true));
    privacy.completion = nullptr;
    EXPECT_THAT(answers, ElementsAre(true));
}

TEST_F(PrivacyDatabaseTest, ARequestThatIsDroppedWithoutAnAnswerIsRefused) {
    request();
    privacy.completion = nullptr;
    EXPECT_THAT(answers, ElementsAre(false));
}

TEST_F(PrivacyDatabaseTest, EveryRequestHasItsOwnAnswer) {
    request();
    privacy.completion(true);
    request();
    privacy.completion(false);
    EXPECT_THAT(answers, ElementsAre(true, false));
}

} // namespace
} // namespace tavero
