#include "LinkAccessible.h"

#include "zowidgets/ZoLinkLabel.h"

namespace zowidgets {

namespace {

QAccessibleInterface* makeLinkAccessible(const QString&, QObject* object)
{
    auto* label = qobject_cast<ZoLinkLabel*>(object);
    return label ? new LinkAccessible(*label) : nullptr;
}

} // namespace

void LinkAccessible::install()
{
    // A factory that is installed already is not added again.
    QAccessible::installFactory(makeLinkAccessible);
}

LinkAccessible::LinkAccessible(ZoLinkLabel& link)
    : QAccessibleWidget(&link, QAccessible::Link),
      label(link)
{
}

QString LinkAccessible::text(QAccessible::Text kind) const
{
    const QString given = QAccessibleWidget::text(kind);
    return kind == QAccessible::Name && given.isEmpty() ? label.text() : given;
}

QStringList LinkAccessible::actionNames() const
{
    return QStringList(pressAction()) + QAccessibleWidget::actionNames();
}

void LinkAccessible::doAction(const QString& name)
{
    if (name != pressAction())
        QAccessibleWidget::doAction(name);
    else if (label.isEnabled())
        emit label.clicked();
}

} // namespace zowidgets
