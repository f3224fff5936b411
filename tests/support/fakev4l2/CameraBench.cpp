#include "CameraBench.h"

#include "TestPictures.h"

#include <QDir>
#include <QFile>

namespace {

void write(const QString& path, const QByteArray& content)
{
    QFile file(path);
    file.open(QIODevice::WriteOnly);
    file.write(content);
}

} // namespace

CameraBench::CameraBench()
{
    QDir(folder.path()).mkpath(QStringLiteral("dev"));
    QDir(folder.path()).mkpath(QStringLiteral("sys/class/video4linux"));
}

zolens::V4l2Host CameraBench::host() const
{
    return {system, folder.filePath(QStringLiteral("dev")), folder.filePath(QStringLiteral("sys"))};
}

QString CameraBench::node(int number) const
{
    return folder.filePath(QStringLiteral("dev/video%1").arg(number));
}

void CameraBench::plug(int number, const std::shared_ptr<FakeCamera>& camera, const char* vendorId,
                       const char* productId)
{
    write(node(number), {});
    const QString usb = folder.filePath(QStringLiteral("sys/devices/usb1/1-%1").arg(number));
    const QString interface = usb + QStringLiteral("/1-%1:1.0").arg(number);
    QDir().mkpath(interface);
    const QString entry =
        folder.filePath(QStringLiteral("sys/class/video4linux/video%1").arg(number));
    QDir().mkpath(entry);
    QFile::link(interface, entry + QStringLiteral("/device"));
    if (vendorId) {
        write(usb + QStringLiteral("/idVendor"), QByteArray(vendorId) + '\n');
        write(usb + QStringLiteral("/idProduct"), QByteArray(productId) + '\n');
    }
    system->plug(node(number), camera);
}

void CameraBench::unplug(int number)
{
    QFile::remove(node(number));
    system->unplug(node(number));
}

zolens::V4l2Address CameraBench::address() const
{
    return {host(), wildcards(), CWDevice_Uvc, 0};
}

CWUVCFilter CameraBench::wildcards()
{
    CWUVCFilter filter;
    filter.addItem({0, 0, {}, CWDevice_Uvc});
    filter.addItem({0, 0, {}, CWDevice_OtherCapture});
    return filter;
}

std::shared_ptr<FakeCamera> CameraBench::webcam()
{
    auto camera = std::make_shared<FakeCamera>();
    camera->formats = {
        {V4L2_PIX_FMT_YUYV, {{640, 480}}, {}},
        {V4L2_PIX_FMT_MJPEG, {{1920, 1080}, {640, 480}, {1280, 720}}, {}},
    };
    camera->pictures = [](quint32 fourcc, const QSize& size, int) {
        return pictures::quartersAs(fourcc, size);
    };
    FakeControls& controls = camera->controls;
    controls.addInteger(V4L2_CID_BRIGHTNESS, -64, 64, 0);
    controls.addInteger(V4L2_CID_CONTRAST, 0, 64, 32);
    controls.addInteger(V4L2_CID_GAIN, 0, 100, 10);
    controls.addBoolean(V4L2_CID_AUTO_WHITE_BALANCE, true);
    controls.add({V4L2_CID_WHITE_BALANCE_TEMPERATURE,
                  V4L2_CTRL_TYPE_INTEGER,
                  2800,
                  6500,
                  10,
                  4600,
                  4600,
                  {}});
    controls.addMenu(V4L2_CID_POWER_LINE_FREQUENCY, {0, 1, 2}, 1);
    controls.addMenu(V4L2_CID_EXPOSURE_AUTO, {1, 3}, 3);
    controls.addInteger(V4L2_CID_EXPOSURE_ABSOLUTE, 1, 5000, 157);
    return camera;
}
