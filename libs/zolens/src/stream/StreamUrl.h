#pragma once

#include <QByteArray>
#include <QString>

class QUrl;

namespace zolens {

/// Where a stream comes from, as the user typed it: a URL of one of the live protocols, a file://
/// URL or the path of a local video file. A value. Only what isAllowed() may be opened, and then
/// only with the protocols and containers named here, so that no stream can lead to another kind of
/// source, above all not from the network to a local file.
///
/// RTSP is asked for TCP first, since blocked UDP costs seconds before it is noticed, and for UDP
/// where the server refuses TCP. A query item `tcp` or `udp`, or `rtsp_transport=tcp|udp`, fixes
/// the transport; it is taken out of the URL that goes to the server.
class StreamUrl final
{
public:
    enum class Kind { Refused, Rtsp, Transport, Http, File };
    enum class Transport { PreferTcp, Tcp, Udp };

    explicit StreamUrl(const QString& text);

    Kind kind() const { return sourceKind; }
    bool isAllowed() const { return sourceKind != Kind::Refused; }
    Transport transport() const { return lowerTransport; }
    /// What the demuxer opens. With credentials: never for a log.
    const QByteArray& location() const { return source; }
    /// For people and logs: without credentials.
    const QString& displayName() const { return shown; }
    /// Comma separated names of what may be used below the URL.
    QByteArray protocols() const;
    QByteArray containers() const;

private:
    void setLocalFile(const QString& path);
    void takeTransport(QUrl* url);

    Kind sourceKind = Kind::Refused;
    Transport lowerTransport = Transport::PreferTcp;
    QByteArray source;
    QString shown;
};

} // namespace zolens
