#pragma once

#include "desktop/StatusItems.h"
#include "desktop/linux/StripTip.h"
#include "time/Clock.h"

#include <QPoint>
#include <QRasterWindow>
#include <QRect>

#include <functional>
#include <optional>
#include <vector>

namespace tavero {

// A slim menu bar of Tavero's own at the top right of the first screen. It takes clicks but never
// the keyboard. Keeps its space free of other windows where the window manager lets it.
class StatusStrip final : public QRasterWindow {
    Q_OBJECT

  public:
    struct Cell {
        StatusPicture picture;
        QString title; // shown while there is no picture
        std::function<void(QPoint)> open;
    };

    static constexpr int thickness = 24; // device-independent pixels

    explicit StatusStrip(Clock& clock); // must outlive the strip
    ~StatusStrip() override;

    // The first cell stands at the right.
    void setCells(std::vector<Cell> cells);
    void setDark(bool isDark);

    const std::vector<Cell>& cells() const { return cells_; }
    bool isDark() const { return isDark_; }
    // Where the cell is in the window. Nowhere for one that there isn't.
    QRect cellRect(std::size_t index) const;

    // As a click on it does.
    void press(std::size_t index);

  protected:
    void paintEvent(QPaintEvent*) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    bool event(QEvent* event) override;

  private:
    void place();
    void watch(QScreen* screen);
    int widthOf(const Cell& cell) const;
    int wantedWidth() const;
    std::optional<std::size_t> cellAt(QPoint point) const;
    void hover(std::optional<std::size_t> index);
    void showTip();
    void drawCell(QPainter& painter, std::size_t index) const;

    Clock& clock_;
    std::vector<Cell> cells_;
    bool isDark_ = false;
    std::optional<std::size_t> hovered_;
    std::optional<std::size_t> pressed_;
    StripTip tip_;
    Timer tipTimer_;
};

} // namespace tavero
