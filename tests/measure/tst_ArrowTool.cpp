#include "measure/tools/ArrowTool.h"

#include "support/CanvasFixture.h"

#include <cmath>

class tst_ArrowTool : public QObject
{
    Q_OBJECT

private slots:
    void init() { canvas = std::make_unique<CanvasFixture>(); }
    void cleanup() { canvas.reset(); }

    void hasFourPointsFromTheFirstPressOn()
    {
        PrimitiveGeneralTool* arrow = canvas->draw(ToolType::Arrow, {QPointF(100, 200)});
        QCOMPARE(arrow->type(), 65537);
        QCOMPARE(arrow->minPointCount(), 4);
        QCOMPARE(arrow->maxPointCount(), 4);
        QCOMPARE(arrow->controlPoints().size(), 4);
        for (int i = 0; i < 4; ++i)
            QCOMPARE(canvas->pointOf(arrow, i), QPointF(100, 200));
        QVERIFY(!arrow->isFinished());
    }

    void measuresNothing()
    {
        PrimitiveGeneralTool* arrow = drawArrow();
        QVERIFY(arrow->isFinished());
        QCOMPARE(canvas->table()->rowCount(), 0);
        QVERIFY(arrow->childItems().isEmpty());
    }

    void everyColourMakesAnArrow_data()
    {
        QTest::addColumn<int>("type");
        QTest::addColumn<QColor>("line");
        QTest::addColumn<QColor>("fill");
        QTest::newRow("plain") << 65537 << QColor(67, 114, 157) << QColor(91, 155, 213);
        QTest::newRow("red") << 65538 << QColor(234, 112, 112) << QColor(253, 196, 182);
        QTest::newRow("blue") << 65539 << QColor(0, 0, 161) << QColor(31, 110, 212);
        QTest::newRow("green") << 65540 << QColor(65, 146, 75) << QColor(135, 226, 147);
        QTest::newRow("white") << 65541 << QColor(162, 169, 175) << QColor(235, 237, 236);
    }

    void everyColourMakesAnArrow()
    {
        QFETCH(int, type);
        QFETCH(QColor, line);
        QFETCH(QColor, fill);
        PrimitiveGeneralTool* arrow = canvas->draw(type, {QPointF(100, 200), QPointF(500, 200)});
        QCOMPARE(arrow->type(), 65537);
        QCOMPARE(arrow->getLineColor(), line);
        QCOMPARE(arrow->getFillColor(), fill);
    }

    /// For a shaft of 400 to the right: the head in the middle, wings 100 to the sides.
    void theHeadStandsInTheMiddleOfTheShaft()
    {
        PrimitiveGeneralTool* arrow = drawArrow();
        QCOMPARE(canvas->pointOf(arrow, 1), QPointF(300, 300));
        QCOMPARE(canvas->pointOf(arrow, 2), QPointF(300, 100));
        // The shaft is 50 wide to each side, the head 100.
        QCOMPARE(outline(arrow), QRectF(100, 100, 400, 200));
        QVERIFY(isFilledAt(QPointF(150, 245)));
        QVERIFY(!isFilledAt(QPointF(150, 255)));
        QVERIFY(isFilledAt(QPointF(305, 290)));
        QVERIFY(!isFilledAt(QPointF(480, 220)));
    }

    void theHeadLagsAMovedEndByOneStep()
    {
        PrimitiveGeneralTool* arrow = drawArrow();
        arrow->moveControlPoint(3, QPointF(100, 400));
        QCOMPARE(canvas->pointOf(arrow, 3), QPointF(100, 400));
        QCOMPARE(canvas->pointOf(arrow, 1), QPointF(300, 300));
        QCOMPARE(canvas->pointOf(arrow, 2), QPointF(300, 100));
        arrow->moveControlPoint(3, QPointF(100, 440));
        // The shaft was 200 downwards: the first side of a line pointing down lies to the left.
        QCOMPARE(canvas->pointOf(arrow, 1), QPointF(50, 300));
        QCOMPARE(canvas->pointOf(arrow, 2), QPointF(150, 300));
    }

