#pragma once

class QImage;

namespace zolens {

/// What a transfer format takes away from a picture of Format_RGB32.

/// Keeps the lightness of each pixel, and one colour for each group of pixels.
void subsampleChroma(QImage& image, int groupWidth, int groupHeight);
/// Drops the finest steps of lightness in blocks of 8 by 8.
void quantiseBlocks(QImage& image);

} // namespace zolens
