#pragma once

#include <concepts>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <optional>
#include <span>
#include <vector>

#include <linux/netlink.h>

namespace tavero {

// Netlink's bytes, walked through by what their lengths say and never beyond what there is. A
// length that lies ends the walk.
using NetlinkBytes = std::span<const std::byte>;

struct NetlinkMessage {
    std::uint16_t type = 0;
    std::uint32_t sequence = 0;
    NetlinkBytes body;
};

// The value that these bytes begin with. Absent if they are too few.
template <typename Value>
std::optional<Value> netlinkValue(NetlinkBytes bytes) {
    if (bytes.size() < sizeof(Value)) return std::nullopt;
    Value value;
    std::memcpy(&value, bytes.data(), sizeof value);
    return value;
}

// What follows the first `length` bytes and the gap that aligns it.
inline NetlinkBytes netlinkRest(NetlinkBytes bytes, std::size_t length) {
    const std::size_t aligned = NLMSG_ALIGN(length);
    return aligned < bytes.size() ? bytes.subspan(aligned) : NetlinkBytes{};
}

// Visits the messages of a datagram.
template <typename Visit>
void visitNetlinkMessages(NetlinkBytes datagram, Visit visit) {
    while (const auto header = netlinkValue<nlmsghdr>(datagram)) {
        if (header->nlmsg_len < sizeof *header || header->nlmsg_len > datagram.size()) return;
        visit(
            NetlinkMessage{.type = header->nlmsg_type,
                           .sequence = header->nlmsg_seq,
                           .body = netlinkRest(datagram.first(header->nlmsg_len), sizeof *header)});
        datagram = netlinkRest(datagram, header->nlmsg_len);
    }
}

// Visits the attributes (type, bytes) of a message or of another attribute.
template <typename Visit>
void visitNetlinkAttributes(NetlinkBytes bytes, Visit visit) {
    while (const auto header = netlinkValue<nlattr>(bytes)) {
        if (header->nla_len < sizeof *header || header->nla_len > bytes.size()) return;
        visit(header->nla_type & NLA_TYPE_MASK,
              bytes.subspan(sizeof *header, header->nla_len - sizeof *header));
        bytes = netlinkRest(bytes, header->nla_len);
    }
}

// A message being written.
class NetlinkWriter {
  public:
    NetlinkWriter(std::uint16_t type, std::uint16_t flags, std::uint32_t sequence);

    // A fixed record, as most messages begin with.
    template <typename Record>
    NetlinkWriter& record(const Record& record) {
        append(&record, sizeof record);
        return *this;
    }
    NetlinkWriter& attribute(std::uint16_t type, NetlinkBytes bytes);
    template <std::integral Value>
    NetlinkWriter& attribute(std::uint16_t type, const Value& value) {
        return attribute(type, std::as_bytes(std::span(&value, 1)));
    }

    // Valid until more is written.
    NetlinkBytes bytes() const { return bytes_; }

  private:
    void append(const void* data, std::size_t size);

    std::vector<std::byte> bytes_;
};

} // namespace tavero
