#include "Recording.h"

#include <algorithm>

namespace zolens {
namespace {

using namespace std::chrono_literals;

/// A picture that shows for longer is encoded again and again. The file holds back the last one
/// until another comes, which after a long exposure could be lost with the program.
constexpr auto longestShow = 500ms;

} // namespace

Recording::Recording(const QString& path, Ended listener)
    : file(path),
      writePacket([this](AVPacket* packet) { file.write(packet); }),
      ended(std::move(listener))
{
}

void Recording::run()
{
    if (open()) {
        enter(Stage::Running);
        encodeAll();
        finish();
    }
    enter(Stage::Over);
}

bool Recording::isRunning(Clock::time_point deadline) const
{
    return waitFor(Stage::Running, deadline) && !waitFor(Stage::Complete, Clock::now());
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
    if (!start)
        start = arrival;
    picture->pts = ticksAt(arrival);
    queue.put(std::move(picture));
}

void Recording::close(Clock::time_point end)
{
    queue.close(end);
}

bool Recording::cancelRewriting()
{
    return replacement.withdraw();
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

bool Recording::open()
{
    return H264Encoder::isAvailable() && file.open();
}

void Recording::encodeAll()
{
    while (!queue.isOver() && failure() == RecordingEnd::None) {
        if (Picture picture = queue.take(longestShow))
            encode(std::move(picture));
        else
            repeatLast();
    }
    queue.close(Clock::now());
}

void Recording::encode(Picture picture)
{
    if (!encoder.isOpen() && !openEncoder(*picture))
        return;
    const int64_t earliest = last ? last->pts + 1 : 0;
    last = fitted(std::move(picture));
    if (last)
        last->pts = std::max(earliest, last->pts);
    encodingFailed = !last || !encoder.encode(last.get(), writePacket);
}

/// Unless it is new. Also when the recording ends, so that the file lasts as long as it did.
void Recording::repeatLast()
{
    const auto now = Clock::now();
    if (!last || last->pts > ticksAt(now - longestShow))
        return;
    Picture again(av_frame_clone(last.get()));
    if (!again)
        return;
    again->pts = ticksAt(now);
    encode(std::move(again));
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
        rewriteAsPlainMp4(file.path(), &replacement);
}

RecordingEnd Recording::failure() const
{
    return encodingFailed ? RecordingEnd::EncodingFailed : file.failure();
}

/// In units of the encoder's time base.
int64_t Recording::ticksAt(Clock::time_point moment) const
{
    using Ticks = std::chrono::duration<int64_t, std::ratio<1, H264Encoder::timeBase.den>>;
    return std::chrono::duration_cast<Ticks>(moment - *start).count();
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
