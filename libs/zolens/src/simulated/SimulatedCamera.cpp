#include "SimulatedCamera.h"

#include "AutomaticControl.h"
#include "MicroscopeImager.h"
#include "PropertyTable.h"
#include "StartThread.h"
#include "frames/FrameSink.h"

#include <algorithm>
#include <cmath>
#include <numeric>

namespace zolens {

namespace {

using Clock = std::chrono::steady_clock;

constexpr int failure = -1;

const std::vector<QSize> previews{
    {640, 480}, {1280, 720}, {1920, 1080}, {2592, 1944}, {3840, 2160}};
const std::vector<QSize> stills{{1920, 1080}, {2592, 1944}, {3840, 2160}};
const std::vector<FrameFormat> formats{FrameFormat::Rgb, FrameFormat::Yuv, FrameFormat::Mjpeg};
constexpr int colorModes = 3;
constexpr int frequencies = 4;
constexpr int balanceModes = 3;

bool isPosition(int index, std::size_t count)
{
    return index >= 0 && static_cast<std::size_t>(index) < count;
}

std::vector<int> numbersBelow(int count)
{
    std::vector<int> numbers(static_cast<std::size_t>(count));
    std::iota(numbers.begin(), numbers.end(), 0);
    return numbers;
}

} // namespace

SimulatedCamera::SimulatedCamera(bool tryStillCapture) : stillPath(tryStillCapture) {}

SimulatedCamera::~SimulatedCamera()
{
    stop();
}

_tag_VideoDeviceInfo SimulatedCamera::description()
{
    _tag_VideoDeviceInfo info;
    info.type = CWDevice_Simulated;
    info.name = "Simulated microscope";
    return info;
}

_tag_VideoDeviceInfo SimulatedCamera::deviceInfo() const
{
    return description();
}

bool SimulatedCamera::start(FrameSink* sink)
{
    stop();
    running = true;
    frameNumber = 0;
    imager = std::make_unique<MicroscopeImager>();
    thread = startThread([this, sink] { run(sink); });
    if (thread.joinable())
        return true;
    stop();
    return false;
}

void SimulatedCamera::stop()
{
    {
        const std::lock_guard lock(mutex);
        running = false;
    }
    changed.notify_all();
    if (thread.joinable()) {
        imager->cancel();
        thread.join();
    }
    imager.reset();
}

void SimulatedCamera::run(FrameSink* sink)
{
    auto due = Clock::now();
    do {
        makeFrame(sink);
    } while (waitForNextFrame(due));
}

void SimulatedCamera::makeFrame(FrameSink* sink)
{
    QSize size;
    previewSize(&size);
    const SimulatedSettings now = nextSettings(imager->sceneOf(size));
    QImage frame = sink->acquireFrame(now.size);
    if (!frame.isNull() && imager->render(now, frameNumber, frame))
        sink->deliver(std::move(frame));
}

SimulatedSettings SimulatedCamera::nextSettings(const MicroscopeScene& scene)
{
    const std::lock_guard lock(mutex);
    if (balanceOnce) {
        balanceWhite(settings, scene.meter());
        balanceOnce = false;
    }
    if (balanceMode == CWWhiteBalance_Auto)
        approachWhiteBalance(settings, scene.meter());
    if (autoExposure)
        adjustExposure(settings, scene.meter());
    return settings;
}

bool SimulatedCamera::waitForNextFrame(Clock::time_point& due)
{
    std::unique_lock lock(mutex);
    const std::chrono::duration<double> interval(frameInterval(settings));
    due = std::max(due + std::chrono::duration_cast<Clock::duration>(interval), Clock::now());
    changed.wait_until(lock, due, [this] { return !running; });
    ++frameNumber;
    return running;
}

QImage SimulatedCamera::captureStill()
{
    SimulatedSettings now;
    quint64 number = 0;
    {
        const std::lock_guard lock(mutex);
        if (!running)
            return {};
        now = settings;
        now.size = stillPath ? sizeOfStills : settings.size;
        number = frameNumber;
    }
    QImage picture(now.size, QImage::Format_RGB32);
    if (!picture.isNull())
        MicroscopeImager().render(now, number, picture);
    return picture;
}

void SimulatedCamera::previewSizes(std::vector<QSize>* sizes)
{
    *sizes = previews;
}

void SimulatedCamera::previewSize(QSize* size)
{
    const std::lock_guard lock(mutex);
    *size = settings.size;
}

int SimulatedCamera::selectPreviewSize(int index)
{
    const std::lock_guard lock(mutex);
    settings.size = previews[static_cast<std::size_t>(index)];
    return 0;
}

void SimulatedCamera::previewFormats(std::vector<int>* values)
{
    values->clear();
    for (const FrameFormat format : formats)
        values->push_back(static_cast<int>(format));
}

int SimulatedCamera::previewFormat()
{
    const std::lock_guard lock(mutex);
    return static_cast<int>(settings.format);
}

int SimulatedCamera::setPreviewFormat(int index)
{
    if (!isPosition(index, formats.size()))
        return failure;
    const std::lock_guard lock(mutex);
    settings.format = formats[static_cast<std::size_t>(index)];
    return 0;
}

bool SimulatedCamera::hasStillCapture()
{
    return stillPath;
}

void SimulatedCamera::stillSizes(std::vector<QSize>* sizes)
{
    *sizes = stillPath ? stills : std::vector<QSize>();
}

void SimulatedCamera::stillSize(QSize* size)
{
    const std::lock_guard lock(mutex);
    *size = stillPath ? sizeOfStills : settings.size;
}

int SimulatedCamera::selectStillSize(int index)
{
    const std::lock_guard lock(mutex);
    sizeOfStills = stills[static_cast<std::size_t>(index)];
    return 0;
}

void SimulatedCamera::setFlip(bool on)
{
    const std::lock_guard lock(mutex);
    settings.flip = on;
}

bool SimulatedCamera::flip()
{
    const std::lock_guard lock(mutex);
    return settings.flip;
}

void SimulatedCamera::setMirror(bool on)
{
    const std::lock_guard lock(mutex);
    settings.mirror = on;
}

bool SimulatedCamera::mirror()
{
    const std::lock_guard lock(mutex);
    return settings.mirror;
}

void SimulatedCamera::setAutoExposure(bool on)
{
    const std::lock_guard lock(mutex);
    autoExposure = on;
}

void SimulatedCamera::whiteBalanceModes(std::vector<int>* modes)
{
    *modes = numbersBelow(balanceModes);
}

void SimulatedCamera::setWhiteBalanceMode(int mode)
{
    if (!isPosition(mode, balanceModes))
        return;
    const std::lock_guard lock(mutex);
    balanceOnce = mode == CWWhiteBalance_OnePush;
    balanceMode = mode == CWWhiteBalance_Auto ? CWWhiteBalance_Auto : CWWhiteBalance_Manual;
}

int SimulatedCamera::whiteBalanceMode()
{
    const std::lock_guard lock(mutex);
    return balanceMode;
}

bool SimulatedCamera::isPropertySupported(tagCMProperty id)
{
    return findProperty(id) != nullptr;
}

void SimulatedCamera::propertyRange(tagCMProperty id, double* min, double* max, double* step)
{
    if (const PropertyRange* range = findProperty(id)) {
        *min = range->lowest;
        *max = range->highest;
        *step = range->step;
    }
}

void SimulatedCamera::propertyValues(std::vector<int>* values, tagCMProperty id)
{
    *values = id == CMProperty_ColorMode ? numbersBelow(colorModes) : std::vector<int>();
}

int SimulatedCamera::getProperty(tagCMProperty id, double* value)
{
    if (!isPropertySupported(id))
        return failure;
    const std::lock_guard lock(mutex);
    *value = settings.value(id);
    return 0;
}

int SimulatedCamera::setProperty(tagCMProperty id, double value)
{
    const PropertyRange* range = findProperty(id);
    if (!range || std::isnan(value))
        return failure;
    const std::lock_guard lock(mutex);
    settings.setValue(id, nearestValue(*range, value));
    return 0;
}

double SimulatedCamera::defaultValue(tagCMProperty id)
{
    const PropertyRange* range = findProperty(id);
    return range ? range->standard : 0.0;
}

void SimulatedCamera::powerFrequencies(std::vector<int>* values)
{
    *values = numbersBelow(frequencies);
}

int SimulatedCamera::powerFrequency()
{
    const std::lock_guard lock(mutex);
    return static_cast<int>(settings.powerFrequency);
}

void SimulatedCamera::setPowerFrequency(int value)
{
    const std::lock_guard lock(mutex);
    if (isPosition(value, frequencies))
        settings.powerFrequency = static_cast<PowerFrequency>(value);
}

} // namespace zolens
