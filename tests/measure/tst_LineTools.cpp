#include "measure/tools/LineTools.h"

#include "support/CanvasFixture.h"

#include <cmath>

namespace {

using Points = QVector<QPointF>;

const QString lengthKey = QStringLiteral("length");
const QString areaKey = QStringLiteral("area");
const QString perimeterKey = QStringLiteral("perimeter");

} // namespace

class tst_LineTools : public QObject
{
    Q_OBJECT

private slots:
    void init() { canvas = std::make_unique<CanvasFixture>(); }
    void cleanup() { canvas.reset(); }

    void tellTheirNumbers_data()
    {
        QTest::addColumn<int>("type");
        QTest::addColumn<int>("least");
        QTest::addColumn<int>("most");
        QTest::newRow("line") << 65637 << 2 << 2;
        QTest::newRow("polyline") << 65639 << 3 << 1000;
        QTest::newRow("polygon") << 65641 << 3 << 1000;
    }

    void tellTheirNumbers()
    {
        QFETCH(int, type);
        QFETCH(int, least);
        QFETCH(int, most);
        const PrimitiveGeneralTool* tool = canvas->draw(type, {QPointF(30, 40)});
        QCOMPARE(tool->type(), type);
        QCOMPARE(tool->minPointCount(), least);
        QCOMPARE(tool->maxPointCount(), most);
        QCOMPARE(tool->controlPoints().size() >= 2, true);
        QCOMPARE(canvas->pointOf(tool, 0), QPointF(30, 40));
    }

    // Line

    void aLineMeasuresItsLength()
    {
        const auto* line =
            canvas->drawMeasuring(ToolType::Line, {QPointF(30, 40), QPointF(60, 80)});
        QCOMPARE(line->dimensionValue(lengthKey), 50.0);
        QCOMPARE(canvas->cell(0, "length"), QVariant(50.0));
        QCOMPARE(line->labelHtml(), QStringLiteral("1: <br>L=50 px"));
        QCOMPARE(line->dimensionLabel()->pos(), QPointF(15, 20));
    }

    void aLineOfNoLengthShowsNoValue()
    {
        canvas->startDrawing(ToolType::Line);
        canvas->press(QPointF(30, 40));
        canvas->press(QPointF(30, 40));
        const auto* line = static_cast<PrimitiveDimensionTool*>(canvas->newest());
        QVERIFY(line->isFinished());
        QVERIFY(line->dimensionValues().contains(lengthKey));
        QCOMPARE(line->dimensionValue(lengthKey), 0.0);
        QCOMPARE(line->labelHtml(), QStringLiteral("1: <br>"));
        QVERIFY(!canvas->cell(0, "length").isValid());
    }

    void theLabelStaysWhenAFinishedLineIsAdjusted()
    {
        auto* line = canvas->drawMeasuring(ToolType::Line, {QPointF(30, 40), QPointF(60, 80)});
        line->moveControlPoint(1, QPointF(130, 40));
        QCOMPARE(line->dimensionValue(lengthKey), 100.0);
        QCOMPARE(line->dimensionLabel()->pos(), QPointF(15, 20));
        QCOMPARE(line->labelAnchor(), QPointF(50, 0));
    }

    void aLineWithoutAPositionLiesAcrossThePicture()
    {
        const PrimitiveToolLine line(canvas->manager(), canvas->scene());
        QVERIFY(line.isFinished());
        QCOMPARE(line.pos(), QPointF(0, 0));
        QCOMPARE(canvas->pointOf(&line, 0), QPointF(128, 240));
        QCOMPARE(canvas->pointOf(&line, 1), QPointF(512, 240));
    }

    // Polyline

    void aPolylineShowsNoLengthWithItsFirstTwoPoints()
    {
        const auto* line = canvas->drawMeasuring(ToolType::Polyline, {QPointF(30, 40)});
        canvas->move(QPointF(60, 80));
        QVERIFY(!line->dimensionValues().contains(lengthKey));
        QCOMPARE(line->labelHtml(), QStringLiteral("1: <br>"));
        canvas->click(QPointF(60, 80));
        canvas->move(QPointF(60, 100));
        QCOMPARE(line->dimensionValue(lengthKey), 70.0);
    }

    void aPolylineMeasuresTheSumOfItsSegments()
    {
        const auto* line = canvas->drawMeasuring(
            ToolType::Polyline, {QPointF(30, 40), QPointF(60, 80), QPointF(60, 100)});
        canvas->rightClick(QPointF(90, 140));
        QVERIFY(line->isFinished());
        QCOMPARE(line->controlPoints().size(), 4);
        QCOMPARE(line->dimensionValue(lengthKey), 120.0);
        QCOMPARE(line->dimensionLabel()->pos(), QPointF(15, 20));
    }

