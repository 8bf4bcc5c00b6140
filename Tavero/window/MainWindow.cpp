#include "window/MainWindow.h"

#include "components/SoftwarePainting.h"
#include "desktop/MemoryReturn.h"
#include "window/OverviewModel.h"
#include "window/ToastModel.h"
#include "window/UsingTheMost.h"

#include <QCoreApplication>
#include <QGuiApplication>
#include <QQmlComponent>
#include <QQmlEngine>
#include <QQuickWindow>
#include <QVariant>
#include <QtQml/QQmlExtensionPlugin>

#include <cmath>
#include <utility>

Q_IMPORT_QML_PLUGIN(Tavero_ComponentsPlugin)
Q_IMPORT_QML_PLUGIN(Tavero_WindowPlugin)

namespace tavero {

namespace {

Surroundings displaysOnly() { return {.displays = QGuiApplication::screens().size()}; }

constexpr double iconSize = 32; // device-independent pixels

// Sharp on the densest of the screens.
UsingTheMost::Icons iconsOf(AppIcons* icons) {
    if (!icons) return {};
    return [icons](const std::string& bundlePath) {
        return icons->icon(bundlePath,
                           static_cast<int>(std::ceil(iconSize * qGuiApp->devicePixelRatio())));
    };
}

} // namespace

// Everything that ends with the window, in the order in which it may be used.
struct MainWindow::Surface {
    OverviewModel overview;
    UsingTheMost usingTheMost;
    ToastModel toast;
    QQmlEngine engine{};
    std::unique_ptr<QQuickWindow> window;
};

MainWindow::MainWindow(Monitor& monitor, const Settings& settings, Theme& theme, WindowFacts facts)
    : monitor_(monitor), settings_(settings), theme_(theme), facts_(std::move(facts)) {
    if (!facts_.surroundings) facts_.surroundings = displaysOnly;
}

MainWindow::~MainWindow() { close(); }

void MainWindow::open() {
    if (surface_ && surface_->window->isVisible()) return bringToFront();
    close();
    paintInSoftware();

    auto surface = std::unique_ptr<Surface>(new Surface{
        .overview{monitor_, settings_, theme_, facts_.summary, facts_.surroundings},
        .usingTheMost{monitor_, settings_, theme_, iconsOf(facts_.icons), facts_.ownBundlePath},
        .toast = ToastModel(monitor_)});
    QQmlEngine& engine = surface->engine;
    engine.addImportPath(QStringLiteral("qrc:/qt/qml"));
    theme_.install(engine);
    connect(&engine, &QQmlEngine::quit, qApp, &QCoreApplication::quit, Qt::QueuedConnection);

    QQmlComponent component(&engine,
                            QUrl(QStringLiteral("qrc:/qt/qml/Tavero/Window/MainWindow.qml")));
    surface->window.reset(qobject_cast<QQuickWindow*>(component.createWithInitialProperties(
        {{QStringLiteral("overview"), QVariant::fromValue(&surface->overview)},
         {QStringLiteral("usingTheMost"), QVariant::fromValue(&surface->usingTheMost)},
         {QStringLiteral("toast"), QVariant::fromValue(&surface->toast)}})));
    if (!surface->window) {
        qCritical("The main window can't be shown: %s", qPrintable(component.errorString()));
        return;
    }
    surface_ = std::move(surface);
    connect(surface_->window.get(), &QWindow::visibilityChanged, this,
            &MainWindow::followVisibility);
    surface_->window->show();
    surface_->window->requestActivate();
}

void MainWindow::close() {
    if (!surface_) return;
    surface_->window->disconnect(this);
    setOnScreen(false);
    surface_.reset();
    returnFreedMemory();
}

void MainWindow::followVisibility() {
    const QWindow::Visibility visibility = surface_->window->visibility();
    setOnScreen(visibility != QWindow::Hidden && visibility != QWindow::Minimized);
    // Not from within the window's own signal.
    if (visibility == QWindow::Hidden)
        QMetaObject::invokeMethod(this, &MainWindow::closeIfHidden, Qt::QueuedConnection);
}

void MainWindow::closeIfHidden() {
    if (surface_ && !surface_->window->isVisible()) close();
}

void MainWindow::setOnScreen(bool isOnScreen) {
    if (std::exchange(isOnScreen_, isOnScreen) == isOnScreen) return;
    if (isOnScreen)
        monitor_.viewAppeared(ViewKind::window);
    else
        monitor_.viewDisappeared(ViewKind::window);
}

void MainWindow::bringToFront() {
    QQuickWindow& window = *surface_->window;
    window.setWindowStates(window.windowStates() & ~Qt::WindowMinimized);
    window.raise();
    window.requestActivate();
}

} // namespace tavero
