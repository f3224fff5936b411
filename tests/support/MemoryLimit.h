#pragma once

#include <QFile>

#include <sys/resource.h>
#include <unistd.h>

/// Lets the process take only so many bytes of addresses more than it has, for the life of the
/// object. What goes beyond is refused.
class MemoryLimit final
{
public:
    explicit MemoryLimit(rlim_t bytes)
    {
        getrlimit(RLIMIT_AS, &before);
        rlimit limit = before;
        limit.rlim_cur = taken() + bytes;
        setrlimit(RLIMIT_AS, &limit);
    }
    ~MemoryLimit() { setrlimit(RLIMIT_AS, &before); }
    Q_DISABLE_COPY(MemoryLimit)

private:
    static rlim_t taken()
    {
        QFile file(QStringLiteral("/proc/self/statm"));
        const bool opened = file.open(QIODevice::ReadOnly);
        const rlim_t pages = opened ? file.readLine().split(' ').first().toULongLong() : 0;
        return pages * rlim_t(sysconf(_SC_PAGESIZE));
    }

    rlimit before = {};
};
