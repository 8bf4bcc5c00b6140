#pragma once

#include "components/Palette.h"
#include "desktop/Appearance.h"
#include "settings/Settings.h"

#include <QColor>
#include <QJSEngine>
#include <QObject>
#include <QQmlEngine>
#include <QString>

namespace tavero {

// How the surfaces look: colours of the appearance in force, the font, distances, speeds. The
// setting "theme" chooses light or dark; anything else follows the desktop.
//
// In QML it is a singleton, the one that was installed in the engine.
class Theme : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_SINGLETON
    Q_PROPERTY(bool isDark READ isDark NOTIFY changed FINAL)
    Q_PROPERTY(QColor window READ window NOTIFY changed FINAL)
    Q_PROPERTY(QColor card READ card NOTIFY changed FINAL)
    Q_PROPERTY(QColor cardBorder READ cardBorder NOTIFY changed FINAL)
    Q_PROPERTY(QColor text READ text NOTIFY changed FINAL)
    Q_PROPERTY(QColor secondaryText READ secondaryText NOTIFY changed FINAL)
    Q_PROPERTY(QColor tertiaryText READ tertiaryText NOTIFY changed FINAL)
    Q_PROPERTY(QColor track READ track NOTIFY changed FINAL)
    Q_PROPERTY(QColor focus READ focus NOTIFY changed FINAL)

    Q_PROPERTY(QString fontFamily READ fontFamily CONSTANT FINAL)

    // Distances and sizes in device-independent pixels.
    Q_PROPERTY(int gap MEMBER gap_ CONSTANT FINAL)         // between what belongs together
    Q_PROPERTY(int spacing MEMBER spacing_ CONSTANT FINAL) // between cards
    Q_PROPERTY(int padding MEMBER padding_ CONSTANT FINAL) // inside a card
    Q_PROPERTY(int margin MEMBER margin_ CONSTANT FINAL)   // around a page
    Q_PROPERTY(int radius MEMBER radius_ CONSTANT FINAL)   // of a card's corners

    // How long a small change takes, in milliseconds; 0 for a user who wants no motion.
    Q_PROPERTY(int microDuration READ microDuration NOTIFY motionChanged FINAL)

  public:
    // Both must outlive the theme.
    Theme(Settings& settings, Appearance& appearance);

    // Makes this the theme of everything that the engine loads. The theme must outlive the engine.
    void install(QQmlEngine& engine);
    static Theme* create(QQmlEngine* engine, QJSEngine*); // called by the engine

    bool isDark() const { return isDark_; }
    const Palette& palette() const { return palette_; }

    QColor window() const { return palette_.window; }
    QColor card() const { return palette_.card; }
    QColor cardBorder() const { return palette_.cardBorder; }
    QColor text() const { return palette_.text; }
    QColor secondaryText() const { return palette_.secondaryText; }
    QColor tertiaryText() const { return palette_.tertiaryText; }
    QColor track() const { return palette_.track; }
    QColor focus() const { return palette_.focus; }
    QString fontFamily() const;
    int microDuration() const;

  signals:
    void changed();
    void motionChanged();

  private:
    bool wantsDark() const;
    void followAppearance();
    void followMotion();

    Settings& settings_;
    Appearance& appearance_;
    bool isDark_;
    bool reducesMotion_;
    Palette palette_;

    int gap_ = 8;
    int spacing_ = 16;
    int padding_ = 20;
    int margin_ = 28;
    int radius_ = 12;
};

} // namespace tavero
