#include "platform/linux/sound/LinuxAudio.h"

#include "platform/linux/processes/SandboxPids.h"
#include "platform/linux/sound/PipeWireObjects.h"
#include "platform/linux/sound/PipeWirePermission.h"
#include "platform/linux/sound/tap/PipeWireTaps.h"

#include <string_view>
#include <utility>

namespace tavero {

AudioSystem linuxAudio(const std::filesystem::path& root,
                       std::shared_ptr<AudioProcesses> processes) {
    const auto graph = std::make_shared<PipeWireGraph>(
        PipeWireGraph::Options{.sandboxPid = [root](std::string_view app, std::int32_t inside) {
            return hostPid(root, app, inside);
        }});
    AudioSystem audio;
    audio.objects = std::make_shared<PipeWireObjects>(graph, processes->ownPid());
    audio.taps = std::make_shared<PipeWireTaps>(graph);
    audio.permission = std::make_shared<PipeWirePermission>();
    audio.processes = std::move(processes);
    return audio;
}

} // namespace tavero
