#include "ControlSet.h"

#include "V4l2Device.h"

#include <linux/videodev2.h>

#include <algorithm>

namespace zolens {
namespace {

/// Bounds for lists of drivers that never come to an end.
constexpr int mostControls = 512;
constexpr qint64 mostMenuItems = 64;
constexpr quint32 unwritable = V4L2_CTRL_FLAG_READ_ONLY | V4L2_CTRL_FLAG_GRABBED |
                               V4L2_CTRL_FLAG_INACTIVE | V4L2_CTRL_FLAG_DISABLED;

bool isMenu(quint32 type)
{
    return type == V4L2_CTRL_TYPE_MENU || type == V4L2_CTRL_TYPE_INTEGER_MENU;
}

bool hasNumber(const v4l2_query_ext_ctrl& control)
{
    const bool known = control.type == V4L2_CTRL_TYPE_INTEGER ||
                       control.type == V4L2_CTRL_TYPE_BOOLEAN ||
                       control.type == V4L2_CTRL_TYPE_BUTTON || isMenu(control.type);
    return known && control.nr_of_dims == 0 && !(control.flags & V4L2_CTRL_FLAG_DISABLED);
}

ControlRange rangeOf(const v4l2_query_ext_ctrl& control)
{
    ControlRange range;
    range.id = control.id;
    range.type = control.type;
    range.lowest = control.minimum;
    range.highest = std::max<qint64>(control.minimum, control.maximum);
    range.step = std::max<qint64>(1, qint64(control.step));
    range.standard = control.default_value;
    return range;
}

qint64 nearest(const ControlRange& range, qint64 value)
{
    const qint64 held = std::clamp(value, range.lowest, range.highest);
    const qint64 steps = (held - range.lowest + range.step / 2) / range.step;
    return std::min(range.lowest + steps * range.step, range.highest);
}

} // namespace

ControlSet::ControlSet(std::shared_ptr<const V4l2Device> videoDevice)
    : device(std::move(videoDevice))
{
    enumerate();
    states.resize(ranges.size());
    refresh();
}

void ControlSet::enumerate()
{
    v4l2_query_ext_ctrl control = {};
    for (int i = 0; i < mostControls; ++i) {
        control.id |= V4L2_CTRL_FLAG_NEXT_CTRL;
        if (device->request(VIDIOC_QUERY_EXT_CTRL, &control) != 0)
            return;
        if (!hasNumber(control))
            continue;
        ControlRange range = rangeOf(control);
        if (isMenu(range.type))
            range.menu = menuOf(range);
        ranges.push_back(std::move(range));
    }
}

std::vector<int> ControlSet::menuOf(const ControlRange& range) const
{
    std::vector<int> values;
    const qint64 end = std::min(range.highest + 1, range.lowest + mostMenuItems);
    for (qint64 i = std::max<qint64>(0, range.lowest); i < end; ++i) {
        v4l2_querymenu item = {};
        item.id = range.id;
        item.index = __u32(i);
        if (device->request(VIDIOC_QUERYMENU, &item) == 0)
            values.push_back(int(i));
    }
    return values;
}

const ControlRange* ControlSet::range(quint32 id) const
{
    const auto found = std::find_if(ranges.begin(), ranges.end(),
                                    [id](const ControlRange& range) { return range.id == id; });
    return found == ranges.end() ? nullptr : &*found;
}

ControlSet::State* ControlSet::state(quint32 id)
{
    const ControlRange* found = range(id);
    return found ? &states[std::size_t(found - ranges.data())] : nullptr;
}

std::optional<qint64> ControlSet::read(quint32 id)
{
    State* entry = state(id);
    if (!entry)
        return std::nullopt;
    entry->value = query(id);
    return entry->value;
}

std::optional<qint64> ControlSet::lastRead(quint32 id) const
{
    const ControlRange* found = range(id);
    return found ? states[std::size_t(found - ranges.data())].value : std::nullopt;
}

std::optional<qint64> ControlSet::query(quint32 id) const
{
    v4l2_control control = {};
    control.id = id;
    if (device->request(VIDIOC_G_CTRL, &control) != 0)
        return std::nullopt;
    return control.value;
}

bool ControlSet::write(quint32 id, qint64 value)
{
    if (!isWritable(id))
        return false;
    v4l2_control control = {};
    control.id = id;
    control.value = __s32(nearest(*range(id), value));
    const bool written = device->request(VIDIOC_S_CTRL, &control) == 0;
    refresh();
    return written;
}

/// Other programs close and open controls too.
bool ControlSet::isWritable(quint32 id)
{
    State* entry = state(id);
    if (entry && (entry->flags & unwritable))
        readFlags(id, entry);
    return entry && !(entry->flags & unwritable);
}

void ControlSet::readFlags(quint32 id, State* entry) const
{
    v4l2_query_ext_ctrl control = {};
    control.id = id;
    if (device->request(VIDIOC_QUERY_EXT_CTRL, &control) == 0)
        entry->flags = control.flags;
}

void ControlSet::refresh()
{
    for (std::size_t i = 0; i < ranges.size(); ++i) {
        readFlags(ranges[i].id, &states[i]);
        const bool readable = ranges[i].type != V4L2_CTRL_TYPE_BUTTON &&
                              !(states[i].flags & V4L2_CTRL_FLAG_WRITE_ONLY);
        states[i].value = readable ? query(ranges[i].id) : std::nullopt;
    }
}

} // namespace zolens
