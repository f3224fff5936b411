#include "V4l2Device.h"

#include <QFile>

#include <cerrno>
#include <utility>

namespace zolens {

V4l2Device::V4l2Device(std::shared_ptr<V4l2System> v4l2System, const QString& path)
    : calls(std::move(v4l2System)),
      file(calls->open(QFile::encodeName(path).constData()))
{
}

V4l2Device::~V4l2Device()
{
    if (isOpen())
        calls->close(file);
}

int V4l2Device::request(unsigned long code, void* argument) const
{
    int result = 0;
    do {
        result = calls->ioctl(file, code, argument);
    } while (result < 0 && errno == EINTR);
    return result < 0 ? errno : 0;
}

} // namespace zolens
