#include "PlainMp4.h"

#include "Mp4Muxer.h"
#include "RecordingFile.h"

#include <QFile>
#include <QFileInfo>
#include <QSaveFile>

#include <unistd.h>

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

bool copyPackets(AVFormatContext* from, Mp4Muxer* to, const ReplacementPermit& permit)
{
    const AvPointer<AVPacket> packet(av_packet_alloc());
    int result = packet ? 0 : AVERROR(ENOMEM);
    while (result >= 0 && !permit.isWithdrawn()) {
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

/// Before the file takes its place, since a slow disk takes long for it.
bool handOverToDisk(QFileDevice* file)
{
    return file->flush() && fdatasync(file->handle()) == 0;
}

} // namespace

bool ReplacementPermit::withdraw()
{
    State expected = State::Valid;
    return state.compare_exchange_strong(expected, State::Withdrawn) || isWithdrawn();
}

bool ReplacementPermit::isWithdrawn() const
{
    return state == State::Withdrawn;
}

bool ReplacementPermit::use()
{
    State expected = State::Valid;
    return state.compare_exchange_strong(expected, State::Used);
}

bool rewriteAsPlainMp4(const QString& path, ReplacementPermit* permit)
{
    const AvPointer<AVFormatContext> recording = hasRoom(path) ? openRecording(path) : nullptr;
    QSaveFile file(path);
    if (!recording || !file.open(QIODevice::WriteOnly))
        return false;
    Mp4Muxer plain(file, Mp4Muxer::Layout::Plain);
    const AVStream& stream = *recording->streams[0];
    const bool written = plain.begin(*stream.codecpar, stream.time_base) &&
                         copyPackets(recording.get(), &plain, *permit) && plain.finish() &&
                         handOverToDisk(&file);
    // Who has moved the recording away wants no second one.
    return written && QFile::exists(path) && permit->use() && file.commit();
}

} // namespace zolens
