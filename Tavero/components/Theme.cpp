#include "components/Theme.h"

#include "components/Fonts.h"
#include "presentation/Motion.h"

#include <QVariant>

#include <cmath>
#include <string>

namespace tavero {

namespace {

constexpr char propertyName[] = "tavero::Theme"; // of the engine that the theme is installed in

} // namespace

Theme::Theme(Settings& settings, Appearance& appearance)
    : settings_(settings), appearance_(appearance), isDark_(wantsDark()),
      reducesMotion_(appearance.look().reducesMotion), palette_(Palette::of(isDark_)) {
    connect(&appearance, &Appearance::changed, this, [this] {
        followAppearance();
        followMotion();
    });
    connect(&settings, &Settings::changed, this, &Theme::followAppearance);
}

void Theme::install(QQmlEngine& engine) {
    engine.setProperty(propertyName, QVariant::fromValue(this));
}

Theme* Theme::create(QQmlEngine* engine, QJSEngine*) {
    auto* theme = engine->property(propertyName).value<Theme*>();
    if (theme) QJSEngine::setObjectOwnership(theme, QJSEngine::CppOwnership);
    return theme;
}

bool Theme::wantsDark() const {
    const std::string choice = settings_.get(keys::theme);
    if (choice == "dark") return true;
    if (choice == "light") return false;
    return appearance_.look().isDark;
}

void Theme::followAppearance() {
    if (isDark_ == wantsDark()) return;
    isDark_ = wantsDark();
    palette_ = Palette::of(isDark_);
    emit changed();
}

void Theme::followMotion() {
    if (reducesMotion_ == appearance_.look().reducesMotion) return;
    reducesMotion_ = appearance_.look().reducesMotion;
    emit motionChanged();
}

QString Theme::fontFamily() const { return uiFontFamily(); }

int Theme::microDuration() const {
    return reducesMotion_ ? 0 : static_cast<int>(std::lround(Motion::micro.duration * 1000));
}

} // namespace tavero
