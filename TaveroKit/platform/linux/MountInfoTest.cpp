#include "platform/linux/MountInfo.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace tavero {
namespace {

using Paths = std::vector<std::string>;

Paths browsable(const std::string& text) {
    Paths paths;
    for (const Mount& mount : browsableMounts(parseMountInfo(text))) paths.push_back(mount.path);
    return paths;
}

const std::string root = "27 1 8:2 / / rw - ext4 /dev/sda2 rw\n";

TEST(ParseMountInfo, TakesALineApart) {
    EXPECT_EQ(parseMountInfo("40 28 0:33 /home /home rw,relatime shared:30 master:1 - btrfs "
                             "/dev/mapper/luks rw,subvol=/home\n"),
              (std::vector<Mount>{{.deviceMajor = 0,
                                   .deviceMinor = 33,
                                   .root = "/home",
                                   .path = "/home",
                                   .type = "btrfs",
                                   .source = "/dev/mapper/luks",
                                   .options = "rw,subvol=/home"}}));
}

TEST(ParseMountInfo, UndoesTheOctalEscapes) {
    const auto mounts =
        parseMountInfo("1 2 8:1 / /a\\040b\\011c\\012d\\134e\\043 rw - vfat /dev/sd\\040a rw\n");
    EXPECT_EQ(mounts.at(0).path, "/a b\tc\nd\\e#");
    EXPECT_EQ(mounts.at(0).source, "/dev/sd a");
}

TEST(ParseMountInfo, ABrokenEscapeStandsAsItIs) {
    const auto mounts = parseMountInfo("1 2 8:1 / /a\\04 rw - vfat /dev/a\\ rw\n"
                                       "1 2 8:1 / /b\\999\\000\\777 rw - vfat /dev/a rw\n");
    EXPECT_EQ(mounts.at(0).path, "/a\\04");
    EXPECT_EQ(mounts.at(0).source, "/dev/a\\");
    EXPECT_EQ(mounts.at(1).path, "/b\\999\\000\\777");
}

TEST(ParseMountInfo, ABrokenLineIsLeftOut) {
    for (const char* text :
         {"", "\n", "garbage", "1 2 8:1", "1 2 8 / /a rw - ext4 /dev/a rw",
          "1 2 x:1 / /a rw - ext4 /dev/a rw", "1 2 8:1 / /a rw shared:1 ext4 /dev/a rw",
          "1 2 8:1 / /a rw -", "1 2 8:1 / /a rw - ext4", "1 2 8:1 / a rw - ext4 /dev/a rw"})
        EXPECT_TRUE(parseMountInfo(text).empty()) << text;
    EXPECT_EQ(parseMountInfo("1 2 8:1\n" + root + "1 2 8:1 / /a").size(), 1u);
}

TEST(BrowsableMounts, PseudoFileSystemsAreLeftOut) {
    EXPECT_EQ(browsable("22 27 0:21 / /proc rw - proc proc rw\n"
                        "23 27 0:6 / /dev rw - devtmpfs devtmpfs rw\n"
                        "24 27 0:23 / /tmp rw - tmpfs tmpfs rw\n" +
                        root + "25 27 8:3 / /home rw - xfs /dev/sda3 rw\n"),
              (Paths{"/", "/home"}));
}

TEST(BrowsableMounts, TheRootComesFirstWhateverItIs) {
    EXPECT_EQ(browsable("25 27 8:3 / /data rw - xfs /dev/sda3 rw\n"
                        "27 1 0:45 / / rw - overlay overlay rw\n"),
              (Paths{"/", "/data"}));
    EXPECT_EQ(browsable("27 1 8:2 / /sysroot rw - xfs /dev/sda2 rw\n"
                        "28 1 8:2 /ostree/deploy/1 / rw - xfs /dev/sda2 rw\n"),
              (Paths{"/"}));
}

TEST(BrowsableMounts, ASecondMountOfAFileSystemIsLeftOut) {
    EXPECT_EQ(browsable(root + "30 27 8:3 / /data rw - ext4 /dev/sda3 rw\n"
                               "31 27 8:3 / /again rw - ext4 /dev/sda3 rw\n"
                               "32 27 8:4 /part /bound rw - ext4 /dev/sda4 rw\n"),
              (Paths{"/", "/data"}));
}

TEST(BrowsableMounts, SubvolumesOfOneFileSystemCountOnce) {
    EXPECT_EQ(
        browsable("27 1 0:33 /root / rw - btrfs /dev/dm-0 rw,subvol=/root\n"
                  "28 1 0:34 /home /home rw - btrfs /dev/dm-0 rw,subvol=/home\n"
                  "29 1 0:35 /@data /data rw - btrfs /dev/sdb rw,ssd,subvolid=7,subvol=/@data\n"
                  "30 1 0:36 /@data/x /x rw - btrfs /dev/sdc rw,subvol=/@data\n"),
        (Paths{"/", "/data"}));
    EXPECT_EQ(browsable("27 1 0:40 / / rw - zfs tank/ROOT/os rw\n"
                        "28 1 0:41 / /home rw - zfs tank/home rw\n"
                        "29 1 0:42 / /media rw - zfs films rw\n"),
              (Paths{"/", "/media"}));
}

TEST(BrowsableMounts, ImagesOfPackagesAndContainersAreLeftOut) {
    EXPECT_EQ(browsable(root + "43 27 7:0 / /snap/core/1 ro - squashfs /dev/loop0 ro\n"
                               "44 27 7:1 / /opt/image ro - squashfs /dev/loop1 ro\n"
                               "45 27 0:60 / /var/lib/docker/x/merged rw - overlay overlay rw\n"),
              (Paths{"/"}));
}

TEST(BrowsableMounts, InAContainerOnlyItsRootAndItsDisksShow) {
    EXPECT_EQ(
        browsable(
            "500 400 0:52 / / rw - overlay overlay rw,lowerdir=/l\n"
            "501 500 259:2 /var/lib/c/hosts /etc/hosts rw - ext4 /dev/nvme0n1p2 rw\n"
            "502 500 0:33 /var/lib/c/res /etc/resolv.conf rw - btrfs /dev/dm-0 rw,subvol=/\n"),
        (Paths{"/"}));
}

TEST(BrowsableMounts, WhatBelongsToTheSystemIsHidden) {
    EXPECT_EQ(browsable(root + "1 2 8:5 / /boot rw - ext4 /dev/sda5 rw\n"
                               "1 2 8:6 / /boot/efi rw - vfat /dev/sda6 rw\n"
                               "1 2 8:7 / /efi rw - vfat /dev/sda7 rw\n"
                               "1 2 8:8 / /run/initramfs/live ro - iso9660 /dev/sr0 ro\n"
                               "1 2 8:9 / /run/media/ana/Stick rw - exfat /dev/sdb1 rw\n"
                               "1 2 8:10 / /bootleg rw - ext4 /dev/sdc1 rw\n"),
              (Paths{"/", "/run/media/ana/Stick", "/bootleg"}));
}

TEST(BrowsableMounts, FileSystemsThatMayHangAreLeftOut) {
    EXPECT_EQ(browsable(root + "1 2 0:61 / /mnt/nas rw - nfs4 nas:/export rw\n"
                               "1 2 0:62 / /mnt/share rw - cifs //nas/share rw\n"
                               "1 2 0:63 / /mnt/far rw - fuse.sshfs ana@far:/ rw\n"
                               "1 2 0:64 / /mnt/fuse rw - fuse /dev/fuse rw\n"
                               "1 2 0:65 / /mnt/9p rw - 9p share rw\n"
                               "1 2 8:33 / /mnt/ntfs rw - fuseblk /dev/sdc1 rw\n"),
              (Paths{"/", "/mnt/ntfs"}));
}

TEST(BrowsableMounts, ALaterMountAtTheSamePlaceCoversTheEarlier) {
    EXPECT_EQ(browsable(root + "1 2 8:3 / /data rw - ext4 /dev/sda3 rw\n"
                               "1 2 0:61 / /data rw - nfs4 nas:/export rw\n"),
              (Paths{"/"}));
    const auto mounts =
        browsableMounts(parseMountInfo("1 2 0:1 / / rw - rootfs rootfs rw\n" + root));
    ASSERT_EQ(mounts.size(), 1u);
    EXPECT_EQ(mounts.front().source, "/dev/sda2");
}

TEST(BrowsableMounts, WithoutAnyThereIsNone) { EXPECT_EQ(browsable(""), Paths{}); }

} // namespace
} // namespace tavero
