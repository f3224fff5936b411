#include "FakeControls.h"

#include <algorithm>
#include <cerrno>

namespace {

bool isBefore(const FakeControl& control, quint32 id)
{
    return control.id < id;
}

} // namespace

void FakeControls::add(FakeControl control)
{
    const auto place = std::lower_bound(controls.begin(), controls.end(), control.id, isBefore);
    controls.insert(place, std::move(control));
}

void FakeControls::addInteger(quint32 id, int lowest, int highest, int standard)
{
    add({id, V4L2_CTRL_TYPE_INTEGER, lowest, highest, 1, standard, standard, {}});
}

void FakeControls::addBoolean(quint32 id, bool standard)
{
    add({id, V4L2_CTRL_TYPE_BOOLEAN, 0, 1, 1, standard, standard, {}});
}

void FakeControls::addMenu(quint32 id, std::vector<int> menu, int standard)
{
    const int highest = menu.back();
    add({id, V4L2_CTRL_TYPE_MENU, 0, highest, 1, standard, standard, std::move(menu)});
}

const FakeControl* FakeControls::find(quint32 id) const
{
    const auto found = std::lower_bound(controls.begin(), controls.end(), id, isBefore);
    return found != controls.end() && found->id == id ? &*found : nullptr;
}

int FakeControls::value(quint32 id) const
{
    const FakeControl* found = find(id);
    return found ? found->value : -1;
}

void FakeControls::choose(quint32 id, int value)
{
    const auto found = std::lower_bound(controls.begin(), controls.end(), id, isBefore);
    if (found != controls.end() && found->id == id)
        found->value = std::clamp(value, found->lowest, found->highest);
}

void FakeControls::setFlags(quint32 id, quint32 flags)
{
    const auto found = std::lower_bound(controls.begin(), controls.end(), id, isBefore);
    if (found != controls.end() && found->id == id)
        found->flags = flags;
}

bool FakeControls::isInactive(quint32 id) const
{
    if (!closesAutomatic)
        return false;
    if (id == V4L2_CID_EXPOSURE_ABSOLUTE)
        return value(V4L2_CID_EXPOSURE_AUTO) == V4L2_EXPOSURE_APERTURE_PRIORITY ||
               value(V4L2_CID_EXPOSURE_AUTO) == V4L2_EXPOSURE_AUTO;
    return id == V4L2_CID_WHITE_BALANCE_TEMPERATURE && value(V4L2_CID_AUTO_WHITE_BALANCE) == 1;
}

int FakeControls::ioctl(unsigned long request, void* argument)
{
    switch (request) {
    case VIDIOC_QUERY_EXT_CTRL:
        return query(static_cast<v4l2_query_ext_ctrl*>(argument));
    case VIDIOC_QUERYMENU:
        return queryMenu(static_cast<v4l2_querymenu*>(argument));
    case VIDIOC_G_CTRL:
        return get(static_cast<v4l2_control*>(argument));
    case VIDIOC_S_CTRL:
        return set(*static_cast<v4l2_control*>(argument));
    default:
        return ENOTTY;
    }
}

int FakeControls::query(v4l2_query_ext_ctrl* answer) const
{
    const quint32 id = answer->id & ~quint32(V4L2_CTRL_FLAG_NEXT_CTRL);
    const FakeControl* found = find(id);
    if (answer->id & V4L2_CTRL_FLAG_NEXT_CTRL) {
        const auto next = std::lower_bound(controls.begin(), controls.end(), id + 1, isBefore);
        found = next == controls.end() ? nullptr : &*next;
    }
    if (!found)
        return EINVAL;
    *answer = {};
    answer->id = found->id;
    answer->type = found->type;
    answer->minimum = found->lowest;
    answer->maximum = found->highest;
    answer->step = __u64(found->step);
    answer->default_value = found->standard;
    answer->flags = found->flags | (isInactive(found->id) ? V4L2_CTRL_FLAG_INACTIVE : 0);
    return 0;
}

int FakeControls::queryMenu(v4l2_querymenu* item) const
{
    const FakeControl* found = find(item->id);
    const bool offered = found && std::find(found->menu.begin(), found->menu.end(),
                                            int(item->index)) != found->menu.end();
    return offered ? 0 : EINVAL;
}

int FakeControls::get(v4l2_control* control) const
{
    const FakeControl* found = find(control->id);
    if (!found)
        return EINVAL;
    if (found->type == V4L2_CTRL_TYPE_BUTTON)
        return EACCES;
    control->value = found->value;
    return 0;
}

int FakeControls::set(const v4l2_control& request)
{
    const auto found = std::lower_bound(controls.begin(), controls.end(), request.id, isBefore);
    if (found == controls.end() || found->id != request.id)
        return EINVAL;
    if (isInactive(request.id) || (found->flags & V4L2_CTRL_FLAG_READ_ONLY))
        return EACCES;
    if (found->flags & V4L2_CTRL_FLAG_GRABBED)
        return EBUSY;
    const auto& menu = found->menu;
    if (!menu.empty() && (request.value < found->lowest || request.value > found->highest))
        return ERANGE;
    if (!menu.empty() && std::find(menu.begin(), menu.end(), request.value) == menu.end())
        return EINVAL;
    found->value = std::clamp(request.value, found->lowest, found->highest);
    writes.emplace_back(request.id, found->value);
    return 0;
}
