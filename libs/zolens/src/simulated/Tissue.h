#pragma once

class QPainter;

namespace zolens {

/// A layer of stained cells at the left of the slide, which goes on beyond the field.
/// Micrometres; see Specimen.
void paintTissue(QPainter& painter);

} // namespace zolens
