#include "alerts/test/LivingMac.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstddef>
#include <map>
#include <ostream>

namespace tavero {
namespace {

using namespace std::chrono_literals;

// A month on a simulated Mac that is used for an hour a day and sleeps until the next, by a user
// who wants to hear of everything: how many alerts of each key are met.
struct Expected {
    Scenario scenario;
    std::map<std::string, int> alerts;
    int byDefault = 0; // of those, by the kinds that are on unless the user says so
};
std::ostream& operator<<(std::ostream& out, const Expected& month) {
    return out << month.scenario.name;
}

bool isOnByDefault(const std::string& key) {
    return std::any_of(allAlertKinds.begin(), allAlertKinds.end(), [&](const AlertKindEntry& kind) {
        return kind.onByDefault && key.substr(0, key.find('|')) == kind.rawValue;
    });
}

class AlertMonth : public testing::TestWithParam<Expected> {};

TEST_P(AlertMonth, ThroughAMonthItTellsNoMoreThanWhatHappens) {
    LivingMac mac(GetParam().scenario);
    mac.enableAll();
    for (int day = 0; day < 30; ++day) {
        mac.live(1h);
        mac.sleep(23h);
    }
    std::map<std::string, int> alerts;
    int byDefault = 0;
    for (const LivingMac::Met& met : mac.met()) {
        ++alerts[met.notification.key];
        byDefault += isOnByDefault(met.notification.key);
    }
    EXPECT_EQ(alerts, GetParam().alerts);
    EXPECT_EQ(byDefault, GetParam().byDefault);
}

const std::string inkwell = "/Applications/Inkwell.app";
const std::string fieldcut = "/Applications/Fieldcut.app";

// A battery that was unplugged says each day that it is full again. An app that never rests is told
// once; what it costs the battery, each day that it is unplugged; what it writes, each day anew.
// Two weeks after the start, a Mac that is short of memory asks for a restart once a day.
INSTANTIATE_TEST_SUITE_P(Of, AlertMonth,
                         testing::Values(Expected{idleAfternoon(), {{"charged", 30}}, 0},
                                         Expected{runawayApp(),
                                                  {{"charged", 30},
                                                   {"appCPU|" + inkwell, 1},
                                                   {"heavyOnBattery|" + inkwell, 30}},
                                                  0},
                                         Expected{memoryPressure(),
                                                  {{"charged", 30},
                                                   {"memoryPressure", 1},
                                                   {"memoryGrowing|" + fieldcut, 1},
                                                   {"heavyOnBattery|" + fieldcut, 30},
                                                   {"restart", 18}},
                                                  1},
                                         Expected{onBattery(),
                                                  {{"appCPU|" + fieldcut, 1},
                                                   {"heavyOnBattery|" + fieldcut, 1},
                                                   {"diskWrites|" + fieldcut, 30},
                                                   {"macBattery|20", 1},
                                                   {"macBattery|10", 1}},
                                                  2},
                                         Expected{offline(), {{"charged", 30}, {"offline", 2}}, 2}),
                         [](const auto& month) {
                             std::string name = month.param.scenario.name;
                             std::replace(name.begin(), name.end(), ' ', '_');
                             return name;
                         });

} // namespace
} // namespace tavero
