#include "FreeTools.h"

#include "measure/PrimitiveHitTest.h"
#include "measure/ToolTypes.h"

#include <QGraphicsSceneMouseEvent>

/// How a tool and its points are grabbed and moved, and the cursors that say so.
class tst_PrimitiveGeneralToolMoving final : public QObject, protected FreeTools
{
    Q_OBJECT

private slots:
    void init() { canvas = std::make_unique<CanvasFixture>(); }
    void cleanup() { canvas.reset(); }

    // Grabbing points

    void theLowestIndexWinsWhereDiscsOverlap()
    {
        FreeTool tool(*canvas, {free2, free1, ControlPoint(QPointF(104, 100), true, true)});
        QVERIFY(tool.hitControlPoint(QPointF(103, 101), Qt::LeftButton));
        QCOMPARE(tool.hitTest().index, 1);
        QCOMPARE(tool.hitTest().type, PrimitiveHitTest::CtrlPoint);
        QCOMPARE(tool.hitTest().grabOffset, QPointF(3, 1));
        QCOMPARE(tool.hitTest().pressPos, QPointF(103, 101));
        QCOMPARE(tool.hitTest().button, static_cast<int>(Qt::LeftButton));
        QCOMPARE(tool.hitTest().point.pos, QPointF(100, 100));
    }

    void aPointIsHitUpToItsRadius()
    {
        FreeTool tool(*canvas, {free1, free2});
        QVERIFY(tool.hitControlPoint(QPointF(103, 104), 0));
        QVERIFY(!tool.hitControlPoint(QPointF(103, 104.001), 0));
        QCOMPARE(tool.hitTest().type, PrimitiveHitTest::NoHit);
        QCOMPARE(tool.hitTest().index, -1);
        QCOMPARE(tool.hitTest().pressPos, QPointF(103, 104.001));
        QCOMPARE(tool.hitTest().grabOffset, QPointF(3, 4));
        canvas->view.zoomByScale(0.5);
        QVERIFY(tool.hitControlPoint(QPointF(106, 108), 0));
        QVERIFY(!tool.hitControlPoint(QPointF(106, 108.001), 0));
    }

    void onlyTheLeftButtonDragsAPoint()
    {
        FreeTool tool(*canvas, {free1, free2});
        QVERIFY(!tool.dragControlPoint(QPointF(10, 10)));
        tool.hitControlPoint(QPointF(100, 100), Qt::RightButton);
        QVERIFY(!tool.dragControlPoint(QPointF(10, 10)));
        tool.hitControlPoint(QPointF(102, 100), Qt::LeftButton);
        QVERIFY(tool.dragControlPoint(QPointF(52, 60)));
        QCOMPARE(tool.controlPoints()[0].pos, QPointF(50, 60));
    }

    void anUnfinishedToolLetsNoPointBeGrabbed()
    {
        auto* tool = canvas->draw(ToolType::Polyline, {{100, 100}, {200, 100}});
        QVERIFY(tool->hitControlPoint(QPointF(100, 100), Qt::LeftButton));
        QVERIFY(!tool->dragControlPoint(QPointF(50, 50)));
        QCOMPARE(CanvasFixture::pointOf(tool, 0), QPointF(100, 100));
    }

    void aPointMovesOnlyWhereItMay()
    {
        FreeTool tool(*canvas, {ControlPoint(QPointF(10, 20), false, true),
                                ControlPoint(QPointF(30, 40), true, false),
                                ControlPoint(QPointF(50, 60), false, false)});
        for (int i = 0; i < 3; ++i)
            tool.moveControlPoint(i, QPointF(300, 400));
        QCOMPARE(tool.controlPoints()[0].pos, QPointF(300, 20));
        QCOMPARE(tool.controlPoints()[1].pos, QPointF(30, 400));
        QCOMPARE(tool.controlPoints()[2].pos, QPointF(50, 60));
    }

    void anIndexThatDoesNotExistIsIgnored()
    {
        FreeTool tool(*canvas, {free1, free2});
        tool.moveControlPoint(-1, QPointF(1, 1));
        tool.moveControlPoint(2, QPointF(1, 1));
        QCOMPARE(tool.controlPoints().size(), 2);
        QCOMPARE(tool.controlPoints()[0].pos, free1.pos);
        QCOMPARE(tool.controlPoints()[1].pos, free2.pos);
    }

