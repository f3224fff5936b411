#pragma once

#include <QCoreApplication>

namespace zolens {

/// Why a recording ended by itself.
enum class RecordingEnd { None, DiskFull, WriteFailed, EncodingFailed };

/// The texts of those reasons for the user.
class RecordingEndText final
{
    Q_DECLARE_TR_FUNCTIONS(RecordingEndText)

public:
    static QString text(RecordingEnd reason);
};

} // namespace zolens
