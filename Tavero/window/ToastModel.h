#pragma once

#include <QObject> // first, for moc 6.4 loses its way in <concepts> otherwise

#include "monitor/Monitor.h"

#include <QProperty>
#include <QString>
#include <QtQml/qqmlregistration.h>

namespace tavero {

// The short text that the monitor shows for a while.
class ToastModel : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("The main window owns it.")
    Q_PROPERTY(QString text READ text NOTIFY textChanged FINAL)

  public:
    // The monitor must outlive the model.
    explicit ToastModel(const Monitor& monitor);

    QString text() const { return text_; } // empty: none

  signals:
    void textChanged();

  private:
    Q_OBJECT_BINDABLE_PROPERTY(ToastModel, QString, text_, &ToastModel::textChanged)
};

} // namespace tavero
