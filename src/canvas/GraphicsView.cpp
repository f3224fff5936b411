#include "canvas/GraphicsView.h"

#include "canvas/CanvasRulers.h"
#include "canvas/GraphicsScene.h"
#include "canvas/RubberBand.h"
#include "canvas/ZoomLevel.h"
#include "measure/PrimitiveActionManager.h"
#include "measure/ToolTypes.h"

#include <QAction>
#include <QContextMenuEvent>
#include <QDebug>
#include <QLayout>
#include <QMenu>
#include <QOpenGLWidget>
#include <QScreen>
#include <QTouchEvent>

#include <algorithm>
#include <cmath>

namespace {

constexpr int levelsPerWheelNotch = 6;
constexpr int wheelNotch = 120;
constexpr int rulerMargin = 15;

/// Equality up to rounding, relative to the smaller of both.
bool equal(double a, double b)
{
    return std::abs(a - b) * 1e12 <= std::min(std::abs(a), std::abs(b));
}

bool isTextType(int type)
{
    return type == ToolType::TextAnnotation || type == ToolType::Text;
}

double pinchFactor(const QTouchEvent::TouchPoint& first, const QTouchEvent::TouchPoint& second)
{
    const double start = QLineF(first.startPos(), second.startPos()).length();
    return start > 0.0 ? QLineF(first.pos(), second.pos()).length() / start : 1.0;
}

} // namespace

GraphicsView::GraphicsView(QWidget* parent) : QGraphicsView(parent)
{
    setRenderHints(QPainter::Antialiasing);
    setDragMode(ScrollHandDrag);
    prepareViewport();
    setInteractive(true);
    setOptimizationFlag(DontSavePainterState);
    setViewportUpdateMode(SmartViewportUpdate);
    setTransformationAnchor(AnchorUnderMouse);

    rulers = std::make_unique<CanvasRulers>(*this);
    graphicsScene = new GraphicsScene(this);
    setScene(graphicsScene);
    prepareViewport();

    connect(graphicsScene, &QGraphicsScene::changed, this, &GraphicsView::sceneChanged);
    connect(manager(), &PrimitiveManager::changeDragMode, this,
            &GraphicsView::setPrimitiveDragMode);
}

GraphicsView::~GraphicsView()
{
    // Tools ask the view for its scale until they are gone.
    delete graphicsScene;
}

PrimitiveManager* GraphicsView::manager() const
{
    return graphicsScene->manager();
}

/// The viewport paints all of itself, so that nothing is filled under the picture.
void GraphicsView::prepareViewport()
{
    viewport()->setAttribute(Qt::WA_AcceptTouchEvents);
    viewport()->setAttribute(Qt::WA_OpaquePaintEvent);
    viewport()->setAutoFillBackground(false);
    viewport()->setMouseTracking(true);
}

void GraphicsView::showCross(bool visible)
{
    graphicsScene->setCrossVisible(visible);
}

void GraphicsView::setImage(const QImage& image)
{
    const QRectF before = sceneRect();
    graphicsScene->setCurrentImage(image);
    repaintPicture();
    if (equal(before.width(), image.width()) && equal(before.height(), image.height()))
        return;
    graphicsScene->setSceneRect(0, 0, image.width(), image.height());
    zoomBestFit();
    emit imageInfoChanged(image.width(), image.height());
    qInfo() << "Scene rect changed.";
}

void GraphicsView::setPrimitiveDragModeByAction(bool checked)
{
    const auto* action = qobject_cast<const QAction*>(sender());
    if (!checked || !action)
        return;
    const QSize modeAndType = action->data().toSize();
    const auto mode = static_cast<PrimitiveManager::DragMode>(modeAndType.width());
    setPrimitiveDragMode(mode, modeAndType.height());
    qDebug() << "changeMeasurementTool mode: " << mode << "type: " << modeAndType.height();
}

