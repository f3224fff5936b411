#include "zowidgets/ZoFramelessWindow.h"

#include "WindowFrame.h"

#include <QWindowStateChangeEvent>

ZoFramelessWindow::ZoFramelessWindow(QWidget* parent)
    : QMainWindow(parent, Qt::Window | Qt::FramelessWindowHint | Qt::WindowSystemMenuHint |
                              Qt::WindowMinMaxButtonsHint | Qt::WindowCloseButtonHint),
      frame(std::make_unique<zowidgets::WindowFrame>(*this))
{
    connect(frame.get(), &zowidgets::WindowFrame::titleBarDoubleClicked, this, [this] {
        if (!isFullScreen())
            toggleMaximize(!isMaximized());
    });
}

ZoFramelessWindow::~ZoFramelessWindow() = default;

void ZoFramelessWindow::setTitleBar(QWidget* titleBar)
{
    frame->setTitleBar(titleBar);
}

void ZoFramelessWindow::addIgnoreWidget(QWidget* widget)
{
    frame->addTitleBarChild(widget);
}

void ZoFramelessWindow::setResizeableAreaWidth(int width)
{
    frame->setBorderWidth(width);
}

void ZoFramelessWindow::toggleMaximize(bool maximize)
{
    // A maximise button that follows the window must not end full screen by being unchecked.
    if (maximize == isMaximized())
        return;
    if (maximize)
        setWindowState((windowState() & ~Qt::WindowFullScreen) | Qt::WindowMaximized);
    else
        setWindowState(windowState() & ~Qt::WindowMaximized);
}

void ZoFramelessWindow::changeEvent(QEvent* event)
{
    QMainWindow::changeEvent(event);
    if (event->type() != QEvent::WindowStateChange)
        return;
    const auto before = static_cast<QWindowStateChangeEvent*>(event)->oldState();
    if ((before ^ windowState()) & Qt::WindowMaximized)
        emit windowMaximized(isMaximized());
}
