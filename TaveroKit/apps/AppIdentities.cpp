#include "apps/AppIdentities.h"

#include "apps/Text.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <optional>
#include <utility>

namespace tavero::AppGrouping {

namespace {

using namespace std::string_view_literals;

constexpr std::string_view bundleSuffix = ".app";
constexpr std::string_view developerFolder = "/Library/Developer/";
constexpr std::array systemFolders{"/System/"sv, "/usr/"sv,           "/bin/"sv,
                                   "/sbin/"sv,   "/Library/Apple/"sv, "/private/var/"sv};
constexpr std::array systemAppFolders{
    "/System/Applications/"sv, "/System/Volumes/Preboot/Cryptexes/App/System/Applications/"sv,
    "/System/Library/CoreServices/"sv};
// Folders that say nothing about the tool inside.
constexpr std::array plumbingFolders{"bin"sv, "versions"sv, "libexec"sv, "current"sv, "latest"sv};

template <typename Folders>
bool isIn(const Folders& folders, std::string_view path) {
    return std::any_of(folders.begin(), folders.end(),
                       [&](std::string_view folder) { return path.starts_with(folder); });
}

bool isDigit(char c) { return c >= '0' && c <= '9'; }

bool isVersion(std::string_view piece) {
    return isDigit(piece.front()) && std::all_of(piece.begin(), piece.end(), [](char c) {
               return isDigit(c) || c == '.' || c == '-';
           });
}

// In ASCII: no other letter has one of these names as its lower case.
bool isPlumbing(std::string_view piece) {
    const auto equal = [](char a, char b) {
        return a == b || (a >= 'A' && a <= 'Z' && a - 'A' + 'a' == b);
    };
    return std::any_of(plumbingFolders.begin(), plumbingFolders.end(), [&](std::string_view name) {
        return std::equal(piece.begin(), piece.end(), name.begin(), name.end(), equal);
    });
}

std::string_view withoutSlashes(std::string_view text) {
    const std::size_t first = std::min(text.find_first_not_of('/'), text.size());
    text.remove_prefix(first);
    return text.substr(0, text.find_last_not_of('/') + 1);
}

// Takes the last component off `path`; empty if there is none left.
std::string_view popComponent(std::string_view& path) {
    path = path.substr(0, path.find_last_not_of('/') + 1);
    const std::size_t start = path.rfind('/') + 1; // 0 if there is no slash
    const std::string_view component = path.substr(start);
    path = path.substr(0, start);
    return component;
}

// The end of the outermost bundle in the path: whatever is inside, other bundles too, belongs to
// it.
std::optional<std::size_t> bundleEnd(std::string_view path) {
    if (const std::size_t inside = path.find(".app/"); inside != path.npos)
        return inside + bundleSuffix.size();
    if (path.ends_with(bundleSuffix)) return path.size();
    return std::nullopt;
}

std::string fileName(std::string_view path) {
    const std::string_view name = popComponent(path);
    const std::size_t dot = name.rfind('.');
    return std::string(dot == 0 ? name : name.substr(0, dot));
}

} // namespace

AppIdentity identity(std::string_view path) {
    if (const std::optional<std::size_t> end = bundleEnd(path)) {
        if (path.starts_with("/System/") && !isIn(systemAppFolders, path))
            return AppIdentity::system;
        std::string id = "/";
        id += withoutSlashes(path.substr(0, *end));
        return {AppIdentity::Kind::app, std::move(id)};
    }
    if (path.starts_with(developerFolder)) return developerTools;
    if (isIn(systemFolders, path)) return AppIdentity::system;
    return {AppIdentity::Kind::tool, toolName(path)};
}

std::string toolName(std::string_view path) {
    std::string_view rest = path;
    const std::string_view last = popComponent(rest);
    for (std::string_view piece = last; !piece.empty(); piece = popComponent(rest))
        if (!isVersion(piece) && !isPlumbing(piece)) return std::string(piece);
    return std::string(last.empty() ? path : last);
}

std::string displayName(const AppIdentity& identity, BundleSource* bundles) {
    if (identity.kind != AppIdentity::Kind::app) return identity.id;
    if (const auto names = bundles ? bundles->names(identity.id) : std::nullopt)
        for (const std::optional<std::string>& name : {names->displayName, names->name})
            if (std::string shown = withoutFormatCharacters(name.value_or("")); !shown.empty())
                return shown;
    return withoutFormatCharacters(fileName(identity.id));
}

} // namespace tavero::AppGrouping
