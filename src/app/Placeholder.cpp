#include "app/Placeholder.h"

#include "app/MainWindow.h"

#include <QFont>
#include <QPainter>

QImage placeholderImage()
{
    QImage image(1920, 1080, QImage::Format_RGB32);
    image.fill(Qt::lightGray);
    QPainter painter(&image);
    painter.setPen(Qt::darkGray);
    painter.setFont(QFont(QStringLiteral("Times"), 100, QFont::Bold));
    painter.drawText(image.rect(), Qt::AlignCenter, MainWindow::tr("No Image"));
    return image;
}
