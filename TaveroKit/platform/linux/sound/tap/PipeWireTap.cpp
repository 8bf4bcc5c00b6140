#include "platform/linux/sound/tap/PipeWireTap.h"

#include <cerrno>
#include <chrono>
#include <utility>

namespace tavero {

namespace {

// A service that answers needs a few milliseconds.
constexpr std::chrono::milliseconds patience{100};

// The virtual output, once an app can play to it. Null before.
const SoundNode* finished(const SoundGraph& mirror, const StereoStream& sink) {
    const SoundNode* node = mirror.node(sink.nodeID());
    if (node == nullptr || !node->isOwn()) return nullptr;
    return mirror.portsOf(node->id, SoundPort::Direction::in).size() == 2 ? node : nullptr;
}

} // namespace

PipeWireTap::PipeWireTap(std::shared_ptr<PipeWireGraph> graph) : graph_(std::move(graph)) {
    const auto lock = graph_->lock();
    graph_->add(*this);
}

// The apps are sent back before what they play to goes, so that the service moves them once.
PipeWireTap::~PipeWireTap() {
    const auto lock = graph_->lock();
    graph_->remove(*this);
    if (redirect_) graph_->release(*redirect_);
    path_.reset();
}

std::optional<TapFailure> PipeWireTap::open(const std::string& name, const TapRequest& request,
                                            TapCells& cells) {
    using Step = TapFailure::Step;
    const auto lock = graph_->lock();
    if (!graph_->isConnected()) return TapFailure{Step::tap, -ENOTCONN};
    const SoundNode* output = graph_->mirror().named(request.outputUID);
    // What one of our own outputs plays would come back to it.
    if (output == nullptr || !output->isSink() || output->isOwn())
        return TapFailure{Step::aggregate, -ENODEV};

    path_ = std::make_unique<TapPath>(graph_->core(), name, request.outputUID, cells);
    if (const int status = path_->connectPlayer(); status < 0)
        return TapFailure{Step::aggregate, status};
    if (const int status = path_->connectSink(); status < 0) return TapFailure{Step::tap, status};

    const SoundNode* sink = nullptr;
    const bool isAnswered = graph_->waitUntil(
        [&] {
            if (path_ == nullptr || path_->sink().isOff() || path_->player().isOff()) return true;
            sink = finished(graph_->mirror(), path_->sink());
            return sink != nullptr;
        },
        patience);
    if (!isAnswered) return TapFailure{Step::start, -ETIMEDOUT};
    if (path_ == nullptr) return TapFailure{Step::start, -ENOTCONN};
    if (path_->sink().isOff()) return TapFailure{Step::tap, -EIO};
    if (path_->player().isOff()) return TapFailure{Step::aggregate, -EIO};
    redirect_ = graph_->redirect(request.processObjects, sink->serial);
    return std::nullopt;
}

bool PipeWireTap::isRunning() {
    const auto lock = graph_->lock();
    return path_ != nullptr && path_->sink().isStreaming() && path_->player().isStreaming();
}

} // namespace tavero
