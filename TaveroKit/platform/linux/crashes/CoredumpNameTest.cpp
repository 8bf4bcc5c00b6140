#include "platform/linux/crashes/CoredumpName.h"

#include <gtest/gtest.h>

#include <chrono>
#include <string>
#include <vector>

namespace tavero {
namespace {

using namespace std::chrono_literals;

const std::string boot = "0123456789abcdef0123456789abcdef";

TEST(CoredumpName, TellsNameUserProcessAndTime) {
    const CoredumpName expected{"editor", 1000, 4711, Date(1763640000s)};
    for (const char* ending : {"", ".zst", ".lz4", ".xz"})
        EXPECT_EQ(coredumpName("core.editor.1000." + boot + ".4711.1763640000000000" + ending),
                  expected)
            << ending;
}

TEST(CoredumpName, ANameMayHoldDotsAndEscapes) {
    const auto comm = [](const std::string& name) {
        const auto dump = coredumpName("core." + name + ".0." + boot + ".1.0");
        return dump ? dump->comm : "";
    };
    EXPECT_EQ(comm("my\\x20app\\x2e2"), "my app.2");
    EXPECT_EQ(comm("a.b.c"), "a.b.c");
    EXPECT_EQ(comm("1000." + boot + ".7.7"), "1000." + boot + ".7.7");
    EXPECT_EQ(comm("core"), "core");
    EXPECT_EQ(comm("\\x2"), "\\x2");
    EXPECT_EQ(comm("app.zst"), "app.zst");
}

TEST(CoredumpName, OtherFilesAreNone) {
    const std::vector<std::string> others{
        "",
        "core",
        "core.",
        "core.....zst",
        ".#core.editor.1000." + boot + ".4711.1763640000000000.zst1a2b3c", // being written
        ".core.editor.1000." + boot + ".4711.1763640000000000",
        "core.editor.1000." + boot + ".4711",
        "core..1000." + boot + ".4711.1763640000000000",
        "core.1000." + boot + ".4711.1763640000000000", // no name
        "core.editor.1000." + boot + ".4711.1763640000000000.gz",
        "core.editor.1000." + boot + ".4711.1763640000000000.zst.zst",
        "core.editor.-1." + boot + ".4711.1763640000000000",
        "core.editor.+1." + boot + ".4711.1763640000000000",
        "core.editor.4294967296." + boot + ".4711.1763640000000000",
        "core.editor.1000." + boot + ".2147483648.1763640000000000",
        "core.editor.1000." + boot + ".4711.99999999999999999999",
        "core.editor.1000." + boot + ".4711.9223372036854775807", // beyond the year 2262
        "core.editor.1000.0123.4711.1763640000000000",
        "core.editor.1000." + boot + "0.4711.1763640000000000",
        "core.editor.1000.x123456789abcdef0123456789abcdef.4711.1763640000000000"};
    for (const std::string& name : others) EXPECT_EQ(coredumpName(name), std::nullopt) << name;
}

} // namespace
} // namespace tavero