void GraphicsView::setPrimitiveDragMode(PrimitiveManager::DragMode dragMode, int type)
{
    switch (dragMode) {
    case PrimitiveManager::Drag:
        setDragMode(ScrollHandDrag);
        break;
    case PrimitiveManager::Select:
        setDragMode(RubberBandDrag);
        viewport()->setCursor(Qt::ArrowCursor);
        break;
    case PrimitiveManager::Draw:
        setDragMode(NoDrag);
        viewport()->setCursor(isTextType(type) ? Qt::IBeamCursor : Qt::CrossCursor);
        break;
    }
    setInteractive(true);
    graphicsScene->setCrossArmed(dragMode == PrimitiveManager::Draw);
    manager()->setDragMode(dragMode, type);
    PrimitiveActionManager::instance()->syncCheckedAction(this);
}

void GraphicsView::toggleOpenGL(bool enable)
{
    if (enable) {
        auto* widget = new QOpenGLWidget;
        QSurfaceFormat format = QSurfaceFormat::defaultFormat();
        format.setSamples(4);
        widget->setFormat(format);
        setViewport(widget);
    } else {
        setViewport(new QWidget);
    }
    prepareViewport();
    toolLayer.invalidateAll();
}

void GraphicsView::toggleAntialiasing(bool enable)
{
    setRenderHint(QPainter::Antialiasing, enable);
    toolLayer.invalidateAll();
}

void GraphicsView::toggleSmoothTransformation(bool) {}

void GraphicsView::changeLevel(double level)
{
    zoomLevel = level;
    setupMatrix();
}

void GraphicsView::zoom(double value)
{
    changeLevel(ZoomLevel::clamped(value));
}

void GraphicsView::zoom()
{
    zoom(ZoomLevel::actualSize);
}

void GraphicsView::zoomByScale(double scale)
{
    changeLevel(ZoomLevel::clamped(ZoomLevel::ofScale(scale)));
}

void GraphicsView::zoomIn(double levels)
{
    changeLevel(ZoomLevel::raised(zoomLevel, levels));
}

void GraphicsView::zoomIn()
{
    zoomIn(1.0);
}

void GraphicsView::zoomOut(double levels)
{
    changeLevel(ZoomLevel::lowered(zoomLevel, levels));
}

void GraphicsView::zoomOut()
{
    zoomOut(1.0);
}

void GraphicsView::zoomBestFit()
{
    bestFitActive = true;
    fitScene();
}

void GraphicsView::zoomActualSize()
{
    zoomLevel = ZoomLevel::actualSize;
    setupMatrix(1.0);
}

void GraphicsView::setBestFitMode(Qt::AspectRatioMode mode)
{
    aspectRatioMode = mode;
}

void GraphicsView::rotate90()
{
    rotation -= 90;
    if (rotation < -359)
        rotation = 0;
    setupMatrix();
}

void GraphicsView::rotateLeft()
{
    rotation = std::min(rotation + 10, 360);
    setupMatrix();
}

void GraphicsView::rotateRight()
{
    rotation = std::max(rotation - 10, -360);
    setupMatrix();
}

void GraphicsView::flip(bool enable)
{
    flipEnabled = enable;
    setupMatrix();
}

void GraphicsView::mirror(bool enable)
{
    mirrorEnabled = enable;
    setupMatrix();
}

void GraphicsView::setupMatrix()
{
    setupMatrix(ZoomLevel::toScale(zoomLevel));
}

void GraphicsView::setupMatrix(double scale)
{
    bestFitActive = false;
    setHorizontalScrollBarPolicy(Qt::ScrollBarAsNeeded);
    setVerticalScrollBarPolicy(Qt::ScrollBarAsNeeded);
    QTransform matrix;
    matrix.scale(mirrorEnabled ? -scale : scale, flipEnabled ? -scale : scale);
    matrix.rotate(rotation);
    setTransform(matrix, false);
    emit matrixChanged(scale, rotation);
    rulers->followView();
}

