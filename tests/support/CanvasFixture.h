#pragma once

#include "canvas/GraphicsScene.h"
#include "canvas/GraphicsView.h"
#include "measure/PrimitiveDimensionLabel.h"
#include "measure/PrimitiveDimensionTool.h"
#include "measure/PrimitiveManager.h"
#include "results/PrimitiveDimensionModel.h"
#include "support/Settle.h"

#include <QMouseEvent>
#include <QtTest>

#include <initializer_list>
#include <memory>

/// A shown view with a picture of 640 x 480, at 100% in a viewport of 800 x 600: scene points of
/// whole numbers lie on whole viewport pixels. The mouse moves in scene coordinates and reaches the
/// viewport as real events.
class CanvasFixture
{
public:
    CanvasFixture()
    {
        view.resize(900, 700);
        view.show();
        view.resize(view.size() + QSize(800, 600) - view.viewport()->size());
        QImage picture(640, 480, QImage::Format_RGB32);
        picture.fill(QColor(40, 60, 80));
        view.setImage(picture);
        view.zoom(250.0);
    }

    GraphicsScene* scene() const { return view.imageScene(); }
    PrimitiveManager* manager() const { return view.manager(); }
    PrimitiveDimensionModel* table() const { return manager()->dimensionModel(); }

    void startDrawing(int type) { view.setPrimitiveDragMode(PrimitiveManager::Draw, type); }
    void startSelecting() { view.setPrimitiveDragMode(PrimitiveManager::Select, -1); }

    void press(const QPointF& at, Qt::MouseButton button = Qt::LeftButton)
    {
        held |= button;
        send(QEvent::MouseButtonPress, at, button);
    }

    void release(const QPointF& at, Qt::MouseButton button = Qt::LeftButton)
    {
        held &= ~Qt::MouseButtons(button);
        send(QEvent::MouseButtonRelease, at, button);
    }

    void move(const QPointF& to) { send(QEvent::MouseMove, to, Qt::NoButton); }

    void click(const QPointF& at, Qt::MouseButton button = Qt::LeftButton)
    {
        move(at);
        press(at, button);
        release(at, button);
    }

    void doubleClick(const QPointF& at)
    {
        click(at);
        send(QEvent::MouseButtonDblClick, at, Qt::LeftButton);
        release(at);
    }

    void rightClick(const QPointF& at = QPointF(320, 240)) { click(at, Qt::RightButton); }

    void drag(const QPointF& from, const QPointF& to)
    {
        move(from);
        press(from);
        move(0.5 * (from + to));
        move(to);
        release(to);
    }

    /// Draws a tool with a click on each point; the tool under construction or the finished one.
    PrimitiveGeneralTool* draw(int type, std::initializer_list<QPointF> clicks)
    {
        startDrawing(type);
        for (const QPointF& point : clicks)
            click(point);
        return newest();
    }

    PrimitiveDimensionTool* drawMeasuring(int type, std::initializer_list<QPointF> clicks)
    {
        return static_cast<PrimitiveDimensionTool*>(draw(type, clicks));
    }

    int toolCount() const { return manager()->generalTools(Qt::AscendingOrder).size(); }

    PrimitiveGeneralTool* newest() const
    {
        const auto tools = manager()->generalTools(Qt::AscendingOrder);
        return tools.isEmpty() ? nullptr : tools.last();
    }

    /// What the table shows under a key; invalid for an empty cell.
    QVariant cell(int row, const char* key) const
    {
        const int column = PrimitiveDimensionModel::columnOfKey(QLatin1String(key));
        return table()->data(table()->index(row, column));
    }

    /// A tool's control point in scene coordinates.
    static QPointF pointOf(const PrimitiveGeneralTool* tool, int index)
    {
        return tool->mapToScene(tool->controlPoints().at(index).pos);
    }

    /// What the viewport paints after everything that has happened.
    QImage shown()
    {
        settle();
        return view.viewport()->grab().toImage();
    }

    GraphicsView view;

private:
    void send(QEvent::Type type, const QPointF& scenePos, Qt::MouseButton button)
    {
        const QPoint at = view.mapFromScene(scenePos);
        QMouseEvent event(type, at, view.viewport()->mapToGlobal(at), button, held, Qt::NoModifier);
        QCoreApplication::sendEvent(view.viewport(), &event);
    }

    Qt::MouseButtons held = Qt::NoButton;
};
