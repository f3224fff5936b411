#pragma once

#include <QLoggingCategory>

namespace zolens {
Q_DECLARE_LOGGING_CATEGORY(visionLog)
} // namespace zolens
