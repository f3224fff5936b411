#include "support/CanvasFixture.h"

/// Where tools can be hit: on their outline and on the discs of their points, everywhere on them,
/// however outline and discs overlap.
class tst_ToolShape : public QObject
{
    Q_OBJECT

private slots:
    void init() { canvas = std::make_unique<CanvasFixture>(); }
    void cleanup() { canvas.reset(); }

    void discsHaveNoHoles_data()
    {
        QTest::addColumn<int>("type");
        QTest::addColumn<QVector<QPointF>>("corners");
        using Corners = QVector<QPointF>;
        const Corners turn{{100, 100}, {400, 120}, {300, 350}, {120, 300}};
        const Corners turnBack{{120, 300}, {300, 350}, {400, 120}, {100, 100}};
        const Corners crossing{{100, 100}, {400, 300}, {400, 100}, {100, 300}};
        const Corners thereAndBack{{100, 100}, {400, 100}, {100, 100}, {400, 100}};
        const Corners crowded{{100, 100}, {103, 102}, {106, 99}, {104, 104}};
        for (const int type : {ToolType::Polyline, ToolType::Polygon, ToolType::Angle4}) {
            QTest::addRow("%d, one way round", type) << type << turn;
            QTest::addRow("%d, the other way round", type) << type << turnBack;
            QTest::addRow("%d, crossing itself", type) << type << crossing;
            QTest::addRow("%d, there and back", type) << type << thereAndBack;
            QTest::addRow("%d, with discs that overlap", type) << type << crowded;
        }
    }

    void discsHaveNoHoles()
    {
        QFETCH(int, type);
        QFETCH(QVector<QPointF>, corners);
        PrimitiveGeneralTool* tool = drawn(type, corners);
        const QPainterPath shape = tool->shape();
        for (const ControlPoint& point : tool->controlPoints()) {
            for (double x = -4.0; x <= 4.0; x += 0.5) {
                for (double y = -2.5; y <= 2.5; y += 0.5)
                    QVERIFY(shape.contains(point.pos + QPointF(x, y)));
            }
        }
    }

    void theOutlineIsSensitiveAllAlong()
    {
        PrimitiveGeneralTool* tool =
            drawn(ToolType::Polygon, {{100, 100}, {400, 120}, {300, 350}, {120, 300}});
        const auto& points = tool->controlPoints();
        const QPainterPath shape = tool->shape();
        for (int i = 0; i < points.size(); ++i) {
            const QLineF side(points[i].pos, points[(i + 1) % points.size()].pos);
            for (double t = 0.0; t <= 1.0; t += 0.01)
                QVERIFY(shape.contains(side.pointAt(t)));
        }
        QVERIFY(!shape.contains(tool->mapFromScene(QPointF(250, 200))));
    }

    void aToolWithAllPointsInOnePlaceCanBeHit()
    {
        for (const int type : {ToolType::Line, ToolType::Arrow}) {
            canvas->startDrawing(type);
            canvas->press(QPointF(200, 200));
            canvas->press(QPointF(200, 200));
            QVERIFY(canvas->newest()->isFinished());
            for (const QPointF& aside : {QPointF(0, 0), QPointF(3, 3), QPointF(-4, 1)})
                QVERIFY(canvas->newest()->contains(aside));
            canvas->manager()->deleteAllTools(true);
        }
    }

private:
    PrimitiveGeneralTool* drawn(int type, const QVector<QPointF>& corners)
    {
        canvas->startDrawing(type);
        for (const QPointF& corner : corners)
            canvas->click(corner);
        canvas->manager()->setDragMode(PrimitiveManager::Select, -1);
        return canvas->newest();
    }

    std::unique_ptr<CanvasFixture> canvas;
};

QTEST_MAIN(tst_ToolShape)
#include "tst_ToolShape.moc"
