#include "Viewer.h"

#include "Settings.h"
#include "support/CameraValues.h"
#include "support/fakev4l2/TestPictures.h"
#include "v4l2/V4l2Camera.h"

#include <QtTest>

using namespace cameravalues;

namespace {

constexpr int bits = 8;
constexpr int middleGrey = 128;

/// The band across the middle has a cell for each bit of the number, the highest first.
int numberIn(const QImage& image)
{
    int number = 0;
    for (int i = 0; i < bits; ++i) {
        const int x = (2 * i + 1) * image.width() / (2 * bits);
        number = number * 2 + (qGreen(image.pixel(x, image.height() / 2)) > middleGrey ? 1 : 0);
    }
    return number;
}

bool showsQuarters(const QImage& image)
{
    return pictures::areQuarters(image);
}

const zolens::V4l2Camera& kernelCamera(const MyCamera& camera)
{
    return dynamic_cast<const zolens::V4l2Camera&>(*camera.camera);
}

} // namespace

Viewer::Viewer(Check pictureCheck) : check(pictureCheck ? std::move(pictureCheck) : showsQuarters)
{
    QObject::connect(
        &camera, &MyCamera::getImage, &camera, [this](const QImage& image) { look(image); },
        Qt::DirectConnection);
}

bool Viewer::open(const _tag_VideoDeviceInfo& info, bool tryStillCapture)
{
    return camera.open(info.type, info.index, tryStillCapture);
}

quint64 Viewer::damagedFrames() const
{
    return kernelCamera(camera).damagedFrames();
}

quint64 Viewer::restarts() const
{
    return kernelCamera(camera).restarts();
}

bool Viewer::choose(int format, const QSize& size)
{
    return device().setPreviewFormat(positionOfFormat(device(), format)) == 0 &&
           device().setPreviewSize(positionOf(device(), size)) == 0;
}

bool Viewer::chooseStill(const QSize& size)
{
    std::vector<QSize> sizes;
    device().stillSizes(&sizes);
    return device().setStillCaptureSize(positionIn(sizes, size)) == 0;
}

void Viewer::look(const QImage& image)
{
    const Picture picture{image.size(), numberIn(image), check(image)};
    const std::lock_guard<std::mutex> lock(mutex);
    seen.push_back(picture);
}

int Viewer::count() const
{
    const std::lock_guard<std::mutex> lock(mutex);
    return int(seen.size());
}

std::vector<Viewer::Picture> Viewer::pictures() const
{
    const std::lock_guard<std::mutex> lock(mutex);
    return seen;
}

void Viewer::forget()
{
    const std::lock_guard<std::mutex> lock(mutex);
    seen.clear();
}

/// Those of the size before may still be under way.
bool Viewer::sees(int wanted, const QSize& size) const
{
    const int before = count();
    bool allRight = true;
    const auto enough = [&] {
        const std::vector<Picture> now = pictures();
        int fitting = 0;
        for (auto picture = now.begin() + before; picture != now.end(); ++picture) {
            fitting += picture->size == size ? 1 : 0;
            allRight = allRight && picture->isRight;
        }
        return fitting >= wanted || !allRight;
    };
    return QTest::qWaitFor(enough, vm::patience) && allRight;
}

bool Viewer::seesAny(int wanted) const
{
    const int before = count();
    return QTest::qWaitFor([this, before, wanted] { return count() >= before + wanted; },
                           vm::patience);
}
