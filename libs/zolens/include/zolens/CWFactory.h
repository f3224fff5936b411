#pragma once

#include "CameraTypes.h"

#include <vector>

class CWUVCFilter;

/// Enumerates the devices of all classes. Called on the GUI thread; a scan runs in the background.
class CWFactory
{
public:
    /// The USB cameras present now, after the filter, with the simulated microscope last where a
    /// row of its type shows it. Its picture is 1920 micrometres wide at every size: a division of
    /// its stage micrometer, which is 10 micrometres, is 10 pixels at a width of 1920 and 20 at
    /// 3840.
    static std::vector<_tag_VideoDeviceInfo> videoDeviceList();

    /// The network boxes that the scan has found so far and that still answer, by their addresses.
    /// None while it does not run.
    static std::vector<_tag_VideoDeviceInfo> tarnlinkDeviceList();

    /// Starts the scan for network boxes in the background, in which everybody is asked once in
    /// that many seconds, unless it runs already. False when it cannot run.
    static bool startTarnlinkDeviceScan(unsigned int interval);

    /// Ends the scan; harmless when none runs.
    static void stopTarnlinkDeviceScan();

    /// Hands over the filter, which is not owned and must outlive all enumerations.
    static void setUVCFilter(CWUVCFilter* filter);
};
