#include "platform/linux/processes/ProcFiles.h"

#include <gtest/gtest.h>

#include <string>

namespace tavero {
namespace {

using namespace std::string_literals;

std::string stat(const std::string& comm, const std::string& rest) {
    return "4321 (" + comm + ") " + rest;
}
const std::string usual = "S 77 4321 4321 0 -1 4194560 100 200 0 0 250 50 1 2 20 0 12 0 8899 "
                          "123456789 4096 18446744073709551615 1 1 0 0\n";

TEST(ProcFiles, StatTellsParentTicksThreadsAndStart) {
    const std::string text = stat("bash", usual);
    const auto line = parseStat(text);
    ASSERT_TRUE(line);
    EXPECT_EQ(line->comm, "bash");
    EXPECT_EQ(line->state, 'S');
    EXPECT_EQ(line->parent, 77);
    EXPECT_FALSE(line->isKernelThread);
    EXPECT_EQ(line->cpuTicks, 300u);
    EXPECT_EQ(line->threads, 12);
    EXPECT_EQ(line->start, 8899u);
    EXPECT_EQ(line->resident, 4096u);
}

TEST(ProcFiles, AProcessMayCallItselfAnything) {
    for (const std::string comm : {"", ") R 1 2 3", "a b  c", "((()", "))))", "tab\there",
                                   "line\nend", "\xFF\xFE", "(x) S 1"})
        if (const std::string text = stat(comm, usual); const auto line = parseStat(text)) {
            EXPECT_EQ(line->comm, comm);
            EXPECT_EQ(line->start, 8899u);
        } else {
            ADD_FAILURE() << comm;
        }
}

TEST(ProcFiles, AKernelThreadIsToldByItsFlag) {
    const std::string text =
        stat("kworker/0:1-events", "I 2 0 0 0 -1 69238880 0 0 0 0 0 7 0 0 20 0 1 0 33 0 0\n");
    EXPECT_TRUE(parseStat(text)->isKernelThread);
}

TEST(ProcFiles, ABrokenStatIsAbsent) {
    for (const std::string text :
         {"", "(", ")", ")(", "1 (x)", "1 (x) ", "1 (x) S", "1 (x) S 1 1 1", "1 x S 77 1 1 1 1",
          "1 (x) S a b c d e f g h i j k l m n o p q r s t u"})
        EXPECT_FALSE(parseStat(text)) << text;
    EXPECT_FALSE(parseStat(stat("x", usual.substr(0, usual.find("8899")))));
}

TEST(ProcFiles, FiguresThatNoKernelWouldSayAreBounded) {
    const std::string text =
        stat("x", "S 99999999999 0 0 0 -1 0 0 0 0 0 18446744073709551615 5 0 0 "
                  "20 0 99999999999999999999 0 1 0 0\n");
    const auto line = parseStat(text);
    ASSERT_TRUE(line);
    EXPECT_EQ(line->parent, 0);
    EXPECT_EQ(line->cpuTicks, ~0ull);
    EXPECT_EQ(line->threads, 0);
}

TEST(ProcFiles, OwnPagesAreTheResidentOnesThatNobodyShares) {
    EXPECT_EQ(parseOwnPages("5000 1200 300 10 0 400 0\n"), 900u);
    EXPECT_EQ(parseOwnPages("5000 300 1200 10 0 400 0\n"), 0u);
    EXPECT_EQ(parseOwnPages("0 0 0 0 0 0 0\n"), 0u);
    EXPECT_FALSE(parseOwnPages("5000 1200"));
    EXPECT_FALSE(parseOwnPages(""));
    EXPECT_FALSE(parseOwnPages("a b c"));
}

TEST(ProcFiles, DiskBytesAreThoseThatReachedStorage) {
    const auto bytes = parseDiskBytes("rchar: 1\nwchar: 2\nsyscr: 3\nsyscw: 4\nread_bytes: 4096\n"
                                      "write_bytes: 8192\ncancelled_write_bytes: 5\n");
    ASSERT_TRUE(bytes);
    EXPECT_EQ(bytes->read, 4096u);
    EXPECT_EQ(bytes->written, 8192u);
    EXPECT_FALSE(parseDiskBytes("read_bytes: 4096\n"));
    EXPECT_FALSE(parseDiskBytes("read_bytes: x\nwrite_bytes: 1\n"));
    EXPECT_FALSE(parseDiskBytes(""));
}

TEST(ProcFiles, ForksAreALineOfStat) {
    EXPECT_EQ(parseForks("cpu 1 2 3\nintr 5 0 0\nbtime 1\nprocesses 12345\nprocs_running 1\n"),
              12345u);
    EXPECT_FALSE(parseForks("cpu 1 2 3\n"));
}

TEST(ProcFiles, TheControlGroupIsTheServiceManagers) {
    EXPECT_EQ(parseCgroup("0::/user.slice/a.scope\n"), "/user.slice/a.scope");
    EXPECT_EQ(parseCgroup("12:cpu,cpuacct:/x\n1:name=systemd:/system.slice/b.service\n0::/\n"),
              "/system.slice/b.service");
    EXPECT_EQ(parseCgroup("0::/with:colon\n"), "/with:colon");
    EXPECT_EQ(parseCgroup("5:memory:/x\n"), "");
    EXPECT_EQ(parseCgroup("::::\n\n0"), "");
    EXPECT_EQ(parseCgroup(""), "");
}

TEST(ProcFiles, ArgumentsEndWithZeros) {
    const std::string line = "python3\0-E\0/usr/bin/tool\0x\0"s;
    EXPECT_EQ(argument(line, 0), "python3");
    EXPECT_EQ(argument(line, 2), "/usr/bin/tool");
    EXPECT_EQ(argument(line, 9), "");
    EXPECT_EQ(scriptOf(line), "/usr/bin/tool");
    EXPECT_EQ(scriptOf("sh\0-c\0"s), "");
    EXPECT_EQ(scriptOf(""), "");
}

TEST(ProcFiles, AVariableIsFoundByItsWholeName) {
    const std::string text = "XAPPIMAGE=a\0APPIMAGE=/home/u/a=b\0APPIMAGE=late\0"s;
    EXPECT_EQ(variable(text, "APPIMAGE"), "/home/u/a=b");
    EXPECT_FALSE(variable(text, "HOME"));
    EXPECT_FALSE(variable("", "HOME"));
}

TEST(ProcFiles, TheInnermostPidIsTheLast) {
    EXPECT_EQ(parseInnermostPid("Name:\tx\nPid:\t9\nNSpid:\t9\n"), 9);
    EXPECT_EQ(parseInnermostPid("NStgid:\t1\nNSpid:\t900\t17\t2\nNSpgid:\t5\n"), 2);
    EXPECT_FALSE(parseInnermostPid("Name:\tx\nPid:\t9\n")); // of an old kernel
    EXPECT_FALSE(parseInnermostPid("NSpid:\n"));
    EXPECT_FALSE(parseInnermostPid("NSpid:\t9\t0\n"));
    EXPECT_FALSE(parseInnermostPid("NSpid:\t9\t4294967297\n"));
    EXPECT_FALSE(parseInnermostPid(""));
}

TEST(ProcFiles, AFlatpaksIdIsTheNameOfItsApplication) {
    EXPECT_EQ(parseFlatpakId("[Application]\nname=org.x.Y\nruntime=z\n"), "org.x.Y");
    EXPECT_EQ(parseFlatpakId("[Application]\nruntime=z\nname=org.x.Y"), "org.x.Y");
    EXPECT_EQ(parseFlatpakId("[Runtime]\nname=org.x.Y\n"), "");
    EXPECT_EQ(parseFlatpakId("[Application]\nfilename=org.x.Y\n"), "");
    EXPECT_EQ(parseFlatpakId(""), "");
}

} // namespace
} // namespace tavero
