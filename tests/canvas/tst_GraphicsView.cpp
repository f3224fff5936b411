#include "canvas/GraphicsScene.h"
#include "canvas/GraphicsView.h"
#include "canvas/QtCornerBox.h"
#include "canvas/QtRuleBar.h"
#include "measure/PrimitiveActionManager.h"
#include "support/Settle.h"

#include <QAction>
#include <QGraphicsRectItem>
#include <QMenu>
#include <QStyleOptionGraphicsItem>
#include <QTouchEvent>
#include <QtTest>

namespace {

class CountingItem : public QGraphicsRectItem
{
public:
    using QGraphicsRectItem::QGraphicsRectItem;

    void paint(QPainter* painter, const QStyleOptionGraphicsItem* option, QWidget* widget) override
    {
        ++painted;
        QGraphicsRectItem::paint(painter, option, widget);
    }
    void keyPressEvent(QKeyEvent*) override { ++keys; }

    int painted = 0;
    int keys = 0;
};

QImage frame(int width, int height, const QColor& colour = Qt::gray)
{
    QImage image(width, height, QImage::Format_RGB32);
    image.fill(colour);
    return image;
}

} // namespace

class tst_GraphicsView : public QObject
{
    Q_OBJECT

private slots:
    void init()
    {
        view = std::make_unique<GraphicsView>();
        view->resize(1000, 700);
        view->show();
        QVERIFY(QTest::qWaitForWindowExposed(view.get()));
        view->setImage(frame(1920, 1080));
    }

    void cleanup() { view.reset(); }

    // Zoom

    void aWheelNotchNearActualSizeRestsThere()
    {
        view->zoom(247.0);
        turnWheel(120);
        QCOMPARE(view->level(), 250.0);
        turnWheel(120);
        QCOMPARE(view->level(), 256.0);
        turnWheel(-240);
        QCOMPARE(view->level(), 250.0);
    }

    void aSmallWheelDeltaOnlyAppliesTheMatrix()
    {
        view->zoom(300.0);
        QSignalSpy matrix(view.get(), &GraphicsView::matrixChanged);
        turnWheel(60);
        QCOMPARE(view->level(), 300.0);
        QCOMPARE(matrix.count(), 1);
        QCOMPARE(matrix[0][0].toDouble(), 2.0);
    }

    void theWheelKeepsThePointUnderTheCursor()
    {
        view->zoom(300.0);
        const QPoint cursor(333, 222);
        QTest::mouseMove(view->viewport(), cursor);
        const QPointF before = view->mapToScene(cursor);
        turnWheel(120, cursor);
        const QPointF after = view->mapToScene(cursor);
        QVERIFY2(QLineF(before, after).length() < 1.5, qPrintable(QString::number(after.x())));
    }

    void scalesAreHeldInsideTheLevels()
    {
        view->zoomByScale(0.25);
        QCOMPARE(view->level(), 150.0);
        QCOMPARE(view->transform().m11(), 0.25);
        view->zoomByScale(100.0);
        QCOMPARE(view->level(), 500.0);
        QCOMPARE(view->transform().m11(), 32.0);
        view->zoom(-20.0);
        QCOMPARE(view->level(), 0.0);
    }

    void zoomStepsEmitScaleAndRotation()
    {
        view->zoom(250.0);
        QSignalSpy matrix(view.get(), &GraphicsView::matrixChanged);
        view->zoomIn(50.0);
        view->rotate90();
        QCOMPARE(matrix.count(), 2);
        QCOMPARE(matrix[0], QVariantList({2.0, 0}));
        QCOMPARE(matrix[1], QVariantList({2.0, -90}));
    }

    void fourQuarterTurnsComeBackToZero()
    {
        QSignalSpy matrix(view.get(), &GraphicsView::matrixChanged);
        for (int i = 0; i < 4; ++i)
            view->rotate90();
        QCOMPARE(matrix.last()[1].toInt(), 0);
    }

    void flipAndMirrorNegateOneAxisEach()
    {
        view->zoomActualSize();
        view->flip(true);
        QCOMPARE(view->transform().m11(), 1.0);
        QCOMPARE(view->transform().m22(), -1.0);
        QSignalSpy matrix(view.get(), &GraphicsView::matrixChanged);
        view->mirror(true);
        QCOMPARE(view->transform().m11(), -1.0);
        QCOMPARE(matrix.last()[0].toDouble(), 1.0);
    }

    void bestFitFillsTheViewportWithoutDistortion()
    {
        view->zoomBestFit();
        const QRectF picture = view->viewportTransform().mapRect(view->imageScene()->sceneRect());
        const QSize viewport = view->viewport()->size();
        QVERIFY(qAbs(picture.width() - viewport.width()) < 1.0);
        QVERIFY(picture.height() <= viewport.height());
        QCOMPARE(view->transform().m11(), view->transform().m22());
        QCOMPARE(view->level(), 250.0 + 50.0 * std::log2(viewport.width() / 1920.0));
    }

