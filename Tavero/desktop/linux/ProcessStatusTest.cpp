#include "desktop/linux/ProcessStatus.h"

#include <gtest/gtest.h>

namespace tavero {
namespace {

TEST(ProcessStatus, ItTellsTheParentAndWhoseItIs) {
    EXPECT_EQ(parseProcessStatus("Name:\tbash\nState:\tS (sleeping)\nPid:\t20\nPPid:\t7\n"
                                 "TracerPid:\t0\nUid:\t1000\t0\t1000\t1000\nGid:\t5\t5\t5\t5\n"),
              (ProcessStatus{.parent = 7, .user = 1000, .actsForUser = 0}));
}

TEST(ProcessStatus, ANameThatLooksLikeALineIsNone) {
    EXPECT_EQ(parseProcessStatus("Name:\tPPid:\t1\\nUid:\t0\t0\nPPid:\t7\nUid:\t1000\t1000\n"),
              (ProcessStatus{.parent = 7, .user = 1000, .actsForUser = 1000}));
}

TEST(ProcessStatus, AMissingOrBrokenFigureLeavesNothingToRelyOn) {
    for (const char* text :
         {"", "PPid:\t7\n", "Uid:\t1000\t1000\n", "PPid:\t7\nUid:\t1000\n",
          "PPid:\t7\nUid:\n1000\n", "PPid:\t-7\nUid:\t1000\t1000\n",
          "PPid:\t4294967296\nUid:\t1000\t1000\n", "PPid:\t7\nUid:\t1000\t18446744073709551616\n"})
        EXPECT_FALSE(parseProcessStatus(text)) << text;
}

} // namespace
} // namespace tavero
