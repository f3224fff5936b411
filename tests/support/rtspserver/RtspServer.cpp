#include "RtspServer.h"

namespace {
constexpr int startTime = 20000;
} // namespace

bool RtspServer::start(const QStringList& options)
{
    QStringList arguments = options;
    if (boundPort != 0)
        arguments << QStringLiteral("--port") << QString::number(boundPort);
    process.start(QStringLiteral(ORVO_RTSP_SERVER), arguments);
    return waitUntilReady();
}

bool RtspServer::waitUntilReady()
{
    QByteArray output;
    while (!output.contains("READY")) {
        if (!process.waitForReadyRead(startTime))
            return false;
        output += process.readAllStandardOutput();
    }
    const int begin = output.indexOf("PORT ") + 5;
    boundPort = output.mid(begin, output.indexOf('\n', begin) - begin).toInt();
    return boundPort > 0;
}

QString RtspServer::url(const QString& path, const QString& credentials) const
{
    return QStringLiteral("rtsp://") + credentials + QStringLiteral("127.0.0.1:") +
           QString::number(boundPort) + path;
}
