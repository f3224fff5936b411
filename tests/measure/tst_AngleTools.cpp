#include "measure/tools/AngleTools.h"

#include "support/CanvasFixture.h"

namespace {

const QString angleKey = QStringLiteral("angle");

} // namespace

class tst_AngleTools : public QObject
{
    Q_OBJECT

private slots:
    void init() { canvas = std::make_unique<CanvasFixture>(); }
    void cleanup() { canvas.reset(); }

    // Angle: arm end, vertex, arm end

    void anAngleIsSweptCounterClockwiseFromTheFirstArm_data()
    {
        QTest::addColumn<QPointF>("first");
        QTest::addColumn<QPointF>("second");
        QTest::addColumn<double>("angle");
        const QPointF right(400, 200);
        QTest::newRow("up") << right << QPointF(300, 100) << 90.0;
        QTest::newRow("left") << right << QPointF(200, 200) << 180.0;
        QTest::newRow("down is reflex") << right << QPointF(300, 300) << 270.0;
        QTest::newRow("half way down") << right << QPointF(400, 300) << 315.0;
        QTest::newRow("the other way round") << QPointF(300, 300) << right << 90.0;
    }

    void anAngleIsSweptCounterClockwiseFromTheFirstArm()
    {
        QFETCH(QPointF, first);
        QFETCH(QPointF, second);
        QFETCH(double, angle);
        const auto* tool =
            canvas->drawMeasuring(ToolType::Angle, {first, QPointF(300, 200), second});
        QCOMPARE(tool->type(), 65647);
        QVERIFY(tool->isFinished());
        QCOMPARE(tool->dimensionValue(angleKey), angle);
        QCOMPARE(canvas->cell(0, "angle").toDouble(), angle);
        QCOMPARE(tool->labelHtml(), QStringLiteral("1: <br>A=%1 &#xB0;").arg(angle));
    }

    void anAngleIsNotCalibrated()
    {
        const auto* tool = rightAngle();
        const QString unit = QStringLiteral("2_mm");
        canvas->manager()->setCalibration({QStringLiteral("2X"), 1e-6, QString(), unit}, unit);
        QCOMPARE(tool->dimensionValue(angleKey), 90.0);
        QCOMPARE(tool->labelHtml(), QStringLiteral("1: <br>A=90 &#xB0;"));
    }

    void armsMovedAcrossEachOtherPassThroughZero()
    {
        auto* tool = rightAngle();
        tool->moveControlPoint(2, QPointF(400, 199));
        QVERIFY(tool->dimensionValue(angleKey) > 0.0 && tool->dimensionValue(angleKey) < 1.0);
        tool->moveControlPoint(2, QPointF(400, 200));
        QCOMPARE(tool->dimensionValue(angleKey), 0.0);
        QCOMPARE(tool->labelHtml(), QStringLiteral("1: <br>"));
        QVERIFY(!canvas->cell(0, "angle").isValid());
        tool->moveControlPoint(2, QPointF(400, 201));
        QVERIFY(tool->dimensionValue(angleKey) > 359.0 && tool->dimensionValue(angleKey) < 360.0);
    }

    void anArmOfNoLengthHidesTheValue()
    {
        auto* tool = rightAngle();
        tool->moveControlPoint(0, QPointF(300, 200));
        QCOMPARE(tool->dimensionValue(angleKey), 0.0);
        QCOMPARE(tool->labelHtml(), QStringLiteral("1: <br>"));
    }

    void anAngleHasNoValueBeforeItsThirdPoint()
    {
        const auto* tool = canvas->drawMeasuring(ToolType::Angle, {QPointF(400, 200)});
        canvas->move(QPointF(300, 200));
        QVERIFY(!tool->dimensionValues().contains(angleKey));
        QCOMPARE(tool->labelAnchor(), QPointF(0, 0));
        QCOMPARE(tool->boundingRect(), QRectF(-105, -5, 110, 10));
        canvas->click(QPointF(300, 200));
        canvas->move(QPointF(300, 100));
        QCOMPARE(tool->dimensionValue(angleKey), 90.0);
        QCOMPARE(tool->labelAnchor(), QPointF(-100, 0));
        QCOMPARE(tool->dimensionLabel()->pos(), QPointF(-100, 0));
    }

