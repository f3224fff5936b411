#pragma once

#include "ffmpeg/AvPointers.h"

#include <QtGlobal>

class QFileDevice;

namespace zolens {

/// Lets the FFmpeg libraries write into an open file, which must outlive it.
class FileOutput final
{
public:
    explicit FileOutput(QFileDevice& file);
    ~FileOutput();
    Q_DISABLE_COPY(FileOutput)

    /// Null when memory is short.
    AVIOContext* context() const;
    /// Hands on what is held back. False when this or an earlier write failed.
    bool flush();

private:
    AVIOContext* output = nullptr;
};

} // namespace zolens
