#include "dropdown/Dropdown.h"

#include "components/SoftwarePainting.h"
#include "desktop/MemoryReturn.h"
#include "dropdown/DropdownModel.h"
#include "dropdown/PanelPlace.h"

#include <QGuiApplication>
#include <QMargins>
#include <QQmlComponent>
#include <QQmlEngine>
#include <QQuickWindow>
#include <QScreen>
#include <QVariant>
#include <QtQml/QQmlExtensionPlugin>

#include <utility>

Q_IMPORT_QML_PLUGIN(Tavero_ComponentsPlugin)
Q_IMPORT_QML_PLUGIN(Tavero_WindowPlugin)
Q_IMPORT_QML_PLUGIN(Tavero_DropdownPlugin)

namespace tavero {

namespace {

QScreen* screenAt(QPoint click) {
    QScreen* screen = click.isNull() ? nullptr : QGuiApplication::screenAt(click);
    return screen ? screen : QGuiApplication::primaryScreen();
}

} // namespace

// Everything that ends with the panel, in the order in which it may be used.
struct Dropdown::Surface {
    DropdownModel model;
    Section section; // that it was opened on
    bool hadFocus = false;
    QQmlEngine engine{};
    std::unique_ptr<QQuickWindow> window;
};

Dropdown::Dropdown(Monitor& monitor, const Settings& settings, Theme& theme, DropdownEvents events)
    : monitor_(monitor), settings_(settings), theme_(theme), events_(std::move(events)) {}

Dropdown::~Dropdown() { close(); }

void Dropdown::open(Section section, QPoint click) {
    const bool isSame = surface_ && surface_->window->isVisible() && surface_->section == section;
    close();
    if (isSame) return;
    paintInSoftware();

    auto surface = std::unique_ptr<Surface>(new Surface{
        .model{section, monitor_, settings_, theme_, events_.surroundings}, .section = section});
    QQmlEngine& engine = surface->engine;
    engine.addImportPath(QStringLiteral("qrc:/qt/qml"));
    theme_.install(engine);
    QQmlComponent component(&engine,
                            QUrl(QStringLiteral("qrc:/qt/qml/Tavero/Dropdown/DropdownPanel.qml")));
    surface->window.reset(qobject_cast<QQuickWindow*>(component.createWithInitialProperties(
        {{QStringLiteral("model"), QVariant::fromValue(&surface->model)}})));
    if (!surface->window) {
        qCritical("The panel can't be shown: %s", qPrintable(component.errorString()));
        return;
    }
    surface_ = std::move(surface);

    QQuickWindow* window = surface_->window.get();
    window->setScreen(screenAt(click));
    const auto placeIt = [this, click] { place(click); };
    connect(window, &QWindow::heightChanged, this, placeIt);
    connect(window, &QWindow::activeChanged, this, &Dropdown::followFocus);
    connect(window, &QWindow::visibleChanged, this, &Dropdown::closeSoon);
    // Not from within the button's own signal, for it ends with the panel.
    connect(
        &surface_->model, &DropdownModel::openMain, this,
        [this, section] {
            close();
            if (events_.openMain) events_.openMain(section);
        },
        Qt::QueuedConnection);
    connect(
        &surface_->model, &DropdownModel::quit, this,
        [this] {
            close();
            if (events_.quit) events_.quit();
        },
        Qt::QueuedConnection);

    place(click);
    monitor_.viewAppeared(ViewKind::compact);
    window->show();
    window->requestActivate();
}

void Dropdown::close() {
    if (!surface_) return;
    surface_->window->disconnect(this);
    surface_.reset();
    monitor_.viewDisappeared(ViewKind::compact);
    returnFreedMemory();
}

void Dropdown::place(QPoint click) {
    QQuickWindow& window = *surface_->window;
    const int shadow = window.property("shadow").toInt(); // around what looks like the panel
    const QSize panel = window.size().shrunkBy({shadow, shadow, shadow, shadow});
    const QPoint corner = panelPlace(panel, click, screenAt(click)->availableGeometry());
    window.setPosition(corner - QPoint(shadow, shadow));
}

// A desktop that gives the panel no focus at all must not close it at once.
void Dropdown::followFocus() {
    const bool isActive = surface_->window->isActive();
    const bool hadFocus = std::exchange(surface_->hadFocus, isActive);
    if (hadFocus && !isActive) {
        surface_->window->hide();
        closeSoon();
    }
}

// Not from within the window's own signal.
void Dropdown::closeSoon() {
    QMetaObject::invokeMethod(
        this,
        [this] {
            if (surface_ && !surface_->window->isVisible()) close();
        },
        Qt::QueuedConnection);
}

} // namespace tavero
