#include "measure/ToolTypes.h"
#include "preferences/ToolAttributes.h"
#include "support/CanvasFixture.h"

#include <QMetaProperty>

namespace {

/// A measuring tool whose values the test chooses.
class ValueTool final : public PrimitiveDimensionTool
{
public:
    ValueTool(const CanvasFixture& canvas, const QStringList& keys)
        : PrimitiveDimensionTool(canvas.manager(), canvas.scene())
    {
        shownKeys = keys;
        addControlPoint(QPointF(100, 100), true, true);
        ValueTool::setAttributes(toolAttributes(ToolType::Line));
    }

    int type() const override { return ToolType::Line; }
    int minPointCount() const override { return 1; }
    void updateDimensions() override
    {
        ++updates;
        publishDimensions();
    }
    QPointF labelAnchor() const override { return {7, 9}; }
    void paint(QPainter*, const QStyleOptionGraphicsItem*, QWidget*) override {}
    using PrimitiveDimensionTool::setDimension;

    int updates = 0;
};

const PrimitiveCalibration micrometres(QStringLiteral("10x"), 1e-6, QString(),
                                       QStringLiteral("1_µm"));

} // namespace

class tst_PrimitiveDimensionTool : public QObject
{
    Q_OBJECT

private slots:
    void init()
    {
        canvas = std::make_unique<CanvasFixture>();
        QVERIFY(canvas->manager()->setCalibration(micrometres, QStringLiteral("1_µm")));
    }
    void cleanup() { canvas.reset(); }

    // Label text

    void theTextShowsRowValuesAndUnits_data()
    {
        QTest::addColumn<int>("id");
        QTest::addColumn<QStringList>("keys");
        QTest::addColumn<QVector<double>>("values");
        QTest::addColumn<QString>("html");
        const auto row = [](const char* name, int id, const char* keys, QVector<double> values,
                            const char* html) {
            QTest::newRow(name) << id << QString::fromLatin1(keys).split(QLatin1Char(' ')) << values
                                << QString::fromUtf8(html);
        };
        row("length", 0, "length", {123.4567}, "1: <br>L=123.457 µm");
        row("angle", 2, "angle", {45}, "3: <br>A=45 &#xB0;");
        row("area", 0, "area", {12.5}, "1: <br>A=12.5 µm&sup2;");
        row("three keys", 1, "width height ratio", {10, 20, 2},
            "2: <br>W=10 µm<br>H=20 µm<br>R=2 ");
        row("first is zero", 0, "perimeter area", {0, 4}, "1: <br>A=4 µm&sup2;");
        row("last is zero", 0, "perimeter area", {30, 0}, "1: <br>P=30 µm<br>");
        row("all are zero", 0, "length", {0}, "1: <br>");
        row("zero angle", 3, "angle", {0}, "4: <br>");
        row("large", 0, "length", {1234567.89}, "1: <br>L=1.23457e+06 µm");
        row("small", 0, "length", {0.00001234}, "1: <br>L=1.234e-05 µm");
        row("tiny is not zero", 0, "length", {1e-30}, "1: <br>L=1e-30 µm");
        row("negative", 0, "length", {-2}, "1: <br>L=-2 µm");
        row("upper case keys", 0, "AREA ANGLE", {3, 4}, "1: <br>A=3 µm&sup2;<br>A=4 &#xB0;");
    }

    void theTextShowsRowValuesAndUnits()
    {
        QFETCH(int, id);
        QFETCH(QStringList, keys);
        QFETCH(QVector<double>, values);
        ValueTool tool(*canvas, keys);
        for (int i = 0; i < keys.size(); ++i)
            tool.setDimension(keys[i], values[i]);
        tool.setData(0, id);
        QTEST(tool.labelHtml(), "html");
    }

    void aValueThatIsMissingCountsAsZero()
    {
        const ValueTool tool(*canvas, {QStringLiteral("length")});
        QCOMPARE(tool.dimensionValue(QStringLiteral("length")), 0.0);
        QCOMPARE(tool.labelHtml(), QStringLiteral("1: <br>"));
    }

