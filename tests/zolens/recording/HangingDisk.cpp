#include "HangingDisk.h"

#include <QDir>
#include <QFile>

#include <csignal>

#include <fcntl.h>
#include <unistd.h>

namespace {

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
