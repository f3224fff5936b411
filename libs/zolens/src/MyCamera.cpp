#include "zolens/MyCamera.h"

#include "DeviceClasses.h"
#include "PropertyText.h"
#include "frames/FrameDelivery.h"
#include "recording/VideoRecorder.h"

#include <QFileInfo>

#include <algorithm>
#include <chrono>

namespace {

/// For all recordings together that are being made plain files when the camera goes.
constexpr std::chrono::seconds rewritingTime(1);

bool isSameFile(const QString& one, const QString& other)
{
    return QFileInfo(one).absoluteFilePath() == QFileInfo(other).absoluteFilePath();
}

} // namespace

MyCamera::MyCamera(QObject* parent) : QObject(parent) {}

MyCamera::~MyCamera()
{
    close();
    const auto deadline = std::chrono::steady_clock::now() + rewritingTime;
    for (const auto& recording : rewriting)
        recording->finishRewriting(deadline);
}

bool MyCamera::open(int type, int index, bool tryStillCapture)
{
    close();
    return start(zolens::createCamera(type, index, tryStillCapture));
}

bool MyCamera::open(int type, const QString& url)
{
    close();
    return start(zolens::createNetworkCamera(type, url));
}

bool MyCamera::start(std::unique_ptr<CWCamera> device)
{
    if (!device)
        return false;
    auto frames = std::make_unique<zolens::FrameDelivery>(
        [this](const QImage& image) { emit getImage(image); }, pause,
        [this] { QMetaObject::invokeMethod(this, &MyCamera::modesChanged, Qt::QueuedConnection); });
    if (!frames->isRunning() || !device->start(frames.get())) {
        device.reset(); // Before the sink of its frames.
        return false;
    }
    info = device->deviceInfo();
    delivery = std::move(frames);
    camera = std::move(device);
    return true;
}

void MyCamera::close()
{
    if (!camera)
        return;
    stopRecording();
    camera->stop();
    delivery.reset();
    camera.reset();
    info = {};
}

QImage MyCamera::snap()
{
    return camera ? camera->captureStill() : QImage();
}

// The reason is told on this object's own thread.
bool MyCamera::startRecording(const QString& path)
{
    if (!delivery || isGone() || (recorder && recorder->isRecording()))
        return false;
    stopRecording();
    if (!letGo(path))
        return false;
    recorder = zolens::VideoRecorder::start(path, [this](zolens::RecordingEnd reason) {
        const auto tell = [this, reason] {
            emit recordingEnded(zolens::RecordingEndText::text(reason));
        };
        QMetaObject::invokeMethod(this, tell, Qt::QueuedConnection);
    });
    if (!recorder)
        return false;
    delivery->setTap([target = recorder.get()](const QImage& frame, auto arrival) {
        target->offer(frame, arrival);
    });
    return true;
}

void MyCamera::stopRecording()
{
    if (!recorder)
        return;
    delivery->setTap({});
    recorder->stop();
    rewriting.erase(std::remove_if(rewriting.begin(), rewriting.end(),
                                   [](const auto& earlier) { return earlier->isOver(); }),
                    rewriting.end());
    rewriting.push_back(std::move(recorder));
}

/// A new recording in the same place must not be mixed with an older one or replaced by it.
bool MyCamera::letGo(const QString& path)
{
    return std::all_of(rewriting.begin(), rewriting.end(), [&path](const auto& earlier) {
        return !isSameFile(earlier->path(), path) || earlier->letGo();
    });
}

float MyCamera::frameRate() const
{
    return delivery ? delivery->frameRate() : 0.0F;
}

const _tag_VideoDeviceInfo& MyCamera::deviceInfo() const
{
    return info;
}

bool MyCamera::isGone() const
{
    return camera && camera->isGone();
}

QString MyCamera::getFormatedProperty(tagCMProperty id, bool)
{
    double value = 0.0;
    if (!camera || camera->getProperty(id, &value) != 0)
        return {};
    return camera->hasUnit(id) ? zolens::PropertyText::text(id, value)
                               : zolens::PropertyText::number(value);
}
