#pragma once

#include <QDir>
#include <QFile>
#include <QString>

#include <malloc.h>
#include <unistd.h>

/// What the test's own process takes from the system.
namespace processuse {

/// To be called before anything is measured: has the allocator give freed pictures back at once.
/// Otherwise it may keep some 30 MB in the arena of a thread that is gone, depending on how threads
/// met.
inline void returnFreedMemory()
{
    mallopt(M_MMAP_THRESHOLD, 256 * 1024);
}

inline qint64 residentBytes()
{
    QFile file(QStringLiteral("/proc/self/statm"));
    const bool opened = file.open(QIODevice::ReadOnly);
    return opened ? file.readAll().split(' ').at(1).toLongLong() * sysconf(_SC_PAGESIZE) : 0;
}

inline int entriesOf(const QString& directory)
{
    return QDir(directory).entryList(QDir::AllEntries | QDir::System | QDir::NoDotAndDotDot).size();
}

inline int threads()
{
    return entriesOf(QStringLiteral("/proc/self/task"));
}

inline int descriptors()
{
    return entriesOf(QStringLiteral("/proc/self/fd"));
}

} // namespace processuse
