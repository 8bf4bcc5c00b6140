#include "components/Fonts.h"

#include <QFontDatabase>
#include <QStringList>

namespace tavero {

namespace {

QString loadFamily() {
    QString family = QFontDatabase::systemFont(QFontDatabase::GeneralFont).family();
    for (const char* weight : {"Regular", "Medium", "SemiBold", "Bold"}) {
        const QString file = QStringLiteral(":/fonts/TaveroUI-%1.otf").arg(QLatin1String(weight));
        const QStringList families =
            QFontDatabase::applicationFontFamilies(QFontDatabase::addApplicationFont(file));
        if (!families.isEmpty()) family = families.first();
    }
    return family;
}

} // namespace

QString uiFontFamily() {
    static const QString family = loadFamily();
    return family;
}

} // namespace tavero
