#include "measure/ToolList.h"

#include "measure/tools/ArrowTool.h"
#include "support/CanvasFixture.h"

#include <QGraphicsTextItem>

namespace {

class Counter final : public QGraphicsTextItem
{
public:
    int type() const override { return ToolType::Counter; }
};

} // namespace

class tst_ToolList : public QObject
{
    Q_OBJECT

private slots:
    void init()
    {
        canvas = std::make_unique<CanvasFixture>();
        for (int i = 0; i < 4; ++i)
            lines << addLine();
        list = std::make_unique<ToolList>();
        for (PrimitiveDimensionTool* line : qAsConst(lines))
            list->add(line);
    }

    void cleanup()
    {
        list.reset();
        lines.clear();
        canvas.reset();
    }

    void keepsTheOrderOfEachFamily()
    {
        PrimitiveToolArrow arrow(canvas->manager(), canvas->scene(), QPointF());
        Counter counter;
        QGraphicsTextItem stranger;
        list->add(&counter);
        list->add(&arrow);
        list->add(&stranger);
        QCOMPARE(list->dimensionTools(), lines);
        QCOMPARE(list->generalTools().size(), 5);
        QCOMPARE(list->generalTools().first(), lines.first());
        QCOMPARE(list->generalTools().last(), &arrow);
        QCOMPARE(list->textTools(), QVector<QGraphicsItem*>{&counter});
    }

    void removesFromEveryFamily()
    {
        Counter counter;
        list->add(&counter);
        list->remove({lines[1], lines[3], &counter});
        using Tools = QVector<PrimitiveDimensionTool*>;
        QCOMPARE(list->dimensionTools(), Tools({lines[0], lines[2]}));
        QCOMPARE(list->generalTools().size(), 2);
        QVERIFY(list->textTools().isEmpty());
    }

    void findsAToolByItsRow()
    {
        for (int row = 0; row < 4; ++row)
            QCOMPARE(list->toolOfRow(row), lines[row]);
        QCOMPARE(list->toolOfRow(4), nullptr);
        QCOMPARE(list->toolOfRow(-1), nullptr);
    }

    void findsAToolWhileTheIdsHaveGaps()
    {
        list->remove({lines[1]});
        QCOMPARE(list->toolOfRow(1), nullptr);
        QCOMPARE(list->toolOfRow(2), lines[2]);
        QCOMPARE(list->toolOfRow(3), lines[3]);
    }

private:
    PrimitiveDimensionTool* addLine()
    {
        return canvas->drawMeasuring(ToolType::Line, {QPointF(10, 10), QPointF(90, 10)});
    }

    std::unique_ptr<CanvasFixture> canvas;
    std::unique_ptr<ToolList> list;
    QVector<PrimitiveDimensionTool*> lines;
};

QTEST_MAIN(tst_ToolList)
#include "tst_ToolList.moc"
