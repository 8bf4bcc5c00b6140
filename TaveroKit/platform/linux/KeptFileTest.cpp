#include "platform/linux/KeptFile.h"
#include "platform/linux/KeptDirectory.h"
#include "platform/linux/TemporaryTree.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace tavero {
namespace {

TEST(KeptFile, EachReadTellsWhatTheFileSaysNow) {
    const TemporaryTree tree{{"proc/stat", "one"}};
    KeptFile file(tree.root() / "proc/stat");
    std::vector<char> buffer;
    EXPECT_EQ(file.read(buffer), "one");
    tree.write("proc/stat", "three");
    EXPECT_EQ(file.read(buffer), "three");
    tree.write("proc/stat", "");
    EXPECT_EQ(file.read(buffer), "");
}

TEST(KeptFile, AFileLargerThanTheBufferIsReadWhole) {
    const std::string text = std::string(100'000, 'x') + "end";
    const TemporaryTree tree{{"proc/stat", text}};
    KeptFile file(tree.root() / "proc/stat");
    std::vector<char> buffer(16);
    EXPECT_EQ(file.read(buffer), text);
}

TEST(KeptFile, ASteadyReadKeepsItsBuffer) {
    const TemporaryTree tree{{"proc/stat", std::string(50'000, 'x')}};
    KeptFile file(tree.root() / "proc/stat");
    std::vector<char> buffer;
    file.read(buffer);
    const char* const place = buffer.data();
    const std::size_t capacity = buffer.capacity();
    for (int i = 0; i < 3; ++i) EXPECT_EQ(file.read(buffer)->size(), 50'000u);
    EXPECT_EQ(buffer.data(), place);
    EXPECT_EQ(buffer.capacity(), capacity);
}

TEST(KeptFile, AMissingFileIsAbsentUntilItAppears) {
    const TemporaryTree tree;
    KeptFile file(tree.root() / "proc/stat");
    std::vector<char> buffer;
    EXPECT_EQ(file.read(buffer), std::nullopt);
    tree.write("proc/stat", "now");
    EXPECT_EQ(file.read(buffer), "now");
}

TEST(KeptFile, AReadThatFailsOpensTheFileAnewTheNextTime) {
    const TemporaryTree tree;
    tree.folder("proc/stat"); // a folder opens, but doesn't read
    KeptFile file(tree.root() / "proc/stat");
    std::vector<char> buffer;
    EXPECT_EQ(file.read(buffer), std::nullopt);
    tree.remove("proc/stat");
    tree.write("proc/stat", "a file");
    EXPECT_EQ(file.read(buffer), "a file");
}

TEST(ReadAttribute, LosesItsLineEnd) {
    const TemporaryTree tree{{"type", "Mains\n"}, {"bare", "USB"}};
    EXPECT_EQ(readAttribute(tree.root() / "type"), "Mains");
    EXPECT_EQ(readAttribute(tree.root() / "bare"), "USB");
    EXPECT_EQ(readAttribute(tree.root() / "missing"), "");
    EXPECT_EQ(readFile(tree.root() / "missing"), std::nullopt);
}

using Names = std::vector<std::string>;

TEST(KeptDirectory, TellsOnceThatAnEntryCameOrWent) {
    const TemporaryTree tree{{"block/sdb", ""}, {"block/sda", ""}};
    KeptDirectory folder(tree.root() / "block");
    EXPECT_TRUE(folder.changed());
    EXPECT_EQ(folder.names(), (Names{"sda", "sdb"}));
    EXPECT_FALSE(folder.changed());
    tree.write("block/sdc", "");
    EXPECT_TRUE(folder.changed());
    EXPECT_FALSE(folder.changed());
    tree.remove("block/sda");
    EXPECT_TRUE(folder.changed());
    EXPECT_EQ(folder.names(), (Names{"sdb", "sdc"}));
}

TEST(KeptDirectory, TellsThatAnEntryWasReplacedByAnotherOfItsName) {
    const TemporaryTree tree;
    tree.link("net/eth0", "a");
    tree.link("other", "b");
    KeptDirectory folder(tree.root() / "net");
    folder.changed();
    std::filesystem::rename(tree.root() / "other", tree.root() / "net/eth0");
    EXPECT_TRUE(folder.changed());
    EXPECT_EQ(folder.names(), Names{"eth0"});
}

TEST(KeptDirectory, AFolderThatIsMissingIsEmptyUntilItAppears) {
    const TemporaryTree tree;
    KeptDirectory folder(tree.root() / "block");
    EXPECT_TRUE(folder.changed());
    EXPECT_EQ(folder.names(), Names{});
    EXPECT_FALSE(folder.changed());
    tree.write("block/sda", "");
    EXPECT_TRUE(folder.changed());
    EXPECT_EQ(folder.names(), Names{"sda"});
}

TEST(KeptDirectory, ListsMoreThanOneReadHolds) {
    const TemporaryTree tree;
    for (int i = 0; i < 500; ++i) tree.write("block/loop" + std::to_string(i), "");
    KeptDirectory folder(tree.root() / "block");
    folder.changed();
    EXPECT_EQ(folder.names().size(), 500u);
    EXPECT_FALSE(folder.changed());
}

} // namespace
} // namespace tavero
