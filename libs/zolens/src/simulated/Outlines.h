#pragma once

#include "Hash.h"

#include <QPainterPath>
#include <QPointF>
#include <QPolygonF>

namespace zolens {

/// A number from low to high that depends on the two others alone.
double between(double low, double high, std::uint32_t key, std::uint32_t salt);

/// A round outline that no ruler made; unevenness is relative to the radius.
QPainterPath blob(const QPointF& centre, double radius, double unevenness, std::uint32_t key);

/// The outline with rounded corners.
QPainterPath rounded(const QPolygonF& corners);

} // namespace zolens
