#include "platform/linux/network/NetlinkMessage.h"

namespace tavero {

NetlinkWriter::NetlinkWriter(std::uint16_t type, std::uint16_t flags, std::uint32_t sequence) {
    nlmsghdr header{};
    header.nlmsg_type = type;
    header.nlmsg_flags = flags;
    header.nlmsg_seq = sequence;
    append(&header, sizeof header);
}

NetlinkWriter& NetlinkWriter::attribute(std::uint16_t type, NetlinkBytes bytes) {
    nlattr header{};
    header.nla_type = type;
    header.nla_len = static_cast<std::uint16_t>(sizeof header + bytes.size());
    append(&header, sizeof header);
    append(bytes.data(), bytes.size());
    return *this;
}

void NetlinkWriter::append(const void* data, std::size_t size) {
    const std::size_t start = bytes_.size();
    bytes_.resize(start + NLMSG_ALIGN(size));
    if (size > 0) std::memcpy(bytes_.data() + start, data, size);
    const auto length = static_cast<std::uint32_t>(bytes_.size());
    std::memcpy(bytes_.data() + offsetof(nlmsghdr, nlmsg_len), &length, sizeof length);
}

} // namespace tavero
