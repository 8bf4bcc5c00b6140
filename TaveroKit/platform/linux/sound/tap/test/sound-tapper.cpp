// sound-tapper PID OUTPUT GAIN: taps a process until its input ends. Says "tapping" when it does.

#include "platform/linux/sound/PipeWireGraph.h"
#include "platform/linux/sound/tap/PipeWireTaps.h"

#include <algorithm>
#include <cstdlib>
#include <iostream>
#include <string>

#include <unistd.h>

using namespace tavero;

int main(int argc, char** argv) {
    if (argc != 4) {
        std::cerr << "usage: sound-tapper PID OUTPUT GAIN\n";
        return 2;
    }
    const std::int32_t pid = std::atoi(argv[1]);
    const auto graph = std::make_shared<PipeWireGraph>();
    AudioObjectID process = 0;
    {
        const auto lock = graph->lock();
        const auto isThere = [&] {
            const auto pids = graph->mirror().processes(getpid());
            return graph->isConnected() && std::ranges::find(pids, pid) != pids.end();
        };
        if (!graph->waitUntil(isThere, std::chrono::seconds(10))) return 1;
        process = PipeWireGraph::processObject(graph->generation(), pid);
    }
    TapCells cells;
    cells.gain = std::strtof(argv[3], nullptr);
    const auto result = PipeWireTaps(graph).start({{process}, argv[2], std::nullopt}, cells);
    if (result.index() != 0) return 1;
    std::cout << "tapping" << std::endl;
    std::string line;
    while (std::getline(std::cin, line)) {
    }
}
