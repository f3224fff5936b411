#include "measure/ToolTypes.h"

#include <QtTest>

class tst_ToolTypes final : public QObject
{
    Q_OBJECT

private slots:
    void numbersAreFixed_data();
    void numbersAreFixed();
    void rangesEndWhereTheyShould_data();
    void rangesEndWhereTheyShould();
};

void tst_ToolTypes::numbersAreFixed_data()
{
    QTest::addColumn<int>("type");
    QTest::addColumn<int>("number");
    const auto row = [](const char* name, int type, int number) {
        QTest::newRow(name) << type << number;
    };
    row("Arrow", ToolType::Arrow, 65537);
    row("RedArrow", ToolType::RedArrow, 65538);
    row("BlueArrow", ToolType::BlueArrow, 65539);
    row("GreenArrow", ToolType::GreenArrow, 65540);
    row("WhiteArrow", ToolType::WhiteArrow, 65541);
    row("TextAnnotation", ToolType::TextAnnotation, 65542);
    row("Line", ToolType::Line, 65637);
    row("CalibrationRuler", ToolType::CalibrationRuler, 65638);
    row("Polyline", ToolType::Polyline, 65639);
    row("Rectange", ToolType::Rectange, 65640);
    row("Polygon", ToolType::Polygon, 65641);
    row("LineDistance", ToolType::LineDistance, 65642);
    row("Parallel", ToolType::Parallel, 65643);
    row("Perpendicular", ToolType::Perpendicular, 65644);
    row("MultiplePerpendicular", ToolType::MultiplePerpendicular, 65645);
    row("Crosshair", ToolType::Crosshair, 65646);
    row("Angle", ToolType::Angle, 65647);
    row("Angle4", ToolType::Angle4, 65648);
    row("Arc", ToolType::Arc, 65649);
    row("Circle", ToolType::Circle, 65650);
    row("Circle2", ToolType::Circle2, 65651);
    row("Circle3", ToolType::Circle3, 65652);
    row("Annulus", ToolType::Annulus, 65653);
    row("TwoCircle", ToolType::TwoCircle, 65654);
    row("TwoCircle2", ToolType::TwoCircle2, 65655);
    row("TwoCircle3", ToolType::TwoCircle3, 65656);
    row("Text", ToolType::Text, 65737);
    row("Counter", ToolType::Counter, 65738);
    row("DimensionLabel", ToolType::DimensionLabel, 65837);
    row("Scalebar", ToolType::Scalebar, 65838);
}

void tst_ToolTypes::numbersAreFixed()
{
    QFETCH(int, type);
    QTEST(type, "number");
}

void tst_ToolTypes::rangesEndWhereTheyShould_data()
{
    QTest::addColumn<int>("type");
    QTest::addColumn<bool>("general");
    QTest::addColumn<bool>("dimension");
    QTest::addColumn<bool>("text");
    QTest::addColumn<bool>("scalebar");
    const auto row = [](int type, bool general, bool dimension, bool text, bool scalebar) {
        QTest::addRow("%d", type) << type << general << dimension << text << scalebar;
    };
    row(-1, false, false, false, false);
    row(65536, false, false, false, false);
    row(65537, true, false, false, false);
    row(65636, true, false, false, false);
    row(65637, true, true, false, false);
    row(65735, true, true, false, false);
    row(65736, false, false, false, false);
    row(65737, false, false, true, false);
    row(65738, false, false, true, false);
    row(65739, false, false, false, false);
    row(65837, false, false, false, false);
    row(65838, false, false, false, true);
    row(65839, false, false, false, false);
}

void tst_ToolTypes::rangesEndWhereTheyShould()
{
    QFETCH(int, type);
    QTEST(ToolType::isGeneralTool(type), "general");
    QTEST(ToolType::isDimensionTool(type), "dimension");
    QTEST(ToolType::isTextTool(type), "text");
    QTEST(ToolType::isScalebarTool(type), "scalebar");
}

QTEST_MAIN(tst_ToolTypes)
#include "tst_ToolTypes.moc"
