#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace tavero {

// One line of /proc/self/mountinfo, its escapes undone.
struct Mount {
    std::uint64_t deviceMajor = 0; // 0 for a file system without a disk of its own, and for btrfs
    std::uint64_t deviceMinor = 0;
    std::string root;    // what of the file system is mounted: "/" is all of it
    std::string path;    // where
    std::string type;    // "ext4"
    std::string source;  // "/dev/sda1", or whatever the file system was mounted from
    std::string options; // the file system's: "rw,subvol=/home"

    bool operator==(const Mount&) const = default;
};

// A line that is malformed or cut short is left out.
std::vector<Mount> parseMountInfo(std::string_view text);

// The mounts that a person knows as volumes: file systems on disks, once each, in the order of the
// list, with "/" first, whatever it is. Left out: second mounts and parts of a file system (of
// btrfs and ZFS all subvolumes but the first), images of packages and containers, what belongs to
// the system (/boot, /run but for /run/media), pseudo file systems, and file systems of the network
// or of programs: one whose other end hangs would hang everybody who asks it for its size.
std::vector<Mount> browsableMounts(const std::vector<Mount>& mounts);

} // namespace tavero