    void theTailMovesTheHeadAsTheTipDoes()
    {
        PrimitiveGeneralTool* arrow = drawArrow();
        arrow->moveControlPoint(0, QPointF(300, 200));
        QCOMPARE(canvas->pointOf(arrow, 1), QPointF(300, 300));
        arrow->moveControlPoint(0, QPointF(300, 200));
        QCOMPARE(canvas->pointOf(arrow, 1), QPointF(400, 250));
        QCOMPARE(canvas->pointOf(arrow, 2), QPointF(400, 150));
    }

    void aWingHandleSetsPlaceAndWidthOfTheHead_data()
    {
        QTest::addColumn<int>("index");
        QTest::addColumn<QPointF>("target");
        QTest::addColumn<int>("other");
        QTest::addColumn<QPointF>("mirrored");
        // The width is the distance to the old place of the head's base, (300, 200).
        QTest::newRow("first") << 1 << QPointF(340, 230) << 2 << QPointF(340, 150);
        QTest::newRow("second") << 2 << QPointF(260, 170) << 1 << QPointF(260, 250);
    }

    void aWingHandleSetsPlaceAndWidthOfTheHead()
    {
        QFETCH(int, index);
        QFETCH(QPointF, target);
        QFETCH(int, other);
        QFETCH(QPointF, mirrored);
        PrimitiveGeneralTool* arrow = drawArrow();
        arrow->moveControlPoint(index, target);
        QCOMPARE(canvas->pointOf(arrow, index), target);
        QCOMPARE(canvas->pointOf(arrow, other), mirrored);
        QCOMPARE(outline(arrow), QRectF(100, 150, 400, 100));
        QCOMPARE(canvas->pointOf(arrow, 0), QPointF(100, 200));
        QCOMPARE(canvas->pointOf(arrow, 3), QPointF(500, 200));
    }

    void aWingHandleBeyondAnEndChangesNothing_data()
    {
        QTest::addColumn<int>("index");
        QTest::addColumn<QPointF>("target");
        QTest::newRow("first, beyond the tip") << 1 << QPointF(501, 260);
        QTest::newRow("first, beyond the tail") << 1 << QPointF(99, 260);
        QTest::newRow("second, beyond the tip") << 2 << QPointF(600, 100);
        QTest::newRow("second, beyond the tail") << 2 << QPointF(20, 100);
    }

    void aWingHandleBeyondAnEndChangesNothing()
    {
        QFETCH(int, index);
        QFETCH(QPointF, target);
        PrimitiveGeneralTool* arrow = drawArrow();
        const QRectF before = outline(arrow);
        arrow->moveControlPoint(index, target);
        QCOMPARE(canvas->pointOf(arrow, 1), QPointF(300, 300));
        QCOMPARE(canvas->pointOf(arrow, 2), QPointF(300, 100));
        QCOMPARE(outline(arrow), before);
    }

    /// On a slanting shaft the foot's rounded coordinates seldom lie on the line.
    void roundingRefusesNoFootInsideTheShaft()
    {
        const QPointF tail(103, 77);
        const QPointF tip(487, 391);
        PrimitiveGeneralTool* arrow = canvas->draw(ToolType::Arrow, {tail, tip});
        const QPointF along = tip - tail;
        const QPointF aside(along.y() / 7.0, -along.x() / 7.0);
        for (int step = 1; step < 100; ++step) {
            const QPointF target = tail + along * (step / 100.0) + aside;
            arrow->moveControlPoint(2, target);
            QVERIFY(QLineF(canvas->pointOf(arrow, 2), target).length() < 1e-9);
        }
        const QPointF last = canvas->pointOf(arrow, 2);
        for (const double beyond : {-0.001, 1.001}) {
            arrow->moveControlPoint(2, tail + along * beyond + aside);
            QCOMPARE(canvas->pointOf(arrow, 2), last);
        }
    }

