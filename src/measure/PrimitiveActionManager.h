#pragma once

#include <QHash>
#include <QObject>
#include <QPointer>

class GraphicsView;
class QAction;
class QActionGroup;

/// The one set of actions through which the whole program chooses a tool. Buttons and menus show
/// these same objects, so the checked tool stands in exactly one place. One instance for the
/// application, made on first use and gone with it; owns its actions. GUI thread.
class PrimitiveActionManager final : public QObject
{
    Q_OBJECT

public:
    static PrimitiveActionManager* instance();

    /// The action of a drag mode and, for drawing, a tool number; null when there is none.
    QAction* actionFor(int mode, int type) const;
    QAction* deleteAction() const { return removeSelected; }
    QAction* deleteAllAction() const { return removeAll; }
    QAction* showScalebarAction() const { return showScalebar; }

    /// Binds the actions to a view. Null disables them and leaves everything else as it is.
    void setGraphicsView(GraphicsView* view);
    /// Brings the checks in line with the view's manager.
    void syncCheckedAction(GraphicsView* view);

private:
    PrimitiveActionManager();

    void makeOtherActions();
    void disconnectView();

    QActionGroup* group = nullptr;
    QAction* drag = nullptr;
    QAction* select = nullptr;
    QAction* showScalebar = nullptr;
    QAction* removeSelected = nullptr;
    QAction* removeAll = nullptr;
    QHash<int, QAction*> toolActions;
    QPointer<GraphicsView> boundView;
};
