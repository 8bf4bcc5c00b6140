#pragma once

#include "platform/linux/network/NetlinkChannel.h"

#include <cstddef>
#include <deque>
#include <functional>
#include <memory>
#include <utility>
#include <vector>

namespace tavero {

// A kernel for tests: what it answers is set, and so is whether notices wait.
struct FakeNetlink {
    using Datagram = std::vector<std::byte>;
    using Answer = std::vector<Datagram>;

    // The datagrams that answer a request.
    std::function<Answer(const NetlinkMessage& request)> answer;
    bool refusesToOpen = false;
    bool hasNotices = false;
    int requests = 0;

    OpenNetlink opener() {
        return [this](int, std::uint32_t) -> std::unique_ptr<NetlinkChannel> {
            return refusesToOpen ? nullptr : std::make_unique<Channel>(*this);
        };
    }

    class Channel : public NetlinkChannel {
      public:
        explicit Channel(FakeNetlink& kernel) : kernel_(kernel) {}

        bool send(NetlinkBytes bytes) override {
            ++kernel_.requests;
            visitNetlinkMessages(bytes, [this](const NetlinkMessage& request) {
                if (!kernel_.answer) return;
                for (Datagram& datagram : kernel_.answer(request))
                    waiting_.push_back(std::move(datagram));
            });
            return true;
        }

        std::optional<NetlinkBytes> receive() override {
            if (waiting_.empty()) return std::nullopt;
            current_ = std::move(waiting_.front());
            waiting_.pop_front();
            return current_;
        }

        bool drain() override { return std::exchange(kernel_.hasNotices, false); }

      private:
        FakeNetlink& kernel_;
        std::deque<Datagram> waiting_;
        Datagram current_;
    };
};

inline FakeNetlink::Datagram datagram(const NetlinkWriter& message) {
    return {message.bytes().begin(), message.bytes().end()};
}

// The end of an answer, or its failure with a negative code.
inline FakeNetlink::Datagram ending(const NetlinkMessage& request, std::int32_t code = 0) {
    NetlinkWriter message(code < 0 ? NLMSG_ERROR : NLMSG_DONE, 0, request.sequence);
    message.record(code);
    return datagram(message);
}

// The bytes of an attribute, to be put into another one.
template <typename Value>
std::vector<std::byte> netlinkAttribute(std::uint16_t type, const Value& value) {
    NetlinkWriter message(0, 0, 0);
    message.attribute(type, value);
    return {message.bytes().begin() + sizeof(nlmsghdr), message.bytes().end()};
}

inline std::vector<std::byte> joined(std::initializer_list<std::vector<std::byte>> parts) {
    std::vector<std::byte> bytes;
    for (const auto& part : parts) bytes.insert(bytes.end(), part.begin(), part.end());
    return bytes;
}

} // namespace tavero