    // Polygon

    void aPolygonMeasuresPerimeterAndArea()
    {
        const auto* polygon = rectangle();
        QCOMPARE(polygon->dimensionValue(areaKey), 100.0 * 50.0);
        QCOMPARE(polygon->dimensionValue(perimeterKey), 300.0);
        QCOMPARE(polygon->labelHtml(), QStringLiteral("1: <br>P=300 px<br>A=5000 px&sup2;"));
        QVERIFY(!polygon->dimensionValues().contains(lengthKey));
        QCOMPARE(canvas->cell(0, "area"), QVariant(5000.0));
        QCOMPARE(canvas->cell(0, "perimeter"), QVariant(300.0));
    }

    void thePointUnderTheMouseCounts()
    {
        const auto* polygon = canvas->drawMeasuring(
            ToolType::Polygon, {QPointF(100, 100), QPointF(200, 100), QPointF(200, 150)});
        canvas->move(QPointF(100, 150));
        QCOMPARE(polygon->dimensionValue(areaKey), 5000.0);
        canvas->move(QPointF(150, 150));
        QCOMPARE(polygon->dimensionValue(areaKey), 3750.0);
    }

    void theWindingDoesNotChangeTheArea()
    {
        const Points corners{{100, 100}, {420, 130}, {350, 300}, {120, 280}};
        Points reversed = corners;
        std::reverse(reversed.begin(), reversed.end());
        QCOMPARE(polygonOf(corners)->dimensionValue(areaKey), areaOf(corners));
        QCOMPARE(polygonOf(reversed)->dimensionValue(areaKey), areaOf(corners));
    }

    void collinearCornersHaveNoArea()
    {
        const auto* polygon = polygonOf({{100, 100}, {200, 150}, {300, 200}});
        QCOMPARE(polygon->dimensionValue(areaKey), 0.0);
        const double perimeter = 2.0 * std::sqrt(200.0 * 200.0 + 100.0 * 100.0);
        QCOMPARE(polygon->dimensionValue(perimeterKey), perimeter);
        QCOMPARE(polygon->labelHtml(),
                 QStringLiteral("1: <br>P=%1 px<br>").arg(perimeter, 0, 'g', 6));
        QVERIFY(!canvas->cell(0, "area").isValid());
    }

    /// Terms around 2^24, beyond which single precision has no halves.
    void theAreaHasSinglePrecision()
    {
        auto* polygon = polygonOf({{0, 0}, {10, 0}, {10, 10}, {0, 10}});
        const Points corners{{0, 0}, {4096, 4096}, {4095, 4096.5}, {0, 1}};
        for (int i = 0; i < corners.size(); ++i)
            polygon->moveControlPoint(i, corners[i]);
        QCOMPARE(polygon->dimensionValue(areaKey), singlePrecisionAreaOf(corners));
        QVERIFY(polygon->dimensionValue(areaKey) != areaOf(corners));
    }

    void aCalibrationConvertsLengthsAndAreas()
    {
        const auto* polygon = rectangle();
        const QString unit = QStringLiteral("1_µm");
        canvas->manager()->setCalibration({QStringLiteral("2X"), 0.5e-6, QString(), unit}, unit);
        QCOMPARE(polygon->dimensionValue(areaKey), 1250.0);
        QCOMPARE(polygon->dimensionValue(perimeterKey), 150.0);
        QCOMPARE(polygon->labelHtml(), QStringLiteral("1: <br>P=150 µm<br>A=1250 µm&sup2;"));
    }

    void theInteriorOfAPolygonIsNotSensitive()
    {
        const auto* polygon = rectangle();
        const auto hits = [&](double x, double y) {
            return polygon->contains(polygon->mapFromScene(QPointF(x, y)));
        };
        QVERIFY(!hits(150, 125));
        QVERIFY(hits(150, 101));
        QVERIFY(hits(100, 125));
        QVERIFY(!hits(150, 103));
    }

    void aPolygonIsFilledAndClosed()
    {
        auto* polygon = rectangle();
        polygon->setFillColor(QColor(Qt::red));
        polygon->setLineColor(QColor(Qt::green));
        polygon->setLineWidth(3);
        polygon->setSelected(false);
        QCOMPARE(colourAt(QPointF(120, 140)), QColor(Qt::red));
        // The closing side, from the last corner to the first.
        QCOMPARE(colourAt(QPointF(100, 135)), QColor(Qt::green));
        polygon->setFillColor(QColor(Qt::transparent));
        QCOMPARE(colourAt(QPointF(120, 140)), QColor(40, 60, 80));
    }

