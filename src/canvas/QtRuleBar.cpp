#include "canvas/QtRuleBar.h"

#include <QFontMetrics>
#include <QPainter>

#include <algorithm>
#include <array>
#include <cmath>

namespace {

constexpr std::array<int, 16> rulerScale{1,   2,    5,    10,   25,    50,    100,   250,
                                         500, 1000, 2500, 5000, 10000, 25000, 50000, 100000};
constexpr std::array<int, 5> subdivide{1, 5, 10, 50, 100};
constexpr int noScale = -1;
constexpr double smallestTickDistance = 5.0;
constexpr int labelHeight = 16;

int digitHeight(const QFont& font)
{
    return QFontMetrics(font).height();
}

QString labelText(double scenePosition)
{
    const int value = static_cast<int>(scenePosition);
    if (std::abs(value) >= 2000 && value % 1000 == 0)
        return QStringLiteral("%1k").arg(value / 1000);
    return QString::number(value);
}

/// Labels thin out to every second, then every fourth tick; zero always has one.
bool hasLabel(int tick, double scenePosition, double pixelStep, int height)
{
    if (qFuzzyIsNull(scenePosition))
        return true;
    if (pixelStep <= 3 * height)
        return tick % 4 == 0;
    if (pixelStep <= 6 * height)
        return tick % 2 == 0;
    return true;
}

} // namespace

QtRuleBar::QtRuleBar(int barOrientation, GraphicsView* graphicsView, QWidget* parent)
    : QWidget(parent),
      orientation(barOrientation),
      view(graphicsView)
{
    setAttribute(Qt::WA_OpaquePaintEvent);
}

void QtRuleBar::setRange(double lower, double upper, double size)
{
    lowerValue = lower;
    upperValue = upper;
    maxSize = size;
}

void QtRuleBar::updatePosition(const QPoint& position)
{
    cursorPosition = position;
    update();
}

void QtRuleBar::paintEvent(QPaintEvent*)
{
    QPainter painter(this);
    painter.fillRect(rect(), backgroundColor);
    painter.setPen(QPen());
    painter.setFont(digitFont());
    if (isHorizontal())
        painter.drawLine(rect().bottomLeft(), rect().bottomRight());
    else
        painter.drawLine(rect().topRight(), rect().bottomRight());
    drawTicks(&painter);
    drawCursor(&painter);
}

QFont QtRuleBar::digitFont() const
{
    QFont digits = font();
    digits.setWeight(QFont::Normal);
    digits.setPixelSize(10);
    return digits;
}

/// The first scale whose steps leave room for the longest label, or noScale.
int QtRuleBar::scaleIndex() const
{
    const int digits = QString::number(static_cast<int>(std::ceil(maxSize))).size();
    const int textSize = digits * digitHeight(digitFont()) * 2 + 2;
    const double pixelsPerUnit = std::abs(increment());
    const auto found = std::find_if(rulerScale.begin(), rulerScale.end(),
                                    [&](int step) { return step * pixelsPerUnit > textSize; });
    return found == rulerScale.end() ? noScale : static_cast<int>(found - rulerScale.begin());
}

void QtRuleBar::drawTicks(QPainter* painter) const
{
    if (upperValue - lowerValue == 0.0)
        return;
    const int scale = scaleIndex();
    if (scale == noScale)
        return;
    int tickLength = 0;
    for (int level = static_cast<int>(subdivide.size()) - 1; level >= 0; --level) {
        const auto index = static_cast<std::size_t>(level);
        const double largeStep = rulerScale[static_cast<std::size_t>(scale)];
        // At the scale 2 a fifth would fall between two pixels of the picture.
        const double step = scale == 1 && level == 1 ? 1.0 : largeStep / subdivide[index];
        if (step * std::abs(increment()) <= smallestTickDistance)
            continue;
        tickLength = std::max(thickness() / (level + 1) - 1, tickLength + 1);
        drawLevel(painter, step, tickLength, level == 0 ? largeStep : 0.0);
    }
}

/// Draws the ticks of one subdivision, with labels when `labelStep` is above 0.
void QtRuleBar::drawLevel(QPainter* painter, double step, int tickLength, double labelStep) const
{
    const auto [from, to] = std::minmax(lowerValue, upperValue);
    const double start = std::floor(from / step) * step;
    const int count = static_cast<int>(std::lround((std::ceil(to / step) * step - start) / step));
    const double pixelStep = std::abs(increment() * labelStep);
    const int height = digitHeight(painter->font());
    for (int tick = 0; tick <= count; ++tick) {
        const double current = start + tick * step;
        const double exact = (current - lowerValue) * increment() + 1e-12;
        const int position = static_cast<int>(std::floor(exact + 0.5));
        drawTick(painter, position, tickLength);
        if (labelStep > 0.0 && hasLabel(tick, current, pixelStep, height))
            drawLabel(painter, position, tickLength, current);
    }
}

void QtRuleBar::drawTick(QPainter* painter, int position, int tickLength) const
{
    const int start = thickness() - tickLength;
    const QRect tick = isHorizontal() ? QRect(position, start, 1, tickLength)
                                      : QRect(start, position, tickLength, 1);
    painter->drawLine(tick.topLeft(), tick.bottomRight());
}

void QtRuleBar::drawLabel(QPainter* painter, int position, int tickLength, double value) const
{
    const QString text = labelText(value);
    const int width = painter->fontMetrics().horizontalAdvance(text);
    if (isHorizontal()) {
        painter->drawText(position + 2, thickness() - tickLength, width, labelHeight,
                          Qt::AlignLeft | Qt::AlignTop, text);
        return;
    }
    painter->save();
    const int half = width / 2;
    painter->translate(4.0, half + 2 + position);
    painter->rotate(90);
    painter->drawText(-half, -8, width, labelHeight, Qt::AlignRight, text);
    painter->restore();
}

void QtRuleBar::drawCursor(QPainter* painter) const
{
    if (isHorizontal())
        painter->drawLine(cursorPosition.x(), 0, cursorPosition.x(), height());
    else
        painter->drawLine(0, cursorPosition.y(), width(), cursorPosition.y());
}
