#include "zowidgets/ZoFramelessWindow.h"

#include "WindowFrame.h"

#include <QEvent>

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
    // The event's old state is no help: it may be the new one when the window manager answers.
    if (event->type() != QEvent::WindowStateChange || maximized == isMaximized())
        return;
    maximized = isMaximized();
    emit windowMaximized(maximized);
}
