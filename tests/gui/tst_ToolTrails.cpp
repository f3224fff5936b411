#include "measure/PrimitiveDimensionLabel.h"
#include "support/CanvasFixture.h"

/// The view redraws only what the tools announce. After a change of a tool's figure or look the
/// picture must be the one that drawing everything anew gives: anything else is a trail.
class tst_ToolTrails : public QObject
{
    Q_OBJECT

private slots:
    void init() { canvas = std::make_unique<CanvasFixture>(); }
    void cleanup() { canvas.reset(); }

    void aZoomWithinTheFirstMoveOfAnArrow()
    {
        canvas->startDrawing(ToolType::Arrow);
        canvas->click(QPointF(200, 200));
        canvas->move(QPointF(300, 260));
        canvas->view.zoomByScale(2.0);
        QVERIFY(!leavesTrail());
        canvas->move(QPointF(280, 180));
        QVERIFY(!leavesTrail());
    }

    void whileAdjusting()
    {
        canvas->draw(ToolType::Angle4,
                     {QPointF(100, 100), QPointF(200, 120), QPointF(300, 100), QPointF(300, 200)});
        canvas->startSelecting();
        canvas->drag(QPointF(300, 200), QPointF(330, 250));
        QVERIFY(!leavesTrail());
        canvas->drag(QPointF(150, 110), QPointF(190, 160));
        QVERIFY(!leavesTrail());
        canvas->scene()->clearSelection();
        QVERIFY(!leavesTrail());
    }

    void nearlyParallelLines()
    {
        canvas->draw(ToolType::Angle4,
                     {QPointF(100, 100), QPointF(500, 100), QPointF(100, 200), QPointF(500, 201)});
        PrimitiveGeneralTool* tool = canvas->newest();
        for (const double y : {200.1, 200.00001, 200.000000001, 200.0}) {
            tool->moveControlPoint(3, QPointF(500, y));
            QVERIFY(!leavesTrail());
            QVERIFY(isDrawnAt(QPointF(300, 100)));
        }
    }

    void aSmallerDisc()
    {
        PrimitiveGeneralTool* line =
            canvas->draw(ToolType::Line, {QPointF(100, 100), QPointF(300, 100)});
        line->setCtrlPointRadius(30.0);
        QVERIFY(!leavesTrail());
        line->setCtrlPointRadius(3.0);
        QVERIFY(!leavesTrail());
    }

    void aSmallerArc()
    {
        PrimitiveGeneralTool* angle = canvas->draw(
            ToolType::Angle, {QPointF(200, 100), QPointF(190, 110), QPointF(180, 110)});
        angle->setDimensionAngularRadius(80.0);
        QVERIFY(!leavesTrail());
        angle->setDimensionAngularRadius(10.0);
        QVERIFY(!leavesTrail());
    }

    void otherAttributes()
    {
        PrimitiveGeneralTool* line =
            canvas->draw(ToolType::Line, {QPointF(100, 100), QPointF(300, 100)});
        auto attributes = line->attributes();
        attributes[QStringLiteral("ctrlPointRadius")] = 20.0;
        attributes[QStringLiteral("dimensionFont")] = QFont(QStringLiteral("Arial"), 40);
        line->setAttributes(attributes);
        QVERIFY(!leavesTrail());
        attributes[QStringLiteral("ctrlPointRadius")] = 4.0;
        attributes[QStringLiteral("dimensionFont")] = QFont(QStringLiteral("Arial"), 8);
        attributes[QStringLiteral("dimensionTextBackgroundColor")] = QColor(Qt::red);
        line->setAttributes(attributes);
        QVERIFY(!leavesTrail());
    }

private:
    bool leavesTrail()
    {
        const QImage partly = canvas->shown();
        canvas->view.toggleAntialiasing(true); // The view draws everything anew.
        return canvas->shown() != partly;
    }

    bool isDrawnAt(const QPointF& scenePos)
    {
        const QPoint at = canvas->view.mapFromScene(scenePos);
        return canvas->shown().pixelColor(at) != QColor(40, 60, 80);
    }

    std::unique_ptr<CanvasFixture> canvas;
};

QTEST_MAIN(tst_ToolTrails)
#include "tst_ToolTrails.moc"
