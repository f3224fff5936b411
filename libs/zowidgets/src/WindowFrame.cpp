#include "WindowFrame.h"

#include <QApplication>
#include <QCursor>
#include <QMouseEvent>

namespace zowidgets {

namespace {

QWindow* nativeWindow(const QWidget& widget)
{
    if (QWindow* own = widget.windowHandle())
        return own;
    const QWidget* parent = widget.nativeParentWidget();
    return parent ? parent->windowHandle() : nullptr;
}

const QWidget* cursorOwner(const QWidget& widget)
{
    const QWidget* owner = &widget;
    while (owner && !owner->testAttribute(Qt::WA_SetCursor))
        owner = owner->isWindow() ? nullptr : owner->parentWidget();
    return owner;
}

} // namespace

WindowFrame::WindowFrame(QWidget& framedWindow) : window(framedWindow)
{
    qApp->installEventFilter(this);
}

void WindowFrame::setTitleBar(QWidget* widget)
{
    titleBar = widget;
}

void WindowFrame::addTitleBarChild(QWidget* widget)
{
    titleBarChildren.append(widget);
}

void WindowFrame::setBorderWidth(int pixels)
{
    borderWidth = pixels;
}

bool WindowFrame::eventFilter(QObject* watched, QEvent* event)
{
    switch (event->type()) {
    case QEvent::MouseButtonPress:
    case QEvent::MouseButtonRelease:
    case QEvent::MouseButtonDblClick:
    case QEvent::MouseMove:
        if (auto* widget = qobject_cast<QWidget*>(watched); widget && widget->window() == &window)
            return handleMouse(*widget, *static_cast<QMouseEvent*>(event));
        return false;
    case QEvent::Leave:
        if (watched == &window)
            restoreCursor(window);
        return false;
    default:
        return false;
    }
}

bool WindowFrame::handleMouse(QWidget& receiver, QMouseEvent& event)
{
    switch (event.type()) {
    case QEvent::MouseButtonPress:
        return press(event);
    case QEvent::MouseMove:
        return move(receiver, event);
    case QEvent::MouseButtonRelease:
        return release(event);
    default:
        return doubleClick(event);
    }
}

bool WindowFrame::press(const QMouseEvent& event)
{
    if (event.buttons() != Qt::LeftButton)
        return false;
    if (const Qt::Edges edges = edgesAt(event.globalPos())) {
        startDrag(edges, event.globalPos());
        return true;
    }
    if (!isTitleBar(event.globalPos()))
        return false;
    titlePress = event.globalPos();
    return true;
}

bool WindowFrame::move(QWidget& receiver, const QMouseEvent& event)
{
    if (event.buttons() == Qt::NoButton) {
        titlePress.reset();
        drag.reset();
        return hover(receiver, event.globalPos());
    }
    // The move starts only with a real drag, or the window system would swallow double clicks.
    if (titlePress &&
        (event.globalPos() - *titlePress).manhattanLength() >= QApplication::startDragDistance()) {
        startDrag({}, *titlePress);
        titlePress.reset();
    }
    if (drag)
        window.setGeometry(draggedGeometry(drag->geometry, event.globalPos() - drag->from,
                                           drag->edges, sizeLimits()));
    return titlePress || drag;
}

bool WindowFrame::release(const QMouseEvent& event)
{
    if (event.button() != Qt::LeftButton || !(titlePress || drag))
        return false;
    titlePress.reset();
    drag.reset();
    return true;
}

bool WindowFrame::doubleClick(const QMouseEvent& event)
{
    if (event.button() != Qt::LeftButton)
        return false;
    if (edgesAt(event.globalPos()))
        return true;
    if (!isTitleBar(event.globalPos()))
        return false;
    emit titleBarDoubleClicked();
    return true;
}

bool WindowFrame::hover(QWidget& receiver, const QPoint& pos)
{
    const Qt::Edges edges = edgesAt(pos);
    if (edges)
        showResizeCursor(receiver, resizeCursor(edges));
    else
        restoreCursor(receiver);
    return edges != Qt::Edges();
}

bool WindowFrame::isFilling() const
{
    return window.windowState() & (Qt::WindowMaximized | Qt::WindowFullScreen);
}

bool WindowFrame::isTitleBar(const QPoint& pos) const
{
    if (!titleBar || !titleBar->isVisible())
        return false;
    const QPoint local = titleBar->mapFromGlobal(pos);
    QWidget* child = titleBar->childAt(local);
    return titleBar->rect().contains(local) && (!child || titleBarChildren.contains(child));
}

Qt::Edges WindowFrame::edgesAt(const QPoint& pos) const
{
    if (isFilling())
        return {};
    Qt::Edges edges = zowidgets::edgesAt(window.mapFromGlobal(pos), window.size(), borderWidth);
    const SizeLimits limits = sizeLimits();
    if (limits.minimum.width() >= limits.maximum.width())
        edges &= ~(Qt::LeftEdge | Qt::RightEdge);
    if (limits.minimum.height() >= limits.maximum.height())
        edges &= ~(Qt::TopEdge | Qt::BottomEdge);
    return edges;
}

/// A minimum that was set wins over the one that the contents ask for, as with layouts.
SizeLimits WindowFrame::sizeLimits() const
{
    const QSize set = window.minimumSize();
    const QSize hint = window.minimumSizeHint();
    return {QSize(set.width() > 0 ? set.width() : hint.width(),
                  set.height() > 0 ? set.height() : hint.height()),
            window.maximumSize()};
}

void WindowFrame::startDrag(Qt::Edges edges, const QPoint& from)
{
    QWindow* handle = window.windowHandle();
    if (!handle || window.isFullScreen())
        return;
    const bool taken = edges ? handle->startSystemResize(edges) : handle->startSystemMove();
    if (!taken && !isFilling())
        drag = Drag{edges, from, window.geometry()};
}

void WindowFrame::showResizeCursor(const QWidget& receiver, Qt::CursorShape shape)
{
    QWindow* native = nativeWindow(receiver);
    if (cursorWindow && cursorWindow != native)
        restoreCursor(window);
    if (native && native->cursor().shape() != shape)
        native->setCursor(shape);
    cursorWindow = native;
}

/// Gives the native window back the cursor that the widget under the mouse asks for.
void WindowFrame::restoreCursor(const QWidget& receiver)
{
    if (!cursorWindow)
        return;
    const QWidget* owner = cursorOwner(receiver);
    if (owner && cursorWindow == nativeWindow(receiver))
        cursorWindow->setCursor(owner->cursor());
    else
        cursorWindow->unsetCursor();
    cursorWindow.clear();
}

} // namespace zowidgets
