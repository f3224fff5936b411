#include "CaptureCamera.h"

#include "CaptureSession.h"
#include "PatientControls.h"

#include <QImage>

#include <algorithm>
#include <cmath>

namespace zolens {
namespace {

using std::chrono::milliseconds;
using Range = DeviceControls::Range;

/// With the time to end a worker that does not get through, and the one of another camera before,
/// an opening stays under five seconds.
constexpr milliseconds startTime(4000);
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

std::optional<Range> rangeOf(const CaptureSession& session, tagCMProperty id)
{
    if (const auto range = lookRange(id))
        return range;
    const auto controls = session.controls();
    return controls ? controls->range(id) : std::nullopt;
}

} // namespace

CaptureCamera::CaptureCamera(bool tryStillCapture)
    : session(std::make_shared<CaptureSession>(nullptr))
{
    session->tryStillCapture = tryStillCapture;
}

CaptureCamera::~CaptureCamera()
{
    CaptureCamera::stop();
}

bool CaptureCamera::start(FrameSink* sink)
{
    stop();
    const CaptureWork work = prepare(sink);
    work.session->inherit(*session);
    session = work.session;
    controls = std::make_unique<PatientControls>(session);
    worker = std::make_unique<CaptureWorker>(work);
    const bool opened = controls->isRunning() && session->opened.await(startTime).value_or(false);
    if (!opened)
        stop();
    return opened;
}

void CaptureCamera::stop()
{
    worker.reset();
    controls.reset();
}

QImage CaptureCamera::captureStill()
{
    if (!worker || isGone())
        return {};
    return session->still.take(session->patienceForStill());
}

_tag_VideoDeviceInfo CaptureCamera::deviceInfo() const
{
    return session->opened.isSettled() ? session->info : _tag_VideoDeviceInfo();
}

bool CaptureCamera::isGone() const
{
    return worker && (session->away || session->finished.isSettled());
}

bool CaptureCamera::hasUnit(tagCMProperty id)
{
    return rangeOf(*session, id).value_or(Range{}).hasUnit;
}

void CaptureCamera::previewSizes(std::vector<QSize>* sizes)
{
    *sizes = session->modes.sizes();
}

void CaptureCamera::previewSize(QSize* size)
{
    *size = session->modes.preview().size;
}

int CaptureCamera::selectPreviewSize(int index)
{
    return follow(session->modes.selectSize(index));
}

void CaptureCamera::previewFormats(std::vector<int>* formats)
{
    formats->clear();
    for (const VideoFormat& format : session->modes.formats())
        formats->push_back(format.number);
}

int CaptureCamera::previewFormat()
{
    std::vector<int> formats;
    previewFormats(&formats);
    return formats.empty() ? 0 : formats[std::size_t(session->modes.preview().format)];
}

int CaptureCamera::setPreviewFormat(int index)
{
    return follow(session->modes.selectFormat(index));
}

int CaptureCamera::follow(bool accepted)
{
    session->wake.ring();
    return result(accepted);
}

bool CaptureCamera::hasStillCapture()
{
    return session->hasStillSizes();
}

void CaptureCamera::stillSizes(std::vector<QSize>* sizes)
{
    *sizes = hasStillCapture() ? session->modes.sizes() : std::vector<QSize>();
}

void CaptureCamera::stillSize(QSize* size)
{
    *size = hasStillCapture() ? session->modes.still().size : session->modes.preview().size;
}

int CaptureCamera::selectStillSize(int index)
{
    return result(session->modes.selectStillSize(index));
}

void CaptureCamera::setFlip(bool on)
{
    session->look.flip = on;
}

bool CaptureCamera::flip()
{
    return session->look.flip;
}

void CaptureCamera::setMirror(bool on)
{
    session->look.mirror = on;
}

bool CaptureCamera::mirror()
{
    return session->look.mirror;
}

void CaptureCamera::setAutoExposure(bool on)
{
    if (controls)
        controls->setAutoExposure(on);
}

void CaptureCamera::whiteBalanceModes(std::vector<int>* modes)
{
    const auto device = session->controls();
    *modes = device ? device->whiteBalanceModes() : std::vector<int>();
}

void CaptureCamera::setWhiteBalanceMode(int mode)
{
    if (controls)
        controls->setWhiteBalanceMode(mode);
}

int CaptureCamera::whiteBalanceMode()
{
    return controls ? controls->whiteBalanceMode() : CWWhiteBalance_Manual;
}

bool CaptureCamera::isPropertySupported(tagCMProperty id)
{
    return rangeOf(*session, id).has_value();
}

void CaptureCamera::propertyRange(tagCMProperty id, double* min, double* max, double* step)
{
    const Range range = rangeOf(*session, id).value_or(Range{});
    *min = range.lowest;
    *max = range.highest;
    *step = range.step;
}

void CaptureCamera::propertyValues(std::vector<int>* values, tagCMProperty id)
{
    values->clear();
    if (id == CMProperty_ColorMode)
        *values = {PictureLook::Colorful, PictureLook::Monochrome, PictureLook::Negative};
}

int CaptureCamera::getProperty(tagCMProperty id, double* value)
{
    if (const auto* own = lookValue(session->look, id)) {
        *value = *own;
        return success;
    }
    const auto answer = controls ? controls->read(id) : std::nullopt;
    if (!answer)
        return failure;
    *value = *answer;
    return success;
}

int CaptureCamera::setProperty(tagCMProperty id, double value)
{
    if (std::isnan(value))
        return failure;
    if (auto* own = lookValue(session->look, id)) {
        const Range range = *lookRange(id);
        *own = int(std::lround(std::clamp(value, range.lowest, range.highest)));
        return success;
    }
    return result(controls && controls->write(id, value));
}

double CaptureCamera::defaultValue(tagCMProperty id)
{
    return rangeOf(*session, id).value_or(Range{}).standard;
}

void CaptureCamera::powerFrequencies(std::vector<int>* values)
{
    const auto device = session->controls();
    *values = device ? device->powerFrequencies() : std::vector<int>();
}

int CaptureCamera::powerFrequency()
{
    return controls ? controls->powerFrequency() : 0;
}

void CaptureCamera::setPowerFrequency(int value)
{
    if (controls)
        controls->setPowerFrequency(value);
}

quint64 CaptureCamera::damagedFrames() const
{
    return session->damaged;
}

quint64 CaptureCamera::restarts() const
{
    return session->restarts;
}

} // namespace zolens
