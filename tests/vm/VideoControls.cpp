#include "VideoControls.h"

#include <fcntl.h>
#include <sys/ioctl.h>
#include <unistd.h>

VideoControls::VideoControls(int deviceNumber)
    : descriptor(
          ::open(qPrintable(QStringLiteral("/dev/video%1").arg(deviceNumber)), O_RDWR | O_NONBLOCK))
{
}

VideoControls::~VideoControls()
{
    ::close(descriptor);
}

std::optional<v4l2_query_ext_ctrl> VideoControls::find(const QString& name) const
{
    v4l2_query_ext_ctrl control = {};
    control.id = V4L2_CTRL_FLAG_NEXT_CTRL;
    while (::ioctl(descriptor, VIDIOC_QUERY_EXT_CTRL, &control) == 0) {
        if (name == QLatin1String(control.name))
            return control;
        control.id |= V4L2_CTRL_FLAG_NEXT_CTRL;
    }
    return std::nullopt;
}

bool VideoControls::exchange(unsigned long request, const QString& name, int* value) const
{
    const auto found = find(name);
    if (!found)
        return false;
    v4l2_ext_control control = {};
    control.id = found->id;
    control.value = *value;
    v4l2_ext_controls controls = {};
    controls.which = V4L2_CTRL_WHICH_CUR_VAL;
    controls.count = 1;
    controls.controls = &control;
    const bool done = ::ioctl(descriptor, request, &controls) == 0;
    *value = control.value;
    return done;
}

bool VideoControls::set(const QString& name, int value)
{
    return exchange(VIDIOC_S_EXT_CTRLS, name, &value);
}

std::optional<int> VideoControls::value(const QString& name) const
{
    int value = 0;
    if (!exchange(VIDIOC_G_EXT_CTRLS, name, &value))
        return std::nullopt;
    return value;
}
