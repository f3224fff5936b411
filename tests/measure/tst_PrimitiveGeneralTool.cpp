#include "measure/PrimitiveHitTest.h"
#include "measure/ToolTypes.h"
#include "preferences/ToolAttributes.h"
#include "support/CanvasFixture.h"

#include <QGraphicsSceneMouseEvent>
#include <QMetaProperty>
#include <QPainter>
#include <QSignalSpy>

namespace {

/// A finished tool with points that the test chooses; without its own drawing of an outline.
class FreeTool final : public PrimitiveGeneralTool
{
public:
    FreeTool(const CanvasFixture& canvas, const QVector<ControlPoint>& corners)
        : PrimitiveGeneralTool(canvas.manager(), canvas.scene(), QPointF(), true)
    {
        for (const ControlPoint& corner : corners)
            addControlPoint(corner.pos, corner.movesY, corner.movesX);
        FreeTool::setAttributes(toolAttributes(ToolType::Line));
    }

    int type() const override { return ToolType::Arrow; }
    int minPointCount() const override { return 2; }
    void paint(QPainter* painter, const QStyleOptionGraphicsItem* option, QWidget*) override
    {
        drawControlPointsIfSelected(painter, option);
    }

    using PrimitiveGeneralTool::drawAngleArc;
    using PrimitiveGeneralTool::drawControlPoints;
    using PrimitiveGeneralTool::drawCrossMark;
};

const ControlPoint free1(QPointF(100, 100), true, true);
const ControlPoint free2(QPointF(200, 100), true, true);

/// Of the painted pixels, in a picture with the origin at its centre.
template <typename Draw>
QRect paintedRect(Draw draw)
{
    QImage picture(80, 80, QImage::Format_ARGB32_Premultiplied);
    picture.fill(Qt::transparent);
    QPainter painter(&picture);
    painter.translate(40, 40);
    draw(&painter);
    painter.end();
    QRegion painted;
    for (int y = 0; y < 80; ++y)
        for (int x = 0; x < 80; ++x)
            if (qAlpha(picture.pixel(x, y)) > 0)
                painted += QRect(x - 40, y - 40, 1, 1);
    return painted.boundingRect();
}

} // namespace