    // With the mouse

    void aPressOnAPointSelectsTheToolAloneAndMovesOnlyThatPoint()
    {
        auto* other = drawnLine(300);
        auto* line = drawnLine(100);
        canvas->startSelecting();
        other->setSelected(true);
        canvas->drag(QPointF(303, 102), QPointF(363, 142));
        QVERIFY(line->isSelected());
        QVERIFY(!other->isSelected());
        QCOMPARE(CanvasFixture::pointOf(line, 0), QPointF(100, 100));
        QCOMPARE(CanvasFixture::pointOf(line, 1), QPointF(360, 140));
        QCOMPARE(line->pos(), QPointF(100, 100));
    }

    void aReleaseForgetsTheHitButNotTheGrabOffset()
    {
        auto* line = drawnLine(100);
        line->hitControlPoint(QPointF(303, 104), Qt::LeftButton);
        QGraphicsSceneMouseEvent released(QEvent::GraphicsSceneMouseRelease);
        released.setButton(Qt::LeftButton);
        canvas->scene()->sendEvent(line, &released);
        QCOMPARE(line->hitTest().type, PrimitiveHitTest::NoHit);
        QCOMPARE(line->hitTest().index, -1);
        QCOMPARE(line->hitTest().button, 0);
        QCOMPARE(line->hitTest().pressPos, QPointF());
        QCOMPARE(line->hitTest().point.pos, QPointF());
        QCOMPARE(line->hitTest().grabOffset, QPointF(3, 4));
    }

    void aPressElsewhereMovesTheToolWithItsCompanions()
    {
        auto* other = drawnLine(300);
        auto* line = drawnLine(100);
        canvas->startSelecting();
        other->setSelected(true);
        QVERIFY(line->isSelected());
        canvas->drag(QPointF(130, 100), QPointF(150, 130));
        QCOMPARE(CanvasFixture::pointOf(line, 0), QPointF(120, 130));
        QCOMPARE(CanvasFixture::pointOf(line, 1), QPointF(320, 130));
        QCOMPARE(CanvasFixture::pointOf(other, 0), QPointF(120, 330));
    }

    void afterTheReleaseTheMouseDragsNoMore()
    {
        auto* line = drawnLine(100);
        canvas->startSelecting();
        canvas->drag(QPointF(300, 100), QPointF(360, 140));
        canvas->move(QPointF(400, 400));
        QCOMPARE(CanvasFixture::pointOf(line, 1), QPointF(360, 140));
    }

    void whileDraggingThePictureToolsAreUntouched()
    {
        auto* line = drawnLine(100);
        canvas->scene()->clearSelection();
        canvas->view.setPrimitiveDragMode(PrimitiveManager::Drag, -1);
        canvas->drag(QPointF(300, 100), QPointF(360, 140));
        canvas->drag(QPointF(150, 100), QPointF(160, 140));
        QCOMPARE(CanvasFixture::pointOf(line, 0), QPointF(100, 100));
        QCOMPARE(CanvasFixture::pointOf(line, 1), QPointF(300, 100));
        QVERIFY(!line->isSelected());
    }

    void aPointMayBeDraggedOutOfThePicture()
    {
        auto* line = drawnLine(100);
        canvas->startSelecting();
        canvas->drag(QPointF(100, 100), QPointF(-50, -30));
        QCOMPARE(CanvasFixture::pointOf(line, 0), QPointF(-50, -30));
    }

    void aWholeToolStopsAtThePicturesEdge_data()
    {
        QTest::addColumn<QPointF>("by");
        QTest::addColumn<QPointF>("firstPoint");
        // The line's discs reach 5 beyond its points (100, 100) and (300, 100).
        QTest::newRow("left") << QPointF(-140, 0) << QPointF(5, 100);
        QTest::newRow("right") << QPointF(560, 0) << QPointF(435, 100);
        QTest::newRow("top") << QPointF(0, -130) << QPointF(100, 5);
        QTest::newRow("bottom") << QPointF(0, 420) << QPointF(100, 475);
        QTest::newRow("corner") << QPointF(-160, -150) << QPointF(5, 5);
        QTest::newRow("inside") << QPointF(-90, 370) << QPointF(10, 470);
    }

