#include "zowidgets/ZoPopupToolButton.h"

#include <QActionEvent>
#include <QMenu>

#include <algorithm>

ZoPopupToolButton::ZoPopupToolButton(QWidget* parent) : QToolButton(parent) {}

void ZoPopupToolButton::setPopupMenu(QMenu* menu, QToolButton::ToolButtonPopupMode mode)
{
    if (popup != menu)
        delete popup.data();
    popup = menu;
    setPopupMode(mode);
    setMenu(menu);
    if (!menu)
        return showAction(nullptr);

    menu->setParent(this, menu->windowFlags());
    menu->installEventFilter(this);
    connect(menu, &QMenu::triggered, this, &ZoPopupToolButton::showAction, Qt::UniqueConnection);
    const QList<QAction*> actions = menu->actions();
    for (QAction* action : actions)
        follow(action);
    showFirstAction();
}

bool ZoPopupToolButton::eventFilter(QObject* watched, QEvent* event)
{
    if (watched == popup) {
        if (event->type() == QEvent::ActionAdded)
            follow(static_cast<QActionEvent*>(event)->action());
        else if (event->type() == QEvent::ActionRemoved)
            forget(static_cast<QActionEvent*>(event)->action());
    }
    return QToolButton::eventFilter(watched, event);
}

/// A tool that is switched on from elsewhere shows on the face of the button that offers it.
void ZoPopupToolButton::follow(QAction* action)
{
    disconnect(action, &QAction::toggled, this, nullptr);
    connect(action, &QAction::toggled, this, [this, action](bool checked) {
        if (checked)
            showAction(action);
    });
    if (!defaultAction() && !action->isSeparator())
        showAction(action);
    else if (action->isChecked())
        showAction(action);
}

void ZoPopupToolButton::forget(QAction* action)
{
    disconnect(action, &QAction::toggled, this, nullptr);
    if (action == defaultAction())
        showFirstAction();
}

void ZoPopupToolButton::showAction(QAction* action)
{
    QAction* previous = defaultAction();
    if (action == previous)
        return;
    setDefaultAction(action);
    if (previous)
        removeAction(previous);
}

void ZoPopupToolButton::showFirstAction()
{
    const QList<QAction*> actions = popup->actions();
    const auto first = std::find_if(actions.begin(), actions.end(),
                                    [](const QAction* each) { return !each->isSeparator(); });
    showAction(first == actions.end() ? nullptr : *first);
}
