#pragma once

#include <array>
#include <cstddef>
#include <optional>
#include <span>

namespace tavero {

// The Mac's system management controller, opened for calls.
class MacController {
  public:
    virtual ~MacController() = default;

    // What goes to the controller and what comes back: see ControllerRecord.
    static constexpr std::size_t recordSize = 80;
    using Record = std::array<std::byte, recordSize>;

    // IOConnectCallStructMethod with selector 2; absent if it fails.
    virtual std::optional<Record> call(std::span<const std::byte, recordSize> request) = 0;
};

// Where the fields of a record stand, as the kernel's driver lays it out, and its commands. Numbers
// are little-endian; all that is not named here is sent as 0 and not read.
namespace ControllerRecord {

inline constexpr std::size_t keyAt = 0;
inline constexpr std::size_t sizeAt = 28;
inline constexpr std::size_t typeAt = 32;
inline constexpr std::size_t resultAt = 40;
inline constexpr std::size_t commandAt = 42;
inline constexpr std::size_t bytesAt = 48;

inline constexpr std::byte readBytes{5};
inline constexpr std::byte readKeyInfo{9};

} // namespace ControllerRecord

} // namespace tavero
