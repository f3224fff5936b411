#include "measure/Geometry.h"

#include <QtTest>

#include <cmath>

namespace {

/// The line from (0, 0) to (100, 0).
QPainterPath linePath()
{
    QPainterPath path;
    path.lineTo(100.0, 0.0);
    return path;
}

QPen penOfWidth(double width)
{
    return QPen(QBrush(Qt::black), width, Qt::SolidLine, Qt::SquareCap, Qt::BevelJoin);
}

} // namespace

class tst_Geometry final : public QObject
{
    Q_OBJECT

private slots:
    void distanceIsThatOfPythagoras();
    void offsetsStandBesideBothEnds();
    void offsetsTurnWithTheLine();
    void offsetsOfALineWithoutLengthAreNotFinite();
    void footLiesOnTheEndlessLine();
    void footOnALineWithoutLengthIsNotFinite();
    void collinearityHasAThreshold();
    void circleRunsThroughItsPoints_data();
    void circleRunsThroughItsPoints();
    void collinearPointsHaveNoCircle();
    void shapeIsTheStrokeOfTheWidenedPen();
    void shapeOfAClosedOutlineHasNoInterior();
    void emptyPathAndMissingPenGiveThePath();
    void penWithoutWidthGivesAHairline();
};

void tst_Geometry::distanceIsThatOfPythagoras()
{
    QCOMPARE(pointDistance({1.0, 2.0}, {4.0, 6.0}), 5.0);
    QCOMPARE(pointDistance({4.0, 6.0}, {1.0, 2.0}), 5.0);
    QCOMPARE(pointDistance({-5.0, 0.0}, {7.0, 5.0}), 13.0);
    QCOMPARE(pointDistance({3.0, 3.0}, {3.0, 3.0}), 0.0);
}

void tst_Geometry::offsetsStandBesideBothEnds()
{
    // Along +x the normal is +y, which is down in the picture.
    const auto points = perpendicularOffsets(2.0, QPointF(0.0, 0.0), QPointF(10.0, 0.0));
    QCOMPARE(points[0], QPointF(10.0, 2.0));
    QCOMPARE(points[1], QPointF(10.0, -2.0));
    QCOMPARE(points[2], QPointF(0.0, 2.0));
    QCOMPARE(points[3], QPointF(0.0, -2.0));
}

void tst_Geometry::offsetsTurnWithTheLine()
{
    // The 3-4-5 line from (1, 1) has the normal (-4, 3) / 5.
    const auto points = perpendicularOffsets(10.0, QLineF(1.0, 1.0, 4.0, 5.0));
    QCOMPARE(points[0], QPointF(-4.0, 11.0));
    QCOMPARE(points[1], QPointF(12.0, -1.0));
    QCOMPARE(points[2], QPointF(-7.0, 7.0));
    QCOMPARE(points[3], QPointF(9.0, -5.0));
    QCOMPARE(perpendicularOffsets(10.0, QPointF(1.0, 1.0), QPointF(4.0, 5.0)), points);
}

void tst_Geometry::offsetsOfALineWithoutLengthAreNotFinite()
{
    const auto points = perpendicularOffsets(1.0, QPointF(3.0, 4.0), QPointF(3.0, 4.0));
    for (const QPointF& point : points)
        QVERIFY(!std::isfinite(point.x()) && !std::isfinite(point.y()));
}

void tst_Geometry::footLiesOnTheEndlessLine()
{
    const QPointF a(0.0, 0.0);
    const QPointF b(10.0, 0.0);
    QCOMPARE(projectOntoLine({4.0, 7.0}, a, b), QPointF(4.0, 0.0));
    QCOMPARE(projectOntoLine({-3.0, 7.0}, a, b), QPointF(-3.0, 0.0));
    QCOMPARE(projectOntoLine({25.0, -1.0}, a, b), QPointF(25.0, 0.0));
    // The diagonal x = y: the foot of (6, 2) halves the sum of the coordinates.
    QCOMPARE(projectOntoLine({6.0, 2.0}, QLineF(1.0, 1.0, 2.0, 2.0)), QPointF(4.0, 4.0));
}

void tst_Geometry::footOnALineWithoutLengthIsNotFinite()
{
    const QPointF foot = projectOntoLine({4.0, 7.0}, {1.0, 1.0}, {1.0, 1.0});
    QVERIFY(!std::isfinite(foot.x()) && !std::isfinite(foot.y()));
}