    void theSymbolFollowsTheDisplayUnit()
    {
        ValueTool tool(*canvas, {QStringLiteral("length")});
        tool.setDimension(QStringLiteral("length"), 2.5);
        QVERIFY(canvas->manager()->setCalibration(micrometres, QStringLiteral("5_in")));
        QCOMPARE(tool.labelHtml(), QStringLiteral("1: <br>L=2.5 in"));
        QVERIFY(canvas->manager()->setCalibration(micrometres, QStringLiteral("unknown")));
        QCOMPARE(tool.labelHtml(), QStringLiteral("1: <br>L=2.5 "));
    }

    // Row and values

    void valuesThatAreNotShownReachTheTable()
    {
        auto* tool = add({QStringLiteral("length")});
        tool->setDimension(QStringLiteral("length"), 5.0);
        tool->setDimension(QStringLiteral("radius"), 6.0);
        tool->updateDimensions();
        QCOMPARE(canvas->cell(0, "length").toDouble(), 5.0);
        QCOMPARE(canvas->cell(0, "radius").toDouble(), 6.0);
        tool->refreshLabelText();
        QCOMPARE(tool->dimensionLabel()->toPlainText(), QStringLiteral("1: \nL=5 µm"));
    }

    void theTableHasItsOwnFormat()
    {
        auto* tool = add({QStringLiteral("length")});
        tool->setDimension(QStringLiteral("length"), 1234567.89);
        tool->updateDimensions();
        QCOMPARE(canvas->cell(0, "length").toDouble(), 1234567.89);
    }

    void anIdIsStoredWrittenAndShown()
    {
        canvas->draw(ToolType::Line, {{20, 20}, {40, 20}});
        auto* tool = add({QStringLiteral("length")});
        QCOMPARE(tool->id(), 1);
        QCOMPARE(tool->data(0), QVariant(1));
        QCOMPARE(tool->dimensionValue(QStringLiteral("id")), 1.0);
        QCOMPARE(canvas->cell(1, "id").toDouble(), 2.0);
        QCOMPARE(tool->dimensionLabel()->toPlainText().trimmed(), QStringLiteral("2:"));
        tool->setToolId(0);
        QCOMPARE(tool->dimensionLabel()->toPlainText().trimmed(), QStringLiteral("1:"));
    }

    // Moving and placing

    void everyMoveComputesAndShowsAnew()
    {
        auto* tool = add({QStringLiteral("length")});
        tool->updates = 0;
        tool->setDimension(QStringLiteral("length"), 8.0);
        tool->moveControlPoint(0, QPointF(120, 130));
        QCOMPARE(tool->updates, 1);
        QCOMPARE(tool->controlPoints()[0].pos, QPointF(120, 130));
        QCOMPARE(tool->dimensionLabel()->toPlainText(), QStringLiteral("1: \nL=8 µm"));
        QVERIFY(tool->dimensionLabel()->isVisible());
        tool->moveControlPoint(5, QPointF(0, 0));
        QCOMPARE(tool->updates, 2);
        QCOMPARE(tool->controlPoints()[0].pos, QPointF(120, 130));
    }

    void theLabelFollowsOnlyWhileTheToolIsPlaced()
    {
        auto* tool = add({QStringLiteral("length")});
        QCOMPARE(tool->dimensionLabel()->pos(), QPointF(0, 0));
        tool->moveControlPoint(0, QPointF(120, 130));
        QCOMPARE(tool->dimensionLabel()->pos(), QPointF(0, 0));
        tool->placePoint(QPointF(120, 130), false);
        QCOMPARE(tool->dimensionLabel()->pos(), QPointF(7, 9));
        tool->dimensionLabel()->setPos(50, 50);
        tool->moveBy(10, 10);
        QCOMPARE(tool->dimensionLabel()->pos(), QPointF(50, 50));
    }

