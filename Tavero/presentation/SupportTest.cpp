#include "presentation/Support.h"

#include <gtest/gtest.h>

namespace tavero {
namespace {

TEST(Support, IsAWebPageOverAnEncryptedConnection) {
    const std::string_view page = Support::koFi();
    EXPECT_TRUE(page.starts_with("https://")) << page;
    EXPECT_GT(page.size(), std::string_view("https://").size());
    EXPECT_EQ(page.find_first_of(" \t\n\"<>"), std::string_view::npos) << page;
}

} // namespace
} // namespace tavero
