#include "measure/PrimitiveActionManager.h"

#include "canvas/GraphicsView.h"
#include "measure/PrimitiveManager.h"
#include "measure/ToolCatalogue.h"

#include <QAction>
#include <QActionGroup>
#include <QCoreApplication>
#include <QIcon>

namespace {

/// An icon with a picture of its own for the checked state.
QIcon checkableIcon(const QString& name)
{
    constexpr int extent = 24;
    QIcon icon;
    icon.addPixmap(QIcon::fromTheme(name + QLatin1String("-on")).pixmap(extent), QIcon::Normal,
                   QIcon::On);
    icon.addPixmap(QIcon::fromTheme(name).pixmap(extent), QIcon::Normal, QIcon::Off);
    return icon;
}

} // namespace

PrimitiveActionManager* PrimitiveActionManager::instance()
{
    static QPointer<PrimitiveActionManager> manager;
    if (!manager)
        manager = new PrimitiveActionManager;
    return manager;
}

PrimitiveActionManager::PrimitiveActionManager()
    : QObject(QCoreApplication::instance()),
      group(new QActionGroup(this))
{
    const auto add = [this](QAction* action, const QString& statusTip, const QSize& meaning) {
        action->setStatusTip(statusTip);
        action->setCheckable(true);
        action->setData(meaning);
        group->addAction(action);
        return action;
    };
    drag = add(new QAction(checkableIcon(QStringLiteral("mea-drag")), tr("Drag"), this),
               tr("Drag the canvas."), QSize(PrimitiveManager::Drag, -1));
    select = add(new QAction(checkableIcon(QStringLiteral("mea-select")), tr("Select"), this),
                 tr("Select and adjust items."), QSize(PrimitiveManager::Select, -1));
    for (const ToolCatalogueRow& row : toolCatalogue()) {
        const QIcon icon = QIcon::fromTheme(QLatin1String(row.icon));
        toolActions.insert(row.type, add(new QAction(icon, tr(row.text), this), tr(row.statusTip),
                                         QSize(PrimitiveManager::Draw, row.type)));
    }
    makeOtherActions();
}

void PrimitiveActionManager::makeOtherActions()
{
    showScalebar =
        new QAction(checkableIcon(QStringLiteral("mea-scalebar")), tr("Show Scalebar"), this);
    showScalebar->setStatusTip(tr("Add scale bar to image."));
    showScalebar->setCheckable(true);

    const QIcon icon = QIcon::fromTheme(QStringLiteral("mea-delete"));
    removeSelected = new QAction(icon, tr("&Delete"), this);
    removeSelected->setShortcuts(QKeySequence::Delete);
    removeSelected->setStatusTip(tr("Delete selected tools."));
    removeAll = new QAction(icon, tr("Delete All"), this);
    removeAll->setStatusTip(tr("Delete all tools."));
}

QAction* PrimitiveActionManager::actionFor(int mode, int type) const
{
    switch (mode) {
    case PrimitiveManager::Drag:
        return drag;
    case PrimitiveManager::Select:
        return select;
    default:
        return toolActions.value(type, nullptr);
    }
}

void PrimitiveActionManager::setGraphicsView(GraphicsView* view)
{
    group->setEnabled(view);
    showScalebar->setEnabled(view);
    if (!view)
        return;
    boundView = view;
    disconnectView();
    for (const QAction* action : group->actions())
        connect(action, &QAction::toggled, view, &GraphicsView::setPrimitiveDragModeByAction);
    connect(showScalebar, &QAction::toggled, view, &GraphicsView::showScalebar);
    connect(removeSelected, &QAction::triggered, view, &GraphicsView::deleteSelectedTools);
    connect(removeAll, &QAction::triggered, view, &GraphicsView::deleteAllTools);
    syncCheckedAction(view);
}

void PrimitiveActionManager::disconnectView()
{
    for (const QAction* action : group->actions())
        disconnect(action, &QAction::toggled, nullptr, nullptr);
    disconnect(showScalebar, &QAction::toggled, nullptr, nullptr);
    disconnect(removeSelected, &QAction::triggered, nullptr, nullptr);
    disconnect(removeAll, &QAction::triggered, nullptr, nullptr);
}

void PrimitiveActionManager::syncCheckedAction(GraphicsView* view)
{
    if (!view)
        return;
    const PrimitiveManager* manager = view->manager();
    if (QAction* current = actionFor(manager->dragMode(), manager->toolType()))
        current->setChecked(true);
    showScalebar->setChecked(manager->isScalebarVisible());
}
