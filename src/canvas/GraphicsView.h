#pragma once

#include "canvas/ToolLayer.h"
#include "measure/PrimitiveManager.h"

#include <QGraphicsView>
#include <QKeySequence>
#include <QPointer>

#include <memory>

class CanvasRulers;
class GraphicsScene;
class QAction;
class QTouchEvent;

/// The canvas: shows one GraphicsScene, which it owns, with a ruler along its top and left edge,
/// zooms on a logarithmic scale and can tear itself out of its layout to fill a screen. GUI thread.
///
/// Zoom levels run from 0 to 500 with scale = 2^((level - 250) / 50); 250 is 100%.
///
/// Painting. A frame repaints the viewport alone: the picture is drawn straight to it, and the
/// tools come from a ToolLayer, which is redrawn only where an item changed. The scene's `changed`
/// signal and the places that the layer remembers tell where; a new transform, viewport size or
/// scroll position redraws the whole layer, so that outlines whose size depends on the zoom leave
/// no trail.
class GraphicsView final : public QGraphicsView
{
    Q_OBJECT

public:
    explicit GraphicsView(QWidget* parent = nullptr);
    ~GraphicsView() override;

    GraphicsScene* imageScene() const { return graphicsScene; }
    PrimitiveManager* manager() const;

    /// The zoom level in force, 0 to 500 (a pinch may leave it outside).
    double level() const { return zoomLevel; }
    bool isBestFit() const { return bestFitActive; }
    bool isInFullScreen() const { return fullscreenActive; }

    /// Repaints picture and crosshair. The tools over them are not drawn anew.
    void repaintPicture() { viewport()->update(); }

    /// Shows or hides the crosshair of the drawing modes.
    void showCross(bool visible);

    /// An entry of the context menu behind "Delete"; not owned, null for none.
    QAction* extraContextAction = nullptr;
    /// The key that leaves full screen, beside Escape.
    QKeySequence fullscreenKey{QKeySequence::FullScreen};

public slots:
    /// The entry for every frame and for the placeholder.
    void setImage(const QImage& image);
    /// Takes mode and tool number from the data of the sending action; ignored when not checked.
    void setPrimitiveDragModeByAction(bool checked);
    void setPrimitiveDragMode(PrimitiveManager::DragMode dragMode, int type);
    void toggleOpenGL(bool enable);
    void toggleAntialiasing(bool enable);
    /// Does nothing: pictures are always shown pixel by pixel.
    void toggleSmoothTransformation(bool enable);
    /// Sets the level, clamped to 0..500.
    void zoom(double value);
    void zoom();
    /// Sets the level of a scale factor (1.0 is 100%), clamped.
    void zoomByScale(double scale);
    /// Adds levels, resting once at exactly 250 on the way.
    void zoomIn(double levels);
    void zoomIn();
    void zoomOut(double levels);
    void zoomOut();
    void zoomBestFit();
    void zoomActualSize();
    /// In force from the next fit on.
    void setBestFitMode(Qt::AspectRatioMode aspectRatioMode);
    void rotate90();
    void flip(bool enable);
    void mirror(bool enable);
    /// Toggles full screen.
    void fullScreen();
    void showScalebar(bool show);
    void deleteSelectedTools();
    void deleteAllTools();

signals:
    void imageInfoChanged(int width, int height);
    /// Scene coordinates.
    void cursorPositionChanged(int x, int y);
    void matrixChanged(double scale, int rotate);
    void dimensionDataChanged();
    void resized();
    void contentsScrolled(int dx, int dy);

protected:
    void mouseDoubleClickEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void wheelEvent(QWheelEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void contextMenuEvent(QContextMenuEvent* event) override;
    void closeEvent(QCloseEvent* event) override;
    void paintEvent(QPaintEvent* event) override;
    bool viewportEvent(QEvent* event) override;
    void scrollContentsBy(int dx, int dy) override;

private slots:
    void rotateLeft();
    void rotateRight();
    void setupMatrix();
    void setupMatrix(double scale);

private:
    void prepareViewport();
    void changeLevel(double level);
    void sceneChanged(const QList<QRectF>& region);
    void fitScene();
    void scaleToFit();
    void layOutRulers();
    void handleTouch(const QTouchEvent& event);
    void enterFullScreen();
    void leaveFullScreen();

    std::unique_ptr<CanvasRulers> rulers;
    double zoomLevel = 250.0;
    int rotation = 0;
    bool flipEnabled = false;
    bool mirrorEnabled = false;
    bool bestFitActive = false;
    Qt::AspectRatioMode aspectRatioMode = Qt::KeepAspectRatio;
    GraphicsScene* graphicsScene = nullptr;
    QPointer<QWidget> fullscreenParent;
    bool fullscreenActive = false;
    ToolLayer toolLayer{*this};
};
