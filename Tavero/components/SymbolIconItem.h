#pragma once

#include <QColor>
#include <QQuickPaintedItem>
#include <QString>

namespace tavero {

// The picture of a symbol in a window, as large as fits. A name without a picture shows nothing.
class SymbolIconItem : public QQuickPaintedItem {
    Q_OBJECT
    QML_NAMED_ELEMENT(SymbolIcon)
    Q_PROPERTY(QString symbol READ symbol WRITE setSymbol NOTIFY symbolChanged FINAL)
    Q_PROPERTY(QColor color READ color WRITE setColor NOTIFY colorChanged FINAL)

  public:
    explicit SymbolIconItem(QQuickItem* parent = nullptr);

    QString symbol() const { return symbol_; }
    void setSymbol(const QString& symbol);
    QColor color() const { return color_; }
    void setColor(const QColor& color);

    void paint(QPainter* painter) override;

  signals:
    void symbolChanged();
    void colorChanged();

  private:
    QString symbol_;
    QColor color_;
};

} // namespace tavero
