#pragma once

#include "canvas/GraphicsScene.h"
#include "canvas/GraphicsView.h"
#include "measure/PrimitiveGeneralTool.h"
#include "measure/PrimitiveManager.h"
#include "measure/ToolTypes.h"

#include <QApplication>
#include <QImage>
#include <QPainter>
#include <QWindow>

#include <algorithm>
#include <cmath>
#include <vector>

namespace bench {

/// Of every widget that shows frames.
constexpr QSize viewport(1600, 900);

/// Draws a picture, which nothing can do with less.
class BareWidget final : public QWidget
{
public:
    BareWidget()
    {
        setAttribute(Qt::WA_OpaquePaintEvent);
        resize(viewport);
    }

    QImage image;

protected:
    void paintEvent(QPaintEvent*) override
    {
        QPainter painter(this);
        painter.drawImage(QRectF(rect()), image, QRectF(image.rect()));
    }
};

inline double median(std::vector<double> values)
{
    if (values.empty())
        return 0.0;
    const auto middle = values.begin() + std::ptrdiff_t(values.size() / 2);
    std::nth_element(values.begin(), middle, values.end());
    return *middle;
}

/// A picture with detail everywhere, different for each `shade`.
inline QImage frame(const QSize& size, int shade)
{
    QImage image(size, QImage::Format_RGB32);
    for (int y = 0; y < size.height(); ++y) {
        auto* line = reinterpret_cast<QRgb*>(image.scanLine(y));
        for (int x = 0; x < size.width(); ++x)
            line[x] = qRgb((x + shade) & 0xff, (y + shade) & 0xff, (x * y + shade) & 0xff);
    }
    return image;
}

/// A finished line tool with its label.
inline PrimitiveGeneralTool* addLine(GraphicsView& view, const QPointF& from, const QPointF& to)
{
    PrimitiveManager* manager = view.manager();
    auto* item = PrimitiveManager::createTool(ToolType::Line, manager, view.imageScene(), from);
    manager->addTool(item);
    auto* tool = static_cast<PrimitiveGeneralTool*>(item);
    tool->placePoint(to, true);
    tool->setSelected(false);
    return tool;
}

/// Labelled lines spread evenly over the whole picture.
inline QVector<PrimitiveGeneralTool*> addLines(GraphicsView& view, int count)
{
    QVector<PrimitiveGeneralTool*> tools;
    const QRectF area = view.imageScene()->sceneRect();
    const int columns = qMax(1, qRound(std::sqrt(count * area.width() / area.height())));
    const int rows = (count + columns - 1) / columns;
    const double width = area.width() / columns;
    const double height = area.height() / rows;
    for (int i = 0; i < count; ++i) {
        const QPointF from((i % columns + 0.2) * width, (i / columns + 0.2) * height);
        tools << addLine(view, from, from + QPointF(0.5 * width, 0.5 * height));
    }
    return tools;
}

/// Shows a window and waits until it is on the screen.
inline void show(QWidget& widget)
{
    widget.show();
    while (!widget.windowHandle()->isExposed())
        QApplication::processEvents(QEventLoop::WaitForMoreEvents);
}

/// Lets everything that waits in the event loop happen, repaints included.
inline void settle()
{
    for (int i = 0; i < 3; ++i)
        QApplication::processEvents();
}

} // namespace bench
