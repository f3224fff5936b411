#pragma once

#include <zolens/MyCamera.h>

#include <QImage>
#include <QSize>

#include <functional>
#include <mutex>
#include <vector>

/// A camera, opened as the program does it, and what its pictures show. Those of UsbCamera have
/// four colours and carry a number of 0 to 255. Lives on the test's thread; the pictures come on
/// another.
class Viewer final
{
public:
    struct Picture
    {
        QSize size;
        int number = 0;
        bool isRight = false; ///< Whether it shows what it should.
    };

    using Check = std::function<bool(const QImage&)>;

    /// By default the four colours are looked for.
    explicit Viewer(Check pictureCheck = {});

    bool open(const _tag_VideoDeviceInfo& device, bool tryStillCapture = false);
    CWCamera& device() { return *camera.camera; }
    /// Frames that could not be decoded, and restarts of a stalled device, since the opening.
    quint64 damagedFrames() const;
    quint64 restarts() const;
    /// Chooses by what the lists of the device say. False when they lack it.
    bool choose(int format, const QSize& size);
    bool chooseStill(const QSize& size);

    int count() const;
    std::vector<Picture> pictures() const;
    void forget();

    /// Waits for so many right pictures of that size from now on. False when a wrong one came
    /// first, or none came.
    bool sees(int pictures, const QSize& size) const;
    /// Waits for so many of any kind from now on.
    bool seesAny(int pictures) const;

private:
    void look(const QImage& image);

    const Check check;
    mutable std::mutex mutex;
    std::vector<Picture> seen;

public:
    MyCamera camera; ///< Goes before what its pictures need.
};
