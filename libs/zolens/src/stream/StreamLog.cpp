#include "StreamLog.h"

namespace zolens {
Q_LOGGING_CATEGORY(streamLog, "zolens.stream", QtInfoMsg)
} // namespace zolens
