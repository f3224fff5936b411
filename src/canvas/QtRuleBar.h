#pragma once

#include <QColor>
#include <QFont>
#include <QPoint>
#include <QWidget>

class GraphicsView;
class QPainter;

/// A ruler along an edge of the canvas: counts scene units (picture pixels), never real ones, and
/// marks where the cursor is. A child of the view.
class QtRuleBar final : public QWidget
{
    Q_OBJECT

public:
    enum Orientation { Horizontal = 1, Vertical = 2 };

    QtRuleBar(int orientation, GraphicsView* view, QWidget* parent);

    /// The scene coordinates of the ruler's two ends (the first may be the larger one) and their
    /// difference. Does not repaint.
    void setRange(double lower, double upper, double maxSize);
    double lower() const { return lowerValue; }
    double upper() const { return upperValue; }
    /// Moves the cursor marker; viewport coordinates.
    void updatePosition(const QPoint& position);

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    void drawTicks(QPainter* painter) const;
    void drawLevel(QPainter* painter, double step, int tickLength, double labelStep) const;
    void drawTick(QPainter* painter, int position, int tickLength) const;
    void drawLabel(QPainter* painter, int position, int tickLength, double value) const;
    void drawCursor(QPainter* painter) const;
    int scaleIndex() const;
    bool isHorizontal() const { return orientation == Horizontal; }
    int length() const { return isHorizontal() ? width() : height(); }
    int thickness() const { return isHorizontal() ? height() : width(); }
    /// Pixels per scene unit; negative for a reversed range.
    double increment() const { return length() / (upperValue - lowerValue); }
    QFont digitFont() const;

    int orientation = Horizontal;
    QPoint cursorPosition;
    QColor backgroundColor{255, 255, 255, 255};
    GraphicsView* view = nullptr;
    double lowerValue = 0.0;
    double upperValue = 0.0;
    double maxSize = 0.0;
};