    void theRectangleOfAnAngleHoldsItsArc()
    {
        auto* tool = rightAngle();
        tool->setDimensionAngularRadius(150.0);
        QCOMPARE(tool->sceneBoundingRect(), QRectF(150, 50, 300, 300));
        canvas->view.zoomByScale(2.0);
        QCOMPARE(tool->sceneBoundingRect(), QRectF(225, 97.5, 177.5, 177.5));
    }

    void theArcMarksTheAngleThatIsMeasured()
    {
        auto* tool = prepared(rightAngle());
        QVERIFY(isDrawnAt(onCircle(QPointF(300, 200), 45.0)));
        QVERIFY(!isDrawnAt(onCircle(QPointF(300, 200), 225.0)));
        tool->moveControlPoint(2, QPointF(300, 300));
        QVERIFY(isDrawnAt(onCircle(QPointF(300, 200), 45.0)));
        QVERIFY(isDrawnAt(onCircle(QPointF(300, 200), 225.0)));
        QVERIFY(!isDrawnAt(onCircle(QPointF(300, 200), 315.0)));
    }

    void theArcKeepsItsSizeOnScreen()
    {
        prepared(rightAngle());
        canvas->view.zoomByScale(2.0);
        canvas->view.centerOn(300, 200);
        QVERIFY(isDrawnAt(onCircle(QPointF(300, 200), 45.0, 20.0)));
        QVERIFY(!isDrawnAt(onCircle(QPointF(300, 200), 45.0, 40.0)));
    }

    void theArcIsNotSensitive()
    {
        const auto* tool = prepared(rightAngle());
        QVERIFY(!tool->contains(tool->mapFromScene(onCircle(QPointF(300, 200), 45.0))));
        QVERIFY(tool->contains(tool->mapFromScene(QPointF(350, 200))));
    }

    // Angle by four points

    void theAngleIsAtTheIntersectionOfBothLines()
    {
        auto* tool = crossing();
        QCOMPARE(tool->type(), 65648);
        tool->moveControlPoint(3, QPointF(300, 100));
        // From the right arm to the upper one.
        QCOMPARE(tool->dimensionValue(angleKey), 90.0);
        QCOMPARE(tool->labelHtml(), QStringLiteral("1: <br>A=90 &#xB0;"));
        QCOMPARE(tool->dimensionLabel()->pos(), tool->mapFromScene(QPointF(400, 200)));
    }

    void theValueLagsTheFigureByOneMove()
    {
        auto* tool = crossing();
        tool->moveControlPoint(3, QPointF(300, 100));
        tool->moveControlPoint(1, QPointF(400, 150));
        // The intersection of before was (300, 200); the first line now ends at (400, 150).
        const double lagging = 90.0 - QLineF(300, 200, 400, 150).angle();
        QCOMPARE(tool->dimensionValue(angleKey), lagging);
        tool->moveControlPoint(1, QPointF(400, 150));
        // The first line from (200, 200) to (400, 150) meets x = 300 at y = 175.
        const double caughtUp = 90.0 - QLineF(300, 175, 400, 150).angle();
        QCOMPARE(tool->dimensionValue(angleKey), caughtUp);
        QVERIFY(!qFuzzyCompare(lagging, caughtUp));
    }

    void aLabelShowsTheLaggingValueToo()
    {
        auto* tool = crossing();
        tool->moveControlPoint(3, QPointF(300, 100));
        tool->moveControlPoint(1, QPointF(400, 150));
        QCOMPARE(tool->dimensionLabel()->toPlainText(),
                 QStringLiteral("1: \nA=%1 °").arg(tool->dimensionValue(angleKey), 0, 'g', 6));
    }

    void parallelLinesKeepTheLastValue()
    {
        auto* tool = prepared(crossing());
        tool->moveControlPoint(3, QPointF(300, 100));
        QCOMPARE(tool->dimensionValue(angleKey), 90.0);
        tool->moveControlPoint(2, QPointF(200, 300));
        tool->moveControlPoint(3, QPointF(400, 300));
        const double last = tool->dimensionValue(angleKey);
        tool->moveControlPoint(3, QPointF(350, 300));
        tool->moveControlPoint(3, QPointF(400, 300));
        QCOMPARE(tool->dimensionValue(angleKey), last);
        QCOMPARE(canvas->cell(0, "angle").toDouble(), last);
        // No arc is counted in any more: discs around the points alone.
        QCOMPARE(tool->sceneBoundingRect(), QRectF(195, 195, 210, 110));
    }

