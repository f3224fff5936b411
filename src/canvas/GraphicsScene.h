#pragma once

#include <QGraphicsScene>
#include <QImage>
#include <QPointF>

#include <memory>

class GraphicsView;
class PrimitiveManager;

/// The picture and the tools that lie on it. Scene coordinates are picture pixels: the current
/// frame is the scene's background, with its top left pixel at (0, 0), and the items are the tools
/// alone. Owned by its one view, owns the manager of its tools. GUI thread.
///
/// The scene keeps no spatial index (NoIndex): bounding rectangles and shapes of tools depend on
/// the zoom, so an index would be stale after every zoom.
class GraphicsScene final : public QGraphicsScene
{
    Q_OBJECT

public:
    explicit GraphicsScene(GraphicsView* view);
    ~GraphicsScene() override;

    PrimitiveManager* manager() const { return primitiveManager.get(); }
    GraphicsView* graphicsView() const { return view; }

    /// The frame shown; null until the first one.
    const QImage& currentImage() const { return image; }
    /// Takes the frame over without copying its pixels. Neither repaints nor changes the scene
    /// rect.
    void setCurrentImage(const QImage& frame) { image = frame; }

    /// The user's crosshair option. Puts the stored position back to (-1, -1).
    void setCrossVisible(bool visible);
    /// The crosshair shows only while a drawing tool is the current mode.
    void setCrossArmed(bool armed);

    /// What the view shows, picture and tools, at picture resolution.
    QImage renderVisible();

    /// Picture and crosshair as they are painted on the screen; `rect` is in scene coordinates.
    void paintBackground(QPainter* painter, const QRectF& rect) { drawBackground(painter, rect); }
    void paintForeground(QPainter* painter, const QRectF& rect) { drawForeground(painter, rect); }

protected:
    void keyPressEvent(QKeyEvent* event) override;
    void keyReleaseEvent(QKeyEvent* event) override;
    void mousePressEvent(QGraphicsSceneMouseEvent* event) override;
    void mouseMoveEvent(QGraphicsSceneMouseEvent* event) override;
    void mouseReleaseEvent(QGraphicsSceneMouseEvent* event) override;
    void mouseDoubleClickEvent(QGraphicsSceneMouseEvent* event) override;
    void wheelEvent(QGraphicsSceneWheelEvent* event) override;
    void drawBackground(QPainter* painter, const QRectF& rect) override;
    void drawForeground(QPainter* painter, const QRectF& rect) override;

private:
    bool isDragging() const;
    void moveCross(const QPointF& scenePos);

    std::unique_ptr<PrimitiveManager> primitiveManager;
    GraphicsView* view = nullptr;
    QImage image;
    QPointF crossPosition{-1.0, -1.0};
    bool crossVisible = false;
    bool crossArmed = false;
};
