#pragma once

#include "zolens/CWCamera.h"

#include <QString>

#include <chrono>
#include <memory>
#include <vector>

class CWUVCFilter;

/// The one place that knows which classes of devices there are.
namespace zolens {

struct V4l2Host;

/// The filter for what follows, not owned; null shows every camera.
void setDeviceFilter(const CWUVCFilter* filter);

/// The machine whose capture devices there are from now on. Before any is used; for tests.
void setCaptureHost(const V4l2Host& host);

/// The device of that class and number, not started yet; null for a class or number that is none.
std::unique_ptr<CWCamera> createCamera(int type, int index, bool tryStillCapture);

/// The device at that address; null for a class that is not reached by one.
std::unique_ptr<CWCamera> createNetworkCamera(int type, const QString& url);

/// The devices that createCamera can make at this moment.
std::vector<_tag_VideoDeviceInfo> presentCameras();

/// The network boxes that the scan has found so far; none while it does not run.
std::vector<_tag_VideoDeviceInfo> foundBoxes();

/// Starts the scan in the background, unless it runs. False when it cannot run.
bool startBoxScan(std::chrono::seconds interval);
void stopBoxScan();

} // namespace zolens
