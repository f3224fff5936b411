#pragma once

#include "V4l2System.h"

#include <QString>

#include <memory>

namespace zolens {

/// An open video device node; closed with the object. Thread-safe as the system calls are.
class V4l2Device final
{
public:
    V4l2Device(std::shared_ptr<V4l2System> v4l2System, const QString& path);
    ~V4l2Device();
    V4l2Device(const V4l2Device&) = delete;
    V4l2Device& operator=(const V4l2Device&) = delete;

    bool isOpen() const { return file >= 0; }
    int descriptor() const { return file; }
    V4l2System& system() const { return *calls; }

    /// An ioctl; signals do not end it. 0 on success, else the error number.
    int request(unsigned long code, void* argument) const;

private:
    const std::shared_ptr<V4l2System> calls;
    const int file;
};

} // namespace zolens
