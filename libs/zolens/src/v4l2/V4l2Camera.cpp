#include "V4l2Camera.h"

#include "CameraControls.h"
#include "TaskThread.h"
#include "V4l2Worker.h"

#include <QImage>

#include <algorithm>
#include <cmath>

namespace zolens {
namespace {

using std::chrono::milliseconds;
using Range = CameraControls::Range;

/// With the time to end a worker that does not get through, start() stays under five seconds.
constexpr milliseconds startTime(4500);
constexpr milliseconds stillTime(5000);
/// Drivers wait up to five seconds for a camera that does not answer; the window does not.
constexpr milliseconds controlTime(500);
constexpr int success = 0;
constexpr int failure = -1;

int result(bool succeeded)
{
    return succeeded ? success : failure;
}

/// The value in the picture's look that stands for the property; null for those of the device.
std::atomic<int>* lookValue(PictureLook& look, tagCMProperty id)
{
    switch (id) {
    case CMProperty_ColorMode:
        return &look.colorMode;
    case CMProperty_Denoise:
        return &look.denoise;
    default:
        return nullptr;
    }
}

std::optional<Range> lookRange(tagCMProperty id)
{
    switch (id) {
    case CMProperty_ColorMode:
        return Range{PictureLook::Colorful, PictureLook::Negative, 1, PictureLook::Colorful};
    case CMProperty_Denoise:
        return Range{0, PictureLook::strongestDenoise, 1, 0};
    default:
        return std::nullopt;
    }
}

std::optional<Range> rangeOf(const V4l2Session& session, tagCMProperty id)
{
    if (const auto range = lookRange(id))
        return range;
    const auto controls = session.controls();
    return controls ? controls->range(id) : std::nullopt;
}

} // namespace

V4l2Camera::V4l2Camera(V4l2Address deviceAddress, bool tryStillCapture)
    : address(std::move(deviceAddress)),
      stillPath(tryStillCapture),
      session(std::make_shared<V4l2Session>(address, stillPath, nullptr))
{
}

V4l2Camera::~V4l2Camera()
{
    stop();
}

bool V4l2Camera::start(FrameSink* sink)
{
    stop();
    const auto before =
        std::exchange(session, std::make_shared<V4l2Session>(address, stillPath, sink));
    setFlip(before->look.flip);
    setMirror(before->look.mirror);
    tasks = std::make_unique<TaskThread>();
    worker = std::make_unique<V4l2Worker>(session);
    const bool opened = session->opened.await(startTime).value_or(false);
    if (!opened)
        stop();
    return opened;
}

void V4l2Camera::stop()
{
    worker.reset();
    tasks.reset();
}

QImage V4l2Camera::captureStill()
{
    if (!worker || session->finished.isSettled())
        return {};
    return session->still.take(stillTime);
}

_tag_VideoDeviceInfo V4l2Camera::deviceInfo() const
{
    return session->opened.isSettled() ? session->info : _tag_VideoDeviceInfo();
}

void V4l2Camera::previewSizes(std::vector<QSize>* sizes)
{
    *sizes = session->modes.sizes();
}

void V4l2Camera::previewSize(QSize* size)
{
    *size = session->modes.preview().size;
}

int V4l2Camera::selectPreviewSize(int index)
{
    return follow(session->modes.selectSize(index));
}

void V4l2Camera::previewFormats(std::vector<int>* formats)
{
    formats->clear();
    for (const VideoFormat& format : session->modes.formats())
        formats->push_back(format.pixels->number);
}

int V4l2Camera::previewFormat()
{
    std::vector<int> formats;
    previewFormats(&formats);
    return formats.empty() ? 0 : formats[std::size_t(session->modes.preview().format)];
}

int V4l2Camera::setPreviewFormat(int index)
{
    return follow(session->modes.selectFormat(index));
}

int V4l2Camera::follow(bool accepted)
{
    session->wake.ring();
    return result(accepted);
}

bool V4l2Camera::hasStillCapture()
{
    return session->hasStillSizes();
}

void V4l2Camera::stillSizes(std::vector<QSize>* sizes)
{
    *sizes = hasStillCapture() ? session->modes.sizes() : std::vector<QSize>();
}

void V4l2Camera::stillSize(QSize* size)
{
    *size = hasStillCapture() ? session->modes.still().size : session->modes.preview().size;
}

int V4l2Camera::selectStillSize(int index)
{
    return result(session->modes.selectStillSize(index));
}

void V4l2Camera::setFlip(bool on)
{
    session->look.flip = on;
}

bool V4l2Camera::flip()
{
    return session->look.flip;
}

void V4l2Camera::setMirror(bool on)
{
    session->look.mirror = on;
}

bool V4l2Camera::mirror()
{
    return session->look.mirror;
}

template <typename T>
std::optional<T> V4l2Camera::ask(std::function<T(CameraControls&)> question)
{
    const auto controls = session->controls();
    if (!tasks || !controls)
        return std::nullopt;
    return tasks->ask<T>([controls, question = std::move(question)] { return question(*controls); },
                         controlTime);
}

void V4l2Camera::setAutoExposure(bool on)
{
    ask<bool>([on](CameraControls& controls) {
        controls.setAutoExposure(on);
        return true;
    });
}

void V4l2Camera::whiteBalanceModes(std::vector<int>* modes)
{
    const auto controls = session->controls();
    *modes = controls ? controls->whiteBalanceModes() : std::vector<int>();
}

void V4l2Camera::setWhiteBalanceMode(int mode)
{
    ask<bool>([mode](CameraControls& controls) {
        controls.setWhiteBalanceMode(mode);
        return true;
    });
}

int V4l2Camera::whiteBalanceMode()
{
    return ask<int>([](CameraControls& controls) { return controls.whiteBalanceMode(); })
        .value_or(CWWhiteBalance_Manual);
}

bool V4l2Camera::isPropertySupported(tagCMProperty id)
{
    return rangeOf(*session, id).has_value();
}

void V4l2Camera::propertyRange(tagCMProperty id, double* min, double* max, double* step)
{
    const Range range = rangeOf(*session, id).value_or(Range{});
    *min = range.lowest;
    *max = range.highest;
    *step = range.step;
}

void V4l2Camera::propertyValues(std::vector<int>* values, tagCMProperty id)
{
    values->clear();
    if (id == CMProperty_ColorMode)
        *values = {PictureLook::Colorful, PictureLook::Monochrome, PictureLook::Negative};
}

int V4l2Camera::getProperty(tagCMProperty id, double* value)
{
    if (const auto* own = lookValue(session->look, id)) {
        *value = *own;
        return success;
    }
    const auto answer =
        ask<std::optional<double>>([id](CameraControls& controls) { return controls.read(id); });
    if (!answer || !*answer)
        return failure;
    *value = **answer;
    return success;
}

int V4l2Camera::setProperty(tagCMProperty id, double value)
{
    if (std::isnan(value))
        return failure;
    if (auto* own = lookValue(session->look, id)) {
        const Range range = *lookRange(id);
        *own = int(std::lround(std::clamp(value, range.lowest, range.highest)));
        return success;
    }
    const auto written =
        ask<bool>([id, value](CameraControls& controls) { return controls.write(id, value); });
    return result(written.value_or(false));
}

double V4l2Camera::defaultValue(tagCMProperty id)
{
    return rangeOf(*session, id).value_or(Range{}).standard;
}

void V4l2Camera::powerFrequencies(std::vector<int>* values)
{
    const auto controls = session->controls();
    *values = controls ? controls->powerFrequencies() : std::vector<int>();
}

int V4l2Camera::powerFrequency()
{
    return ask<int>([](CameraControls& controls) { return controls.powerFrequency(); }).value_or(0);
}

void V4l2Camera::setPowerFrequency(int value)
{
    ask<bool>([value](CameraControls& controls) {
        controls.setPowerFrequency(value);
        return true;
    });
}

quint64 V4l2Camera::damagedFrames() const
{
    return session->damaged;
}

quint64 V4l2Camera::restarts() const
{
    return session->restarts;
}

} // namespace zolens
