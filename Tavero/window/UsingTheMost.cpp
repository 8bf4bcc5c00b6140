#include "window/UsingTheMost.h"

#include "components/Palette.h"
#include "presentation/Metric.h"
#include "presentation/MetricStatus.h"
#include "presentation/NumberText.h"
#include "settings/SettingsFormat.h"

#include <QStringList>

#include <algorithm>
#include <utility>

namespace tavero {

namespace {

constexpr std::size_t mostRows = 4;

QString text(const std::optional<std::string>& utf8) {
    return utf8 ? QString::fromStdString(*utf8) : QString();
}

AppIconItem::Kind kindOf(const AppIdentity& app) {
    switch (app.kind) {
    case AppIdentity::Kind::app:
        return AppIconItem::App;
    case AppIdentity::Kind::tool:
        return AppIconItem::Tool;
    case AppIdentity::Kind::system:
        break;
    }
    return AppIconItem::System;
}

void addSpoken(UsingTheMostRow& row) {
    QStringList parts{row.name, row.flag, "CPU " + row.cpu, row.memory, row.note};
    parts.removeAll(QString());
    row.spoken = parts.join(QStringLiteral(", "));
}

// A row whose app has ended.
UsingTheMostRow withoutFigures(UsingTheMostRow row) {
    const QString none = QString::fromUtf8(placeholder);
    row.bundlePath.clear();
    row.flag.clear();
    row.note.clear();
    row.cpu = none + '%';
    row.memory = "Memory " + none;
    row.cpuLevel = row.memoryLevel = 0;
    row.isConfirming = false;
    addSpoken(row);
    return row;
}

bool contains(const auto& apps, const AppIdentity& app) {
    return std::any_of(apps.begin(), apps.end(),
                       [&app](const AppUsage& other) { return other.identity == app; });
}

} // namespace

UsingTheMost::UsingTheMost(Monitor& monitor, const Settings& settings, const Theme& theme,
                           Icons icons, std::string ownBundlePath)
    : monitor_(monitor), settings_(settings), theme_(theme), icons_(std::move(icons)),
      ownBundlePath_(std::move(ownBundlePath)) {
    connect(&monitor, &Monitor::snapshotChanged, this, &UsingTheMost::update);
    connect(&theme, &Theme::changed, this, &UsingTheMost::colorsChanged);
    update();
}

void UsingTheMost::setHovered(bool isHovered) {
    isHovered_ = isHovered;
    update();
}

QColor UsingTheMost::cpuColor() const { return pick(color(Metric::cpu), theme_.isDark()); }

QColor UsingTheMost::memoryColor() const { return pick(color(Metric::memory), theme_.isDark()); }

QColor UsingTheMost::flagColor() const {
    return pick(colors(Tone::warning).text.value(), theme_.isDark());
}

QColor UsingTheMost::flagBackground() const {
    return pick(colors(Tone::warning).background, theme_.isDark());
}

void UsingTheMost::ask(int row) {
    if (row < 0 || row >= apps_.rowCount()) return;
    const UsingTheMostRow& app = apps_.rows()[static_cast<std::size_t>(row)];
    if (!app.bundlePath.empty()) setAsked(app.app);
}

void UsingTheMost::quit() {
    for (const UsingTheMostRow& row : apps_.rows())
        if (row.isConfirming) {
            monitor_.quit(std::string(row.bundlePath)); // the row may change meanwhile
            break;
        }
    cancel();
}

void UsingTheMost::cancel() { setAsked(std::nullopt); }

void UsingTheMost::setAsked(std::optional<AppIdentity> app) {
    asked_ = std::move(app);
    update();
}

void UsingTheMost::update() {
    if (!monitor_.snapshot()) return;
    const std::vector<AppUsage> apps = usingTheMost(*monitor_.snapshot());
    if (asked_ && !contains(apps, *asked_)) asked_.reset();
    const bool isHeld = isHovered_ || asked_;
    apps_.set(isHeld ? inPlace(apps) : inOrder(apps));
    isConfirming_ = asked_.has_value();
    hasApps_ = apps_.rowCount() > 0;
}

std::vector<UsingTheMostRow> UsingTheMost::inOrder(const std::vector<AppUsage>& apps) const {
    const Tops scale = tops(apps);
    std::vector<UsingTheMostRow> rows;
    for (const AppUsage& app : apps) {
        if (rows.size() == mostRows) break;
        rows.push_back(row(app, scale));
    }
    return rows;
}

// Those that are shown stay where they are; there may be room for more below them.
std::vector<UsingTheMostRow> UsingTheMost::inPlace(const std::vector<AppUsage>& apps) const {
    const Tops scale = tops(apps);
    std::vector<UsingTheMostRow> rows;
    std::vector<AppUsage> others = apps;
    for (const UsingTheMostRow& shown : apps_.rows()) {
        const auto found = std::find_if(others.begin(), others.end(), [&](const AppUsage& app) {
            return app.identity == shown.app;
        });
        if (found == others.end()) {
            rows.push_back(withoutFigures(shown));
            continue;
        }
        rows.push_back(row(*found, scale));
        others.erase(found);
    }
    for (const AppUsage& app : others) {
        if (rows.size() >= mostRows) break;
        rows.push_back(row(app, scale));
    }
    return rows;
}

UsingTheMostRow UsingTheMost::row(const AppUsage& app, const Tops& tops) const {
    const std::optional<double> cpu = known(app.cpu);
    UsingTheMostRow row{.app = app.identity,
                        .kind = kindOf(app.identity),
                        .name = QString::fromStdString(app.name),
                        .flag = text(app.flag),
                        .note = text(app.note),
                        .cpu = text(percent(cpu) + '%'),
                        .cpuLevel = std::clamp(cpu.value_or(0) / tops.cpu, 0.0, 1.0),
                        .memory = "Memory " + text(format(settings_).bytes(app.memory)),
                        .memoryLevel = static_cast<double>(app.memory) / tops.memory,
                        .isConfirming = asked_ == app.identity};
    if (app.bundlePath && !isTavero(app, ownBundlePath_)) row.bundlePath = *app.bundlePath;
    if (app.bundlePath && icons_) row.icon = icons_(*app.bundlePath);
    addSpoken(row);
    return row;
}

} // namespace tavero
