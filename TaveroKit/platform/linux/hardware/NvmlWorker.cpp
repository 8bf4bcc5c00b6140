#include "platform/linux/hardware/NvmlWorker.h"

#include <mutex>
#include <utility>

namespace tavero {

struct NvmlWorker::Conversation {
    explicit Conversation(std::string library) : session(std::move(library)) {}

    void ask(const std::vector<std::string>& addresses, std::uint64_t now) {
        NvmlAnswer news = session.read(addresses, now);
        const std::lock_guard lock(mutex);
        answer = std::move(news);
    }
    std::optional<NvmlAnswer> take() {
        const std::lock_guard lock(mutex);
        return std::exchange(answer, std::nullopt);
    }

    NvmlSession session; // of one call at a time
    std::mutex mutex;
    std::optional<NvmlAnswer> answer;
};

NvmlWorker::NvmlWorker(std::string library, std::chrono::milliseconds limit)
    : conversation_(std::make_shared<Conversation>(std::move(library))), calls_(limit) {}

std::optional<NvmlAnswer> NvmlWorker::ask(const std::vector<std::string>& addresses,
                                          std::uint64_t now) {
    hasAsked_ |= !addresses.empty();
    if (!hasAsked_) return std::nullopt;
    calls_.run(
        [conversation = conversation_, addresses, now] { conversation->ask(addresses, now); });
    if (auto news = conversation_->take()) last_ = std::move(news);
    return last_;
}

} // namespace tavero
