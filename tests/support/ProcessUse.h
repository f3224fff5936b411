#pragma once

#include <QDir>
#include <QFile>
#include <QString>

#include <unistd.h>

/// What the test's own process takes from the system.
namespace processuse {

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
