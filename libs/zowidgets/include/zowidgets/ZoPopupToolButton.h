#pragma once

#include <QPointer>
#include <QToolButton>

/// A tool button with a menu of alternatives: the action chosen from the menu becomes the button's
/// default action, so that the face shows what was used last. So does an action of the menu that is
/// checked from elsewhere.
class ZoPopupToolButton : public QToolButton
{
    Q_OBJECT

public:
    explicit ZoPopupToolButton(QWidget* parent = nullptr);

    /// Shows `menu`, which becomes a child of the button, in the given mode. The first action of
    /// the menu becomes the default action, also when it is added later, unless another is checked.
    /// A menu that was set before is deleted.
    void setPopupMenu(QMenu* menu, QToolButton::ToolButtonPopupMode mode);

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void menuChanged(const QActionEvent& event);
    void follow(QAction* action);
    void showAction(QAction* action);
    void chooseFace();

    QPointer<QMenu> popup;
};
