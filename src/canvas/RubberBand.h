#pragma once

class QPainter;
class QRect;
class QWidget;

/// Draws a rubber band as the widget's style has it; widget coordinates.
void paintRubberBand(QPainter* painter, const QRect& band, const QWidget* widget);
