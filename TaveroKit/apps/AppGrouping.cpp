#include "apps/AppGrouping.h"

#include "apps/Text.h"

#include <algorithm>
#include <cstddef>
#include <optional>
#include <string_view>
#include <unordered_map>
#include <utility>

namespace tavero::AppGrouping {

namespace {

using NameFor = std::function<const std::string&(const AppIdentity&)>;

constexpr std::string_view supportFolder = "/Library/Application Support/";

// The processes of one identity, in the order of the samples. Both are borrowed from them.
struct Owned {
    const AppIdentity* identity;
    std::vector<const ProcessSample*> processes;
};

// In the order in which the identities first appear, so that the result has one too.
std::vector<Owned> byIdentity(std::span<const ProcessSample> samples) {
    std::vector<Owned> owners;
    std::unordered_map<AppIdentity, std::size_t> places;
    for (const ProcessSample& sample : samples) {
        const auto [place, isNew] = places.try_emplace(sample.app, owners.size());
        if (isNew) owners.push_back({&sample.app, {}});
        owners[place->second].processes.push_back(&sample);
    }
    return owners;
}

// The maker's folder in the path of a support tool, in lower case.
std::optional<std::string> supportFolderOwner(std::string_view path) {
    const std::size_t support = path.find(supportFolder);
    if (support == path.npos) return std::nullopt;
    path.remove_prefix(support + supportFolder.size());
    path.remove_prefix(std::min(path.find_first_not_of('/'), path.size()));
    if (path.empty()) return std::nullopt;
    return lowerCase(path.substr(0, path.find('/')));
}

// Only the first process that lies in such a folder decides.
std::optional<std::string> supportFolderOwner(const Owned& tool) {
    for (const ProcessSample* process : tool.processes)
        if (auto owner = supportFolderOwner(process->path)) return owner;
    return std::nullopt;
}

void foldSupportTools(std::vector<Owned>& owners, const NameFor& nameFor) {
    std::unordered_map<std::string, std::size_t> appsByName;
    for (std::size_t i = 0; i < owners.size(); ++i)
        if (owners[i].identity->kind == AppIdentity::Kind::app)
            appsByName.try_emplace(lowerCase(nameFor(*owners[i].identity)), i);

    for (Owned& tool : owners) {
        if (tool.identity->kind != AppIdentity::Kind::tool) continue;
        const std::optional<std::string> folder = supportFolderOwner(tool);
        const auto app = folder ? appsByName.find(*folder) : appsByName.end();
        if (app == appsByName.end()) continue;
        auto& processes = owners[app->second].processes;
        processes.insert(processes.end(), tool.processes.begin(), tool.processes.end());
        tool.processes.clear();
    }
    std::erase_if(owners, [](const Owned& owner) { return owner.processes.empty(); });
}

std::vector<AppGroup> mergedByName(std::vector<Owned> owners, const NameFor& nameFor) {
    std::vector<AppGroup> groups;
    std::unordered_map<std::string, std::size_t> places;
    for (Owned& owner : owners) {
        const std::string& name = nameFor(*owner.identity);
        const bool isApp = owner.identity->kind == AppIdentity::Kind::app;
        const auto [place, isNew] =
            places.try_emplace(isApp ? "app:" + name : owner.identity->id, groups.size());
        if (isNew)
            groups.emplace_back(*owner.identity, name, std::move(owner.processes));
        else
            groups[place->second].append(owner.processes);
    }
    return groups;
}

} // namespace

std::vector<AppGroup> group(std::span<const ProcessSample> samples,
                            const std::function<const std::string&(const AppIdentity&)>& nameFor) {
    std::vector<Owned> owners = byIdentity(samples);
    foldSupportTools(owners, nameFor);
    std::vector<AppGroup> groups = mergedByName(std::move(owners), nameFor);
    std::stable_sort(groups.begin(), groups.end(),
                     [](const AppGroup& a, const AppGroup& b) { return a.cpu() > b.cpu(); });
    return groups;
}

} // namespace tavero::AppGrouping
