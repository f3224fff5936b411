#pragma once

namespace zolens {

/// The kinds of formats that CWCamera::previewFormats tells apart.
namespace FormatNumber {
constexpr int packedRgb24 = 0;
constexpr int otherRgb = 1;
constexpr int packedYuv = 5;
constexpr int planarYuv = 7; ///< Pictures of luma alone are of this kind.
constexpr int motionJpeg = 19;
constexpr int h264 = 20;
} // namespace FormatNumber

} // namespace zolens
