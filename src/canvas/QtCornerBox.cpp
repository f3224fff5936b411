#include "canvas/QtCornerBox.h"

#include <QPainter>

QtCornerBox::QtCornerBox(QWidget* parent) : QWidget(parent)
{
    setAttribute(Qt::WA_OpaquePaintEvent);
}

void QtCornerBox::paintEvent(QPaintEvent*)
{
    QPainter painter(this);
    painter.fillRect(rect(), QColor(255, 255, 255, 255));
    painter.setPen(QPen(Qt::black, 0, Qt::DashLine));
    const QPoint centre = rect().center();
    painter.drawLine(centre.x(), rect().top(), centre.x(), rect().bottom());
    painter.drawLine(rect().left(), centre.y(), rect().right(), centre.y());
    painter.drawLine(rect().topRight(), rect().bottomRight());
    painter.drawLine(rect().bottomLeft(), rect().bottomRight());
}
