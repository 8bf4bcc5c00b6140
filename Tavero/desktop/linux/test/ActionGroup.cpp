#include "desktop/linux/test/ActionGroup.h"

#include <QDBusArgument>
#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusMetaType>
#include <QDBusSignature>

namespace tavero {

// What an app tells of an action.
struct ActionDescription {
    bool isEnabled = false;
    QDBusSignature parameter{"s"}; // its type; none would be an empty one, which Qt can't send
    QVariantList state;
};

QDBusArgument& operator<<(QDBusArgument& argument, const ActionDescription& action) {
    argument.beginStructure();
    argument << action.isEnabled << action.parameter << action.state;
    argument.endStructure();
    return argument;
}

const QDBusArgument& operator>>(const QDBusArgument& argument, ActionDescription& action) {
    argument.beginStructure();
    argument >> action.isEnabled >> action.parameter >> action.state;
    argument.endStructure();
    return argument;
}

} // namespace tavero

Q_DECLARE_METATYPE(tavero::ActionDescription)

namespace tavero {

ActionGroup::ActionGroup() { qDBusRegisterMetaType<ActionDescription>(); }

// Answers by hand, since the form of the answer is what some tests are about.
QDBusVariant ActionGroup::Describe(const QString&) {
    setDelayedReply(true);
    QDBusMessage answer = message().createReply();
    if (!isEnabled)
        answer = message().createErrorReply(QDBusError::InvalidArgs, "no such action");
    else if (answersInWords)
        answer << QStringLiteral("it quits");
    else
        answer << QVariant::fromValue(ActionDescription{.isEnabled = *isEnabled});
    connection().send(answer);
    return {};
}

void ActionGroup::Activate(const QString& action, const QVariantList&, const QVariantMap&) {
    activated << action;
    if (!activationError.isEmpty()) sendErrorReply(activationError, "not now");
    emit activation();
}

} // namespace tavero
