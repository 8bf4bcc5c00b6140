#pragma once

#include "components/AppTile.h"

#include <QImage>
#include <QQuickPaintedItem>
#include <QVariant>

namespace tavero {

// The icon of an app, or the tile that stands in for one.
class AppIconItem : public QQuickPaintedItem {
    Q_OBJECT
    QML_NAMED_ELEMENT(AppIcon)
    // A QImage, for which QML has no name; a null one shows the tile.
    Q_PROPERTY(QVariant image READ image WRITE setImage NOTIFY imageChanged FINAL)
    Q_PROPERTY(QString name READ name WRITE setName NOTIFY nameChanged FINAL)
    Q_PROPERTY(Kind kind READ kind WRITE setKind NOTIFY kindChanged FINAL)

  public:
    enum Kind { App, Tool, System }; // in QML, whose enumerators begin with a capital letter
    Q_ENUM(Kind)
    static constexpr Kind of(TileKind kind) { return static_cast<Kind>(kind); }

    explicit AppIconItem(QQuickItem* parent = nullptr);

    QVariant image() const { return image_; }
    void setImage(const QVariant& image);
    QString name() const { return name_; }
    void setName(const QString& name);
    Kind kind() const { return kind_; }
    void setKind(Kind kind);

    void paint(QPainter* painter) override;

  signals:
    void imageChanged();
    void nameChanged();
    void kindChanged();

  private:
    QImage image_;
    QString name_;
    Kind kind_ = App;
};

} // namespace tavero
