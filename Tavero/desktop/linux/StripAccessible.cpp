#include "desktop/linux/StripAccessible.h"

#include "desktop/linux/StatusStrip.h"

#include <QAccessible>
#include <QAccessibleActionInterface>
#include <QAccessibleObject>
#include <QPointer>

#include <vector>

namespace tavero {

namespace {

class CellInterface final : public QAccessibleInterface, public QAccessibleActionInterface {
  public:
    CellInterface(StatusStrip& strip, std::size_t index) : strip_(&strip), index_(index) {}

    bool isValid() const override { return strip_ && index_ < strip_->cells().size(); }
    QObject* object() const override { return nullptr; }
    QWindow* window() const override { return strip_; }
    QAccessibleInterface* parent() const override {
        return QAccessible::queryAccessibleInterface(strip_);
    }
    QAccessibleInterface* child(int) const override { return nullptr; }
    QAccessibleInterface* childAt(int, int) const override { return nullptr; }
    int childCount() const override { return 0; }
    int indexOfChild(const QAccessibleInterface*) const override { return -1; }
    QAccessible::Role role() const override { return QAccessible::Button; }
    QAccessible::State state() const override { return {}; }
    void setText(QAccessible::Text, const QString&) override {}

    QString text(QAccessible::Text what) const override {
        if (what != QAccessible::Name || !isValid()) return {};
        const StatusStrip::Cell& cell = strip_->cells()[index_];
        return cell.picture.text.empty() ? cell.title : QString::fromStdString(cell.picture.text);
    }
    QRect rect() const override {
        if (!isValid()) return {};
        const QRect cell = strip_->cellRect(index_);
        return {strip_->mapToGlobal(cell.topLeft()), cell.size()};
    }

    void* interface_cast(QAccessible::InterfaceType type) override {
        return type == QAccessible::ActionInterface ? static_cast<QAccessibleActionInterface*>(this)
                                                    : nullptr;
    }
    QStringList actionNames() const override { return {pressAction()}; }
    QStringList keyBindingsForAction(const QString&) const override { return {}; }
    void doAction(const QString& name) override {
        if (name == pressAction() && isValid()) strip_->press(index_);
    }

  private:
    QPointer<StatusStrip> strip_;
    std::size_t index_;
};

class StripInterface final : public QAccessibleObject {
  public:
    explicit StripInterface(StatusStrip& strip) : QAccessibleObject(&strip) {}
    ~StripInterface() override {
        for (const QAccessible::Id id : cells_) QAccessible::deleteAccessibleInterface(id);
    }

    QWindow* window() const override { return strip(); }
    QAccessibleInterface* parent() const override {
        return QAccessible::queryAccessibleInterface(qApp);
    }
    int childCount() const override {
        return strip() ? static_cast<int>(strip()->cells().size()) : 0;
    }
    int indexOfChild(const QAccessibleInterface* child) const override {
        for (int at = 0; at < childCount(); ++at)
            if (this->child(at) == child) return at;
        return -1;
    }
    QAccessible::Role role() const override { return QAccessible::ToolBar; }
    QAccessible::State state() const override { return {}; }
    QString text(QAccessible::Text what) const override {
        return what == QAccessible::Name && strip() ? strip()->title() : QString();
    }
    QRect rect() const override { return strip() ? strip()->geometry() : QRect(); }

    // Made when it is asked for, and kept: screen readers hold on to them.
    QAccessibleInterface* child(int index) const override {
        if (index < 0 || index >= childCount()) return nullptr;
        while (std::ssize(cells_) <= index)
            cells_.push_back(QAccessible::registerAccessibleInterface(
                new CellInterface(*strip(), cells_.size())));
        return QAccessible::accessibleInterface(cells_[static_cast<std::size_t>(index)]);
    }
    QAccessibleInterface* childAt(int x, int y) const override {
        for (int at = 0; at < childCount(); ++at)
            if (child(at)->rect().contains(x, y)) return child(at);
        return nullptr;
    }

  private:
    StatusStrip* strip() const { return qobject_cast<StatusStrip*>(object()); }

    mutable std::vector<QAccessible::Id> cells_;
};

QAccessibleInterface* makeInterface(const QString&, QObject* object) {
    auto* strip = qobject_cast<StatusStrip*>(object);
    return strip ? new StripInterface(*strip) : nullptr;
}

} // namespace

void makeStripsAccessible() { QAccessible::installFactory(makeInterface); }

} // namespace tavero
