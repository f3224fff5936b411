#pragma once

#include <QtGlobal>

#include <memory>
#include <optional>
#include <vector>

namespace zolens {

class V4l2Device;

/// What a control of a device takes.
struct ControlRange
{
    quint32 id = 0;
    quint32 type = 0;
    qint64 lowest = 0;
    qint64 highest = 0;
    qint64 step = 1;
    qint64 standard = 0;
    std::vector<int> menu; ///< The legal values of a menu.
};

/// The controls of a device that have one number for a value. What controls there are does not
/// change; their values and whether they can be written do, and are read by one thread at a time.
class ControlSet final
{
public:
    explicit ControlSet(std::shared_ptr<const V4l2Device> videoDevice);

    /// Null when the device lacks the control. Safe on any thread.
    const ControlRange* range(quint32 id) const;

    /// Nothing when the device does not answer.
    std::optional<qint64> read(quint32 id);
    /// The value of the last time that all were read.
    std::optional<qint64> lastRead(quint32 id) const;
    /// Holds the value at the ends and steps of its range, and reads all controls again after it,
    /// since one may change others. False when the control does not take a value now.
    bool write(quint32 id, qint64 value);

private:
    struct State
    {
        quint32 flags = 0;
        std::optional<qint64> value;
    };

    void enumerate();
    std::vector<int> menuOf(const ControlRange& range) const;
    std::optional<qint64> query(quint32 id) const;
    bool isWritable(quint32 id);
    void readFlags(quint32 id, State* entry) const;
    void refresh();
    State* state(quint32 id);

    const std::shared_ptr<const V4l2Device> device;
    std::vector<ControlRange> ranges;
    std::vector<State> states; ///< In the same order.
};

} // namespace zolens
