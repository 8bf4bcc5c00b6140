// The part of IOKit's results that Tavero uses, declared for the check.
#pragma once

#include <mach/kern_return.h>

typedef kern_return_t IOReturn;
