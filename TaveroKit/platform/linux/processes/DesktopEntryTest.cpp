#include "platform/linux/processes/DesktopEntry.h"

#include <gtest/gtest.h>

#include <string>

namespace tavero {
namespace {

std::optional<DesktopEntry> entry(const std::string& lines) {
    return parseDesktopEntry("[Desktop Entry]\nType=Application\n" + lines);
}

std::string program(const std::string& exec) { return entry("Exec=" + exec)->program; }

TEST(DesktopEntry, TellsWhatAnAppIsCalledAndStarts) {
    const auto parsed = parseDesktopEntry("# a comment\n"
                                          "[Desktop Entry]\r\n"
                                          "Type=Application\n"
                                          "Name = Text Editor\n"
                                          "Name[de]=Texteditor\n"
                                          "Icon=org.x.Editor\n"
                                          "Exec=/opt/editor/bin/editor --new %U\n"
                                          "Categories=Utility;TextEditor;\n"
                                          "[Desktop Action new]\n"
                                          "Name=New Window\n"
                                          "Exec=other\n");
    ASSERT_TRUE(parsed);
    EXPECT_EQ(*parsed, (DesktopEntry{.name = "Text Editor",
                                     .icon = "org.x.Editor",
                                     .program = "/opt/editor/bin/editor",
                                     .arguments = 1}));
}

TEST(DesktopEntry, TheNameIsInTheLikeliestLanguageThatTheFileHas) {
    const std::string names = "Name[sr]=c\nName[sr_RS]=b\nName=d\nName[sr@latin]=a\nName[de]=e\n";
    const auto name = [&](const std::string& locale, const std::string& lines) {
        return parseDesktopEntry("[Desktop Entry]\nType=Application\n" + lines,
                                 localeCandidates(locale))
            ->name;
    };
    EXPECT_EQ(name("", names), "d");
    EXPECT_EQ(name("C.UTF-8", names), "d");
    EXPECT_EQ(name("fr_FR.UTF-8", names), "d");
    EXPECT_EQ(name("sr_RS.UTF-8", names), "b");
    EXPECT_EQ(name("sr_RS@latin", names), "b");
    EXPECT_EQ(name("sr_ME@latin", names), "a");
    EXPECT_EQ(name("sr", names), "c");
    EXPECT_EQ(name("de_CH.UTF-8@euro", names), "e");
    EXPECT_EQ(name("de", "Name=d\nName[de]=\nName[=x\nName]=x\nName[de=x\n"), "d");
    EXPECT_EQ(name("de", "Name[de]=e\n"), "e");
}

TEST(DesktopEntry, ALocaleIsTriedFromItsWholeToItsLanguage) {
    const auto candidates = [](std::string_view locale) { return localeCandidates(locale); };
    using List = std::vector<std::string>;
    EXPECT_EQ(candidates("a_B.UTF-8@m"), (List{"a_B@m", "a_B", "a@m", "a"}));
    EXPECT_EQ(candidates("a_B.UTF-8"), (List{"a_B", "a"}));
    EXPECT_EQ(candidates("a@m"), (List{"a@m", "a"}));
    EXPECT_EQ(candidates("a"), (List{"a"}));
    for (const char* none : {"", "C", "C.UTF-8", "POSIX", "_B", ".UTF-8", "@m", "@.", "@_."})
        EXPECT_EQ(candidates(none), List{}) << none;
}

TEST(DesktopEntry, OnlyAppsThatWereNotDeletedCount) {
    EXPECT_FALSE(parseDesktopEntry(""));
    EXPECT_FALSE(parseDesktopEntry("[Desktop Entry]\nName=x\n"));
    EXPECT_FALSE(parseDesktopEntry("[Desktop Entry]\nType=Link\nName=x\n"));
    EXPECT_FALSE(entry("Hidden=true\n"));
    EXPECT_FALSE(parseDesktopEntry("[Other]\nType=Application\n"));
    EXPECT_TRUE(entry(""));
}

TEST(DesktopEntry, FlagsAreRead) {
    const auto parsed = entry("NoDisplay=true\nTerminal=true\nX-SnapInstanceName=notes\n"
                              "Categories=GNOME;TerminalEmulator;\n");
    EXPECT_FALSE(parsed->isShown);
    EXPECT_TRUE(parsed->inTerminal);
    EXPECT_TRUE(parsed->isLauncher);
    EXPECT_EQ(parsed->snap, "notes");
    EXPECT_TRUE(entry("Categories=System;FileManager\n")->isLauncher);
    EXPECT_FALSE(entry("Categories=XTerminalEmulator;\n")->isLauncher);
}

TEST(DesktopEntry, QuotesAndEscapesAreUndone) {
    EXPECT_EQ(program("\"/opt/My App/run\" --x"), "/opt/My App/run");
    EXPECT_EQ(program("\"/opt/a\\\\\"b/run\""), "/opt/a\"b/run");
    EXPECT_EQ(program("/opt/a\\sb"), "/opt/a"); // a space once unescaped
    EXPECT_EQ(program("\"/opt/never closed"), "/opt/never closed");
    EXPECT_EQ(program("back\\"), "back\\");
}

TEST(DesktopEntry, ArgumentsAreCountedWithoutFieldCodes) {
    EXPECT_EQ(entry("Exec=office --writer %U")->arguments, 1u);
    EXPECT_EQ(entry("Exec=office %U")->arguments, 0u);
}

TEST(DesktopEntry, AnInterpreterIsPassedOverForItsScript) {
    EXPECT_EQ(program("python3 /usr/share/tool/tool.py %f"), "/usr/share/tool/tool.py");
    EXPECT_EQ(program("/usr/bin/python3.11 -m tool"), "");
    EXPECT_EQ(program("sh -c 'exec thing'"), "");
    EXPECT_EQ(program("env A=1 B=/x thing --y"), "thing");
    EXPECT_EQ(program("env"), "");
}

TEST(DesktopEntry, AStarterTellsNoProgramButTryExecMay) {
    EXPECT_EQ(program("/usr/bin/flatpak run --branch=stable org.x.Y"), "");
    EXPECT_EQ(program("gapplication launch org.x.Y"), "");
    EXPECT_EQ(entry("Exec=sh -c thing\nTryExec=/usr/bin/thing")->program, "/usr/bin/thing");
    EXPECT_EQ(entry("Exec=sh -c thing\nTryExec=sh")->program, "");
    EXPECT_EQ(entry("TryExec=thing")->program, "thing");
}

TEST(DesktopEntry, InterpretersCarryVersions) {
    for (const char* name : {"python3", "python3.11", "perl5.36", "electron", "electron25", "bash",
                             "mono-6.8", "node", "java"})
        EXPECT_TRUE(isInterpreter(name)) << name;
    for (const char* name : {"pythonista", "perlbrew", "shotwell", "electronics", "javac", ""})
        EXPECT_FALSE(isInterpreter(name)) << name;
}

TEST(DesktopEntry, AnythingCanBeParsed) {
    EXPECT_FALSE(parseDesktopEntry(std::string(100'000, '[')));
    EXPECT_TRUE(entry("Exec=" + std::string(100'000, '"')));
    EXPECT_TRUE(entry("=\n==\nExec\nExec=\n\xFF=\xFF\n"));
    EXPECT_EQ(entry("Exec=  \t %u")->program, "");
}

} // namespace
} // namespace tavero
