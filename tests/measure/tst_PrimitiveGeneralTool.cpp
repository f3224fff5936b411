#include "FreeTools.h"

#include "preferences/ToolAttributes.h"

#include <QMetaProperty>
#include <QPainter>
#include <QSignalSpy>

namespace {

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

/// What a tool is made of, where it can be hit and what it draws.
class tst_PrimitiveGeneralTool final : public QObject, protected FreeTools
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
};

QTEST_MAIN(tst_PrimitiveGeneralTool)
#include "tst_PrimitiveGeneralTool.moc"