void tst_Geometry::collinearityHasAThreshold()
{
    QVERIFY(collinear({0.0, 0.0}, {1.0, 1.0}, {5.0, 5.0}));
    QVERIFY(collinear({2.0, 3.0}, {2.0, 3.0}, {9.0, -4.0}));
    QVERIFY(!collinear({0.0, 0.0}, {1.0, 1.0}, {5.0, 5.1}));
    // With the base from (0, 0) to (1, 0) the cross product is the height of the third point.
    QVERIFY(collinear({0.0, 0.0}, {1.0, 0.0}, {0.5, 0.0000099}));
    QVERIFY(!collinear({0.0, 0.0}, {1.0, 0.0}, {0.5, 0.0000101}));
    QVERIFY(collinear({0.0, 0.0}, {1.0, 0.0}, {0.5, -0.0000099}));
    QVERIFY(!collinear({0.0, 0.0}, {1.0, 0.0}, {0.5, -0.0000101}));
}

void tst_Geometry::circleRunsThroughItsPoints_data()
{
    QTest::addColumn<QPointF>("p1");
    QTest::addColumn<QPointF>("p2");
    QTest::addColumn<QPointF>("p3");
    QTest::addColumn<QPointF>("centre");
    QTest::addColumn<double>("radius");
    QTest::newRow("unit circle") << QPointF(1, 0) << QPointF(0, 1) << QPointF(-1, 0)
                                 << QPointF(0, 0) << 1.0;
    QTest::newRow("lattice points") << QPointF(10 + 3, 20 + 4) << QPointF(10 - 4, 20 + 3)
                                    << QPointF(10, 20 - 5) << QPointF(10, 20) << 5.0;
    QTest::newRow("other direction") << QPointF(10, 20 - 5) << QPointF(10 - 4, 20 + 3)
                                     << QPointF(10 + 3, 20 + 4) << QPointF(10, 20) << 5.0;
    QTest::newRow("right angle") << QPointF(0, 0) << QPointF(6, 0) << QPointF(0, 8) << QPointF(3, 4)
                                 << 5.0;
}

void tst_Geometry::circleRunsThroughItsPoints()
{
    QFETCH(QPointF, p1);
    QFETCH(QPointF, p2);
    QFETCH(QPointF, p3);
    double radius = 0.0;
    const QPointF centre = circleThroughThreePoints(p1, p2, p3, radius);
    QTEST(centre, "centre");
    QTEST(radius, "radius");
}

void tst_Geometry::collinearPointsHaveNoCircle()
{
    double radius = 9.0;
    QCOMPARE(circleThroughThreePoints({1, 1}, {2, 2}, {7, 7}, radius), QPointF(0.0, 0.0));
    QCOMPARE(radius, -1.0);
    radius = 9.0;
    QCOMPARE(circleThroughThreePoints({5, 5}, {5, 5}, {5, 5}, radius), QPointF(0.0, 0.0));
    QCOMPARE(radius, -1.0);
}

void tst_Geometry::shapeIsTheStrokeOfTheWidenedPen()
{
    // A band of 2 + 4 around the line, with square caps that reach as far beyond its ends.
    const QPainterPath band = shapeFromPath(linePath(), penOfWidth(2.0), 4.0);
    QVERIFY(band.contains(QPointF(50, 2.9)));
    QVERIFY(!band.contains(QPointF(50, 3.1)));
    QVERIFY(band.contains(QPointF(-2.9, 0)));
    QVERIFY(!band.contains(QPointF(-3.1, 0)));

    QPen flat = penOfWidth(2.0);
    flat.setCapStyle(Qt::FlatCap);
    const QPainterPath cut = shapeFromPath(linePath(), flat, 4.0);
    QVERIFY(cut.contains(QPointF(0.1, 2.9)));
    QVERIFY(!cut.contains(QPointF(-0.1, 0)));
}

void tst_Geometry::shapeOfAClosedOutlineHasNoInterior()
{
    QPainterPath square;
    square.addRect(0, 0, 100, 100);
    const QPainterPath shape = shapeFromPath(square, penOfWidth(2.0), 4.0);
    QVERIFY(shape.contains(QPointF(0, 50)));
    QVERIFY(shape.contains(QPointF(102.9, 50)));
    QVERIFY(!shape.contains(QPointF(50, 50)));
    QVERIFY(!shape.contains(QPointF(4, 50)));
}

void tst_Geometry::emptyPathAndMissingPenGiveThePath()
{
    QCOMPARE(shapeFromPath(QPainterPath(), penOfWidth(2.0), 4.0), QPainterPath());
    QPainterPath square;
    square.addRect(0, 0, 100, 100);
    QCOMPARE(shapeFromPath(square, QPen(Qt::NoPen), 4.0), square);
}

void tst_Geometry::penWithoutWidthGivesAHairline()
{
    const QPainterPath hairline = shapeFromPath(linePath(), penOfWidth(0.0), 4.0);
    QVERIFY(!hairline.isEmpty());
    QVERIFY(hairline.boundingRect().height() <= 0.00000002);
    QVERIFY(!hairline.contains(QPointF(50, 0.001)));
}

QTEST_MAIN(tst_Geometry)
#include "tst_Geometry.moc"