void GraphicsView::fitScene()
{
    setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    scaleToFit();
    const double scale = transform().m11();
    zoomLevel = ZoomLevel::ofScale(scale);
    emit matrixChanged(scale, rotation);
    rulers->followView();
}

/// Scales the scene rect into the viewport; does nothing while one of both is empty.
void GraphicsView::scaleToFit()
{
    const QRectF whole = graphicsScene->sceneRect();
    const QRectF unity = transform().mapRect(QRectF(0, 0, 1, 1));
    if (whole.isNull() || unity.isEmpty())
        return;
    scale(1.0 / unity.width(), 1.0 / unity.height());
    const QRectF target = viewport()->rect();
    const QRectF source = transform().mapRect(whole);
    if (target.isEmpty() || source.isEmpty())
        return;
    double xRatio = target.width() / source.width();
    double yRatio = target.height() / source.height();
    if (aspectRatioMode == Qt::KeepAspectRatio)
        xRatio = yRatio = std::min(xRatio, yRatio);
    else if (aspectRatioMode == Qt::KeepAspectRatioByExpanding)
        xRatio = yRatio = std::max(xRatio, yRatio);
    scale(xRatio, yRatio);
    centerOn(whole.center());
}

void GraphicsView::showScalebar(bool show)
{
    manager()->setScalebarVisible(show);
}

void GraphicsView::deleteSelectedTools()
{
    manager()->deleteSelectedTools();
}

void GraphicsView::deleteAllTools()
{
    manager()->deleteAllTools(false);
}

void GraphicsView::fullScreen()
{
    if (fullscreenActive)
        leaveFullScreen();
    else
        enterFullScreen();
}

void GraphicsView::enterFullScreen()
{
    fullscreenActive = true;
    fullscreenParent = parentWidget();
    const QScreen* target = fullscreenParent ? fullscreenParent->screen() : screen();
    setParent(nullptr);
    setFrameShape(QFrame::NoFrame);
    setWindowFlags(windowFlags() | Qt::CustomizeWindowHint | Qt::WindowStaysOnTopHint);
    graphicsScene->setBackgroundBrush(Qt::black);
    zoomBestFit();
    setGeometry(target->geometry());
    showFullScreen();
    activateWindow();
    setFocus();
}

void GraphicsView::leaveFullScreen()
{
    fullscreenActive = false;
    setWindowState(windowState() & ~Qt::WindowFullScreen);
    if (fullscreenParent && fullscreenParent->layout())
        fullscreenParent->layout()->addWidget(this);
    setFrameShape(QFrame::StyledPanel);
    setWindowFlags(windowFlags() & ~(Qt::CustomizeWindowHint | Qt::WindowStaysOnTopHint));
    graphicsScene->setBackgroundBrush(QColor(16, 16, 16, 255));
    layOutRulers();
    zoomBestFit();
    show();
    activateWindow();
}

/// The full screen window is no document of its own: closing it brings the canvas back.
void GraphicsView::closeEvent(QCloseEvent* event)
{
    if (!fullscreenActive) {
        QGraphicsView::closeEvent(event);
        return;
    }
    event->ignore();
    leaveFullScreen();
}

void GraphicsView::mouseDoubleClickEvent(QMouseEvent* event)
{
    QGraphicsView::mouseDoubleClickEvent(event);
    if (fullscreenActive)
        leaveFullScreen();
}

void GraphicsView::mouseMoveEvent(QMouseEvent* event)
{
    const QPointF scenePos = mapToScene(event->pos());
    rulers->moveMarkers(event->pos());
    emit cursorPositionChanged(static_cast<int>(scenePos.x()), static_cast<int>(scenePos.y()));
    QGraphicsView::mouseMoveEvent(event);
}

