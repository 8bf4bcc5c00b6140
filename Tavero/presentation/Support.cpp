#include "presentation/Support.h"

namespace tavero::Support {

std::string_view koFi() { return TAVERO_SUPPORT_PAGE; }

} // namespace tavero::Support
