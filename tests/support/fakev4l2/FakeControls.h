#pragma once

#include <linux/videodev2.h>

#include <QtGlobal>

#include <utility>
#include <vector>

struct FakeControl
{
    quint32 id;
    quint32 type;
    int lowest;
    int highest;
    int step;
    int standard;
    int value;
    std::vector<int> menu;
    quint32 flags = 0;
};

/// The controls of a FakeCamera. Values beyond the range are held at its ends, menus refuse what
/// they lack, and exposure time and colour temperature are closed to writing while the camera
/// chooses them by itself.
class FakeControls final
{
public:
    void add(FakeControl control);
    void addInteger(quint32 id, int lowest, int highest, int standard);
    void addBoolean(quint32 id, bool standard);
    void addMenu(quint32 id, std::vector<int> menu, int standard);

    int value(quint32 id) const;
    /// What the camera does by itself, while it is automatic, or another program.
    void choose(quint32 id, int value);
    /// Those that the driver tells besides.
    void setFlags(quint32 id, quint32 flags);
    int ioctl(unsigned long request, void* argument);

    std::vector<std::pair<quint32, int>> writes;
    /// False for a driver that neither tells nor refuses what the camera chooses by itself.
    bool closesAutomatic = true;

private:
    int query(v4l2_query_ext_ctrl* answer) const;
    int queryMenu(v4l2_querymenu* item) const;
    int get(v4l2_control* control) const;
    int set(const v4l2_control& request);
    bool isInactive(quint32 id) const;
    const FakeControl* find(quint32 id) const;

    std::vector<FakeControl> controls; ///< By their ids.
};
