#pragma once

#include "CWCamera.h"
#include "CameraTypes.h"

#include <QImage>
#include <QObject>
#include <QString>

#include <atomic>
#include <memory>
#include <vector>

namespace zolens {
class FrameDelivery;
class VideoRecorder;
} // namespace zolens

/// One open device. Lives on the GUI thread; its frames come from a thread of the library. Frames
/// are images around buffers of a small fixed pool: an image that is kept keeps its buffer from
/// being used again, and when all are taken new frames are dropped.
class MyCamera : public QObject
{
    Q_OBJECT

public:
    explicit MyCamera(QObject* parent = nullptr);
    ~MyCamera() override;

    /// Opens a USB device or the simulated microscope, of the list of CWFactory. Blocks for at most
    /// 5 seconds. With `tryStillCapture` a device's separate still path is used where it has one.
    bool open(int type, int index, bool tryStillCapture);
    /// Opens a network box by its IPv4 address (type 7) or a stream by its URL (type 8). Blocks for
    /// at most 5 seconds.
    bool open(int type, const QString& url);
    /// Ends the recording and the frames and releases the device, which takes half a second.
    /// Harmless when closed.
    void close();

    /// Takes a still picture; null on failure. Blocks until it has one.
    QImage snap();
    /// Starts writing an MP4 file of the last frame and of those that come while not paused, in the
    /// time in which they come; a pause is a still picture. False on failure: an empty or
    /// unwritable path, a full disk or one that does not answer for 4 seconds, no open device, one
    /// that is gone, a recording that is under way or hangs in writing the same file.
    bool startRecording(const QString& path);
    /// The file plays afterwards, within 4 seconds; a little later it is a plain MP4 file, of the
    /// same name, if there was room. Harmless when nothing is recorded.
    void stopRecording();
    /// Frames per second, over about the last second; 0 while none come.
    float frameRate() const;
    const _tag_VideoDeviceInfo& deviceInfo() const;
    /// Whether the open device was lost, as by being unplugged. False while none is open.
    bool isGone() const;
    /// The property's value as text for a label, with its unit where it has one; empty when there
    /// is no value. It is the one in force at this moment, in automatic modes too, whatever the
    /// flag.
    QString getFormatedProperty(tagCMProperty id, bool flag);

    /// The open device, null while none is open.
    std::unique_ptr<CWCamera> camera;
    /// While true no getImage is emitted.
    std::atomic<bool> pause{false};

signals:
    /// Every frame, from a thread of the library: connect before open(). The pixels are not copied.
    void getImage(const QImage& image);
    /// The recording has ended by itself, as on a full disk. What was recorded plays. `reason` is a
    /// sentence for the user.
    void recordingEnded(const QString& reason);
    /// The device took another format or size than was set, or offers others now.
    void modesChanged();

private:
    bool start(std::unique_ptr<CWCamera> device);
    bool letGo(const QString& path);

    std::unique_ptr<zolens::FrameDelivery> delivery;
    std::unique_ptr<zolens::VideoRecorder> recorder; ///< Null while nothing is recorded.
    /// Recordings that are complete and become plain files.
    std::vector<std::unique_ptr<zolens::VideoRecorder>> rewriting;
    _tag_VideoDeviceInfo info;
};
