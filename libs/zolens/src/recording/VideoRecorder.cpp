#include "VideoRecorder.h"

#include "StartThread.h"

namespace zolens {
namespace {

using namespace std::chrono_literals;
using Clock = Recording::Clock;
using Stage = Recording::Stage;

/// Until the file is open.
constexpr auto openingTime = 4s;
/// For the pictures that wait for the encoder.
constexpr auto encodingTime = 3s;
/// Until the file is complete.
constexpr auto finishingTime = 4s;
/// For a rewriting that is under way when the recorder goes, and for the thread after it.
constexpr auto rewritingTime = 1s;
constexpr auto endingTime = 1s;

} // namespace

std::unique_ptr<VideoRecorder> VideoRecorder::start(const QString& path, Recording::Ended ended)
{
    if (path.isEmpty())
        return nullptr;
    const Clock::time_point begin = Clock::now();
    auto recording = std::make_shared<Recording>(path, std::move(ended));
    std::unique_ptr<VideoRecorder> recorder(new VideoRecorder(std::move(recording)));
    if (recorder->thread.joinable() && recorder->recording->isRunning(begin + openingTime))
        return recorder;
    recorder->stopped = begin; // The time of its end has passed too.
    return nullptr;
}

VideoRecorder::VideoRecorder(std::shared_ptr<Recording> newRecording)
    : recording(std::move(newRecording)),
      thread(startThread([shared = recording] { shared->run(); }))
{
}

VideoRecorder::~VideoRecorder()
{
    if (!thread.joinable())
        return;
    recording->forgetListener();
    stop();
    if (!rewritingEnd)
        finishRewriting(Clock::now() + rewritingTime);
    const bool hangs =
        isRecording() || !recording->waitFor(Stage::Over, *rewritingEnd + endingTime);
    if (hangs)
        thread.detach();
    else
        thread.join();
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

void VideoRecorder::finishRewriting(Clock::time_point deadline)
{
    if (!isRecording())
        recording->waitFor(Stage::Over, deadline);
    recording->cancelRewriting();
    rewritingEnd = Clock::now();
}

bool VideoRecorder::letGo()
{
    return recording->waitFor(Stage::Complete, Clock::now()) &&
           (recording->cancelRewriting() ||
            recording->waitFor(Stage::Over, Clock::now() + endingTime));
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
