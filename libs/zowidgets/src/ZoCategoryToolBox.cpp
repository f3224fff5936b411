#include "zowidgets/ZoCategoryToolBox.h"

#include "CategoryTitle.h"

#include <QAbstractSlider>
#include <QAbstractSpinBox>
#include <QAccessibleWidget>
#include <QApplication>
#include <QComboBox>
#include <QHeaderView>
#include <QScrollBar>

namespace {

constexpr int scrollStep = 16;

bool turnsWithTheWheel(const QWidget* widget)
{
    return qobject_cast<const QAbstractSlider*>(widget) ||
           qobject_cast<const QAbstractSpinBox*>(widget) || qobject_cast<const QComboBox*>(widget);
}

int heightAt(int width, const QWidget* widget)
{
    const int fit = widget->hasHeightForWidth() ? widget->heightForWidth(width) : -1;
    return fit < 0 ? widget->sizeHint().height() : fit;
}

/// Shows assistive technology the titles and widgets; a tree would show empty cells in their place.
QAccessibleInterface* makeAccessible(const QString&, QObject* object)
{
    auto* box = qobject_cast<ZoCategoryToolBox*>(object);
    return box ? new QAccessibleWidget(box, QAccessible::Grouping) : nullptr;
}

/// Forgets what the base classes have told about themselves while they were made.
void makeKnown(ZoCategoryToolBox* box)
{
    QAccessible::installFactory(makeAccessible);
    QAccessibleInterface* known = QAccessible::queryAccessibleInterface(box);
    QAccessible::deleteAccessibleInterface(QAccessible::uniqueId(known));
}

} // namespace

ZoCategoryToolBox::ZoCategoryToolBox(QWidget* parent) : QTreeWidget(parent)
{
    makeKnown(this);
    setHeaderHidden(true);
    header()->setSectionResizeMode(QHeaderView::Fixed);
    header()->setStretchLastSection(false);
    header()->setMinimumSectionSize(0);
    setIndentation(0);
    setRootIsDecorated(false);
    setItemsExpandable(false);
    setSelectionMode(NoSelection);
    setFocusPolicy(Qt::NoFocus);
    setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    setVerticalScrollMode(ScrollPerPixel);
    verticalScrollBar()->setSingleStep(scrollStep);
    connect(this, &QTreeWidget::itemExpanded, this, &ZoCategoryToolBox::showTitleState);
    connect(this, &QTreeWidget::itemCollapsed, this, &ZoCategoryToolBox::showTitleState);
    connect(qApp, &QApplication::focusChanged, this,
            [this](const QWidget*, const QWidget* now) { bringIntoView(now); });
}

// The focus may still wander while the widgets go.
ZoCategoryToolBox::~ZoCategoryToolBox()
{
    disconnect(qApp, nullptr, this, nullptr);
}

// The title comes first, then the widget, so that Tab takes them in this order.
void ZoCategoryToolBox::addCategory(const QString& title, QWidget* widget, bool open)
{
    auto* category = new QTreeWidgetItem(this);
    category->setFlags(Qt::ItemIsEnabled);
    addTitle(category, title);
    auto* row = new QTreeWidgetItem(category);
    row->setFlags(Qt::ItemIsEnabled);
    widget->setParent(nullptr);
    setItemWidget(row, 0, widget);
    watch(widget);
    fitHeight(category);
    category->setExpanded(open);
}

void ZoCategoryToolBox::relayout()
{
    for (int index = 0; index < topLevelItemCount(); ++index)
        fitHeight(topLevelItem(index));
    doItemsLayout();
}

bool ZoCategoryToolBox::eventFilter(QObject* watched, QEvent* event)
{
    const auto* widget = qobject_cast<QWidget*>(watched);
    if (!widget || !viewport()->isAncestorOf(widget))
        return QTreeWidget::eventFilter(watched, event);
    if (event->type() == QEvent::Wheel && turnsWithTheWheel(widget) && !widget->hasFocus()) {
        QCoreApplication::sendEvent(verticalScrollBar(), event);
        return true;
    }
    if (event->type() == QEvent::LayoutRequest && widget->parentWidget() == viewport())
        QMetaObject::invokeMethod(this, &ZoCategoryToolBox::relayout, Qt::QueuedConnection);
    return QTreeWidget::eventFilter(watched, event);
}

void ZoCategoryToolBox::resizeEvent(QResizeEvent* event)
{
    QTreeWidget::resizeEvent(event);
    header()->resizeSection(0, contentWidth());
    relayout();
}

void ZoCategoryToolBox::addTitle(QTreeWidgetItem* category, const QString& title)
{
    auto* button = new zowidgets::CategoryTitle(title);
    setItemWidget(category, 0, button);
    connect(button, &QPushButton::toggled, this,
            [category](bool open) { category->setExpanded(open); });
}

void ZoCategoryToolBox::watch(QWidget* widget)
{
    widget->installEventFilter(this);
    for (QWidget* control : widget->findChildren<QWidget*>()) {
        if (!turnsWithTheWheel(control))
            continue;
        control->installEventFilter(this);
        control->setFocusPolicy(Qt::StrongFocus);
    }
}

void ZoCategoryToolBox::fitHeight(QTreeWidgetItem* category)
{
    QTreeWidgetItem* row = category->child(0);
    const QWidget* widget = itemWidget(row, 0);
    row->setSizeHint(0, QSize(0, heightAt(contentWidth(), widget)));
    category->setSizeHint(0, QSize(0, titleOf(category)->sizeHint().height()));
}

int ZoCategoryToolBox::contentWidth() const
{
    return contentsRect().width() - verticalScrollBar()->sizeHint().width();
}

void ZoCategoryToolBox::showTitleState(QTreeWidgetItem* category)
{
    if (category->parent())
        return;
    titleOf(category)->setChecked(category->isExpanded());
}

void ZoCategoryToolBox::bringIntoView(const QWidget* widget)
{
    if (!widget || widget == viewport() || !viewport()->isAncestorOf(widget))
        return;
    const int top = widget->mapTo(viewport(), QPoint(0, 0)).y();
    const int bottom = top + widget->height() - viewport()->height();
    QScrollBar* bar = verticalScrollBar();
    if (top < 0)
        bar->setValue(bar->value() + top);
    else if (bottom > 0)
        bar->setValue(bar->value() + qMin(bottom, top));
}

zowidgets::CategoryTitle* ZoCategoryToolBox::titleOf(QTreeWidgetItem* category) const
{
    return static_cast<zowidgets::CategoryTitle*>(itemWidget(category, 0));
}