void GraphicsView::wheelEvent(QWheelEvent* event)
{
    // The anchor is where the mouse was last seen; the picture may have changed since under a
    // resting mouse.
    QMouseEvent resting(QEvent::MouseMove, event->position(), Qt::NoButton, event->buttons(),
                        event->modifiers());
    QGraphicsView::mouseMoveEvent(&resting);
    const int delta = event->angleDelta().y();
    const double change = std::abs(delta / wheelNotch) * levelsPerWheelNotch;
    if (delta > 0)
        zoomIn(change);
    else
        zoomOut(change);
    event->accept();
}

void GraphicsView::keyPressEvent(QKeyEvent* event)
{
    const int modifiers = event->modifiers() & ~Qt::KeypadModifier;
    const QKeySequence pressed(event->key() | modifiers);
    const bool leaves =
        event->key() == Qt::Key_Escape || pressed.matches(fullscreenKey) != QKeySequence::NoMatch;
    if (!leaves)
        QGraphicsView::keyPressEvent(event);
    else if (fullscreenActive)
        leaveFullScreen();
}

void GraphicsView::resizeEvent(QResizeEvent* event)
{
    QGraphicsView::resizeEvent(event);
    layOutRulers();
    if (bestFitActive)
        fitScene();
    emit resized();
}

void GraphicsView::layOutRulers()
{
    if (!graphicsScene)
        return;
    const int margin = fullscreenActive ? 0 : rulerMargin;
    setViewportMargins(margin, margin, 0, 0);
    rulers->layOut(!fullscreenActive);
}

void GraphicsView::contextMenuEvent(QContextMenuEvent* event)
{
    QMenu menu;
    if (!manager()->selectedTextTools().isEmpty() || !manager()->selectedGeneralTools().isEmpty()) {
        menu.addAction(PrimitiveActionManager::instance()->deleteAction());
        if (extraContextAction)
            menu.addAction(extraContextAction);
    }
    if (!menu.isEmpty())
        menu.exec(event->globalPos());
}

void GraphicsView::sceneChanged(const QList<QRectF>& region)
{
    for (const QRectF& rect : region)
        toolLayer.invalidate(mapFromScene(rect).boundingRect());
    viewport()->update(toolLayer.followItems());
}

void GraphicsView::paintEvent(QPaintEvent* event)
{
    QPainter painter(viewport());
    const QRect exposed = event->region().boundingRect();
    // The scene is always drawn as a whole and clipped, so that parts fit to the pixel.
    const QRectF shown = mapToScene(viewport()->rect()).boundingRect();
    painter.setClipRect(exposed);
    painter.setTransform(viewportTransform());
    graphicsScene->paintBackground(&painter, shown);
    painter.resetTransform();
    toolLayer.paint(&painter, exposed);
    painter.setTransform(viewportTransform());
    graphicsScene->paintForeground(&painter, shown);
    painter.resetTransform();
    if (!rubberBandRect().isNull())
        paintRubberBand(&painter, rubberBandRect(), viewport());
}

bool GraphicsView::viewportEvent(QEvent* event)
{
    switch (event->type()) {
    case QEvent::TouchBegin:
    case QEvent::TouchUpdate:
    case QEvent::TouchEnd:
        handleTouch(*static_cast<QTouchEvent*>(event));
        return true;
    default:
        return QGraphicsView::viewportEvent(event);
    }
}

void GraphicsView::handleTouch(const QTouchEvent& event)
{
    const auto& points = event.touchPoints();
    if (points.size() != 2)
        return;
    const double scale = ZoomLevel::toScale(zoomLevel) * pinchFactor(points.first(), points.last());
    if (event.touchPointStates() & Qt::TouchPointReleased)
        changeLevel(ZoomLevel::ofScale(scale));
    else
        setupMatrix(scale);
}

void GraphicsView::scrollContentsBy(int dx, int dy)
{
    QGraphicsView::scrollContentsBy(dx, dy);
    if (graphicsScene)
        rulers->followView();
    emit contentsScrolled(dx, dy);
}