    void aWingHandleCanBeDraggedWithTheMouse()
    {
        PrimitiveGeneralTool* arrow = drawArrow();
        canvas->startSelecting();
        canvas->drag(QPointF(300, 300), QPointF(340, 230));
        QCOMPARE(canvas->pointOf(arrow, 1), QPointF(340, 230));
        canvas->drag(QPointF(340, 230), QPointF(560, 230));
        QVERIFY(canvas->pointOf(arrow, 1).x() <= 500.0);
    }

    void anArrowOfNoLengthHasNoOutline()
    {
        canvas->startDrawing(ToolType::Arrow);
        canvas->press(QPointF(100, 200));
        canvas->press(QPointF(100, 200));
        PrimitiveGeneralTool* arrow = canvas->newest();
        QVERIFY(arrow->isFinished());
        QVERIFY(!std::isfinite(arrow->controlPoints()[1].pos.x()));
        QVERIFY(!std::isfinite(arrow->controlPoints()[2].pos.x()));
        QCOMPARE(arrow->boundingRect(), QRectF(-5, -5, 10, 10));
        QVERIFY(arrow->shape().contains(QPointF(3, 3)));
        QVERIFY(!isFilledAt(QPointF(100, 215)));
        arrow->moveControlPoint(1, QPointF(150, 250));
        QVERIFY(!std::isfinite(arrow->controlPoints()[1].pos.x()));
    }

    void anArrowOfNoLengthCanBePulledOut()
    {
        canvas->startDrawing(ToolType::Arrow);
        canvas->press(QPointF(100, 200));
        canvas->press(QPointF(100, 200));
        PrimitiveGeneralTool* arrow = canvas->newest();
        arrow->moveControlPoint(3, QPointF(500, 200));
        arrow->moveControlPoint(3, QPointF(500, 200));
        QCOMPARE(canvas->pointOf(arrow, 1), QPointF(300, 300));
        QCOMPARE(outline(arrow), QRectF(100, 100, 400, 200));
    }

    void widthsAreCutToWholePixels()
    {
        // 30 / 8 = 3.75: a half width of 3 for the shaft, 6 for the head.
        PrimitiveGeneralTool* arrow =
            canvas->draw(ToolType::Arrow, {QPointF(100, 200), QPointF(130, 200)});
        QCOMPARE(outline(arrow), QRectF(100, 194, 30, 12));
    }

    void onlyOutlineAndDiscsAreSensitive()
    {
        PrimitiveGeneralTool* arrow = drawArrow();
        const auto hits = [&](double x, double y) {
            return arrow->contains(arrow->mapFromScene(QPointF(x, y)));
        };
        QVERIFY(!hits(200, 200));
        QVERIFY(hits(200, 250));
        QVERIFY(hits(300, 280));
        QVERIFY(hits(503, 200));
        QVERIFY(!hits(507, 207));
    }

private:
    /// From (100, 200) to (500, 200).
    PrimitiveGeneralTool* drawArrow()
    {
        return canvas->draw(ToolType::Arrow, {QPointF(100, 200), QPointF(500, 200)});
    }

    /// The rectangle around the outline in scene coordinates: without the margin for the discs.
    QRectF outline(const PrimitiveGeneralTool* arrow) const
    {
        const double margin = arrow->getCtrlPointRadius();
        return arrow->sceneBoundingRect().adjusted(margin, margin, -margin, -margin);
    }

    bool isFilledAt(const QPointF& scenePos)
    {
        return canvas->shown().pixelColor(canvas->view.mapFromScene(scenePos)) ==
               QColor(91, 155, 213);
    }

    std::unique_ptr<CanvasFixture> canvas;
};

QTEST_MAIN(tst_ArrowTool)
#include "tst_ArrowTool.moc"
