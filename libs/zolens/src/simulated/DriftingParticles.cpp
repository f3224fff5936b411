#include "DriftingParticles.h"

#include "Outlines.h"

#include <QPainter>
#include <QtMath>

#include <cmath>

namespace zolens {

namespace {

constexpr int swimmers = 3;
constexpr int specks = 26;
constexpr double halfWidth = 1020.0; ///< Beyond the edge of the field, where they come back in.
constexpr double halfHeight = 780.0;

double wrapped(double value, double half)
{
    return value - 2 * half * std::floor((value + half) / (2 * half));
}

/// Where a particle is after so many frames of steady drift with a sway across it.
Particle moved(Particle particle, double speed, double sway, std::uint32_t key, double frames)
{
    const double heading = between(0, 6.2831853, key, 3);
    const double phase = frames * between(0.02, 0.05, key, 4) + key;
    const QPointF along(std::cos(heading), std::sin(heading));
    const QPointF across(-along.y(), along.x());
    const QPointF start(between(-halfWidth, halfWidth, key, 1),
                        between(-halfHeight, halfHeight, key, 2));
    const QPointF place = start + speed * frames * along + sway * std::sin(phase) * across;
    particle.position = {wrapped(place.x(), halfWidth), wrapped(place.y(), halfHeight)};
    particle.angle = qRadiansToDegrees(heading) + 14 * std::cos(phase);
    return particle;
}

Particle swimmer(std::uint32_t key, double frames)
{
    Particle particle;
    particle.length = between(52, 66, key, 5);
    particle.width = between(22, 28, key, 6);
    particle.color = QColor(150, 196, 112);
    return moved(particle, between(0.8, 1.3, key, 7), 12, key, frames);
}

Particle speck(std::uint32_t key, double frames)
{
    Particle particle;
    particle.length = between(6, 14, key, 5);
    particle.width = between(4, 6, key, 6);
    particle.color = QColor(112, 116, 122);
    return moved(particle, between(0.1, 0.4, key, 7), 5, key, frames);
}

} // namespace

QRectF Particle::bounds() const
{
    const double reach = length / 2 + 3;
    return {position.x() - reach, position.y() - reach, 2 * reach, 2 * reach};
}

void Particle::paint(QPainter& painter) const
{
    painter.save();
    painter.translate(position);
    painter.rotate(angle);
    painter.setPen(QPen(color.darker(170), 1.6));
    painter.setBrush(color.lighter(120));
    painter.drawEllipse(QPointF(), length / 2, width / 2);
    painter.setPen(Qt::NoPen);
    painter.setBrush(color);
    painter.drawEllipse(QPointF(length * 0.16, 0), length * 0.16, width * 0.26);
    painter.drawEllipse(QPointF(-length * 0.2, 0), length * 0.1, width * 0.2);
    painter.restore();
}

std::vector<Particle> particlesAt(quint64 frameNumber)
{
    const auto frames = static_cast<double>(frameNumber);
    std::vector<Particle> particles;
    particles.reserve(swimmers + specks);
    for (std::uint32_t key = 0; key < swimmers; ++key)
        particles.push_back(swimmer(1000 + key, frames));
    for (std::uint32_t key = 0; key < specks; ++key)
        particles.push_back(speck(2000 + key, frames));
    return particles;
}

} // namespace zolens
