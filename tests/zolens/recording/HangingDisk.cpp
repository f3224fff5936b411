#include "HangingDisk.h"

#include <QDir>
#include <QFile>

#include <condition_variable>
#include <csignal>
#include <limits>
#include <mutex>

#include <fcntl.h>
#include <sys/syscall.h>
#include <unistd.h>

namespace {

/// Through which every call of fdatasync() goes.
struct SyncGate
{
    std::mutex mutex;
    std::condition_variable changed;
    int passing = std::numeric_limits<int>::max();
    int callers = 0;
};

SyncGate& syncGate()
{
    static SyncGate gate;
    return gate;
}

/// -1 when this process has not opened the file.
int descriptorOf(const QString& path)
{
    const QDir folder(QStringLiteral("/proc/self/fd"));
    const QString file = QFileInfo(path).canonicalFilePath();
    for (const QString& number : folder.entryList(QDir::Files | QDir::System)) {
        if (QFile::symLinkTarget(folder.filePath(number)) == file)
            return number.toInt();
    }
    return -1;
}

} // namespace

// The file's place is taken by a pipe that nobody reads.
HangingWrites::HangingWrites(const QString& path)
{
    std::signal(SIGPIPE, SIG_IGN);
    int ends[2] = {-1, -1};
    const int descriptor = descriptorOf(path);
    if (descriptor < 0 || pipe2(ends, O_CLOEXEC) != 0)
        return;
    dup3(ends[1], descriptor, O_CLOEXEC);
    close(ends[1]);
    reader = ends[0];
}

HangingWrites::~HangingWrites()
{
    fail();
}

void HangingWrites::fail()
{
    if (reader >= 0)
        close(reader);
    reader = -1;
}

// Who opens a leased file waits until the lease is given up.
HangingOpening::HangingOpening(const QString& path)
{
    std::signal(SIGIO, SIG_IGN);
    holder = open(QFile::encodeName(path).constData(), O_CREAT | O_RDONLY | O_CLOEXEC, 0600);
    fcntl(holder, F_SETLEASE, F_RDLCK);
}

HangingOpening::~HangingOpening()
{
    recover();
}

void HangingOpening::recover()
{
    if (holder >= 0)
        close(holder);
    holder = -1;
}

HangingSync::HangingSync(int passing)
{
    const std::lock_guard lock(syncGate().mutex);
    syncGate().passing = passing;
}

HangingSync::~HangingSync()
{
    recover();
}

int HangingSync::callers() const
{
    const std::lock_guard lock(syncGate().mutex);
    return syncGate().callers;
}

void HangingSync::recover()
{
    {
        const std::lock_guard lock(syncGate().mutex);
        syncGate().passing = std::numeric_limits<int>::max();
    }
    syncGate().changed.notify_all();
}

// Takes the place of the system's, for the libraries too.
extern "C" int fdatasync(int file)
{
    SyncGate& gate = syncGate();
    {
        std::unique_lock lock(gate.mutex);
        ++gate.callers;
        gate.changed.wait(lock, [&gate] { return gate.passing > 0; });
        --gate.callers;
        --gate.passing;
    }
    return static_cast<int>(syscall(SYS_fdatasync, file));
}
