#pragma once

#include <QProcess>
#include <QString>
#include <QStringList>

/// An RTSP server in a process of its own, on a free port of 127.0.0.1, for the life of the object.
class RtspServer final
{
public:
    ~RtspServer();

    /// Takes the options of the helper program; a server that was killed starts on its old port.
    bool start(const QStringList& options = {});
    /// Without a farewell, as by a power cut.
    void kill();
    /// Stops the process from running, with its connections open.
    void freeze();
    void thaw();

    /// `credentials` is empty or ends with @.
    QString url(const QString& path, const QString& credentials = QString()) const;
    int port() const { return boundPort; }

private:
    bool waitUntilReady();

    QProcess process;
    int boundPort = 0;
};
