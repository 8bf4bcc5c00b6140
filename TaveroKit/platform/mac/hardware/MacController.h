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

    // What goes to the controller and what comes back; SMCReader knows what is in it.
    static constexpr std::size_t recordSize = 80;
    using Record = std::array<std::byte, recordSize>;

    // IOConnectCallStructMethod with selector 2; absent if it fails.
    virtual std::optional<Record> call(std::span<const std::byte, recordSize> request) = 0;
};

} // namespace tavero
