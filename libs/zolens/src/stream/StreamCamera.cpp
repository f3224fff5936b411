#include "StreamCamera.h"

#include "StreamLog.h"
#include "StreamSession.h"
#include "StreamWorker.h"

#include <QImage>

namespace zolens {
namespace {

using std::chrono::milliseconds;

/// With the time to end a worker that does not get through, start() stays under five seconds.
constexpr milliseconds startTime(4550);
constexpr milliseconds stillTime(2000);
constexpr int success = 0;
constexpr int failure = -1;

/// A stream has one size and one format: the first of the list.
int selectOnlyOne(int index)
{
    return index == 0 ? success : failure;
}

} // namespace

StreamCamera::StreamCamera(const QString& text) : url(text) {}

StreamCamera::~StreamCamera()
{
    stop();
}

bool StreamCamera::start(FrameSink* sink)
{
    stop();
    if (!url.isAllowed()) {
        qCInfo(streamLog).noquote() << "Not a stream or video file:" << url.displayName();
        return false;
    }
    session = std::make_shared<StreamSession>(url, sink);
    session->flip = flipped;
    session->mirror = mirrored;
    worker = std::make_unique<StreamWorker>(session);
    const bool opened = session->opened.await(startTime).value_or(false);
    if (!opened)
        stop();
    return opened;
}

void StreamCamera::stop()
{
    worker.reset();
    session.reset();
}

QImage StreamCamera::captureStill()
{
    return session ? session->still.take(stillTime) : QImage();
}

_tag_VideoDeviceInfo StreamCamera::deviceInfo() const
{
    _tag_VideoDeviceInfo info;
    info.type = CWDevice_NetworkStream;
    info.name = url.displayName().toStdString();
    info.address = info.name;
    return info;
}

void StreamCamera::previewSizes(std::vector<QSize>* sizes)
{
    sizes->clear();
    if (session && !session->pictureSize().isEmpty())
        sizes->push_back(session->pictureSize());
}

void StreamCamera::previewSize(QSize* size)
{
    *size = session ? session->pictureSize() : QSize();
}

void StreamCamera::previewFormats(std::vector<int>* formats)
{
    formats->assign(1, previewFormat());
}

int StreamCamera::previewFormat()
{
    return session ? session->format.load() : 0;
}

int StreamCamera::setPreviewFormat(int index)
{
    return selectOnlyOne(index);
}

bool StreamCamera::hasStillCapture()
{
    return false;
}

void StreamCamera::stillSizes(std::vector<QSize>* sizes)
{
    previewSizes(sizes);
}

void StreamCamera::stillSize(QSize* size)
{
    previewSize(size);
}

void StreamCamera::setFlip(bool on)
{
    flipped = on;
    if (session)
        session->flip = on;
}

bool StreamCamera::flip()
{
    return flipped;
}

void StreamCamera::setMirror(bool on)
{
    mirrored = on;
    if (session)
        session->mirror = on;
}

bool StreamCamera::mirror()
{
    return mirrored;
}

void StreamCamera::setAutoExposure(bool) {}

void StreamCamera::whiteBalanceModes(std::vector<int>* modes)
{
    modes->clear();
}

void StreamCamera::setWhiteBalanceMode(int) {}

int StreamCamera::whiteBalanceMode()
{
    return CWWhiteBalance_Auto;
}

bool StreamCamera::isPropertySupported(tagCMProperty)
{
    return false;
}

void StreamCamera::propertyRange(tagCMProperty, double* min, double* max, double* step)
{
    *min = *max = *step = 0.0;
}

void StreamCamera::propertyValues(std::vector<int>* values, tagCMProperty)
{
    values->clear();
}

int StreamCamera::getProperty(tagCMProperty, double*)
{
    return failure;
}

int StreamCamera::setProperty(tagCMProperty, double)
{
    return failure;
}

void StreamCamera::powerFrequencies(std::vector<int>* values)
{
    values->clear();
}

int StreamCamera::powerFrequency()
{
    return 0;
}

void StreamCamera::setPowerFrequency(int) {}

int StreamCamera::selectPreviewSize(int index)
{
    return selectOnlyOne(index);
}

int StreamCamera::selectStillSize(int index)
{
    return selectOnlyOne(index);
}

double StreamCamera::defaultValue(tagCMProperty)
{
    return 0.0;
}

} // namespace zolens
