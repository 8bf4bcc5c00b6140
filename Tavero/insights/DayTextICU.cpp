#include "insights/DayText.h"

#include <unicode/datefmt.h>
#include <unicode/locid.h>
#include <unicode/unistr.h>

#include <chrono>
#include <memory>

namespace tavero {

namespace {

// A skeleton names the parts; the locale decides their order and what stands between them.
std::string dayText(Date day, const char* skeleton) {
    UErrorCode status = U_ZERO_ERROR;
    const std::unique_ptr<icu::DateFormat> format(
        icu::DateFormat::createInstanceForSkeleton(skeleton, icu::Locale::getDefault(), status));
    if (U_FAILURE(status) || !format) return {};
    const auto milliseconds =
        std::chrono::duration<double, std::milli>(day.time_since_epoch()).count();
    icu::UnicodeString text;
    format->format(static_cast<UDate>(milliseconds), text);
    std::string utf8;
    return text.toUTF8String(utf8);
}

} // namespace

std::string fullDay(Date day) { return dayText(day, "EEEEMMMd"); }
std::string shortDay(Date day) { return dayText(day, "EEEMMMd"); }

} // namespace tavero