    void otherFitModesTakeEffectAtTheNextFit()
    {
        const double before = view->transform().m11();
        view->setBestFitMode(Qt::KeepAspectRatioByExpanding);
        QCOMPARE(view->transform().m11(), before);
        view->zoomBestFit();
        QVERIFY(qAbs(view->transform().m11() - view->viewport()->height() / 1080.0) < 1e-9);
        view->setBestFitMode(Qt::IgnoreAspectRatio);
        view->zoomBestFit();
        QVERIFY(qAbs(view->transform().m11() - view->viewport()->width() / 1920.0) < 1e-9);
        QVERIFY(qAbs(view->transform().m22() - view->viewport()->height() / 1080.0) < 1e-9);
    }

    void aResizeKeepsTheFitOnlyInThatState()
    {
        view->zoomBestFit();
        const double fitted = view->transform().m11();
        view->resize(500, 350);
        QVERIFY(view->transform().m11() < 0.6 * fitted);
        view->zoomActualSize();
        view->resize(800, 600);
        QCOMPARE(view->transform().m11(), 1.0);
    }

    // Frames

    void aFrameOfTheSameSizeEmitsNothing()
    {
        view->zoom(300.0);
        settle();
        QSignalSpy info(view.get(), &GraphicsView::imageInfoChanged);
        QSignalSpy matrix(view.get(), &GraphicsView::matrixChanged);
        QSignalSpy changed(view->imageScene(), &QGraphicsScene::changed);
        QSignalSpy rect(view->imageScene(), &QGraphicsScene::sceneRectChanged);
        view->setImage(frame(1920, 1080, Qt::red));
        settle();
        QCOMPARE(info.count() + matrix.count() + changed.count() + rect.count(), 0);
        QCOMPARE(view->viewport()->grab().toImage().pixelColor(400, 300), QColor(Qt::red));
    }

    void aFrameOfAnotherSizeReturnsToBestFit()
    {
        view->zoom(300.0);
        QSignalSpy info(view.get(), &GraphicsView::imageInfoChanged);
        QTest::ignoreMessage(QtInfoMsg, "Scene rect changed.");
        view->setImage(frame(640, 480));
        QCOMPARE(info.count(), 1);
        QCOMPARE(info[0], QVariantList({640, 480}));
        QVERIFY(view->isBestFit());
        QCOMPARE(view->sceneRect(), QRectF(0, 0, 640, 480));
    }

    void aFramePaintsNoItemAgain()
    {
        auto* item = new CountingItem(100, 100, 300, 300);
        view->imageScene()->addItem(item);
        settle();
        const int before = item->painted;
        QVERIFY(before > 0);
        for (int i = 0; i < 5; ++i) {
            view->setImage(frame(1920, 1080, QColor(i, i, i)));
            view->viewport()->repaint();
            settle();
        }
        QCOMPARE(item->painted, before);
    }

    void aMovedItemShowsAtItsNewPlaceOnly()
    {
        view->zoomActualSize();
        view->centerOn(300, 300);
        auto* item = new CountingItem(0, 0, 40, 40);
        item->setBrush(Qt::yellow);
        item->setPos(250, 250);
        view->imageScene()->addItem(item);
        QTRY_COMPARE(shownAt(QPointF(270, 270)), QColor(Qt::yellow));
        item->setPos(350, 350);
        QTRY_COMPARE(shownAt(QPointF(370, 370)), QColor(Qt::yellow));
        QCOMPARE(shownAt(QPointF(270, 270)), QColor(Qt::gray));
    }

    // Keys and mouse

    void fullScreenKeysDoNothingInAWindow_data()
    {
        QTest::addColumn<int>("key");
        QTest::newRow("Escape") << int(Qt::Key_Escape);
        QTest::newRow("F11") << int(Qt::Key_F11);
    }

    void fullScreenKeysDoNothingInAWindow()
    {
        QFETCH(int, key);
        view->fullscreenKey = QKeySequence(Qt::Key_F11);
        view->setPrimitiveDragMode(PrimitiveManager::Select, -1);
        auto* item = new CountingItem(0, 0, 10, 10);
        item->setFlag(QGraphicsItem::ItemIsFocusable);
        view->imageScene()->addItem(item);
        item->setFocus();
        QTest::keyClick(view.get(), static_cast<Qt::Key>(key));
        QVERIFY(!view->isInFullScreen());
        QCOMPARE(item->keys, 0);
        QTest::keyClick(view.get(), Qt::Key_A);
        QCOMPARE(item->keys, 1);
    }

