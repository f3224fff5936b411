#include "zolens/CWFactory.h"

#include "DeviceClasses.h"

#include <atomic>

namespace {

std::atomic<CWUVCFilter*> uvcFilter{nullptr};

} // namespace

std::vector<_tag_VideoDeviceInfo> CWFactory::videoDeviceList()
{
    return zolens::presentCameras();
}

std::vector<_tag_VideoDeviceInfo> CWFactory::tarnlinkDeviceList()
{
    return {};
}

bool CWFactory::startTarnlinkDeviceScan(unsigned int)
{
    return false;
}

void CWFactory::stopTarnlinkDeviceScan() {}

void CWFactory::setUVCFilter(CWUVCFilter* filter)
{
    uvcFilter = filter;
}
