#pragma once

#include <QObject> // first, for moc 6.4 loses its way in <concepts> otherwise

#include "components/Theme.h"
#include "monitor/Monitor.h"
#include "monitor/Tops.h"
#include "settings/Settings.h"
#include "window/UsingTheMostList.h"

#include <QColor>
#include <QImage>
#include <QProperty>
#include <QString>
#include <QtQml/qqmlregistration.h>

#include <functional>
#include <optional>
#include <string>
#include <vector>

namespace tavero {

// The four apps that use the most of the machine, live, and how to quit one: ask, then quit or
// cancel. One question is open at a time.
//
// While the pointer is over the rows, and while a question is open, every row keeps its place and
// only its figures change, so that no click lands on another app. An app that ends meanwhile leaves
// its row behind, without figures. The order catches up when both are over.
class UsingTheMost : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("The main window owns it.")
    Q_PROPERTY(QString title READ title CONSTANT FINAL)
    Q_PROPERTY(QString question READ question CONSTANT FINAL)
    Q_PROPERTY(bool hasApps READ hasApps NOTIFY hasAppsChanged FINAL)
    Q_PROPERTY(tavero::UsingTheMostList* apps READ apps CONSTANT FINAL)
    Q_PROPERTY(bool isHovered READ isHovered WRITE setHovered NOTIFY isHoveredChanged FINAL)
    Q_PROPERTY(bool isConfirming READ isConfirming NOTIFY isConfirmingChanged FINAL)
    Q_PROPERTY(QColor cpuColor READ cpuColor NOTIFY colorsChanged FINAL)
    Q_PROPERTY(QColor memoryColor READ memoryColor NOTIFY colorsChanged FINAL)
    Q_PROPERTY(QColor flagColor READ flagColor NOTIFY colorsChanged FINAL)
    Q_PROPERTY(QColor flagBackground READ flagBackground NOTIFY colorsChanged FINAL)

  public:
    // The icon of an app by its bundle path, null if it has none.
    using Icons = std::function<QImage(const std::string& bundlePath)>;

    // `icons` is asked on every update; it may be empty. `ownBundlePath` is where Tavero runs from,
    // empty if that is no app. The others must outlive the model.
    UsingTheMost(Monitor& monitor, const Settings& settings, const Theme& theme, Icons icons = {},
                 std::string ownBundlePath = {});

    QString title() const { return QStringLiteral("Using the most"); }
    QString question() const {
        return QStringLiteral("If it has unsaved work, it will ask you to save first.");
    }
    bool hasApps() const { return hasApps_; }
    UsingTheMostList* apps() { return &apps_; }
    bool isHovered() const { return isHovered_; }
    void setHovered(bool isHovered);
    bool isConfirming() const { return isConfirming_; }
    QColor cpuColor() const;
    QColor memoryColor() const;
    QColor flagColor() const;
    QColor flagBackground() const;

    // Opens the question for the app in this row, unless it can't be quit from here.
    Q_INVOKABLE void ask(int row);
    // Asks that app to quit, and closes the question.
    Q_INVOKABLE void quit();
    Q_INVOKABLE void cancel();

  signals:
    void hasAppsChanged();
    void isHoveredChanged();
    void isConfirmingChanged();
    void colorsChanged();

  private:
    void update();
    UsingTheMostRow row(const AppUsage& app, const Tops& tops) const;
    std::vector<UsingTheMostRow> inOrder(const std::vector<AppUsage>& apps) const;
    std::vector<UsingTheMostRow> inPlace(const std::vector<AppUsage>& apps) const;
    void setAsked(std::optional<AppIdentity> app);

    Monitor& monitor_;
    const Settings& settings_;
    const Theme& theme_;
    Icons icons_;
    std::string ownBundlePath_;

    UsingTheMostList apps_{*this};
    std::optional<AppIdentity> asked_; // whose question is open
    Q_OBJECT_BINDABLE_PROPERTY_WITH_ARGS(UsingTheMost, bool, hasApps_, false,
                                         &UsingTheMost::hasAppsChanged)
    Q_OBJECT_BINDABLE_PROPERTY_WITH_ARGS(UsingTheMost, bool, isHovered_, false,
                                         &UsingTheMost::isHoveredChanged)
    Q_OBJECT_BINDABLE_PROPERTY_WITH_ARGS(UsingTheMost, bool, isConfirming_, false,
                                         &UsingTheMost::isConfirmingChanged)
};

} // namespace tavero
