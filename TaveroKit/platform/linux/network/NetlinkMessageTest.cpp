#include "platform/linux/network/NetlinkMessage.h"

#include "platform/linux/network/FakeNetlink.h"

#include <gtest/gtest.h>

#include <cstring>
#include <utility>
#include <vector>

namespace tavero {
namespace {

std::vector<std::byte> twoMessages() {
    NetlinkWriter first(7, 0, 1);
    first.attribute(1, std::uint32_t{42}).attribute(2, std::uint16_t{43});
    NetlinkWriter second(8, 0, 2);
    return joined({datagram(first), datagram(second)});
}

std::vector<std::pair<int, std::size_t>> messages(NetlinkBytes bytes) {
    std::vector<std::pair<int, std::size_t>> found;
    visitNetlinkMessages(bytes, [&](const NetlinkMessage& message) {
        found.emplace_back(message.type, message.body.size());
    });
    return found;
}

std::vector<std::pair<int, std::size_t>> attributes(NetlinkBytes bytes) {
    std::vector<std::pair<int, std::size_t>> found;
    visitNetlinkAttributes(
        bytes, [&](int type, NetlinkBytes value) { found.emplace_back(type, value.size()); });
    return found;
}

TEST(NetlinkMessages, AreVisitedWithTheirAttributes) {
    const auto bytes = twoMessages();
    using Found = std::vector<std::pair<int, std::size_t>>;
    EXPECT_EQ(messages(bytes), (Found{{7, 16}, {8, 0}}));
    EXPECT_EQ(attributes(NetlinkBytes(bytes).subspan(sizeof(nlmsghdr), 16)),
              (Found{{1, 4}, {2, 2}}));
}

TEST(NetlinkMessages, CutAnywhereNothingIsReadBeyondTheEnd) {
    const auto bytes = twoMessages();
    for (std::size_t length = 0; length < bytes.size(); ++length) {
        // A copy of its own, so that a sanitizer sees each byte too many.
        const std::vector<std::byte> cut(bytes.begin(),
                                         bytes.begin() + static_cast<std::ptrdiff_t>(length));
        EXPECT_EQ(messages(cut).size(), length >= 32 ? 1u : 0u) << length;
        attributes(cut);
    }
}

TEST(NetlinkMessages, ALengthThatLiesEndsTheWalk) {
    for (const std::uint32_t length : {0u, 4u, 15u, 1000u, 0xFFFFFFFFu}) {
        auto bytes = twoMessages();
        std::memcpy(bytes.data(), &length, sizeof length);
        EXPECT_TRUE(messages(bytes).empty()) << length;
    }
    for (const int lie : {0, 3, 30, 0xFFFF}) {
        const auto length = static_cast<std::uint16_t>(lie);
        auto bytes = netlinkAttribute(1, std::uint32_t{42});
        std::memcpy(bytes.data(), &length, sizeof length);
        EXPECT_TRUE(attributes(bytes).empty()) << length;
    }
}

TEST(NetlinkAttributes, AreKnownByTheirTypeWithoutItsFlags) {
    const auto bytes = netlinkAttribute(NLA_F_NESTED | 21, std::uint32_t{0});
    EXPECT_EQ(attributes(bytes).at(0).first, 21);
}

TEST(NetlinkValue, NeedsAllItsBytes) {
    const std::vector<std::byte> bytes(3);
    EXPECT_EQ(netlinkValue<std::uint16_t>(bytes), 0);
    EXPECT_EQ(netlinkValue<std::uint32_t>(bytes), std::nullopt);
}

class AskNetlink : public testing::Test {
  protected:
    // Whether the answer was complete, and how many messages it had.
    std::pair<bool, int> ask() {
        const auto channel = kernel_.opener()(NETLINK_ROUTE, 0);
        int count = 0;
        const bool isComplete = askNetlink(*channel, NetlinkWriter(5, NLM_F_REQUEST, 9),
                                           [&](const NetlinkMessage&) { ++count; });
        return {isComplete, count};
    }

    FakeNetlink kernel_;
};

TEST_F(AskNetlink, EndsWithTheLastOfSeveralDatagrams) {
    kernel_.answer = [](const NetlinkMessage& request) {
        const auto part = datagram(NetlinkWriter(6, 0, request.sequence));
        return FakeNetlink::Answer{joined({part, part}), part,
                                   joined({part, ending(request), part})};
    };
    EXPECT_EQ(ask(), (std::pair{true, 4}));
}

TEST_F(AskNetlink, AnAnswerToSomethingElseIsPassedOver) {
    kernel_.answer = [](const NetlinkMessage& request) {
        return FakeNetlink::Answer{datagram(NetlinkWriter(6, 0, request.sequence + 1)),
                                   ending({.sequence = request.sequence + 1}), ending(request)};
    };
    EXPECT_EQ(ask(), (std::pair{true, 0}));
}

TEST_F(AskNetlink, AnErrorOrSilenceIsNoAnswer) {
    EXPECT_EQ(ask(), (std::pair{false, 0}));
    kernel_.answer = [](const NetlinkMessage& request) {
        return FakeNetlink::Answer{ending(request, -2)};
    };
    EXPECT_EQ(ask(), (std::pair{false, 0}));
    kernel_.answer = [](const NetlinkMessage& request) {
        return FakeNetlink::Answer{datagram(NetlinkWriter(6, 0, request.sequence))}; // and no end
    };
    EXPECT_EQ(ask(), (std::pair{false, 1}));
}

TEST_F(AskNetlink, AnAnswerWithoutEndIsCutOff) {
    kernel_.answer = [](const NetlinkMessage& request) {
        return FakeNetlink::Answer(100'000, datagram(NetlinkWriter(6, 0, request.sequence)));
    };
    EXPECT_EQ(ask(), (std::pair{true, 256}));
}

} // namespace
} // namespace tavero
