#include "platform/mac/hardware/SMCReader.h"

#include "platform/sim/SimMachine.h"

#include <gtest/gtest.h>

#include <cstring>
#include <functional>
#include <limits>
#include <string>
#include <vector>

namespace tavero {
namespace {

using Record = MacController::Record;

std::vector<std::byte> bytes(std::initializer_list<int> values) {
    std::vector<std::byte> bytes;
    for (const int value : values) bytes.push_back(static_cast<std::byte>(value));
    return bytes;
}

// A Mac whose controller has these keys and no other.
SMCSnapshot read(std::map<std::string, SimControllerValue> keys) {
    SimMachine sim;
    sim.state().hardware.controller = std::move(keys);
    return SMCReader(sim.controller()).read();
}

SimControllerValue real(float value) {
    SimHardware hardware;
    hardware.setController("key ", value);
    return hardware.controller["key "];
}

SimControllerValue small(std::uint8_t value) { return {.type = "ui8 ", .bytes = bytes({value})}; }

// A controller that answers as a test says, and remembers what it was asked.
struct ScriptedController : MacController {
    std::function<std::optional<Record>(const Record&)> answer;
    std::vector<Record> asked;

    std::optional<Record> call(std::span<const std::byte, recordSize> request) override {
        std::copy(request.begin(), request.end(), asked.emplace_back().begin());
        return answer(asked.back());
    }
};

std::uint32_t wordAt(const Record& record, std::size_t at) {
    std::uint32_t word = 0;
    std::memcpy(&word, record.data() + at, sizeof word);
    return word;
}

// What a controller tells of a key of this size and type, and the same record for its bytes.
Record answerOf(std::uint32_t size, const char* type, float value) {
    Record record{};
    std::memcpy(record.data() + 28, &size, sizeof size);
    for (std::size_t i = 0; i < 4; ++i) record[32 + i] = static_cast<std::byte>(type[3 - i]);
    std::memcpy(record.data() + 48, &value, sizeof value);
    return record;
}

TEST(SMCReader, ReadsFansAndPower) {
    EXPECT_EQ(read({{"FNum", small(2)},
                    {"F0Ac", real(1350)},
                    {"F1Ac", real(1444.5)},
                    {"PSTR", real(5.25)},
                    {"PPBR", real(-3)},
                    {"PDTR", real(8.25)}}),
              (SMCSnapshot{.fanRPM = {1350, 1444.5},
                           .systemWatts = 5.25,
                           .batteryWatts = -3,
                           .chargerWatts = 8.25}));
}

TEST(SMCReader, AKeyThatDoesNotExistIsAbsentAndTheOthersStillRead) {
    EXPECT_EQ(read({}), SMCSnapshot{});
    EXPECT_EQ(read({{"PPBR", real(1)}}), SMCSnapshot{.batteryWatts = 1});
}

TEST(SMCReader, AFanThatCannotBeReadIsSkipped) {
    EXPECT_EQ(read({{"FNum", small(2)}, {"F0Ac", real(1350)}}).fanRPM, std::vector{1350.0});
    EXPECT_EQ(read({{"FNum", small(2)}, {"F1Ac", real(1350)}}).fanRPM, std::vector{1350.0});
    EXPECT_EQ(read({{"FNum", small(0)}, {"F0Ac", real(1350)}}).fanRPM, std::vector<double>{});
}

TEST(SMCReader, TheNumberOfFansIsTheFirstByteOfAnyType) {
    EXPECT_EQ(
        read({{"FNum", {.type = "hex_", .bytes = bytes({1, 9})}}, {"F0Ac", real(5)}}).fanRPM.size(),
        1u);
}

TEST(SMCReader, ThereAreAtMostTenFans) {
    std::map<std::string, SimControllerValue> keys{{"FNum", small(255)}};
    for (char fan = '0'; fan <= '9'; ++fan) keys[std::string{'F', fan, 'A', 'c'}] = real(1000);
    keys["F10A"] = real(1); // what an eleventh would be cut to
    EXPECT_EQ(read(std::move(keys)).fanRPM, std::vector<double>(10, 1000));
}

TEST(SMCReader, WholeNumbersAreReadByTheirType) {
    EXPECT_EQ(read({{"PSTR", small(200)}}).systemWatts, 200);
    EXPECT_EQ(read({{"PSTR", {.type = "ui16", .bytes = bytes({1, 2})}}}).systemWatts, 258);
    EXPECT_EQ(read({{"PSTR", {.type = "ui16", .bytes = bytes({255, 255, 7})}}}).systemWatts, 65535);
}

TEST(SMCReader, AnotherTypeOrTooFewBytesGiveNoValue) {
    EXPECT_EQ(read({{"PSTR", {.type = "sp78", .bytes = bytes({1, 2})}}}), SMCSnapshot{});
    EXPECT_EQ(read({{"PSTR", {.type = "FLT ", .bytes = real(1).bytes}}}), SMCSnapshot{});
    EXPECT_EQ(read({{"PSTR", {.type = "ui16", .bytes = bytes({1})}}}), SMCSnapshot{});
    EXPECT_EQ(read({{"PSTR", {.type = "flt ", .bytes = bytes({0, 0, 64})}}}), SMCSnapshot{});
}

TEST(SMCReader, ANumberThatIsNoneGivesNoValue) {
    EXPECT_EQ(read({{"FNum", small(2)},
                    {"F0Ac", real(std::numeric_limits<float>::quiet_NaN())},
                    {"F1Ac", real(-std::numeric_limits<float>::infinity())},
                    {"PSTR", real(std::numeric_limits<float>::infinity())}}),
              SMCSnapshot{});
}

TEST(SMCReader, AKeyCountOfImpossibleSizeGivesNoFansAndThePowerStillReads) {
    for (const std::size_t size : {0u, 33u, 80u, 1000u}) {
        const SMCSnapshot snapshot =
            read({{"FNum", {.type = "ui8 ", .bytes = std::vector(size, std::byte{2})}},
                  {"F0Ac", real(1350)},
                  {"PSTR", real(5)}});
        EXPECT_EQ(snapshot, SMCSnapshot{.systemWatts = 5}) << size;
    }
    EXPECT_EQ(read({{"FNum", {.type = "ui8 ", .bytes = std::vector(32, std::byte{1})}},
                    {"F0Ac", real(1350)}})
                  .fanRPM.size(),
              1u);
}

TEST(SMCReader, NoBytesAreAskedOfASizeThatIsNone) {
    for (const std::uint32_t size : {0u, 33u, 0xFFFFFFFFu}) {
        const auto controller = std::make_shared<ScriptedController>();
        controller->answer = [&](const Record&) { return answerOf(size, "flt ", 1); };
        EXPECT_EQ(SMCReader(controller).read(), SMCSnapshot{}) << size;
        for (const Record& request : controller->asked) EXPECT_EQ(request[42], std::byte{9});
    }
}

TEST(SMCReader, AsksForTheSizeAndThenForTheBytesInTheSameRecord) {
    const auto controller = std::make_shared<ScriptedController>();
    controller->answer = [](const Record& request) -> std::optional<Record> {
        if (wordAt(request, 0) != 0x50535452) return std::nullopt; // PSTR
        return answerOf(4, "flt ", 7.5);
    };
    EXPECT_EQ(SMCReader(controller).read(), SMCSnapshot{.systemWatts = 7.5});

    std::vector<Record> asked;
    for (const Record& request : controller->asked)
        if (wordAt(request, 0) == 0x50535452) asked.push_back(request);
    ASSERT_EQ(asked.size(), 2u);
    Record expected{std::byte{'R'}, std::byte{'T'}, std::byte{'S'}, std::byte{'P'}};
    expected[42] = std::byte{9};
    EXPECT_EQ(asked[0], expected);
    expected[28] = std::byte{4};
    expected[42] = std::byte{5};
    EXPECT_EQ(asked[1], expected);
}

TEST(SMCReader, AFailureOfEitherCallGivesNoValue) {
    for (const int command : {9, 5}) {
        const auto controller = std::make_shared<ScriptedController>();
        const auto isFailing = [command](const Record& request) {
            return request[42] == static_cast<std::byte>(command);
        };
        controller->answer = [&](const Record& request) -> std::optional<Record> {
            if (isFailing(request)) return std::nullopt;
            return answerOf(4, "flt ", 7.5);
        };
        EXPECT_EQ(SMCReader(controller).read(), SMCSnapshot{});
        controller->answer = [&](const Record& request) {
            Record answer = answerOf(4, "flt ", 7.5);
            if (isFailing(request)) answer[40] = std::byte{0x84};
            return std::optional(answer);
        };
        EXPECT_EQ(SMCReader(controller).read(), SMCSnapshot{});
    }
}

} // namespace
} // namespace tavero