    void aWholeToolStopsAtThePicturesEdge()
    {
        QFETCH(QPointF, by);
        auto* line = drawnLine(100);
        canvas->startSelecting();
        canvas->drag(QPointF(150, 100), QPointF(150, 100) + by);
        QTEST(CanvasFixture::pointOf(line, 0), "firstPoint");
        QVERIFY(canvas->scene()->sceneRect().contains(line->sceneBoundingRect()));
    }

    void aToolLargerThanThePictureEndsAtTheUpperBound()
    {
        auto* tool = add({ControlPoint(QPointF(-100, -100), true, true),
                          ControlPoint(QPointF(700, 500), true, true)});
        tool->setPos(0, 0);
        tool->setPos(30, 40);
        // 640 - 810 + 105 and 480 - 610 + 105.
        QCOMPARE(tool->pos(), QPointF(-65, -25));
    }

    void outsideOfASceneNothingIsClamped()
    {
        FreeTool tool(*canvas, {free1, free2});
        tool.setPos(-5000, 9000);
        QCOMPARE(tool.pos(), QPointF(-5000, 9000));
    }

    // Cursors

    void hoveringShowsWhatAPointMayDo_data()
    {
        QTest::addColumn<bool>("movesY");
        QTest::addColumn<bool>("movesX");
        QTest::addColumn<Qt::CursorShape>("shape");
        QTest::newRow("both") << true << true << Qt::SizeAllCursor;
        QTest::newRow("vertical") << true << false << Qt::SizeVerCursor;
        QTest::newRow("horizontal") << false << true << Qt::SizeHorCursor;
    }

    void hoveringShowsWhatAPointMayDo()
    {
        QFETCH(bool, movesY);
        QFETCH(bool, movesX);
        auto* tool = add({ControlPoint(QPointF(100, 100), movesY, movesX), free2});
        canvas->startSelecting();
        canvas->move(QPointF(101, 101));
        QVERIFY(tool->hasCursor());
        QTEST(tool->cursor().shape(), "shape");
        QCOMPARE(tool->hitTest().button, 0);
        canvas->move(QPointF(400, 400));
        QVERIFY(!tool->hasCursor());
    }

    void aPointThatMayNotMoveLeavesTheCursor()
    {
        auto* tool = add({ControlPoint(QPointF(100, 100), false, false), free2});
        canvas->startSelecting();
        canvas->move(QPointF(100, 100));
        QVERIFY(!tool->hasCursor());
    }

    void hoveringTheOutlineShowsTheMoveCursor()
    {
        auto* tool = add({free1, free2});
        canvas->startSelecting();
        canvas->move(QPointF(150, 100));
        QVERIFY(tool->hasCursor());
        QCOMPARE(tool->hitTest().type, PrimitiveHitTest::NoHit);
        QCOMPARE(tool->cursor().shape(), Qt::BitmapCursor);
        QCOMPARE(tool->cursor().hotSpot(), QPoint(12, 12));
    }

    void hoveringChangesNothingInTheOtherModes_data()
    {
        QTest::addColumn<int>("mode");
        QTest::newRow("drag") << 0;
        QTest::newRow("draw") << 2;
    }

    void hoveringChangesNothingInTheOtherModes()
    {
        QFETCH(int, mode);
        auto* tool = add({free1, free2});
        canvas->view.setPrimitiveDragMode(static_cast<PrimitiveManager::DragMode>(mode),
                                          ToolType::Line);
        canvas->move(QPointF(100, 100));
        canvas->move(QPointF(150, 100));
        QVERIFY(!tool->hasCursor());
        QCOMPARE(tool->hitTest().type, PrimitiveHitTest::NoHit);
        QCOMPARE(tool->hitTest().pressPos, QPointF());
    }

    void keysMoveNoTool()
    {
        auto* line = drawnLine(100);
        canvas->startSelecting();
        for (Qt::Key key : {Qt::Key_Left, Qt::Key_Up, Qt::Key_Delete, Qt::Key_Backspace})
            QTest::keyClick(&canvas->view, key);
        QCOMPARE(canvas->toolCount(), 1);
        QCOMPARE(line->pos(), QPointF(100, 100));
    }
};

QTEST_MAIN(tst_PrimitiveGeneralToolMoving)
#include "tst_PrimitiveGeneralToolMoving.moc"
