#pragma once

#include "Mp4Muxer.h"
#include "RecordingEnd.h"

#include <QFile>
#include <QString>

namespace zolens {

/// A recording on disk, playable at any time up to its last half second. One thread at a time.
class RecordingFile final
{
public:
    explicit RecordingFile(const QString& path);

    /// False when the path cannot hold a recording. Empties an existing file.
    bool open();
    bool begin(const AVCodecParameters& parameters, AVRational timeBase);
    /// Empties the packet. Harmless after a failure.
    void write(AVPacket* packet);
    /// Closes the file, cut after the last complete fragment; one without pictures is removed.
    void finish();

    RecordingEnd failure() const;
    bool hasPictures() const;
    QString path() const;

private:
    void endFragment(int64_t time);
    void note(bool success);
    bool hasSpace() const;

    QFile file;
    Mp4Muxer muxer{file, Mp4Muxer::Layout::Fragmented};
    AVRational timeBase{};
    int64_t fragmentStart = 0;
    qint64 soundBytes = 0; ///< Up to the end of the last complete fragment.
    bool begun = false;
    bool pictures = false;
    RecordingEnd problem = RecordingEnd::None;
};

/// Bytes that programs may use on the disk of that file; -1 when unknown.
qint64 freeBytes(const QString& path);
/// What recordings leave free there, for others and for the end of the file.
constexpr qint64 reservedBytes = qint64{8} * 1024 * 1024;

} // namespace zolens
