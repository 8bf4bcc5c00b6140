#pragma once

namespace tavero {

// To be called before the QGuiApplication is made: chooses, where there is a choice, the way to the
// display on which an application may say where its windows stand. Defined by the one platform that
// is linked in.
void chooseDisplayPlatform();

} // namespace tavero
