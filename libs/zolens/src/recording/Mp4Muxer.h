#pragma once

#include "FileOutput.h"

#include <memory>

namespace zolens {

/// Writes one video stream as MP4 into an open file, which must outlive it. Every result is that of
/// the file too, since the format's own functions report a full disk as success.
class Mp4Muxer final
{
public:
    enum class Layout {
        Plain,     ///< An index at the end; unreadable before finish().
        Fragmented ///< Readable up to the last fragment.
    };

    Mp4Muxer(QFileDevice& file, Layout layout);
    ~Mp4Muxer();
    Q_DISABLE_COPY(Mp4Muxer)

    bool begin(const AVCodecParameters& parameters, AVRational timeBase);
    /// With its time in the time base of begin(). Takes the packet's content, to write it when its
    /// duration is known from the time of the next one.
    bool write(AVPacket* packet);
    /// Ends the fragment before the newest packet and hands it to the file.
    bool endFragment();
    bool finish();

private:
    struct Release
    {
        void operator()(AVFormatContext* context) const { avformat_free_context(context); }
    };

    bool writeHeld();
    bool addStream(const AVCodecParameters& parameters, AVRational timeBase);

    const Layout layout;
    FileOutput output;
    AVRational sourceTimeBase{};
    AvPointer<AVPacket> held;                        ///< Null before the first one.
    int64_t duration = 0;                            ///< Of the one that was written last.
    std::unique_ptr<AVFormatContext, Release> muxer; ///< Before the output that it writes to.
};

} // namespace zolens
