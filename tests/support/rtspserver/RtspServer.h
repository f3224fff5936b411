#pragma once

#include "support/PeerProcess.h"

#include <QString>
#include <QStringList>

/// An RTSP server in a process of its own, on a free port of 127.0.0.1, for the life of the object.
class RtspServer final
{
public:
    /// Takes the options of the helper program; a server that was killed starts on its old port.
    bool start(const QStringList& options = {});
    /// Without a farewell, as by a power cut.
    void kill() { process.end(); }
    /// Stops the process from running, with its connections open.
    void freeze() { process.freeze(); }
    void thaw() { process.thaw(); }

    /// `credentials` is empty or ends with @.
    QString url(const QString& path, const QString& credentials = QString()) const;
    int port() const { return boundPort; }

private:
    bool waitUntilReady();

    PeerProcess process;
    int boundPort = 0;
};
