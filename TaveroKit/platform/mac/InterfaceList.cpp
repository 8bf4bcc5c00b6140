#include "platform/mac/InterfaceList.h"

#include <cstring>

namespace tavero {

namespace {

// Offsets in an if_msghdr2 of <net/if.h>.
constexpr std::size_t lengthAt = 0;
constexpr std::size_t typeAt = 3;
constexpr std::size_t indexAt = 12;
constexpr std::size_t bytesInAt = 96;
constexpr std::size_t bytesOutAt = 104;
constexpr std::size_t readLength = 112;     // what is read of a message
constexpr std::uint8_t interfaceInfo2 = 18; // RTM_IFINFO2

// Offsets in an ifmibdata of <net/if_mib.h>: an if_data64 after 52 bytes.
constexpr std::size_t dataBytesInAt = 116;
constexpr std::size_t dataBytesOutAt = 124;
constexpr std::size_t dataLength = 132;

// Copies: the fields stand where the last message's length happens to put them.
template <typename Number>
Number read(std::span<const std::byte> bytes, std::size_t at) {
    Number number;
    std::memcpy(&number, bytes.subspan(at, sizeof number).data(), sizeof number);
    return number;
}

} // namespace

std::vector<InterfaceMessage> parseInterfaceList(std::span<const std::byte> list) {
    std::vector<InterfaceMessage> messages;
    while (list.size() >= readLength) {
        if (read<std::uint8_t>(list, typeAt) == interfaceInfo2)
            messages.push_back({.index = read<std::uint16_t>(list, indexAt),
                                .counters = {.bytesIn = read<std::uint64_t>(list, bytesInAt),
                                             .bytesOut = read<std::uint64_t>(list, bytesOutAt)}});
        const std::size_t length = read<std::uint16_t>(list, lengthAt);
        if (length == 0 || length > list.size()) break;
        list = list.subspan(length);
    }
    return messages;
}

std::optional<InterfaceCounters> parseInterfaceData(std::span<const std::byte> data) {
    if (data.size() < dataLength) return std::nullopt;
    return InterfaceCounters{.bytesIn = read<std::uint64_t>(data, dataBytesInAt),
                             .bytesOut = read<std::uint64_t>(data, dataBytesOutAt)};
}

} // namespace tavero
