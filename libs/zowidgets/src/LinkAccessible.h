#pragma once

#include <QAccessibleWidget>

class ZoLinkLabel;

namespace zowidgets {

/// Tells assistive technology that a link label is a link, which can be followed.
class LinkAccessible final : public QAccessibleWidget
{
public:
    /// Makes every link label known by this class. May be called again.
    static void install();

    explicit LinkAccessible(ZoLinkLabel& link);

    QString text(QAccessible::Text kind) const override;
    QStringList actionNames() const override;
    void doAction(const QString& name) override;

private:
    ZoLinkLabel& label;
};

} // namespace zowidgets
