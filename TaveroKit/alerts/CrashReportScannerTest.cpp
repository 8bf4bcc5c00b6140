#include "alerts/CrashReportScanner.h"

#include <gtest/gtest.h>

#include <chrono>
#include <fstream>
#include <map>

#include <sys/stat.h>

namespace tavero {
namespace {

using namespace std::chrono_literals;

constexpr const char* crash = R"({"bug_type":"309","app_name":"Inkwell"})";

// A folder of reports whose creation dates a test sets.
class CrashReportScannerTest : public testing::Test {
  protected:
    void SetUp() override {
        std::string name = testing::TempDir() + "crashesXXXXXX";
        ASSERT_TRUE(::mkdtemp(name.data()));
        folder = name;
    }
    void TearDown() override { std::filesystem::remove_all(folder); }

    void write(const std::string& name, const std::string& content, Date created) {
        std::ofstream(folder / name, std::ios::binary) << content;
        dates[folder / name] = created;
    }
    CrashReportScanner scanner() {
        return {folder, start, [this](const std::filesystem::path& file) -> std::optional<Date> {
                    const auto found = dates.find(file);
                    return found == dates.end() ? std::nullopt : std::optional(found->second);
                }};
    }
    // What a scanner finds in one new file with this content.
    std::vector<CrashReport> found(const std::string& content) {
        write("report.ips", content, start + 1s);
        return scanner().newReports(start + 1s);
    }

