#include "desktop/Appearance.h"

namespace tavero {

void Appearance::set(const Look& look) {
    if (look_ == look) return;
    look_ = look;
    emit changed();
}

} // namespace tavero
