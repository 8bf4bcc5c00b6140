#include "history/linux/HistoryFile.h"

#include "history/HistoryStore.h"

#include <cstdlib>

namespace tavero {

namespace {

std::string_view variable(const char* name) {
    const char* value = std::getenv(name);
    return value ? value : "";
}

} // namespace

std::optional<std::filesystem::path> historyFile(std::string_view dataHome, std::string_view home) {
    const std::filesystem::path file = "Tavero/history.sqlite";
    if (dataHome.starts_with('/')) return dataHome / file;
    if (home.starts_with('/')) return home / (".local/share" / file);
    return std::nullopt;
}

std::optional<std::filesystem::path> HistoryStore::defaultURL() {
    return historyFile(variable("XDG_DATA_HOME"), variable("HOME"));
}

} // namespace tavero
