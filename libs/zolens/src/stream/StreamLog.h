#pragma once

#include <QLoggingCategory>

namespace zolens {
Q_DECLARE_LOGGING_CATEGORY(streamLog)
} // namespace zolens