    void dashesLeadToAnIntersectionBeyondTheSegments()
    {
        // They meet at (300, 200): beyond the nearer ends (350, 200) and (300, 150).
        auto* tool = prepared(
            canvas->drawMeasuring(ToolType::Angle4, {QPointF(500, 200), QPointF(350, 200),
                                                     QPointF(300, 50), QPointF(300, 150)}));
        tool->setDimensionAngularRadius(5.0);
        QVERIFY(dashesBetween(QPointF(345, 200), QPointF(310, 200)));
        QVERIFY(dashesBetween(QPointF(300, 145), QPointF(300, 190)));
        QVERIFY(!isDrawnAt(QPointF(510, 200)));
        QVERIFY(!isDrawnAt(QPointF(300, 40)));
    }

    void noDashesInsideTheSegments()
    {
        auto* tool = prepared(crossing());
        tool->setDimensionAngularRadius(5.0);
        QVERIFY(!dashesBetween(QPointF(280, 200), QPointF(220, 200)));
        QVERIFY(!isDrawnAt(QPointF(420, 200)));
        QVERIFY(!isDrawnAt(QPointF(180, 200)));
    }

    void theRectangleHoldsTheIntersection()
    {
        auto* tool = canvas->drawMeasuring(ToolType::Angle4, {QPointF(500, 200), QPointF(450, 200),
                                                              QPointF(300, 50), QPointF(300, 100)});
        tool->setDimensionAngularRadius(20.0);
        QCOMPARE(tool->sceneBoundingRect(), QRectF(280, 45, 225, 175));
    }

    void twoPointsAloneAreOneLine()
    {
        auto* tool =
            canvas->drawMeasuring(ToolType::Angle4, {QPointF(200, 200), QPointF(400, 200)});
        tool->setLineColor(QColor(Qt::green));
        tool->setLineWidth(2);
        canvas->move(QPointF(300, 350));
        QVERIFY(isDrawnAt(QPointF(300, 200)));
        // The third point makes no line yet.
        QVERIFY(!isDrawnAt(QPointF(350, 275)));
        QCOMPARE(tool->labelAnchor(), QPointF(0, 0));
        QVERIFY(!tool->dimensionValues().contains(angleKey));
    }

private:
    /// Arms to the right and upwards from (300, 200).
    PrimitiveDimensionTool* rightAngle()
    {
        return canvas->drawMeasuring(ToolType::Angle,
                                     {QPointF(400, 200), QPointF(300, 200), QPointF(300, 100)});
    }

    /// A horizontal line to the right and a vertical one upwards that cross at (300, 200).
    PrimitiveDimensionTool* crossing()
    {
        return canvas->drawMeasuring(ToolType::Angle4, {QPointF(200, 200), QPointF(400, 200),
                                                        QPointF(300, 300), QPointF(300, 100)});
    }

    /// With an arc of 40 pixels, a thin green pen, no discs, and its label out of the way.
    static PrimitiveDimensionTool* prepared(PrimitiveDimensionTool* tool)
    {
        tool->setDimensionAngularRadius(40.0);
        tool->setLineColor(QColor(Qt::green));
        tool->setLineWidth(2);
        tool->setCtrlPointRadius(5.0);
        tool->setSelected(false);
        tool->dimensionLabel()->setPos(tool->mapFromScene(QPointF(10, 400)));
        return tool;
    }

    static QPointF onCircle(const QPointF& centre, double degrees, double radius = 40.0)
    {
        return QLineF::fromPolar(radius, degrees).translated(centre).p2();
    }

    bool isDrawnAt(const QPointF& scenePos) { return isGreen(canvas->shown(), scenePos); }

    /// Whether there is both line and gap on the way.
    bool dashesBetween(const QPointF& from, const QPointF& to)
    {
        const QImage image = canvas->shown();
        const QLineF way(from, to);
        int drawn = 0;
        int steps = 0;
        for (double t = 0.0; t <= 1.0; t += 1.0 / way.length()) {
            drawn += isGreen(image, way.pointAt(t));
            ++steps;
        }
        return drawn > 0 && drawn < steps;
    }

    bool isGreen(const QImage& image, const QPointF& scenePos) const
    {
        const QColor colour = image.pixelColor(canvas->view.mapFromScene(scenePos));
        return colour.green() > 160 && colour.red() < 40;
    }

    std::unique_ptr<CanvasFixture> canvas;
};

QTEST_MAIN(tst_AngleTools)
#include "tst_AngleTools.moc"
