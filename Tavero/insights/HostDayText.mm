#include "insights/DayText.h"

#import <Foundation/Foundation.h>

#include <chrono>

namespace tavero {

namespace {

std::string dayText(Date day, NSString* skeleton) {
    NSDateFormatter* formatter = [[NSDateFormatter alloc] init];
    [formatter setLocalizedDateFormatFromTemplate:skeleton];
    const double seconds = std::chrono::duration<double>(day.time_since_epoch()).count();
    NSString* text = [formatter stringFromDate:[NSDate dateWithTimeIntervalSince1970:seconds]];
    return text.UTF8String ? text.UTF8String : "";
}

} // namespace

std::string fullDay(Date day) { return dayText(day, @"EEEEMMMd"); }
std::string shortDay(Date day) { return dayText(day, @"EEEMMMd"); }

} // namespace tavero
