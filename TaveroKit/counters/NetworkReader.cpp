#include "counters/NetworkReader.h"

#include "records/SaturatingSum.h"

namespace tavero::NetworkReader {

std::optional<NetworkSnapshot> read(NetworkSource& source) {
    const auto interfaces = source.interfaces();
    if (!interfaces) return std::nullopt;
    NetworkSnapshot snapshot;
    for (const InterfaceCounters& interface : *interfaces) {
        snapshot.bytesIn = saturatingSum(snapshot.bytesIn, interface.bytesIn);
        snapshot.bytesOut = saturatingSum(snapshot.bytesOut, interface.bytesOut);
    }
    return snapshot;
}

} // namespace tavero::NetworkReader
