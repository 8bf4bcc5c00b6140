#include "apps/SystemActivities.h"

#include <algorithm>
#include <array>

namespace tavero {

namespace {

constexpr std::array macProcesses = std::to_array<SystemProcess>({
    {"mds", "Spotlight indexing"},
    {"mds_stores", "Spotlight indexing"},
    {"mdworker", "Spotlight indexing"},
    {"mdworker_shared", "Spotlight indexing"},
    {"mdbulkimport", "Spotlight indexing"},
    {"corespotlightd", "Spotlight indexing"},
    {"backupd", "Time Machine backup"},
    {"backupd-helper", "Time Machine backup"},
    {"kernel_task", "Cooling the Mac"},
    {"WindowServer", "Drawing the screen"},
    {"photoanalysisd", "Photos analysing your library"},
    {"mediaanalysisd", "Photos analysing your library"},
    {"photolibraryd", "Photos analysing your library"},
    {"cloudd", "iCloud syncing"},
    {"bird", "iCloud syncing"},
    {"fileproviderd", "iCloud syncing"},
    {"nsurlsessiond", "iCloud syncing"},
    {"CloudKeychainProxy", "iCloud syncing"},
    {"softwareupdated", "Installing updates"},
    {"softwareupdate", "Installing updates"},
    {"installd", "Installing updates"},
    {"system_installd", "Installing updates"},
    {"mobileassetd", "Installing updates"},
    {"XprotectService", "Checking apps for malware"},
    {"XProtect", "Checking apps for malware"},
    {"XprotectPluginService", "Checking apps for malware"},
    {"syspolicyd", "Checking apps for malware"},
    {"coreaudiod", "Playing audio"},
    {"diskimagesd", "Opening a disk image"},
    {"diskimages-helper", "Opening a disk image"},
    {"fseventsd", "Tracking file changes"},
    {"trustd", "Checking certificates"},
    {"logd", "Writing system logs"},
    {"suggestd", "Apple Intelligence"},
    {"knowledge-agent", "Apple Intelligence"},
    {"intelligenceplatformd", "Apple Intelligence"},
    {"intelligencetasksd", "Apple Intelligence"},
    {"sharingd", "AirDrop and Handoff"},
    {"bluetoothd", "Bluetooth"},
    {"locationd", "Location Services"},
});

} // namespace

SystemVocabulary macVocabulary() { return macProcesses; }

std::optional<SystemActivity> unusualActivity(std::span<const ProcessSample> samples,
                                              SystemVocabulary vocabulary) {
    const ProcessSample* top = nullptr;
    for (const ProcessSample& sample : samples)
        if (sample.app.kind == AppIdentity::Kind::system && (!top || sample.cpu > top->cpu))
            top = &sample;
    if (!top || top->cpu < SystemActivity::unusualCPU) return std::nullopt;
    return SystemActivity{top->name, describeSystemProcess(top->name, vocabulary), top->cpu};
}

std::string describeSystemProcess(std::string_view process, SystemVocabulary vocabulary) {
    const auto known = std::find_if(vocabulary.begin(), vocabulary.end(),
                                    [&](const SystemProcess& p) { return p.name == process; });
    return std::string(known == vocabulary.end() ? process : known->purpose);
}

} // namespace tavero
