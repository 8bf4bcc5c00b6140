#include "platform/linux/LinuxVolumes.h"

#include "platform/linux/BlockDevices.h"
#include "platform/linux/TemporaryTree.h"

#include <gtest/gtest.h>

#include <string>

namespace tavero {
namespace {

const std::string mountInfo = "proc/self/mountinfo";
const std::string labels = "dev/disk/by-label/";

TEST(DecodedLabel, UndoesTheEscapesOfUdev) {
    EXPECT_EQ(decodedLabel("Field\\x20notes"), "Field notes");
    EXPECT_EQ(decodedLabel("a\\x2fb\\x5cx20"), "a/b\\x20");
    EXPECT_EQ(decodedLabel("Caf\\xc3\\xa9"), "Café");
    for (const char* text : {"", "plain", "\\", "\\x", "\\x2", "\\xzz", "\\x+1", "\\x00", "\\y20"})
        EXPECT_EQ(decodedLabel(text), text);
}

TEST(BlockDevices, ADeviceNumberNamesTheDevice) {
    const TemporaryTree tree;
    tree.link("sys/dev/block/8:1", "../../devices/sda/sda1");
    const BlockDevices devices(tree.root());
    EXPECT_EQ(devices.name({.deviceMajor = 8, .deviceMinor = 1, .source = "/dev/root"}), "sda1");
    EXPECT_EQ(devices.name({.deviceMajor = 8, .deviceMinor = 2, .source = "/dev/sda2"}), "sda2");
}

TEST(BlockDevices, WithoutANumberOfItsOwnTheSourceNamesTheDevice) {
    const TemporaryTree tree;
    tree.link("dev/mapper/home", "../dm-3");
    const BlockDevices devices(tree.root());
    EXPECT_EQ(devices.name({.deviceMinor = 33, .source = "/dev/mapper/home"}), "dm-3");
    EXPECT_EQ(devices.name({.deviceMinor = 33, .source = "/dev/sdb"}), "sdb");
    EXPECT_EQ(devices.name({.deviceMinor = 33, .source = "tank/home"}), "");
}

// A disk at this place under /sys/devices.
void addDisk(const TemporaryTree& tree, const std::string& name, const std::string& place) {
    tree.write("sys/devices/" + place + "/removable", "0\n");
    tree.link("sys/class/block/" + name, "../../devices/" + place);
}

TEST(BlockDevices, ADiskThatCanBeUnpluggedIsNotInternal) {
    const TemporaryTree tree;
    addDisk(tree, "sda", "pci0/ata1/block/sda");
    addDisk(tree, "sdb", "pci0/usb2/2-1/block/sdb");
    addDisk(tree, "sdc", "pci0/ata2/block/sdc");
    tree.write("sys/devices/pci0/ata2/block/sdc/removable", "1\n");
    addDisk(tree, "mmcblk0", "pci0/mmc0/block/mmcblk0");
    tree.write("sys/devices/pci0/mmc0/block/mmcblk0/device/type", "SD\n");
    addDisk(tree, "mmcblk1", "pci0/mmc1/block/mmcblk1");
    tree.write("sys/devices/pci0/mmc1/block/mmcblk1/device/type", "MMC\n");
    const BlockDevices devices(tree.root());
    EXPECT_EQ(devices.isInternal("sda"), true);
    EXPECT_EQ(devices.isInternal("sdb"), false);
    EXPECT_EQ(devices.isInternal("sdc"), false);
    EXPECT_EQ(devices.isInternal("mmcblk0"), false);
    EXPECT_EQ(devices.isInternal("mmcblk1"), true);
    EXPECT_EQ(devices.isInternal("sdz"), std::nullopt);
    EXPECT_EQ(devices.isInternal(""), std::nullopt);
}

TEST(BlockDevices, APartitionIsWhereItsDiskIs) {
    const TemporaryTree tree;
    addDisk(tree, "sda", "pci0/ata1/block/sda");
    tree.write("sys/devices/pci0/ata1/block/sda/removable", "1\n");
    tree.write("sys/devices/pci0/ata1/block/sda/sda1/partition", "1\n");
    tree.link("sys/class/block/sda1", "../../devices/pci0/ata1/block/sda/sda1");
    EXPECT_EQ(BlockDevices(tree.root()).isInternal("sda1"), false);
}

TEST(BlockDevices, AVolumeOverSeveralDisksIsInternalIfAllAre) {
    const TemporaryTree tree;
    addDisk(tree, "sda", "pci0/ata1/block/sda");
    addDisk(tree, "sdb", "pci0/usb2/block/sdb");
    addDisk(tree, "dm-0", "virtual/block/dm-0");
    tree.link("sys/devices/virtual/block/dm-0/slaves/sda", "x");
    EXPECT_EQ(BlockDevices(tree.root()).isInternal("dm-0"), true);
    tree.link("sys/devices/virtual/block/dm-0/slaves/sdb", "x");
    EXPECT_EQ(BlockDevices(tree.root()).isInternal("dm-0"), false);
}

TEST(BlockDevices, DevicesThatLieOnEachOtherInACircleEnd) {
    const TemporaryTree tree;
    addDisk(tree, "dm-0", "virtual/block/dm-0");
    tree.link("sys/devices/virtual/block/dm-0/slaves/dm-0", "x");
    EXPECT_EQ(BlockDevices(tree.root()).isInternal("dm-0"), std::nullopt);
}

TEST(LinuxVolumes, TheRootIsNamedByItsLabelOrSystem) {
    const TemporaryTree tree{{mountInfo, "27 1 8:2 / / rw - ext4 /dev/sda2 rw\n"}};
    const LinuxVolumes volumes(tree.root());
    EXPECT_EQ(volumes.space("/")->name, "System");
    EXPECT_EQ(volumes.mounted().at(0).name, "System");
    tree.link(labels + "My\\x20disk", "../../sda2");
    EXPECT_EQ(volumes.space("/")->name, "My disk");
    EXPECT_EQ(volumes.mounted().at(0).name, "My disk");
}

TEST(LinuxVolumes, AnotherVolumeWithoutALabelHasNoName) {
    const TemporaryTree tree{{mountInfo, "30 1 8:3 / /data rw - ext4 /dev/sda3 rw\n"}};
    tree.folder("data");
    const auto volumes = LinuxVolumes(tree.root()).mounted();
    ASSERT_EQ(volumes.size(), 1u);
    EXPECT_EQ(volumes[0].path, "/data");
    EXPECT_EQ(volumes[0].name, std::nullopt);
    EXPECT_EQ(volumes[0].isInternal, std::nullopt);
    EXPECT_TRUE(volumes[0].capacity);
    EXPECT_TRUE(volumes[0].available);
}

TEST(LinuxVolumes, AVolumeThatCannotBeQueriedIsLeftOut) {
    const TemporaryTree tree{{mountInfo, "30 1 8:3 / /gone rw - ext4 /dev/sda3 rw\n"}};
    const LinuxVolumes volumes(tree.root());
    EXPECT_TRUE(volumes.mounted().empty());
    EXPECT_EQ(volumes.space("/gone"), std::nullopt);
}

TEST(LinuxVolumes, WithoutMountsTheRootStillHasItsSpace) {
    const TemporaryTree tree;
    const LinuxVolumes volumes(tree.root());
    EXPECT_TRUE(volumes.mounted().empty());
    EXPECT_EQ(volumes.space("/")->name, "System");
    EXPECT_TRUE(volumes.space("/")->capacity);
    EXPECT_EQ(volumes.space("/")->available, std::nullopt);
}

} // namespace
} // namespace tavero
