#include "desktop/linux/LinuxAppIcons.h"

#include "platform/linux/processes/DesktopEntry.h"

#include <QFile>
#include <QFileInfo>
#include <QIcon>
#include <QImageReader>
#include <QPainter>
#include <QPixmap>
#include <QStandardPaths>

namespace tavero {

namespace {

constexpr qint64 mostBytes = 1 << 20; // of a .desktop file, translations and all
constexpr int mostPixels = 1024;      // no surface shows a larger one

// Absent, as an empty text, for what is no regular file: a pipe would never end.
QString iconName(const QString& path) {
    if (!path.endsWith(QLatin1String(".desktop")) || !QFileInfo(path).isFile()) return {};
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly)) return {};
    const QByteArray text = file.read(mostBytes);
    const std::optional<DesktopEntry> entry =
        parseDesktopEntry({text.constData(), static_cast<std::size_t>(text.size())});
    return entry ? QString::fromStdString(entry->icon) : QString();
}

// Fitted into the square, its proportions kept.
QImage squared(const QImage& image, int pixels) {
    if (image.isNull() || image.size() == QSize(pixels, pixels)) return image;
    const QImage fitted =
        image.scaled(pixels, pixels, Qt::KeepAspectRatio, Qt::SmoothTransformation);
    QImage square(pixels, pixels, QImage::Format_ARGB32_Premultiplied);
    square.fill(Qt::transparent);
    QPainter painter(&square);
    painter.drawImage((pixels - fitted.width()) / 2, (pixels - fitted.height()) / 2, fitted);
    return square;
}

QImage fromFile(const QString& path) {
    if (!QFileInfo(path).isFile()) return {};
    QImageReader reader(path);
    reader.setDecideFormatFromContent(true); // the suffix is often wrong or missing
    return reader.read();
}

// Where icons lay before there were themes, and where small packages still put them.
QImage fromPixmaps(const QString& name) {
    for (const char* suffix : {".png", ".xpm"}) {
        const QString path = QStandardPaths::locate(QStandardPaths::GenericDataLocation,
                                                    "pixmaps/" + name + QLatin1String(suffix));
        if (QImage image = fromFile(path); !image.isNull()) return image;
    }
    return {};
}

QImage fromTheme(QString name, int pixels) {
    if (name.isEmpty() || name.contains('/')) return {};
    if (name.endsWith(QLatin1String(".png"))) name.chop(4); // a name has no suffix, yet some do
    const QPixmap pixmap = QIcon::fromTheme(name).pixmap(QSize(pixels, pixels), 1.0);
    return pixmap.isNull() ? fromPixmaps(name) : pixmap.toImage();
}

QImage read(const QString& bundlePath, int pixels) {
    const QString name = iconName(bundlePath);
    return squared(name.startsWith('/') ? fromFile(name) : fromTheme(name, pixels), pixels);
}

} // namespace

QImage LinuxAppIcons::icon(const std::string& bundlePath, int pixels) {
    if (pixels <= 0 || pixels > mostPixels) return {};
    const auto [entry, isNew] = known_.try_emplace({bundlePath, pixels});
    if (isNew) entry->second = read(QString::fromStdString(bundlePath), pixels);
    return entry->second;
}

std::unique_ptr<AppIcons> hostAppIcons() { return std::make_unique<LinuxAppIcons>(); }

} // namespace tavero