    void thePenKeepsItsWeightUnderAnyZoom()
    {
        auto* line = canvas->drawMeasuring(ToolType::Line, {QPointF(200, 240), QPointF(440, 240)});
        line->setLineColor(QColor(Qt::green));
        line->setLineWidth(4);
        line->setSelected(false);
        line->dimensionLabel()->setPos(-100, -100);
        for (const double zoom : {0.5, 1.0, 4.0}) {
            canvas->view.zoomByScale(zoom);
            canvas->view.centerOn(320, 240);
            QCOMPARE(greenRowsAt(QPointF(320, 240)), 4);
        }
    }

    // Adjusting

    void aDraggedPointChangesValueAndRow()
    {
        const auto* line = canvas->drawMeasuring(ToolType::Line, {{100, 100}, {300, 100}});
        canvas->startSelecting();
        canvas->drag(QPointF(100, 100), QPointF(60, 170));
        QCOMPARE(canvas->cell(0, "length").toDouble(), 250.0);
        QCOMPARE(line->labelHtml(), QStringLiteral("1: <br>L=250 px"));
    }

    void aLineOfNoLengthCanBePulledOut()
    {
        canvas->drawMeasuring(ToolType::Line, {{100, 100}, {100, 100}});
        canvas->startSelecting();
        canvas->drag(QPointF(97, 98), QPointF(57, 68));
        QCOMPARE(canvas->cell(0, "length").toDouble(), 50.0);
    }

    void aCrossingOutlineTakesWhatTheFormGives()
    {
        polygonOf({{100, 100}, {200, 200}, {200, 100}, {100, 200}});
        QVERIFY(!canvas->cell(0, "area").isValid());
        polygonOf({{100, 100}, {300, 200}, {300, 100}, {100, 400}});
        // Half of |-10000 - 30000 + 110000 - 30000|.
        QCOMPARE(canvas->cell(0, "area").toDouble(), 20000.0);
    }

    void discsShowOnlyOnASelectedTool()
    {
        auto* line = canvas->draw(ToolType::Line, {{100, 100}, {200, 180}});
        QCOMPARE(colourAt(QPointF(100, 97)), QColor(Qt::white));
        line->setSelected(false);
        QCOMPARE(colourAt(QPointF(100, 97)), QColor(40, 60, 80));
    }

private:
    /// From (100, 100) to (200, 150).
    PrimitiveDimensionTool* rectangle()
    {
        return polygonOf({{100, 100}, {200, 100}, {200, 150}, {100, 150}});
    }

    /// A polygon with exactly these corners, the last one still under the mouse.
    PrimitiveDimensionTool* polygonOf(const Points& corners)
    {
        canvas->manager()->deleteAllTools(true);
        auto* polygon = canvas->drawMeasuring(ToolType::Polygon, {corners.first()});
        for (int i = 1; i < corners.size(); ++i)
            polygon->placePoint(corners[i], i + 1 < corners.size());
        return polygon;
    }

    /// By triangles from the first corner, with the corners moved near the origin.
    static double areaOf(const Points& corners)
    {
        double doubled = 0.0;
        for (int i = 1; i + 1 < corners.size(); ++i) {
            const QPointF first = corners[i] - corners[0];
            const QPointF second = corners[i + 1] - corners[0];
            doubled += first.x() * second.y() - first.y() * second.x();
        }
        return std::abs(doubled) / 2.0;
    }

    static double singlePrecisionAreaOf(const Points& corners)
    {
        volatile float sum = 0.0F;
        for (int i = 0; i + 1 < corners.size(); ++i) {
            const double term =
                (corners[i].x() - corners[i + 1].x()) * (corners[i + 1].y() + corners[i].y());
            sum = static_cast<float>(static_cast<double>(sum) + term);
        }
        const double closing =
            (corners.last().x() - corners.first().x()) * (corners.first().y() + corners.last().y());
        sum = static_cast<float>(static_cast<double>(sum) + closing);
        return std::abs(static_cast<double>(sum)) * 0.5;
    }

    QColor colourAt(const QPointF& scenePos)
    {
        return canvas->shown().pixelColor(canvas->view.mapFromScene(scenePos));
    }

    int greenRowsAt(const QPointF& scenePos)
    {
        const QImage image = canvas->shown();
        const QPoint centre = canvas->view.mapFromScene(scenePos);
        int rows = 0;
        for (int y = centre.y() - 20; y <= centre.y() + 20; ++y)
            rows += image.pixelColor(centre.x(), y) == QColor(Qt::green);
        return rows;
    }

    std::unique_ptr<CanvasFixture> canvas;
};

QTEST_MAIN(tst_LineTools)
#include "tst_LineTools.moc"