class tst_PrimitiveGeneralTool : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase() { qRegisterMetaType<QGraphicsObject*>(); }
    void init() { canvas = std::make_unique<CanvasFixture>(); }
    void cleanup() { canvas.reset(); }

    // Set-up

    void flagsAndHoveringAreSet()
    {
        const auto* line = drawnLine();
        QCOMPARE(static_cast<int>(line->flags()), 2051);
        QVERIFY(line->acceptHoverEvents());
    }

    void aToolWithoutAPositionIsFinishedFromTheStart()
    {
        const FreeTool tool(*canvas, {free1, free2});
        QVERIFY(tool.isFinished());
        QCOMPARE(tool.pos(), QPointF(0, 0));
    }

    void bothSignalsReachTheManager()
    {
        QSignalSpy announced(canvas->manager(), &PrimitiveManager::toolSelected);
        auto* tool = add({free1, free2});
        QCOMPARE(announced.size(), 2);
        QCOMPARE(announced[0][0].value<QGraphicsObject*>(), tool);
        QCOMPARE(announced[0][1].toBool(), false);
        QCOMPARE(announced[1][1].toBool(), true);
    }

    // Attributes

    void attributesComeBackAsTheyWereSet()
    {
        FreeTool tool(*canvas, {free1, free2});
        const AttributeHash wanted{{AttributeKeys::lineWidth(), 3},
                                   {AttributeKeys::lineColor(), QColor(1, 2, 3, 4)},
                                   {AttributeKeys::linePenStyle(), 4},
                                   {AttributeKeys::fillColor(), QColor(5, 6, 7, 8)},
                                   {AttributeKeys::angularDimensionRadius(), 22.5},
                                   {AttributeKeys::ctrlPointRadius(), 6.5},
                                   {AttributeKeys::ctrlPointBorderWidth(), 4},
                                   {AttributeKeys::ctrlPointBorderColor(), QColor(9, 10, 11)},
                                   {AttributeKeys::ctrlPointColor(), QColor(12, 13, 14)}};
        tool.setAttributes(wanted);
        const AttributeHash got = tool.attributes();
        QCOMPARE(got.size(), wanted.size());
        for (auto it = wanted.begin(); it != wanted.end(); ++it)
            QCOMPARE(got.value(it.key()), it.value());
    }

    void aMissingAttributeBecomesNothing()
    {
        FreeTool tool(*canvas, {free1, free2});
        tool.setAttributes({{AttributeKeys::lineWidth(), 3.0}});
        QCOMPARE(tool.getLineWidth(), 3);
        QCOMPARE(tool.getCtrlPointRadius(), 0.0);
        QVERIFY(!tool.getLineColor().isValid());
        QCOMPARE(tool.getLinePenStyle(), Qt::NoPen);
    }

    void thePropertiesComeInTheirOrder()
    {
        const QMetaObject& meta = PrimitiveGeneralTool::staticMetaObject;
        QStringList names;
        for (int i = meta.propertyOffset(); i < meta.propertyCount(); ++i)
            names << QLatin1String(meta.property(i).name());
        QCOMPARE(names.join(QLatin1Char(' ')),
                 QStringLiteral("lineWidth lineColor linePenStyle fillColor dimensionAngularRadius "
                                "ctrlPointRadius ctrlPointBorderWidth ctrlPointBorderColor "
                                "ctrlPointFillColor"));
    }

    void propertiesSetAndGet()
    {
        FreeTool tool(*canvas, {free1, free2});
        const auto roundTrip = [&](const char* name, const QVariant& value) {
            tool.setProperty(name, value);
            return tool.property(name) == value;
        };
        QVERIFY(roundTrip("lineWidth", 9));
        QVERIFY(roundTrip("lineColor", QColor(Qt::red)));
        QVERIFY(roundTrip("fillColor", QColor(Qt::green)));
        QVERIFY(roundTrip("dimensionAngularRadius", 33.5));
        QVERIFY(roundTrip("ctrlPointRadius", 7.25));
        QVERIFY(roundTrip("ctrlPointBorderColor", QColor(Qt::blue)));
        QVERIFY(roundTrip("ctrlPointFillColor", QColor(Qt::yellow)));
        tool.setProperty("linePenStyle", static_cast<int>(Qt::DotLine));
        QCOMPARE(tool.getLinePenStyle(), Qt::DotLine);
        tool.setProperty("ctrlPointBorderWidth", 2.9);
        QCOMPARE(tool.property("ctrlPointBorderWidth").toDouble(), 2.0);
    }

    // Bounds and hit area

    void theBoundsAreThePointsAndTheirDiscs_data()
    {
        QTest::addColumn<double>("scale");
        QTest::addColumn<double>("margin");
        QTest::newRow("25 %") << 0.25 << 20.0;
        QTest::newRow("100 %") << 1.0 << 5.0;
        QTest::newRow("400 %") << 4.0 << 1.25;
    }

    void theBoundsAreThePointsAndTheirDiscs()
    {
        QFETCH(double, scale);
        QFETCH(double, margin);
        canvas->view.zoomByScale(scale);
        FreeTool tool(*canvas, {free1, free2, ControlPoint(QPointF(150, 40), true, true)});
        tool.setLineWidth(50);
        const QRectF points(QPointF(100, 40), QPointF(200, 100));
        QCOMPARE(tool.boundingRect(), points.adjusted(-margin, -margin, margin, margin));
    }

    void oneOrNoPointBoundsOnlyADisc()
    {
        QCOMPARE(FreeTool(*canvas, {free1}).boundingRect(), QRectF(95, 95, 10, 10));
        QCOMPARE(FreeTool(*canvas, {}).boundingRect(), QRectF(-5, -5, 10, 10));
    }

    void theSensitiveBandIsThreeLineWidthsWide()
    {
        FreeTool tool(*canvas, {free1, free2});
        tool.setLineWidth(4);
        tool.setCtrlPointRadius(1.0);
        QVERIFY(tool.shape().contains(QPointF(150, 105.9)));
        QVERIFY(!tool.shape().contains(QPointF(150, 106.1)));
        QVERIFY(tool.shape().contains(QPointF(150, 94.1)));
        QVERIFY(!tool.shape().contains(QPointF(150, 93.9)));
    }

    void discsAreSensitive()
    {
        const FreeTool tool(*canvas, {free1, free2});
        QVERIFY(tool.shape().contains(QPointF(100, 104.9)));
        QVERIFY(!tool.shape().contains(QPointF(100, 105.1)));
    }

    void theHitAreaIsRightStraightAfterAZoom_data()
    {
        QTest::addColumn<double>("scale");
        QTest::newRow("25 %") << 0.25;
        QTest::newRow("100 %") << 1.0;
        QTest::newRow("400 %") << 4.0;
    }

    void theHitAreaIsRightStraightAfterAZoom()
    {
        QFETCH(double, scale);
        auto* tool = add({ControlPoint(QPointF(300, 240), true, true),
                          ControlPoint(QPointF(340, 240), true, true)});
        canvas->view.zoomByScale(scale);
        const QPoint start = canvas->view.mapFromScene(QPointF(300, 240));
        QCOMPARE(canvas->view.itemAt(start), tool);
        QCOMPARE(canvas->view.itemAt(start - QPoint(4, 0)), tool);
        QVERIFY(!canvas->view.itemAt(start - QPoint(7, 0)));
        QVERIFY(!canvas->view.itemAt(start - QPoint(0, 7)));
        const QPoint middle = canvas->view.mapFromScene(QPointF(320, 240));
        QCOMPARE(canvas->view.itemAt(middle), tool);
        QVERIFY(scale < 1.0 || !canvas->view.itemAt(middle + QPoint(0, 4)));
    }

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

    // Drawing

    void discsKeepTheirSizeOnScreen()
    {
        FreeTool tool(*canvas, {ControlPoint(QPointF(0, 0), true, true)});
        // Radius 5 and half of the border's 2.
        QCOMPARE(paintedRect([&](QPainter* p) { tool.drawControlPoints(p, true); }),
                 QRect(-6, -6, 12, 12));
        canvas->view.zoomByScale(0.5);
        QCOMPARE(paintedRect([&](QPainter* p) { tool.drawControlPoints(p, true); }),
                 QRect(-12, -12, 24, 24));
        QCOMPARE(paintedRect([&](QPainter* p) { tool.drawControlPoints(p, false); }),
                 QRect(-6, -6, 12, 12));
    }

    void anAngleArcRunsCounterClockwiseFromTheFirstRay()
    {
        const FreeTool tool(*canvas, {free1, free2});
        const QPointF right(50, 0);
        const QPointF up(0, -50);
        const QRect quarter =
            paintedRect([&](QPainter* p) { tool.drawAngleArc(p, QPointF(), right, up); });
        QVERIFY2(quarter.left() >= -2 && quarter.bottom() <= 1, "only the upper right quarter");
        QVERIFY(qAbs(quarter.right() - 15) <= 1 && qAbs(quarter.top() + 15) <= 1);
        const QRect rest =
            paintedRect([&](QPainter* p) { tool.drawAngleArc(p, QPointF(), up, right); });
        QVERIFY(qAbs(rest.left() + 15) <= 1 && qAbs(rest.bottom() - 15) <= 1);
    }

    void aCrossMarkReachesItsSizeOnAllSides()
    {
        const FreeTool tool(*canvas, {free1, free2});
        const QRect mark =
            paintedRect([&](QPainter* p) { tool.drawCrossMark(p, QPointF(2, 3), 6); });
        QVERIFY(qAbs(mark.left() + 4) <= 1 && qAbs(mark.right() - 8) <= 1);
        QVERIFY(qAbs(mark.top() + 3) <= 1 && qAbs(mark.bottom() - 9) <= 1);
    }

private:
    FreeTool* add(const QVector<ControlPoint>& corners)
    {
        auto* tool = new FreeTool(*canvas, corners);
        canvas->manager()->addTool(tool);
        return tool;
    }

    /// From (100, y) to (300, y); the label stands in the middle.
    PrimitiveGeneralTool* drawnLine(double y = 100)
    {
        return canvas->draw(ToolType::Line, {{100, y}, {300, y}});
    }

    std::unique_ptr<CanvasFixture> canvas;
};

QTEST_MAIN(tst_PrimitiveGeneralTool)
#include "tst_PrimitiveGeneralTool.moc"
