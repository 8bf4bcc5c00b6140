#include "insights/InsightsPage.h"

#include "time/VirtualTime.h"

#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <chrono>

namespace tavero {
namespace {

using namespace std::chrono_literals;

// A page over a store in a folder of its own. A question to the store takes 10 ms.
class InsightsPageTest : public testing::Test {
  protected:
    std::unique_ptr<History> historyAt(const std::filesystem::path& file) {
        return std::make_unique<History>(file, time_.worker(10ms), time_, settings_);
    }
    std::filesystem::path file(const char* name) { return folder_.filePath(name).toStdString(); }

    void record(double cpu) {
        history_->record({.date = time_.now(), .cpu = CPUSnapshot{.user = cpu}}, std::nullopt);
        time_.advance(1min);
    }

    QTemporaryDir folder_;
    VirtualTime time_;
    Settings settings_{folder_.filePath("settings.ini")};
    std::unique_ptr<History> history_ = historyAt(file("history.sqlite"));
};

TEST_F(InsightsPageTest, NothingShowsUntilTheFirstReportHasCome) {
    InsightsPage page(*history_, time_, settings_);
    page.appear();
    EXPECT_FALSE(page.content());
    time_.advance(20ms);
    ASSERT_TRUE(page.content());
    EXPECT_EQ(page.content()->warmingUpDay, 1);
}

TEST_F(InsightsPageTest, TheReportIsLoadedAgainEveryMinute) {
    InsightsPage page(*history_, time_, settings_);
    page.appear();
    time_.advance(20ms);
    EXPECT_FALSE(page.report()->averageCPU);
    history_->record({.date = time_.now(), .cpu = CPUSnapshot{.user = 0.5}}, std::nullopt);
    time_.advance(59s);
    EXPECT_FALSE(page.report()->averageCPU);
    time_.advance(2s);
    EXPECT_EQ(page.report()->averageCPU, 0.5);
}

TEST_F(InsightsPageTest, AnotherPeriodIsLoadedAtOnceAndKept) {
    InsightsPage page(*history_, time_, settings_);
    EXPECT_EQ(page.days(), 30);
    page.appear();
    time_.advance(20ms);
    EXPECT_EQ(page.report()->dailyCPU.size(), 30u);
    page.setDays(7);
    time_.advance(10ms);
    EXPECT_EQ(page.report()->dailyCPU.size(), 7u);
    EXPECT_EQ(settings_.get(keys::insightsDays), 7);
}

TEST_F(InsightsPageTest, TheAnswerForAnotherPeriodThatComesLateIsDropped) {
    InsightsPage page(*history_, time_, settings_);
    page.appear();
    time_.advance(5ms); // the first report is under way
    page.setDays(7);
    time_.advance(5ms);
    EXPECT_FALSE(page.report());
    time_.advance(5ms);
    EXPECT_EQ(page.report()->dailyCPU.size(), 7u);
}

TEST_F(InsightsPageTest, APeriodThatIsNotOfferedIsAMonth) {
    settings_.set(keys::insightsDays, std::int64_t{-12});
    EXPECT_EQ(InsightsPage(*history_, time_, settings_).days(), 30);
}

TEST_F(InsightsPageTest, APageThatIsNotOnScreenAsksNothing) {
    InsightsPage page(*history_, time_, settings_);
    page.appear();
    time_.advance(20ms);
    page.disappear();
    EXPECT_EQ(time_.pending(), 0u);
    page.setDays(7);
    EXPECT_EQ(time_.pending(), 0u);
}

TEST_F(InsightsPageTest, APageThatGoesAwayWhileItWaitsIsNotAnswered) {
    {
        InsightsPage page(*history_, time_, settings_);
        page.appear();
    }
    time_.advance(1min);
    EXPECT_EQ(time_.pending(), 0u);
}

TEST_F(InsightsPageTest, AfterTheDeletionThePageStartsAgainFromToday) {
    InsightsPage page(*history_, time_, settings_);
    record(0.5);
    page.appear();
    time_.advance(20ms);
    EXPECT_EQ(page.report()->averageCPU, 0.5);
    page.deleteHistory();
    time_.advance(30ms);
    EXPECT_EQ(page.report()->daysOfData, 0);
    EXPECT_EQ(page.report()->averageCPU, std::nullopt);
    EXPECT_EQ(page.content()->warmingUpDay, 1);
}

TEST_F(InsightsPageTest, WithoutAStoreThePageKeepsWaiting) {
    const auto nowhere = historyAt("/dev/null/not a folder/history.sqlite");
    InsightsPage page(*nowhere, time_, settings_);
    page.appear();
    time_.advance(3min);
    EXPECT_FALSE(page.report());
    page.deleteHistory();
    time_.advance(3min);
    EXPECT_FALSE(page.report());
}

TEST_F(InsightsPageTest, WithoutAPlaceForItTheHistoryLastsAsLongAsTheProgram) {
    History here(std::nullopt, time_.worker(10ms), time_, settings_);
    here.record({.date = time_.now(), .cpu = CPUSnapshot{.user = 0.5}}, std::nullopt);
    time_.advance(1min);
    InsightsPage page(here, time_, settings_);
    page.appear();
    time_.advance(20ms);
    EXPECT_EQ(page.report()->averageCPU, 0.5);
}

TEST_F(InsightsPageTest, AUserWhoWantsNoHistoryHasNone) {
    settings_.set(keys::keepHistory, false);
    record(0.5);
    settings_.set(keys::keepHistory, true);
    record(0.25);
    InsightsPage page(*history_, time_, settings_);
    page.appear();
    time_.advance(20ms);
    EXPECT_EQ(page.report()->averageCPU, 0.25);
}

TEST_F(InsightsPageTest, LooksWithoutAppsDoNotWakeTheWorkerOneByOne) {
    time_.advance(1s); // it is open
    for (int look = 0; look < 11; ++look) history_->record({.date = time_.now()}, std::nullopt);
    EXPECT_EQ(time_.pending(), 0u);
    history_->record({.date = time_.now()}, std::nullopt);
    EXPECT_EQ(time_.pending(), 1u);
    history_->record({.date = time_.now(), .apps = {AppUsage{}}}, 60);
    EXPECT_EQ(time_.pending(), 2u);
}

TEST_F(InsightsPageTest, WhatADiskCannotKeepUpWithIsDropped) {
    const auto slow =
        std::make_unique<History>(file("slow.sqlite"), time_.worker(1h), time_, settings_);
    for (int minute = 0; minute < 1000; ++minute)
        slow->record({.date = time_.now() + std::chrono::minutes(minute)}, std::nullopt);
    time_.advance(24h);
    std::optional<InsightsReport> report;
    slow->report(30, [&](auto answer) { report = std::move(answer); });
    time_.advance(24h);
    ASSERT_TRUE(report);
    EXPECT_EQ(report->hoursAwake, 1); // an hour's worth of a thousand minutes
}

} // namespace
} // namespace tavero
