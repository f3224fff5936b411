#pragma once

class QPainter;
class QPointF;

namespace zolens {

/// A round diatom with chambers along rays and rings. Micrometres; see Specimen.
void paintCentricDiatom(QPainter& painter, const QPointF& centre, double radius);

/// A long diatom with fine ribs and a seam; angle in degrees.
void paintPennateDiatom(QPainter& painter, const QPointF& centre, double angle, double length);

} // namespace zolens
