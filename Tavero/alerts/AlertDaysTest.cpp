#include "alerts/test/LivingMac.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstddef>
#include <map>
#include <ostream>

namespace tavero {
namespace {

using namespace std::chrono_literals;

// How many alerts of each key a user meets on a simulated Mac who wants to hear of everything: on
// the first day, and on the next up to the time when all that repeats daily has happened. In every
// scenario a day is from then on like the one before, so these stand for a month.
struct Expected {
    Scenario scenario;
    std::map<std::string, int> first; // on the first day
    std::map<std::string, int> later; // on the next
    int byDefault = 0;                // in all, by the kinds that are on unless the user says so
};
std::ostream& operator<<(std::ostream& out, const Expected& days) {
    return out << days.scenario.name;
}

bool isOnByDefault(const std::string& key) {
    return std::any_of(allAlertKinds.begin(), allAlertKinds.end(), [&](const AlertKindEntry& kind) {
        return kind.onByDefault && key.substr(0, key.find('|')) == kind.rawValue;
    });
}

class AlertDays : public testing::TestWithParam<Expected> {};

TEST_P(AlertDays, TellNoMoreThanWhatHappens) {
    LivingMac mac(GetParam().scenario);
    mac.enableAll();
    mac.live(30h);
    std::map<std::string, int> first, later;
    std::ptrdiff_t byDefault = 0;
    for (const LivingMac::Met& met : mac.met()) {
        ++(met.at < 24h ? first : later)[met.notification.key];
        byDefault += isOnByDefault(met.notification.key);
    }
    EXPECT_EQ(first, GetParam().first);
    EXPECT_EQ(later, GetParam().later);
    EXPECT_EQ(byDefault, GetParam().byDefault);
}

const std::string inkwell = "/Applications/Inkwell.app";
const std::string fieldcut = "/Applications/Fieldcut.app";

// A Mac that was full when Tavero started says so, and each day again after it was unplugged. An
// app that never rests is told once; what it costs the battery, each time it runs on it.
INSTANTIATE_TEST_SUITE_P(
    Of, AlertDays,
    testing::Values(
        Expected{idleAfternoon(), {{"charged", 2}}, {{"charged", 1}}, 0},
        Expected{runawayApp(),
                 {{"charged", 2}, {"appCPU|" + inkwell, 1}, {"heavyOnBattery|" + inkwell, 1}},
                 {{"charged", 1}, {"heavyOnBattery|" + inkwell, 1}},
                 0},
        Expected{memoryPressure(),
                 {{"charged", 2},
                  {"memoryPressure", 1},
                  {"memoryGrowing|" + fieldcut, 1},
                  {"heavyOnBattery|" + fieldcut, 1}},
                 {{"charged", 1}, {"heavyOnBattery|" + fieldcut, 1}},
                 1},
        Expected{onBattery(),
                 {{"appCPU|" + fieldcut, 1},
                  {"heavyOnBattery|" + fieldcut, 1},
                  {"diskWrites|" + fieldcut, 1},
                  {"macBattery|20", 1},
                  {"macBattery|10", 1}},
                 {},
                 2},
        Expected{offline(), {{"charged", 2}, {"offline", 2}}, {{"charged", 1}}, 2}),
    [](const auto& days) {
        std::string name = days.param.scenario.name;
        std::replace(name.begin(), name.end(), ' ', '_');
        return name;
    });

} // namespace
} // namespace tavero
