#include "apps/AppRows.h"

#include "records/SaturatingSum.h"

#include <algorithm>
#include <iterator>
#include <optional>
#include <span>
#include <string_view>
#include <utility>

namespace tavero {

namespace {

constexpr double notableCPU = 0.2;         // cores from which a row may get a note
constexpr double dominantChildShare = 0.6; // of its app's CPU
constexpr std::size_t mostNetworkApps = 15;

using Processes = std::span<const ProcessSample* const>;

// What is summed over processes for an app and for each of its children.
void addUp(AppUsage& row, Processes processes, const UsageExtras& extras) {
    row.processCount = std::ssize(processes);
    for (const ProcessSample* process : processes) {
        row.cpu += process->cpu;
        row.memory = saturatingSum(row.memory, process->memory);
        row.diskReadRate += process->diskReadRate;
        row.diskWriteRate += process->diskWriteRate;
        row.threads += process->threads;
        if (const auto gpu = extras.gpuShares.find(process->pid); gpu != extras.gpuShares.end())
            row.gpu = row.gpu.value_or(0) + gpu->second;
        if (const auto rate = extras.networkRates.find(process->pid);
            rate != extras.networkRates.end()) {
            row.networkInRate += rate->second.received;
            row.networkOutRate += rate->second.sent;
        }
    }
}

AppUsage childRow(const AppIdentity& parent, Processes processes, const UsageExtras& extras) {
    const std::string& name = processes.front()->name;
    AppUsage row;
    // The parent's id keeps a child's log entries apart from those of a tool of the same name.
    row.identity = {AppIdentity::Kind::tool, parent.id + "|" + name};
    row.name = processes.size() < 2 ? name : name + " × " + std::to_string(processes.size());
    addUp(row, processes, extras);
    return row;
}

std::vector<AppUsage> children(const AppGroup& group, const UsageExtras& extras) {
    if (group.processes().size() < 2) return {};
    std::vector<const ProcessSample*> byName = group.processes();
    std::stable_sort(byName.begin(), byName.end(),
                     [](const auto* a, const auto* b) { return a->name < b->name; });
    std::vector<AppUsage> rows;
    for (auto first = byName.begin(); first != byName.end();) {
        const auto last = std::find_if(first, byName.end(), [&](const auto* process) {
            return process->name != (*first)->name;
        });
        rows.push_back(childRow(group.identity(), Processes(first, last), extras));
        first = last;
    }
    std::stable_sort(rows.begin(), rows.end(), [](const AppUsage& a, const AppUsage& b) {
        return a.cpu != b.cpu ? a.cpu > b.cpu : a.memory > b.memory;
    });
    return rows;
}

std::optional<std::string> note(const AppUsage& row) {
    if (row.cpu < notableCPU || row.children.empty()) return std::nullopt;
    const AppUsage& busiest = row.children.front();
    if (busiest.cpu < dominantChildShare * row.cpu) return std::nullopt;
    // "mostly Mail Helper" under "Mail" would tell nobody anything.
    if (busiest.name.starts_with(row.name)) return std::nullopt;
    return "mostly " + busiest.name;
}

double networkRate(const AppUsage& row) { return row.networkInRate + row.networkOutRate; }

std::uint64_t networkTotal(const AppUsage& row) {
    return saturatingSum(row.networkInTotal, row.networkOutTotal);
}

} // namespace

AppUsage usage(const AppGroup& group, const UsageExtras& extras, const NetworkTotals& totals) {
    AppUsage row;
    row.identity = group.identity();
    row.name = group.name();
    if (row.identity.kind == AppIdentity::Kind::app) row.bundlePath = row.identity.id;
    addUp(row, group.processes(), extras);
    if (const auto total = totals.find(row.identity); total != totals.end()) {
        row.networkInTotal = total->second.received;
        row.networkOutTotal = total->second.sent;
    }
    row.children = children(group, extras);
    row.note = note(row);
    return row;
}

std::vector<AppUsage> networkApps(std::vector<AppUsage> rows) {
    std::erase_if(rows, [](const AppUsage& row) {
        return !(networkRate(row) > 0) && networkTotal(row) == 0;
    });
    std::stable_sort(rows.begin(), rows.end(), [](const AppUsage& a, const AppUsage& b) {
        return networkRate(a) != networkRate(b) ? networkRate(a) > networkRate(b)
                                                : networkTotal(a) > networkTotal(b);
    });
    if (rows.size() > mostNetworkApps) rows.resize(mostNetworkApps);
    return rows;
}

} // namespace tavero
