// Draws every item of the menu bar in all its looks on one sheet, and the pictures that the tests
// compare with:
//   tavero-menubar-sheet SHEET.png [FOLDER]

#include "components/Fonts.h"
#include "menubar/MenuBarRenderer.h"
#include "menubar/test/GoldenPicture.h"
#include "menubar/test/Samples.h"

#include <QDir>
#include <QFont>
#include <QGuiApplication>
#include <QPainter>

#include <array>
#include <cstdio>

namespace tavero {
namespace {

constexpr int scale = 2;
constexpr QColor paper(0xFF, 0xFF, 0xFF);
constexpr QColor labelInk(0x44, 0x44, 0x48);
constexpr double margin = 16;
constexpr double labelWidth = 116;
constexpr double barWidth = 540;
constexpr double barHeight = 24;
constexpr double lineHeight = 28;
constexpr double gap = 14;
constexpr double sheetWidth = 2 * margin + labelWidth + 2 * barWidth + gap;

struct Bar {
    QColor background;
    QColor ink;
};
constexpr std::array bars{Bar{{0xEC, 0xEC, 0xEE}, {0, 0, 0}},
                          Bar{{0x26, 0x27, 0x2B}, {0xFF, 0xFF, 0xFF}}};

enum class Shape { wide, square };

// As a host shows it, which tints a template.
QImage shown(const ItemContent& content, Shape shape, const QColor& ink) {
    QImage image = shape == Shape::wide ? MenuBarRenderer::image(content, scale)
                                        : MenuBarRenderer::squareImage(content, scale);
    if (std::holds_alternative<Strain>(content)) return image;
    QPainter painter(&image);
    painter.setCompositionMode(QPainter::CompositionMode_SourceIn);
    painter.fillRect(QRectF(QPointF(0, 0), image.deviceIndependentSize()), ink);
    return image;
}

class Sheet {
  public:
    explicit Sheet(double height) : image_(QSizeF(sheetWidth, height).toSize() * scale, format) {
        image_.setDevicePixelRatio(scale);
        image_.fill(paper);
        painter_.begin(&image_);
        QFont font(uiFontFamily());
        font.setPixelSize(11);
        painter_.setFont(font);
        painter_.setPen(labelInk);
    }

    void heading(const QString& text) {
        y_ += 8;
        painter_.drawText(QPointF(margin, y_ + 12), text);
        y_ += lineHeight - 4;
    }

    // On a light bar and on a dark one.
    void row(const QString& label, const std::vector<Sample>& samples, Shape shape = Shape::wide) {
        painter_.drawText(QPointF(margin, y_ + barHeight / 2 + 4), label);
        double left = margin + labelWidth;
        for (const Bar& bar : bars) {
            painter_.fillRect(QRectF(left, y_, barWidth, barHeight), bar.background);
            strip(bar, left + gap / 2, samples, shape);
            left += barWidth + gap;
        }
        y_ += lineHeight;
    }

    bool save(const QString& file) {
        painter_.end();
        const int height = static_cast<int>(y_ + margin) * scale;
        constexpr int smallest = 0; // what a PNG calls quality
        return image_.copy(0, 0, image_.width(), height).save(file, "PNG", smallest);
    }

  private:
    static constexpr auto format = QImage::Format_RGB32;

    void strip(const Bar& bar, double x, const std::vector<Sample>& samples, Shape shape) {
        for (const Sample& sample : samples) {
            const QImage image = shown(sample.content, shape, bar.ink);
            const QSizeF size = image.deviceIndependentSize();
            painter_.drawImage(QPointF(x, y_ + (barHeight - size.height()) / 2), image);
            x += size.width() + gap;
        }
    }

    QImage image_;
    QPainter painter_;
    double y_ = margin;
};

QString label(Metric metric) { return QString::fromUtf8(title(metric).data()); }

void addMetrics(Sheet& sheet, const QString& heading, const LiveSnapshot& snapshot,
                const std::vector<GraphPoint>& history, Shape shape = Shape::wide) {
    sheet.heading(heading);
    for (const Metric metric : allMetrics)
        sheet.row(label(metric), metricSamples(metric, snapshot, history), shape);
}

void addOthers(Sheet& sheet, Shape shape = Shape::wide) {
    std::vector<Sample> titles;
    std::vector<Sample> main;
    std::vector<Sample> extra;
    for (const Sample& sample : otherSamples()) {
        const ItemContent& item = sample.content;
        if (std::holds_alternative<TitleContent>(item))
            titles.push_back(sample);
        else if (std::holds_alternative<MarkContent>(item) || std::holds_alternative<Strain>(item))
            main.push_back(sample);
        else
            extra.push_back(sample);
    }
    sheet.row("Main, strain", main, shape);
    sheet.row("Sound, Bluetooth", extra, shape);
    sheet.row("Before a sample", titles, shape);
}

bool saveSheet(const QString& file) {
    Sheet sheet(1800);
    addMetrics(sheet, "A laptop: value, graph and both, with small names and without",
               laptopSnapshot(), wavyHistory());
    addMetrics(sheet, "A busy desktop", busySnapshot(), wavyHistory());
    addMetrics(sheet, "Nothing known", {}, {});
    addOthers(sheet);
    addMetrics(sheet, "For square cells", laptopSnapshot(), wavyHistory(), Shape::square);
    sheet.heading("For square cells: a busy desktop, nothing known, the others");
    for (const Metric metric : allMetrics) {
        std::vector<Sample> samples = metricSamples(metric, busySnapshot(), wavyHistory());
        for (Sample& sample : metricSamples(metric, {}, {})) samples.push_back(std::move(sample));
        sheet.row(label(metric), samples, Shape::square);
    }
    addOthers(sheet, Shape::square);
    return sheet.save(file);
}

bool saveGoldenPictures(const QDir& folder) {
    bool done = true;
    for (const auto& [name, samples] : sampleGroups())
        done =
            goldenPicture(samples).save(folder.filePath(QString::fromStdString(name + ".png"))) &&
            done;
    return done;
}

} // namespace
} // namespace tavero

int main(int argc, char** argv) {
    qputenv("QT_QPA_PLATFORM", "offscreen");
    const QGuiApplication application(argc, argv);
    const QStringList arguments = QCoreApplication::arguments();
    if (arguments.size() < 2) {
        std::fputs("usage: tavero-menubar-sheet SHEET.png [FOLDER]\n", stderr);
        return 2;
    }
    if (!tavero::saveSheet(arguments[1])) return 1;
    return arguments.size() < 3 || tavero::saveGoldenPictures(QDir(arguments[2])) ? 0 : 1;
}
