#include "zolens/CWFactory.h"

#include "DeviceClasses.h"

std::vector<_tag_VideoDeviceInfo> CWFactory::videoDeviceList()
{
    return zolens::presentCameras();
}

std::vector<_tag_VideoDeviceInfo> CWFactory::tarnlinkDeviceList()
{
    return zolens::foundBoxes();
}

bool CWFactory::startTarnlinkDeviceScan(unsigned int interval)
{
    return zolens::startBoxScan(std::chrono::seconds(interval));
}

void CWFactory::stopTarnlinkDeviceScan()
{
    zolens::stopBoxScan();
}

void CWFactory::setUVCFilter(CWUVCFilter* filter)
{
    zolens::setDeviceFilter(filter);
}
