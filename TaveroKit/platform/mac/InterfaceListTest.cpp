#include "platform/mac/InterfaceList.h"

#include <gtest/gtest.h>

#include <algorithm>

namespace tavero {
namespace {

using Bytes = std::vector<std::byte>;

// A number at an offset, as a little-endian kernel writes it.
template <typename Number>
void put(Bytes& bytes, std::size_t at, Number number) {
    const auto raw = std::as_bytes(std::span(&number, 1));
    std::copy(raw.begin(), raw.end(), bytes.begin() + static_cast<std::ptrdiff_t>(at));
}

struct Message {
    std::uint16_t length = 160;
    std::uint8_t type = 18;
    std::uint16_t index = 0;
    std::uint64_t in = 0;
    std::uint64_t out = 0;
};

// A message of `size` bytes, whatever its length field says.
Bytes bytesOf(const Message& message, std::size_t size = 160) {
    Bytes bytes(160);
    put(bytes, 0, message.length);
    put(bytes, 3, message.type);
    put(bytes, 12, message.index);
    put(bytes, 96, message.in);
    put(bytes, 104, message.out);
    bytes.resize(size);
    return bytes;
}

Bytes join(std::initializer_list<Bytes> parts) {
    Bytes all;
    for (const Bytes& part : parts) all.insert(all.end(), part.begin(), part.end());
    return all;
}

std::vector<std::uint32_t> indexes(const Bytes& list) {
    std::vector<std::uint32_t> indexes;
    for (const InterfaceMessage& message : parseInterfaceList(list))
        indexes.push_back(message.index);
    return indexes;
}

TEST(InterfaceList, TakesIndexAndBytesOfEachInterface) {
    const Bytes list = join({bytesOf({.index = 1, .in = 10, .out = 20}),
                             bytesOf({.index = 515, .in = 1ull << 40, .out = 3})});
    EXPECT_EQ(parseInterfaceList(list),
              (std::vector<InterfaceMessage>{
                  {.index = 1, .counters = {.bytesIn = 10, .bytesOut = 20}},
                  {.index = 515, .counters = {.bytesIn = 1ull << 40, .bytesOut = 3}}}));
}

TEST(InterfaceList, PassesOverOtherMessages) {
    const Bytes address = bytesOf({.length = 44, .type = 12, .index = 9}, 44);
    const Bytes multicast = bytesOf({.length = 37, .type = 19, .index = 9}, 37);
    EXPECT_EQ(indexes(join({bytesOf({.index = 1}), address, multicast, bytesOf({.index = 2})})),
              (std::vector<std::uint32_t>{1, 2}));
}

TEST(InterfaceList, ATailShorterThanWhatIsReadIsNotReadPast) {
    const Bytes first = bytesOf({.index = 1});
    // The sanitizers watch these: each list ends where its memory does.
    for (std::size_t tail = 0; tail < 112; ++tail)
        EXPECT_EQ(indexes(join({first, bytesOf({.index = 2}, tail)})),
                  std::vector<std::uint32_t>{1})
            << tail;
    EXPECT_EQ(indexes(join({first, bytesOf({.index = 2}, 112)})),
              (std::vector<std::uint32_t>{1, 2}));
}

TEST(InterfaceList, AnEmptyListHasNoInterfaces) { EXPECT_TRUE(parseInterfaceList({}).empty()); }

TEST(InterfaceList, AMessageOfNoLengthIsTheLast) {
    EXPECT_EQ(indexes(join({bytesOf({.length = 0, .index = 1}), bytesOf({.index = 2})})),
              std::vector<std::uint32_t>{1});
}

TEST(InterfaceList, ALengthPastTheEndIsTheLast) {
    EXPECT_EQ(indexes(join({bytesOf({.length = 0xFFFF, .index = 1}), bytesOf({.index = 2})})),
              std::vector<std::uint32_t>{1});
    EXPECT_EQ(indexes(join({bytesOf({.length = 161, .index = 1}), bytesOf({.index = 2})})),
              std::vector<std::uint32_t>{1});
}

TEST(InterfaceList, AShortLengthIsFollowedIntoTheMessage) {
    // The next message is said to begin inside the first, where there are only zeros.
    EXPECT_EQ(indexes(join({bytesOf({.length = 20, .index = 1}), bytesOf({.index = 2})})),
              std::vector<std::uint32_t>{1});
}

TEST(InterfaceList, AListOfOneByteLengthsEnds) {
    Bytes list(100'000, std::byte{0});
    for (std::size_t i = 0; i < list.size(); i += 2) list[i] = std::byte{2};
    EXPECT_TRUE(parseInterfaceList(list).empty());
}

TEST(InterfaceData, TakesTheBytesFromTheirOffsets) {
    Bytes data(180);
    put(data, 116, std::uint64_t{1} << 50);
    put(data, 124, std::uint64_t{77});
    EXPECT_EQ(parseInterfaceData(data), (InterfaceCounters{.bytesIn = 1ull << 50, .bytesOut = 77}));
    // At an odd address as well.
    Bytes shifted(181);
    std::copy(data.begin(), data.end(), shifted.begin() + 1);
    EXPECT_EQ(parseInterfaceData(std::span(shifted).subspan(1)), parseInterfaceData(data));
}

TEST(InterfaceData, AShortAnswerIsAbsent) {
    EXPECT_EQ(parseInterfaceData({}), std::nullopt);
    EXPECT_EQ(parseInterfaceData(Bytes(131)), std::nullopt);
    EXPECT_TRUE(parseInterfaceData(Bytes(132)));
}

} // namespace
} // namespace tavero
