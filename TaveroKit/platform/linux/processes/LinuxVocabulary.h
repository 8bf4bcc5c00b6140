#pragma once

#include "platform/ProcessSource.h"

namespace tavero {

// The daemons of common distributions and desktops that people may wonder about.
SystemVocabulary linuxVocabulary();

} // namespace tavero
