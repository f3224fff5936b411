#pragma once

#include <QtGlobal>

#include <cstdint>

extern "C" {
#include <libavutil/pixfmt.h>
}

namespace zolens {

/// How a device may deliver its pictures.
struct PixelFormat
{
    enum class Coding { Raw, Sensor, Jpeg, H264 };

    quint32 fourcc;
    int number; ///< As in CWCamera::previewFormats.
    Coding coding;
    AVPixelFormat layout;         ///< Of raw pictures.
    std::uint32_t sensorCode = 0; ///< Of pictures as sensors give them: the SensorFormat's.
};

/// Null for formats that cannot be shown. Of two, the one at the lower address is the better
/// choice.
const PixelFormat* findPixelFormat(quint32 fourcc);

} // namespace zolens