    void anEmptyFullScreenKeyMatchesNothing()
    {
        view->fullscreenKey = QKeySequence();
        view->setPrimitiveDragMode(PrimitiveManager::Select, -1);
        auto* item = new CountingItem(0, 0, 10, 10);
        item->setFlag(QGraphicsItem::ItemIsFocusable);
        view->imageScene()->addItem(item);
        item->setFocus();
        QTest::keyClick(view.get(), Qt::Key_F11);
        QCOMPARE(item->keys, 1);
    }

    void mouseMovesTellScenePositionAndMoveTheMarkers()
    {
        view->zoomActualSize();
        view->centerOn(600, 500);
        QSignalSpy position(view.get(), &GraphicsView::cursorPositionChanged);
        const QPoint at(120, 80);
        QTest::mouseMove(view->viewport(), at);
        QTRY_VERIFY(!position.isEmpty());
        const QPointF scenePos = view->mapToScene(at);
        QCOMPARE(position.last(), QVariantList({int(scenePos.x()), int(scenePos.y())}));
    }

    void aRightClickWithoutSelectionShowsNoMenu()
    {
        QContextMenuEvent event(QContextMenuEvent::Mouse, QPoint(50, 50),
                                view->mapToGlobal(QPoint(50, 50)));
        bool shown = false;
        const QObject whileOpen;
        QTimer::singleShot(0, &whileOpen, [&shown] {
            if (auto* menu = QApplication::activePopupWidget()) {
                shown = true;
                menu->close();
            }
        });
        QCoreApplication::sendEvent(view->viewport(), &event);
        settle();
        QVERIFY(!shown);
    }

    void aSelectedToolOffersDelete()
    {
        addLine();
        QStringList entries;
        const QObject whileOpen;
        QTimer::singleShot(0, &whileOpen, [&entries] {
            auto* menu = qobject_cast<QMenu*>(QApplication::activePopupWidget());
            for (const QAction* action : menu ? menu->actions() : QList<QAction*>())
                entries << action->text();
            if (menu)
                menu->close();
        });
        QContextMenuEvent event(QContextMenuEvent::Mouse, QPoint(50, 50),
                                view->mapToGlobal(QPoint(50, 50)));
        QCoreApplication::sendEvent(view->viewport(), &event);
        QCOMPARE(entries, QStringList({QStringLiteral("&Delete")}));
    }

    // Pinch

    void aPinchShowsItsScaleAndCommitsItOnRelease()
    {
        view->zoom(250.0);
        auto* device = QTest::createTouchDevice();
        QWidget* target = view->viewport();
        touch(device).press(0, QPoint(200, 200), target).press(1, QPoint(300, 200), target);
        touch(device).move(0, QPoint(150, 200), target).move(1, QPoint(350, 200), target);
        QCOMPARE(view->transform().m11(), 2.0);
        QCOMPARE(view->level(), 250.0);
        touch(device).release(0, QPoint(150, 200), target).release(1, QPoint(350, 200), target);
        QCOMPARE(view->level(), 300.0);
    }

    void touchesOfOneFingerAreConsumedWithoutEffect()
    {
        view->zoom(250.0);
        auto* device = QTest::createTouchDevice();
        QWidget* target = view->viewport();
        touch(device).press(0, QPoint(200, 200), target);
        touch(device).move(0, QPoint(260, 200), target);
        touch(device).release(0, QPoint(260, 200), target);
        QCOMPARE(view->level(), 250.0);
    }

    // Modes

    void modesSetDragModeAndCursor_data()
    {
        QTest::addColumn<int>("mode");
        QTest::addColumn<int>("type");
        QTest::addColumn<int>("dragMode");
        QTest::addColumn<int>("cursor");
        QTest::newRow("drag") << 0 << -1 << int(QGraphicsView::ScrollHandDrag)
                              << int(Qt::OpenHandCursor);
        QTest::newRow("select") << 1 << -1 << int(QGraphicsView::RubberBandDrag)
                                << int(Qt::ArrowCursor);
        QTest::newRow("line") << 2 << 65637 << int(QGraphicsView::NoDrag) << int(Qt::CrossCursor);
        QTest::newRow("annotation")
            << 2 << 65542 << int(QGraphicsView::NoDrag) << int(Qt::IBeamCursor);
        QTest::newRow("text") << 2 << 65737 << int(QGraphicsView::NoDrag) << int(Qt::IBeamCursor);
    }

