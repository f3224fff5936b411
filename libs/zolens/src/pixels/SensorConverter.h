#pragma once

#include "Demosaic.h"
#include "FrameConverter.h"
#include "SensorFormat.h"

#include <vector>

class QImage;

namespace zolens {

/// A picture as a camera sent it, in memory of somebody else.
struct SensorData
{
    const uchar* bytes;
    std::size_t size;
    std::uint32_t padding = 0; ///< Bytes after each row; those of the last one may be missing.
};

/// Turns the pictures of machine vision cameras into images of Format_RGB32. Keeps what it works
/// with from picture to picture; each thread uses one of its own.
class SensorConverter final
{
public:
    /// Fills `target`, whose size is the picture's. False, with `target` untouched, when there are
    /// fewer bytes than such a picture has or when `target` cannot hold one.
    bool convert(const SensorFormat& format, const SensorData& data,
                 FrameConverter::Orientation orientation, QImage* target);

private:
    struct Picture;
    struct Rows;

    void convertPlain(const Picture& picture, const Rows& target);
    void convertBayer(const Picture& picture, const Rows& target);
    const uchar* samplesOf(const Picture& picture, int y);

    Demosaic demosaic;
    std::vector<uchar> samples;
    std::vector<QRgb> line;
};

} // namespace zolens
