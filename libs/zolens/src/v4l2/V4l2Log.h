#pragma once

#include <QLoggingCategory>

namespace zolens {
Q_DECLARE_LOGGING_CATEGORY(v4l2Log)
} // namespace zolens
