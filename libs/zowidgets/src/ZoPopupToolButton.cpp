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
    if (menu) {
        menu->setParent(this, menu->windowFlags());
        menu->installEventFilter(this);
        connect(menu, &QMenu::triggered, this, &ZoPopupToolButton::showAction,
                Qt::UniqueConnection);
        const QList<QAction*> actions = menu->actions();
        for (QAction* action : actions)
            follow(action);
    }
    chooseFace();
}

bool ZoPopupToolButton::eventFilter(QObject* watched, QEvent* event)
{
    // Other events also come from a menu that is being destroyed.
    const bool changed =
        event->type() == QEvent::ActionAdded || event->type() == QEvent::ActionRemoved;
    if (changed && watched == popup)
        menuChanged(*static_cast<QActionEvent*>(event));
    return QToolButton::eventFilter(watched, event);
}

/// A face that was deleted or taken out of the menu needs a successor.
void ZoPopupToolButton::menuChanged(const QActionEvent& event)
{
    if (event.type() == QEvent::ActionAdded)
        follow(event.action());
    if (!popup->actions().contains(defaultAction()))
        chooseFace();
}

/// A tool that is switched on from elsewhere shows on the face of the button that offers it.
void ZoPopupToolButton::follow(QAction* action)
{
    disconnect(action, &QAction::toggled, this, nullptr);
    connect(action, &QAction::toggled, this, [this, action](bool checked) {
        if (checked && popup && popup->actions().contains(action))
            showAction(action);
    });
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

void ZoPopupToolButton::chooseFace()
{
    const QList<QAction*> actions = popup ? popup->actions() : QList<QAction*>();
    const auto isFace = [](const QAction* each) { return !each->isSeparator(); };
    const auto isChecked = [](const QAction* each) { return each->isChecked(); };
    auto chosen = std::find_if(actions.begin(), actions.end(), isChecked);
    if (chosen == actions.end())
        chosen = std::find_if(actions.begin(), actions.end(), isFace);
    showAction(chosen == actions.end() ? nullptr : *chosen);
}
