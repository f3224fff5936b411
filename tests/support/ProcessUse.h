#pragma once

#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QString>
#include <QtTest>

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

/// Of its threads, but for those that have begun to end: the kernel goes on listing a thread for a
/// moment after it has been joined.
inline QByteArrayList threadNames()
{
    constexpr int flagsAfterName = 6;
    constexpr uint exiting = 0x4; // PF_EXITING of the kernel
    QByteArrayList names;
    const QDir tasks(QStringLiteral("/proc/self/task"));
    for (const QString& task : tasks.entryList(QDir::Dirs | QDir::NoDotAndDotDot)) {
        QFile file(tasks.filePath(task + QStringLiteral("/stat")));
        const QByteArray line = file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
        const int name = line.indexOf('(') + 1;
        const int nameEnd = line.lastIndexOf(')');
        const QByteArrayList afterName = line.mid(nameEnd + 2).split(' ');
        if (nameEnd >= 0 && (afterName.value(flagsAfterName).toUInt() & exiting) == 0)
            names << line.mid(name, nameEnd - name);
    }
    return names;
}

inline int threads()
{
    return threadNames().size();
}

/// Of those that a thread gave itself.
inline int threadsNamed(const char* name)
{
    return threadNames().count(name);
}

inline int descriptors()
{
    return entriesOf(QStringLiteral("/proc/self/fd"));
}

/// What has to be given back one by one.
struct Holdings
{
    int threads = processuse::threads();
    int descriptors = processuse::descriptors();

    bool operator==(const Holdings& other) const
    {
        return threads == other.threads && descriptors == other.descriptors;
    }
};

/// Once the process has held the same for a while: what has just ended may leave threads that end
/// by themselves.
inline Holdings settledHoldings()
{
    constexpr qint64 quietTime = 250;
    constexpr qint64 longestWait = 10000;
    Holdings held;
    QElapsedTimer wait;
    QElapsedTimer quiet;
    wait.start();
    quiet.start();
    while (!quiet.hasExpired(quietTime) && !wait.hasExpired(longestWait)) {
        QTest::qWait(10);
        if (const Holdings now; !(now == held)) {
            held = now;
            quiet.restart();
        }
    }
    return held;
}

/// Empty as soon as the process holds no more than before; otherwise, after half a minute, what it
/// holds more.
inline QString growthSince(const Holdings& before)
{
    const auto noMore = [&before] {
        return threads() <= before.threads && descriptors() <= before.descriptors;
    };
    if (QTest::qWaitFor(noMore, 30000))
        return {};
    return QStringLiteral("%1 threads and %2 descriptors")
        .arg(threads() - before.threads)
        .arg(descriptors() - before.descriptors);
}

} // namespace processuse
