#include "VideoRecorder.h"

namespace zolens {
namespace {

using namespace std::chrono_literals;
using Clock = Recording::Clock;
using Stage = Recording::Stage;

/// For the pictures that wait for the encoder.
constexpr auto encodingTime = 3s;
/// Until the file is complete.
constexpr auto finishingTime = 4s;
/// For a rewriting that is under way when the recorder goes, and for its cancelling.
constexpr auto rewritingTime = 1s;
constexpr auto cancellingTime = 1s;

} // namespace

std::unique_ptr<VideoRecorder> VideoRecorder::start(const QString& path, Recording::Ended ended)
{
    auto recording = std::make_shared<Recording>(path, std::move(ended));
    if (path.isEmpty() || !recording->open())
        return nullptr;
    return std::unique_ptr<VideoRecorder>(new VideoRecorder(std::move(recording)));
}

VideoRecorder::VideoRecorder(std::shared_ptr<Recording> openRecording)
    : recording(std::move(openRecording)),
      thread([shared = recording] { shared->run(); })
{
}

VideoRecorder::~VideoRecorder()
{
    recording->forgetListener();
    stop();
    if (endRewriting())
        thread.join();
    else
        thread.detach();
}

void VideoRecorder::offer(const QImage& image, Clock::time_point arrival)
{
    recording->offer(image, arrival);
}

void VideoRecorder::stop()
{
    if (!stopped)
        stopped = Clock::now();
    recording->close(*stopped + encodingTime);
    recording->waitFor(Stage::Complete, *stopped + finishingTime);
}

/// False when the thread hangs.
bool VideoRecorder::endRewriting()
{
    const bool complete = recording->waitFor(Stage::Complete, Clock::now());
    if (complete)
        recording->waitFor(Stage::Over, Clock::now() + rewritingTime);
    recording->cancelRewriting();
    return complete && recording->waitFor(Stage::Over, Clock::now() + cancellingTime);
}

bool VideoRecorder::isRecording() const
{
    return !recording->waitFor(Stage::Complete, Clock::now());
}

bool VideoRecorder::isOver() const
{
    return recording->waitFor(Stage::Over, Clock::now());
}

quint64 VideoRecorder::droppedFrames() const
{
    return recording->droppedPictures();
}

QString VideoRecorder::path() const
{
    return recording->path();
}

} // namespace zolens
