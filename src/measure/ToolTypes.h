#pragma once

#include <QGraphicsItem>

/// The numbers of the tools. Each is at the same time the `type()` of the tool's graphics item, but
/// for the coloured arrows, whose items all answer Arrow. The ranges carry meaning: see the tests
/// below.
namespace ToolType {

constexpr int Arrow = QGraphicsItem::UserType + 1;
constexpr int RedArrow = QGraphicsItem::UserType + 2;
constexpr int BlueArrow = QGraphicsItem::UserType + 3;
constexpr int GreenArrow = QGraphicsItem::UserType + 4;
constexpr int WhiteArrow = QGraphicsItem::UserType + 5;
constexpr int TextAnnotation = QGraphicsItem::UserType + 6;

constexpr int Line = QGraphicsItem::UserType + 101;
constexpr int CalibrationRuler = QGraphicsItem::UserType + 102;
constexpr int Polyline = QGraphicsItem::UserType + 103;
constexpr int Rectange = QGraphicsItem::UserType + 104;
constexpr int Polygon = QGraphicsItem::UserType + 105;
constexpr int LineDistance = QGraphicsItem::UserType + 106;
constexpr int Parallel = QGraphicsItem::UserType + 107;
constexpr int Perpendicular = QGraphicsItem::UserType + 108;
constexpr int MultiplePerpendicular = QGraphicsItem::UserType + 109;
constexpr int Crosshair = QGraphicsItem::UserType + 110;
constexpr int Angle = QGraphicsItem::UserType + 111;
constexpr int Angle4 = QGraphicsItem::UserType + 112;
constexpr int Arc = QGraphicsItem::UserType + 113;
constexpr int Circle = QGraphicsItem::UserType + 114;
constexpr int Circle2 = QGraphicsItem::UserType + 115;
constexpr int Circle3 = QGraphicsItem::UserType + 116;
constexpr int Annulus = QGraphicsItem::UserType + 117;
constexpr int TwoCircle = QGraphicsItem::UserType + 118;
constexpr int TwoCircle2 = QGraphicsItem::UserType + 119;
constexpr int TwoCircle3 = QGraphicsItem::UserType + 120;

constexpr int Text = QGraphicsItem::UserType + 201;
constexpr int Counter = QGraphicsItem::UserType + 202;

constexpr int DimensionLabel = QGraphicsItem::UserType + 301;
constexpr int Scalebar = QGraphicsItem::UserType + 302;

/// Numbers 1 to 199 above UserType: everything that is made of control points.
constexpr bool isGeneralTool(int type)
{
    return type >= QGraphicsItem::UserType + 1 && type <= QGraphicsItem::UserType + 199;
}

/// The general tools from 101 on: those that measure and have a row in the dimension table.
constexpr bool isDimensionTool(int type)
{
    return type >= QGraphicsItem::UserType + 101 && type <= QGraphicsItem::UserType + 199;
}

constexpr bool isTextTool(int type)
{
    return type == Text || type == Counter;
}

constexpr bool isScalebarTool(int type)
{
    return type == Scalebar;
}

} // namespace ToolType
