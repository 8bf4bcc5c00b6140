#include "menubar/MenuBar.h"

#include "menubar/ExtraMenuBarItem.h"
#include "menubar/ItemLabels.h"
#include "menubar/MenuBarRenderer.h"
#include "menubar/MetricContent.h"

#include <algorithm>
#include <array>
#include <string_view>
#include <utility>

namespace tavero {

namespace {

constexpr double scale = 2; // pixels a point, of every picture

// The metrics in the order in which their items enter the bar. Where that grows to the left, they
// end up as the user reads them.
constexpr std::array itemMetrics{Metric::power,   Metric::disk,   Metric::gpu, Metric::temperature,
                                 Metric::network, Metric::memory, Metric::cpu};

Section sectionOf(ItemKind kind, Metric metric) {
    switch (kind) {
    case ItemKind::main:
        return Section::overview;
    case ItemKind::sound:
        return Section::sound;
    case ItemKind::bluetooth:
        return Section::bluetooth;
    case ItemKind::metric:
        break;
    }
    // Temperature has no page of its own: the CPU's tells it.
    return sectionNamed(rawValue(metric)).value_or(Section::cpu);
}

StatusPicture picture(const ItemContent& content) {
    return {.wide = MenuBarRenderer::image(content, scale),
            .square = MenuBarRenderer::squareImage(content, scale),
            .isTemplate = !std::holds_alternative<Strain>(content),
            .text = spokenText(content)};
}

} // namespace

struct MenuBar::Item {
    ItemKind kind = ItemKind::main;
    Metric metric = Metric::cpu;      // of a metric's item
    std::optional<Key<bool>> shown{}; // the setting; absent for what always shows
    std::string id{};
    std::string title{};
    std::unique_ptr<StatusItem> inBar{}; // null while it is not in the bar
    std::optional<ItemContent> drawn{};  // what its picture shows
};

MenuBar::MenuBar(Monitor& monitor, Settings& settings, StatusItems& bar, MenuBarActions actions)
    : monitor_(monitor), settings_(settings), bar_(bar), actions_(std::move(actions)) {
    items_.reserve(3 + itemMetrics.size());
    items_.push_back({.kind = ItemKind::main, .id = "tavero", .title = "Tavero"});
    items_.push_back({.kind = ItemKind::sound,
                      .shown = keys::menuBarSound,
                      .id = "sound",
                      .title = std::string(title(Section::sound))});
    items_.push_back({.kind = ItemKind::bluetooth,
                      .shown = keys::menuBarBluetooth,
                      .id = "bluetooth",
                      .title = std::string(title(Section::bluetooth))});
    for (const Metric metric : itemMetrics)
        items_.push_back({.kind = ItemKind::metric,
                          .metric = metric,
                          .shown = keys::menuBarItem(metric),
                          .id = std::string(rawValue(metric)),
                          .title = std::string(title(metric))});

    connect(&monitor_, &Monitor::menuBarChanged, this, [this] { update(); });
    connect(&monitor_, &Monitor::strainChanged, this, [this] { update(); });
    // Not at the slow pace: whoever turns the volume looks at it.
    connect(&monitor_, &Monitor::snapshotChanged, this, [this] { updateSound(); });
    connect(&settings_, &Settings::changed, this, [this] { update(); });
}

MenuBar::~MenuBar() = default;

void MenuBar::show() {
    isShown_ = true;
    update();
}

void MenuBar::setUpdateReady(bool isReady) {
    updateReady_ = isReady;
    update();
}

void MenuBar::setBluetooth(const std::vector<BluetoothBattery>& devices) {
    lowestBattery_ = ExtraMenuBarItem::lowest(devices);
    update();
}

void MenuBar::update() {
    if (!isShown_) return;
    for (Item& item : items_) update(item);
}

void MenuBar::updateSound() {
    if (!isShown_) return;
    for (Item& item : items_)
        if (item.kind == ItemKind::sound) update(item);
}

void MenuBar::update(Item& item) {
    if (!isWanted(item)) {
        item.inBar.reset();
        item.drawn.reset();
        return;
    }
    if (!item.inBar) item.inBar = bar_.add(item.id, item.title, events(item));
    push(item);
}

bool MenuBar::isWanted(const Item& item) const {
    if (item.shown && !settings_.get(*item.shown)) return false;
    const bool foldsAway = item.kind == ItemKind::metric || item.kind == ItemKind::bluetooth;
    return !foldsAway || settings_.get(keys::menuBarStyle) != "compact";
}

void MenuBar::push(Item& item) {
    ItemContent next = content(item);
    if (item.drawn == next) return;
    item.drawn = std::move(next);
    item.inBar->setPicture(picture(*item.drawn));
}

ItemContent MenuBar::content(const Item& item) const {
    switch (item.kind) {
    case ItemKind::main:
        return menuBarLabel(monitor_.strain(), strainShowsOnTaveroItem(settings_), updateReady_);
    case ItemKind::sound: {
        const std::optional<LiveSnapshot>& snapshot = monitor_.snapshot();
        return SoundContent{
            std::string(ExtraMenuBarItem::soundSymbol(snapshot ? snapshot->sound : std::nullopt))};
    }
    case ItemKind::bluetooth:
        return BluetoothContent{lowestBattery_};
    case ItemKind::metric:
        break;
    }
    const MenuBarItemMode mode = menuBarMode(item.metric, settings_);
    const std::vector<GraphPoint> history = mode == MenuBarItemMode::value || hasRing(item.metric)
                                                ? std::vector<GraphPoint>()
                                                : monitor_.menuBarGraphs().history()[item.metric];
    return metricItemLabel(item.metric, mode, monitor_.strain(), monitor_.menuBarSnapshot(),
                           history, menuBarLook(settings_));
}

// The callbacks outlive no item, and the items stand in a vector that never grows.
StatusItemEvents MenuBar::events(Item& item) {
    StatusItemEvents events;
    events.open = [this, &item](QPoint where) {
        if (actions_.open) actions_.open(item.kind, sectionOf(item.kind, item.metric), where);
    };
    events.menu = [this, &item] { return menu(item); };
    // What the user took out of the bar is switched off in the settings, and so goes.
    if (item.shown) events.removed = [this, &item] { settings_.set(*item.shown, false); };
    return events;
}

std::vector<StatusMenuEntry> MenuBar::menu(const Item& item) const {
    std::string title = spokenText(content(item));
    if (item.kind == ItemKind::sound)
        title += " " + sidebarValue(Section::sound, monitor_.snapshot(), std::nullopt, {});
    while (title.ends_with(' ')) title.pop_back();
    return {{.title = std::move(title), .choose = {}},
            {},
            {.title = "Open Tavero", .choose = actions_.openWindow},
            {.title = "Quit Tavero", .choose = actions_.quit}};
}

} // namespace tavero