    void aNewToolsLabelStartsAtItsPosition()
    {
        const auto* tool = canvas->drawMeasuring(ToolType::Line, {{120, 90}});
        QCOMPARE(tool->dimensionLabel()->pos(), QPointF(120, 90));
        canvas->move(QPointF(140, 110));
        QCOMPARE(tool->dimensionLabel()->pos(), QPointF(10, 10));
    }

    void theLabelDiesWithItsTool()
    {
        auto* tool = canvas->drawMeasuring(ToolType::Line, {{20, 20}, {40, 20}});
        QPointer<PrimitiveDimensionLabel> label = tool->dimensionLabel();
        QCOMPARE(label->parentItem(), tool);
        canvas->manager()->removeTool(tool);
        QVERIFY(!label);
    }

    // Attributes

    void attributesReachTheLabelAndComeBack()
    {
        ValueTool tool(*canvas, {QStringLiteral("length")});
        AttributeHash wanted = toolAttributes(ToolType::Line);
        wanted[AttributeKeys::dimensionFont()] = QFont(QStringLiteral("Arial"), 17);
        wanted[AttributeKeys::dimensionTextColor()] = QColor(1, 2, 3);
        wanted[AttributeKeys::dimensionTextBorderColor()] = QColor(4, 5, 6, 7);
        wanted[AttributeKeys::dimensionTextBackgroundColor()] = QColor(8, 9, 10, 11);
        tool.setAttributes(wanted);
        QCOMPARE(tool.dimensionLabel()->font(), QFont(QStringLiteral("Arial"), 17));
        QCOMPARE(tool.dimensionLabel()->defaultTextColor(), QColor(1, 2, 3));
        QCOMPARE(tool.dimensionLabel()->border(), QColor(4, 5, 6, 7));
        QCOMPARE(tool.dimensionLabel()->background(), QColor(8, 9, 10, 11));
        const AttributeHash got = tool.attributes();
        QCOMPARE(got.size(), 13);
        for (const QString& key :
             {AttributeKeys::dimensionFont(), AttributeKeys::dimensionTextColor(),
              AttributeKeys::dimensionTextBorderColor(),
              AttributeKeys::dimensionTextBackgroundColor()})
            QCOMPARE(got[key], wanted[key]);
    }

    void propertiesReachTheLabel()
    {
        const QMetaObject& meta = PrimitiveDimensionTool::staticMetaObject;
        QStringList names;
        for (int i = meta.propertyOffset(); i < meta.propertyCount(); ++i)
            names << QLatin1String(meta.property(i).name());
        QCOMPARE(names.join(QLatin1Char(' ')),
                 QStringLiteral("dimensionFont dimensionTextColor dimensionTextBorderColor "
                                "dimensionTextBackgroundColor"));

        ValueTool tool(*canvas, {QStringLiteral("length")});
        for (const QString& name : names.mid(1)) {
            tool.setProperty(qPrintable(name), QColor(Qt::magenta));
            QCOMPARE(tool.property(qPrintable(name)).value<QColor>(), QColor(Qt::magenta));
        }
        tool.setProperty("dimensionFont", QFont(QStringLiteral("Arial"), 23));
        QCOMPARE(tool.dimensionLabel()->font().pointSize(), 23);
        QCOMPARE(tool.dimensionLabel()->defaultTextColor(), QColor(Qt::magenta));
        QCOMPARE(tool.dimensionLabel()->border(), QColor(Qt::magenta));
        QCOMPARE(tool.dimensionLabel()->background(), QColor(Qt::magenta));
    }

private:
    ValueTool* add(const QStringList& keys)
    {
        auto* tool = new ValueTool(*canvas, keys);
        canvas->manager()->addTool(tool);
        return tool;
    }

    std::unique_ptr<CanvasFixture> canvas;
};

QTEST_MAIN(tst_PrimitiveDimensionTool)
#include "tst_PrimitiveDimensionTool.moc"
