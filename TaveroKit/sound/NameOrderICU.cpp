#include "sound/NameOrder.h"

#include <unicode/coll.h>
#include <unicode/locid.h>
#include <unicode/stringpiece.h>

#include <cstdint>
#include <limits>
#include <memory>

namespace tavero {

namespace {

// The language that the program runs in. Without one ("C", which ICU calls POSIX) names would be
// ordered by the codes of their letters, all capitals first; so it is what most languages share.
icu::Locale language() {
    const icu::Locale& language = icu::Locale::getDefault();
    return language.getVariant() == std::string_view("POSIX") ? icu::Locale::getRoot() : language;
}

// Made once: that takes as long as some eight comparisons. Any number of threads may compare by it.
const icu::Collator* collator() {
    static const std::unique_ptr<icu::Collator> collator = [] {
        UErrorCode status = U_ZERO_ERROR;
        std::unique_ptr<icu::Collator> made(icu::Collator::createInstance(language(), status));
        if (U_FAILURE(status)) made.reset();
        if (made) made->setStrength(icu::Collator::SECONDARY); // accents count, case doesn't
        return made;
    }();
    return collator.get();
}

bool fits(std::string_view text) {
    return text.size() <= static_cast<std::size_t>(std::numeric_limits<std::int32_t>::max());
}

icu::StringPiece piece(std::string_view text) {
    return {text.data(), static_cast<std::int32_t>(text.size())};
}

} // namespace

bool localizedCaseInsensitiveLess(std::string_view a, std::string_view b) {
    if (!collator() || !fits(a) || !fits(b)) return a < b;
    UErrorCode status = U_ZERO_ERROR;
    const UCollationResult order = collator()->compareUTF8(piece(a), piece(b), status);
    return U_FAILURE(status) ? a < b : order == UCOL_LESS;
}

} // namespace tavero
