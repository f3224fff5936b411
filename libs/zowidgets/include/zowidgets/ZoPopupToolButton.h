#pragma once

#include <QToolButton>

/// A tool button with a menu of alternatives: the action chosen from the menu becomes the button's
/// default action, so that the face shows what was used last.
class ZoPopupToolButton : public QToolButton
{
    Q_OBJECT

public:
    explicit ZoPopupToolButton(QWidget* parent = nullptr);

    /// Shows `menu`, which becomes a child of the button, in the given mode. The first action of the
    /// menu becomes the default action.
    void setPopupMenu(QMenu* menu, QToolButton::ToolButtonPopupMode mode);
};
