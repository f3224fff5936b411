#pragma once

#include <QColor>
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
    struct Tick;

    void drawTicks(QPainter* painter) const;
    void drawLevel(QPainter* painter, double step, double labelStep, int tickLength) const;
    void drawTick(QPainter* painter, int position, int tickLength) const;
    void drawLabel(QPainter* painter, int position, int tickLength, double value) const;
    void drawCursor(QPainter* painter) const;
    int length() const;
    int thickness() const;
    double increment() const;

    int orientation = Horizontal;
    QPoint cursorPosition;
    QColor backgroundColor{255, 255, 255, 255};
    GraphicsView* view = nullptr;
    double lowerValue = 0.0;
    double upperValue = 0.0;
    double maxSize = 0.0;
};
