#include "Recording.h"

#include "PlainMp4.h"

#include <algorithm>

namespace zolens {

Recording::Recording(const QString& path, Ended listener)
    : file(path),
      writePacket([this](AVPacket* packet) { file.write(packet); }),
      ended(std::move(listener))
{
}

bool Recording::open()
{
    return H264Encoder::isAvailable() && file.open();
}

void Recording::run()
{
    while (Picture picture = queue.take()) {
        encode(std::move(picture));
        if (failure() != RecordingEnd::None)
            break;
    }
    queue.close(Clock::now());
    finish();
    enter(Stage::Over);
}

void Recording::offer(const QImage& image, Clock::time_point arrival)
{
    const QSize size = evenSize(image.size());
    Picture picture = queue.hasRoomFor(size) ? offered.acquire(size) : nullptr;
    if (!picture) {
        ++dropped;
        return;
    }
    convertToPicture(image, picture.get());
    picture->pts = timeOf(arrival);
    queue.put(std::move(picture));
}

void Recording::close(Clock::time_point end)
{
    queue.close(end);
}

void Recording::cancelRewriting()
{
    rewritingCancelled = true;
}

void Recording::forgetListener()
{
    const std::lock_guard lock(mutex);
    ended = nullptr;
}

bool Recording::waitFor(Stage wanted, Clock::time_point deadline) const
{
    std::unique_lock lock(mutex);
    return changed.wait_until(lock, deadline, [this, wanted] { return stage >= wanted; });
}

quint64 Recording::droppedPictures() const
{
    return dropped;
}

QString Recording::path() const
{
    return file.path();
}

void Recording::encode(Picture picture)
{
    if (!encoder.isOpen() && !openEncoder(*picture))
        return;
    const Picture ready = fitted(std::move(picture));
    encodingFailed = !ready || !encoder.encode(ready.get(), writePacket);
}

bool Recording::openEncoder(const AVFrame& first)
{
    const bool opened = encoder.open(QSize(first.width, first.height));
    const auto parameters = opened ? encoder.parameters() : nullptr;
    encodingFailed = !parameters;
    return parameters && file.begin(*parameters, H264Encoder::timeBase);
}

/// Of the size that the file began with.
Picture Recording::fitted(Picture picture)
{
    const QSize size = encoder.size();
    if (QSize(picture->width, picture->height) == size)
        return picture;
    Picture target = scaled.acquire(size);
    if (target)
        scalePicture(*picture, target.get());
    return target;
}

void Recording::finish()
{
    if (encoder.isOpen() && failure() == RecordingEnd::None)
        encodingFailed = !encoder.finish(writePacket);
    file.finish();
    const RecordingEnd reason = failure();
    enter(Stage::Complete);
    if (reason != RecordingEnd::None)
        tell(reason);
    else if (file.hasPictures())
        rewriteAsPlainMp4(file.path(), rewritingCancelled);
}

RecordingEnd Recording::failure() const
{
    return encodingFailed ? RecordingEnd::EncodingFailed : file.failure();
}

/// Strictly ascending, as the file needs it.
int64_t Recording::timeOf(Clock::time_point arrival)
{
    using Ticks = std::chrono::duration<int64_t, std::ratio<1, H264Encoder::timeBase.den>>;
    if (!start)
        start = arrival;
    const auto ticks = std::chrono::duration_cast<Ticks>(arrival - *start).count();
    lastTime = std::max(lastTime + 1, ticks);
    return lastTime;
}

void Recording::enter(Stage next)
{
    {
        const std::lock_guard lock(mutex);
        stage = next;
    }
    changed.notify_all();
}

void Recording::tell(RecordingEnd reason)
{
    const std::lock_guard lock(mutex);
    if (ended)
        ended(reason);
}

} // namespace zolens
