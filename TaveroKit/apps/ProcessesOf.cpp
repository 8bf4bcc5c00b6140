#include "apps/ProcessesOf.h"

#include "apps/ProcessSampler.h"

namespace tavero {

std::vector<std::int32_t> processesOf(ProcessSource& source, const std::string& bundlePath) {
    const AppIdentity app{AppIdentity::Kind::app, bundlePath};
    ProcessSampler sampler;
    std::vector<std::int32_t> pids;
    for (const ProcessSample& sample : sampler.sample(source, false))
        if (sample.app == app) pids.push_back(sample.pid);
    return pids;
}

} // namespace tavero