    std::filesystem::path folder;
    std::map<std::filesystem::path, Date> dates;
    Date start = Date(1'800'000'000s);
};

TEST_F(CrashReportScannerTest, ANewReportIsFoundOnce) {
    CrashReportScanner scanner = this->scanner();
    write("a.ips", std::string(crash) + "\n{\"the\":\"report\"}", start + 10s);
    EXPECT_EQ(scanner.newReports(start + 30s), std::vector{CrashReport{"Inkwell"}});
    EXPECT_TRUE(scanner.newReports(start + 60s).empty());
}

TEST_F(CrashReportScannerTest, ReportsFromBeforeTheLaunchNeverCount) {
    write("a.ips", crash, start - 1s);
    EXPECT_TRUE(scanner().newReports(start + 30s).empty());
}

TEST_F(CrashReportScannerTest, AReportFromTheLastScanIsOldAndOneFromNowIsNew) {
    write("old.ips", crash, start);
    EXPECT_TRUE(scanner().newReports(start + 30s).empty());
    write("new.ips", crash, start + 30s);
    EXPECT_EQ(scanner().newReports(start + 30s).size(), 1u);
}

TEST_F(CrashReportScannerTest, AReportFromTheFutureWaits) {
    CrashReportScanner scanner = this->scanner();
    write("a.ips", crash, start + 31s);
    EXPECT_TRUE(scanner.newReports(start + 30s).empty());
    EXPECT_EQ(scanner.newReports(start + 60s).size(), 1u);
}

TEST_F(CrashReportScannerTest, AFileOfAnotherKindIsIgnoredWhateverItHolds) {
    for (const char* name : {"a.crash", "ips", ".ips", "a.ips.synced", "a.IPS"})
        write(name, crash, start + 1s);
    EXPECT_TRUE(scanner().newReports(start + 30s).empty());
}

TEST_F(CrashReportScannerTest, AFileOfUnknownAgeIsIgnored) {
    write("a.ips", crash, start + 1s);
    dates.clear();
    EXPECT_TRUE(scanner().newReports(start + 30s).empty());
}

TEST_F(CrashReportScannerTest, AFolderThatCannotBeReadMissesWhatCameMeanwhile) {
    CrashReportScanner scanner = this->scanner();
    write("a.ips", crash, start + 10s);
    std::filesystem::rename(folder, folder.string() + ".away");
    EXPECT_TRUE(scanner.newReports(start + 30s).empty());
    std::filesystem::rename(folder.string() + ".away", folder);
    EXPECT_TRUE(scanner.newReports(start + 60s).empty());
}

TEST_F(CrashReportScannerTest, TheBugTypeIsATextAndThatOfCrashes) {
    EXPECT_TRUE(found(R"({"bug_type":309,"app_name":"Inkwell"})").empty());
    EXPECT_TRUE(found(R"({"bug_type":"298","app_name":"Inkwell"})").empty());
    EXPECT_TRUE(found(R"({"app_name":"Inkwell"})").empty());
}

TEST_F(CrashReportScannerTest, AnAppHasAName) {
    EXPECT_TRUE(found(R"({"bug_type":"309"})").empty());
    EXPECT_TRUE(found(R"({"bug_type":"309","app_name":""})").empty());
    EXPECT_TRUE(found(R"({"bug_type":"309","app_name":7})").empty());
}

TEST_F(CrashReportScannerTest, PartsOfTheSystemCountOnlyWithABundle) {
    const auto header = [](const std::string& more) {
        return R"({"bug_type":"309","app_name":"daemon",)" + more + "}";
    };
    EXPECT_TRUE(found(header(R"("is_first_party":1)")).empty());
    EXPECT_TRUE(found(header(R"("is_first_party":1,"bundleID":null)")).empty());
    EXPECT_EQ(found(header(R"("is_first_party":1,"bundleID":"com.example.d")")),
              (std::vector{CrashReport{"daemon", "com.example.d"}}));
    EXPECT_EQ(found(header(R"("is_first_party":0)")), (std::vector{CrashReport{"daemon"}}));
    EXPECT_EQ(found(header(R"("is_first_party":true)")).size(), 1u);
}

TEST_F(CrashReportScannerTest, EmptyLinesBeforeTheHeaderAreLeftOut) {
    EXPECT_EQ(found("\n\n" + std::string(crash) + "\nrest").size(), 1u);
}

TEST_F(CrashReportScannerTest, AHeaderBeyondTheFirstBytesIsLost) {
    EXPECT_TRUE(found(R"({"bug_type":"309","pad":")" + std::string(5000, 'x') +
                      R"(","app_name":"Inkwell"})")
                    .empty());
}

TEST_F(CrashReportScannerTest, ACharacterCutAtTheEndOfTheFirstBytesLosesTheReport) {
    std::string report = std::string(crash) + "\n";
    report.append(4095 - report.size(), 'x');
    EXPECT_EQ(found(report + "xé").size(), 1u);
    EXPECT_TRUE(found(report + "éx").empty()); // its second byte is the 4097th
}

TEST_F(CrashReportScannerTest, FilesThatAreNoReportsAreLeftOut) {
    for (const std::string& content :
         {std::string(), std::string("\n"), std::string("{\"bug_type\":\"30"), std::string("[1]"),
          std::string(100'000, '['), std::string(1'000'000, '\0'),
          std::string("\xff\xd8\xff\xe0 binary")})
        EXPECT_TRUE(found(content).empty());
}

TEST_F(CrashReportScannerTest, WhatIsNoPlainFileHoldsNothingUp) {
    const Date created = start + 1s;
    ASSERT_EQ(::mkfifo((folder / "pipe.ips").c_str(), 0600), 0);
    std::filesystem::create_directory(folder / "folder.ips");
    std::filesystem::create_symlink(folder / "nowhere", folder / "dangling.ips");
    std::filesystem::create_symlink(folder / "loop.ips", folder / "loop.ips");
    for (const char* name : {"pipe.ips", "folder.ips", "dangling.ips", "loop.ips"})
        dates[folder / name] = created;
    write("report.txt", crash, created);
    std::filesystem::create_symlink(folder / "report.txt", folder / "link.ips");
    dates[folder / "link.ips"] = created;
    EXPECT_EQ(scanner().newReports(start + 30s).size(), 1u);
}

} // namespace
} // namespace tavero
