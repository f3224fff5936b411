#include "VisionLog.h"

namespace zolens {
Q_LOGGING_CATEGORY(visionLog, "zolens.vision", QtInfoMsg)
} // namespace zolens
