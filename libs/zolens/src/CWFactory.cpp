#include "zolens/CWFactory.h"

#include "DeviceClasses.h"

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
    zolens::setDeviceFilter(filter);
}
