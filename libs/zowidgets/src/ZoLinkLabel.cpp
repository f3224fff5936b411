#include "zowidgets/ZoLinkLabel.h"

#include "LinkAccessible.h"

#include <QKeyEvent>
#include <QMouseEvent>

ZoLinkLabel::ZoLinkLabel(QWidget* parent) : ZoLinkLabel(QString(), parent) {}

/// The text waits for this class's constructor: a base that announces it makes assistive technology
/// take the link for a plain label.
ZoLinkLabel::ZoLinkLabel(const QString& text, QWidget* parent) : QLabel(parent)
{
    zowidgets::LinkAccessible::install();
    setText(text);
    setCursor(Qt::PointingHandCursor);
    setFocusPolicy(Qt::StrongFocus);
    setForegroundRole(QPalette::Link);
}

void ZoLinkLabel::enterEvent(QEvent* event)
{
    QLabel::enterEvent(event);
    updateUnderline();
}

void ZoLinkLabel::leaveEvent(QEvent* event)
{
    QLabel::leaveEvent(event);
    updateUnderline();
}

void ZoLinkLabel::focusInEvent(QFocusEvent* event)
{
    QLabel::focusInEvent(event);
    updateUnderline();
}

void ZoLinkLabel::focusOutEvent(QFocusEvent* event)
{
    QLabel::focusOutEvent(event);
    updateUnderline();
}

void ZoLinkLabel::mousePressEvent(QMouseEvent* event)
{
    // What lies behind the link does not see its clicks.
    event->accept();
}

void ZoLinkLabel::mouseReleaseEvent(QMouseEvent* event)
{
    event->accept();
    if (event->button() == Qt::LeftButton && rect().contains(event->pos()))
        emit clicked();
}

void ZoLinkLabel::keyPressEvent(QKeyEvent* event)
{
    switch (event->key()) {
    case Qt::Key_Return:
    case Qt::Key_Enter:
    case Qt::Key_Space:
        emit clicked();
        break;
    default:
        QLabel::keyPressEvent(event);
    }
}

/// The underline tells the keyboard focus too, whatever style is in use.
void ZoLinkLabel::updateUnderline()
{
    QFont underlined = font();
    underlined.setUnderline(underMouse() || hasFocus());
    setFont(underlined);
}
