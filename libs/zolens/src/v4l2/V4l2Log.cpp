#include "V4l2Log.h"

namespace zolens {
Q_LOGGING_CATEGORY(v4l2Log, "zolens.v4l2", QtInfoMsg)
} // namespace zolens