    void modesSetDragModeAndCursor()
    {
        QFETCH(int, mode);
        QFETCH(int, type);
        QFETCH(int, dragMode);
        QFETCH(int, cursor);
        view->setPrimitiveDragMode(PrimitiveManager::Draw, 65639);
        view->setPrimitiveDragMode(static_cast<PrimitiveManager::DragMode>(mode), type);
        QCOMPARE(int(view->dragMode()), dragMode);
        QCOMPARE(int(view->viewport()->cursor().shape()), cursor);
        QCOMPARE(int(view->manager()->dragMode()), mode);
        QCOMPARE(view->manager()->toolType(), type);
    }

    void aRubberBandShowsAndSelects()
    {
        view->zoomActualSize();
        view->centerOn(500, 400);
        auto* item = view->imageScene()->addRect(500, 400, 30, 30);
        item->setFlag(QGraphicsItem::ItemIsSelectable);
        view->setPrimitiveDragMode(PrimitiveManager::Select, -1);
        const QPoint from = view->mapFromScene(QPointF(450, 350));
        const QPoint to = view->mapFromScene(QPointF(580, 480));
        QTest::mousePress(view->viewport(), Qt::LeftButton, {}, from);
        const QColor before = view->viewport()->grab().toImage().pixelColor(from + QPoint(20, 0));
        move(to, Qt::LeftButton);
        QVERIFY(!view->rubberBandRect().isNull());
        QVERIFY(view->viewport()->grab().toImage().pixelColor(from + QPoint(20, 0)) != before);
        QTest::mouseRelease(view->viewport(), Qt::LeftButton, {}, to);
        QVERIFY(item->isSelected());
    }

    // Rulers

    void rulersFollowTheView()
    {
        const auto rulers = view->findChildren<QtRuleBar*>();
        QCOMPARE(rulers.size(), 2);
        const QtRuleBar* horizontal = rulers[0];
        const QtRuleBar* vertical = rulers[1];
        QCOMPARE(horizontal->geometry(), QRect(16, 0, 1000 - 17, 16));
        QCOMPARE(vertical->geometry(), QRect(0, 16, 16, 700 - 17));
        QCOMPARE(view->findChild<QtCornerBox*>()->geometry(), QRect(0, 0, 16, 16));

        view->zoomByScale(2.0);
        view->centerOn(700, 500);
        const QPoint origin = view->mapFromScene(QPointF(0, 0));
        QCOMPARE(horizontal->lower(), (0 - origin.x()) / 2.0);
        QCOMPARE(horizontal->upper(), (999 - 16 - origin.x()) / 2.0);
        QCOMPARE(vertical->lower(), (0 - origin.y()) / 2.0);
        QCOMPARE(vertical->upper(), (699 - 16 - origin.y()) / 2.0);
    }

    void aMirroredPictureReversesTheHorizontalRuler()
    {
        view->zoomActualSize();
        view->mirror(true);
        const QtRuleBar* horizontal = view->findChildren<QtRuleBar*>()[0];
        QVERIFY(horizontal->lower() > horizontal->upper());
    }

    void scrollingTellsItsDistance()
    {
        view->zoomByScale(4.0);
        QSignalSpy scrolled(view.get(), &GraphicsView::contentsScrolled);
        view->centerOn(900, 500);
        QVERIFY(!scrolled.isEmpty());
    }

private:
    void turnWheel(int delta, const QPoint& at = QPoint(200, 150))
    {
        QWheelEvent event(at, view->viewport()->mapToGlobal(at), QPoint(), QPoint(0, delta),
                          Qt::NoButton, Qt::NoModifier, Qt::NoScrollPhase, false);
        QCoreApplication::sendEvent(view->viewport(), &event);
        QVERIFY(event.isAccepted());
    }

    void move(const QPoint& to, Qt::MouseButtons buttons)
    {
        QMouseEvent event(QEvent::MouseMove, to, view->viewport()->mapToGlobal(to), Qt::NoButton,
                          buttons, Qt::NoModifier);
        QCoreApplication::sendEvent(view->viewport(), &event);
    }

    void addLine()
    {
        view->setPrimitiveDragMode(PrimitiveManager::Draw, 65637);
        QTest::mouseClick(view->viewport(), Qt::LeftButton, {}, QPoint(200, 200));
        move(QPoint(300, 250), Qt::NoButton);
        QTest::mouseClick(view->viewport(), Qt::LeftButton, {}, QPoint(300, 250));
        QCOMPARE(view->manager()->selectedGeneralTools().size(), 1);
    }

    QTest::QTouchEventSequence touch(QTouchDevice* device)
    {
        return QTest::touchEvent(view->viewport(), device);
    }

    QColor shownAt(const QPointF& scenePos)
    {
        return view->viewport()->grab().toImage().pixelColor(view->mapFromScene(scenePos));
    }

    std::unique_ptr<GraphicsView> view;
};

QTEST_MAIN(tst_GraphicsView)
#include "tst_GraphicsView.moc"
