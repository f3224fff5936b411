#pragma once

#include "Aravis.h"

#include "device/LiveTiming.h"

#include <QString>

namespace zolens {

class WakeUp;

/// Connects to the box at an IPv4 address, straight away, whether or not a scan has found it. One
/// that somebody else controls is asked again until the deadline, since a box frees itself some
/// seconds after its controller has died. Null on failure, or when `wake` was cancelled; may then
/// have taken 2.5 seconds more than the deadline says, and again for each that is being opened.
AravisPointer<ArvCamera> connectToBox(const QString& address, StreamClock::time_point deadline,
                                      WakeUp& wake);

} // namespace zolens
