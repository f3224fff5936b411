#include "zolens/MyCamera.h"

#include "DeviceClasses.h"
#include "PropertyText.h"
#include "frames/FrameDelivery.h"

MyCamera::MyCamera(QObject* parent) : QObject(parent) {}

MyCamera::~MyCamera()
{
    close();
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
    if (!device) {
        return false;
    }
    auto frames = std::make_unique<zolens::FrameDelivery>(
        [this](const QImage& image) { emit getImage(image); }, pause);
    if (!device->start(frames.get())) {
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
    if (!camera) {
        return;
    }
    camera->stop();
    delivery.reset();
    camera.reset();
    info = {};
}

QImage MyCamera::snap()
{
    return camera ? camera->captureStill() : QImage();
}

bool MyCamera::startRecording(const QString&)
{
    return false;
}

void MyCamera::stopRecording() {}

float MyCamera::frameRate() const
{
    return delivery ? delivery->frameRate() : 0.0F;
}

const _tag_VideoDeviceInfo& MyCamera::deviceInfo() const
{
    return info;
}

QString MyCamera::getFormatedProperty(tagCMProperty id, bool)
{
    double value = 0.0;
    if (!camera || camera->getProperty(id, &value) != 0) {
        return {};
    }
    return zolens::PropertyText::text(id, value);
}
