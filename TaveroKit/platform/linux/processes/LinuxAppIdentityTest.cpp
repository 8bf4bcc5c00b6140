#include "platform/linux/processes/LinuxAppIdentity.h"

#include "platform/linux/KeptFile.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <ostream>
#include <string>
#include <utility>
#include <vector>

namespace tavero {
namespace {

const std::filesystem::path testdata = TAVERO_PROCESSES_TESTDATA;

// The columns of a table: between " | ", without the spaces around them. Comments and empty lines
// are left out.
std::vector<std::vector<std::string>> table(const char* name) {
    std::vector<std::vector<std::string>> rows;
    std::string text = readFile(testdata / name).value_or("");
    for (std::size_t start = 0, end; start < text.size(); start = end + 1) {
        end = text.find('\n', start);
        const std::string line = text.substr(start, end - start);
        if (line.empty() || line.front() == '#') continue;
        std::vector<std::string> row;
        for (std::size_t from = 0, to; from <= line.size(); from = to + 1) {
            to = std::min(line.find('|', from), line.size());
            const std::string cell = line.substr(from, to - from);
            const std::size_t first = std::min(cell.find_first_not_of(' '), cell.size());
            row.push_back(cell.substr(first, cell.find_last_not_of(' ') + 1 - first));
        }
        rows.push_back(std::move(row));
    }
    return rows;
}

std::string fileOf(const std::string& id) { return "/usr/share/applications/" + id + ".desktop"; }

// id | Exec | where the program's links lead | flags
const DesktopApps& apps() {
    static const DesktopApps all = [] {
        std::vector<DesktopEntry> entries;
        for (const auto& row : table("apps.txt")) {
            const auto has = [&](const char* flag) {
                return row[3].find(flag) != std::string::npos;
            };
            auto entry = parseDesktopEntry("[Desktop Entry]\nType=Application\nExec=" + row[1]);
            entry->id = row[0];
            entry->file = fileOf(row[0]);
            if (!entry->program.empty() && !entry->program.starts_with('/'))
                entry->program = "/usr/bin/" + entry->program;
            entry->resolvedProgram = row[2];
            entry->isLauncher = has("launcher");
            entry->inTerminal = has("terminal");
            entry->isShown = !has("hidden");
            if (has("snap=")) entry->snap = row[3].substr(row[3].find('=') + 1);
            entries.push_back(std::move(*entry));
        }
        return DesktopApps(std::move(entries));
    }();
    return all;
}

AppIdentity identity(const std::string& text) {
    if (text == "system") return AppIdentity::system;
    if (text.starts_with("app /")) return {AppIdentity::Kind::app, text.substr(4)};
    if (text.starts_with("app ")) return {AppIdentity::Kind::app, fileOf(text.substr(4))};
    if (text.starts_with("tool ")) return {AppIdentity::Kind::tool, text.substr(5)};
    return {AppIdentity::Kind::tool, ""};
}

std::string cgroup(std::string text) {
    const std::string user = "/user.slice/user-1000.slice/user@1000.service";
    for (const auto& [mark, folder] : {std::pair("@app", "/app.slice"),
                                       {"@session", "/session.slice"},
                                       {"@background", "/background.slice"},
                                       {"@user", ""}})
        if (text.starts_with(mark)) return user + folder + text.substr(std::string(mark).size());
    return text;
}

// path | control group | facts | parent | whose
using Case = std::vector<std::string>;

class LinuxAppIdentityTest : public testing::TestWithParam<Case> {};

TEST_P(LinuxAppIdentityTest, BelongsToWhomTheTableSays) {
    const Case& row = GetParam();
    ASSERT_EQ(row.size(), 5u);
    const std::string group = cgroup(row[1]);
    const auto fact = [&](const std::string& name) {
        return row[2].starts_with(name + "=") ? row[2].substr(name.size() + 1) : std::string();
    };
    const std::string script = fact("script"), image = fact("appimage"), flatpak = fact("flatpak"),
                      own = fact("own");
    ProcessFacts facts{.path = row[0],
                       .isKernelThread = row[2] == "kernel",
                       .cgroup = group,
                       .script = script,
                       .appImage = image,
                       .flatpak = flatpak,
                       .ownCgroup = own};
    if (!row[3].empty()) facts.parent = identity(row[3]);
    const AppIdentity answer = linuxAppIdentity(facts, apps());
    const AppIdentity expected = identity(row[4]);
    EXPECT_EQ(answer.kind, expected.kind) << row[0] << "  " << group;
    EXPECT_EQ(answer.id, expected.id) << row[0] << "  " << group;
}

INSTANTIATE_TEST_SUITE_P(Table, LinuxAppIdentityTest, testing::ValuesIn(table("cases.txt")));

TEST(LinuxAppIdentity, TheTableIsThere) {
    EXPECT_GE(table("cases.txt").size(), 200u);
    EXPECT_GE(table("apps.txt").size(), 50u);
}

TEST(LinuxAppIdentity, WithoutAnyAppsInstalledThereAreToolsAndTheSystem) {
    const DesktopApps none;
    EXPECT_EQ(linuxAppIdentity({.path = "/usr/bin/gimp"}, none).kind, AppIdentity::Kind::tool);
    EXPECT_EQ(linuxAppIdentity({.path = "/usr/libexec/x"}, none), AppIdentity::system);
    EXPECT_EQ(linuxAppIdentity({}, none).kind, AppIdentity::Kind::tool);
}

TEST(LinuxAppIdentity, LongAndOddPathsGetAnAnswer) {
    const std::string slashes(100'000, '/'), deep = [] {
        std::string text;
        for (int i = 0; i < 10'000; ++i) text += "/app-x-1.scope";
        return text;
    }();
    EXPECT_EQ(linuxAppIdentity({.path = slashes, .cgroup = slashes}, apps()).kind,
              AppIdentity::Kind::tool);
    EXPECT_EQ(linuxAppIdentity({.path = deep, .cgroup = deep}, apps()).kind,
              AppIdentity::Kind::tool);
}

} // namespace
} // namespace tavero
