#pragma once

#include "platform/ProcessSource.h"
#include "records/ProcessSample.h"
#include "records/SystemActivity.h"

#include <optional>
#include <span>
#include <string>
#include <string_view>

namespace tavero {

// The processes of macOS that people may wonder about.
SystemVocabulary macVocabulary();

// The busiest process of the operating system, if by itself it uses at least
// SystemActivity::unusualCPU; the first one of equals. Absent otherwise.
std::optional<SystemActivity> unusualActivity(std::span<const ProcessSample> samples,
                                              SystemVocabulary vocabulary = macVocabulary());

// What a system process does, in plain words; its own name if that is not known.
std::string describeSystemProcess(std::string_view process,
                                  SystemVocabulary vocabulary = macVocabulary());

} // namespace tavero
