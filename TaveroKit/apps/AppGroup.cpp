#include "apps/AppGroup.h"

#include "records/SaturatingSum.h"

#include <algorithm>
#include <utility>

namespace tavero {

AppGroup::AppGroup(AppIdentity identity, std::string name,
                   std::vector<const ProcessSample*> processes)
    : identity_(std::move(identity)), name_(std::move(name)), processes_(std::move(processes)) {
    total();
}

void AppGroup::append(const std::vector<const ProcessSample*>& more) {
    processes_.insert(processes_.end(), more.begin(), more.end());
    total();
}

std::uint64_t AppGroup::diskRead() const {
    std::uint64_t sum = 0;
    for (const ProcessSample* process : processes_) sum = saturatingSum(sum, process->diskRead);
    return sum;
}

std::uint64_t AppGroup::diskWritten() const {
    std::uint64_t sum = 0;
    for (const ProcessSample* process : processes_) sum = saturatingSum(sum, process->diskWritten);
    return sum;
}

std::int64_t AppGroup::hiddenCount() const {
    return std::count_if(processes_.begin(), processes_.end(),
                         [](const ProcessSample* process) { return !process->hasUsage; });
}

void AppGroup::total() {
    cpu_ = 0;
    memory_ = 0;
    for (const ProcessSample* process : processes_) {
        cpu_ += process->cpu;
        memory_ = saturatingSum(memory_, process->memory);
    }
}

} // namespace tavero
