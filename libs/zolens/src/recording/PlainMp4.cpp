#include "PlainMp4.h"

#include "Mp4Muxer.h"
#include "RecordingFile.h"

#include <QFile>
#include <QFileInfo>
#include <QSaveFile>

namespace zolens {
namespace {

AvPointer<AVFormatContext> openRecording(const QString& path)
{
    const QByteArray url = "file:" + QFile::encodeName(path);
    AVFormatContext* context = nullptr;
    if (avformat_open_input(&context, url.constData(), nullptr, nullptr) < 0)
        return nullptr;
    AvPointer<AVFormatContext> recording(context);
    return recording->nb_streams == 1 ? std::move(recording) : nullptr;
}

bool copyPackets(AVFormatContext* from, Mp4Muxer* to, const std::atomic<bool>& cancelled)
{
    const AvPointer<AVPacket> packet(av_packet_alloc());
    int result = packet ? 0 : AVERROR(ENOMEM);
    while (result >= 0 && !cancelled) {
        result = av_read_frame(from, packet.get());
        if (result >= 0 && !to->write(packet.get()))
            return false;
    }
    return result == AVERROR_EOF;
}

bool hasRoom(const QString& path)
{
    return freeBytes(path) >= QFileInfo(path).size() + reservedBytes;
}

} // namespace

bool rewriteAsPlainMp4(const QString& path, const std::atomic<bool>& cancelled)
{
    const AvPointer<AVFormatContext> recording = hasRoom(path) ? openRecording(path) : nullptr;
    QSaveFile file(path);
    if (!recording || !file.open(QIODevice::WriteOnly))
        return false;
    Mp4Muxer plain(file, Mp4Muxer::Layout::Plain);
    const AVStream& stream = *recording->streams[0];
    const bool written = plain.begin(*stream.codecpar, stream.time_base) &&
                         copyPackets(recording.get(), &plain, cancelled) && plain.finish();
    // Who has moved the recording away wants no second one.
    return written && QFile::exists(path) && file.commit();
}

} // namespace zolens
