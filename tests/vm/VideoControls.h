#pragma once

#include <QString>

#include <linux/videodev2.h>

#include <optional>

/// The controls of a video device by their names, beside the camera classes. Those of the kernel's
/// test driver set its faults.
class VideoControls final
{
public:
    explicit VideoControls(int deviceNumber);
    ~VideoControls();
    VideoControls(const VideoControls&) = delete;
    VideoControls& operator=(const VideoControls&) = delete;

    /// False when there is no such control or the device refuses.
    bool set(const QString& name, int value);
    /// Presses a button.
    bool press(const QString& name) { return set(name, 1); }
    std::optional<int> value(const QString& name) const;

private:
    std::optional<v4l2_query_ext_ctrl> find(const QString& name) const;
    bool exchange(unsigned long request, const QString& name, int* value) const;

    const int descriptor;
};
