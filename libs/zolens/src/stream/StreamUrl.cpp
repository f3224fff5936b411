#include "StreamUrl.h"

#include <QFile>
#include <QFileInfo>
#include <QRegularExpression>
#include <QStringList>
#include <QUrl>

namespace zolens {
namespace {

StreamUrl::Kind kindOfScheme(const QString& scheme)
{
    if (scheme == QLatin1String("rtsp") || scheme == QLatin1String("rtsps"))
        return StreamUrl::Kind::Rtsp;
    if (scheme == QLatin1String("rtp") || scheme == QLatin1String("udp") ||
        scheme == QLatin1String("tcp"))
        return StreamUrl::Kind::Transport;
    if (scheme == QLatin1String("http") || scheme == QLatin1String("https"))
        return StreamUrl::Kind::Http;
    return StreamUrl::Kind::Refused;
}

/// The last @ counts: a password that was typed without percent-encoding may hold others.
QString withoutCredentials(const QString& url)
{
    static const QRegularExpression secrets(
        QStringLiteral("(user|usr|login|pass|pwd|token|secret|key|auth|sig)([\\w-]*)=[^&;/?#]*"),
        QRegularExpression::CaseInsensitiveOption);
    const int authority = url.indexOf(QLatin1String("://")) + 3;
    const int host = qMax(authority, url.lastIndexOf(QLatin1Char('@')) + 1);
    QString shown = url.left(authority) + url.mid(host);
    return shown.replace(secrets, QStringLiteral("\\1\\2=***"));
}

} // namespace

StreamUrl::StreamUrl(const QString& text)
{
    const QString typed = text.trimmed();
    if (!typed.contains(QLatin1String("://"))) {
        setLocalFile(typed);
        return;
    }
    QUrl url(typed, QUrl::TolerantMode);
    shown = withoutCredentials(typed);
    if (!url.isValid())
        return;
    if (url.isLocalFile()) {
        setLocalFile(url.toLocalFile());
        return;
    }
    sourceKind = url.host().isEmpty() ? Kind::Refused : kindOfScheme(url.scheme());
    if (sourceKind == Kind::Rtsp)
        takeTransport(&url);
    if (isAllowed())
        source = url.toEncoded();
}

/// Only regular files: a device or a pipe could block or never end.
void StreamUrl::setLocalFile(const QString& path)
{
    const QFileInfo file(path);
    shown = path;
    if (!file.isFile())
        return;
    sourceKind = Kind::File;
    source = "file:" + QFile::encodeName(file.absoluteFilePath());
}

void StreamUrl::takeTransport(QUrl* url)
{
    QStringList kept;
    for (const QString& item : url->query(QUrl::FullyEncoded).split(QLatin1Char('&'))) {
        if (item == QLatin1String("tcp") || item == QLatin1String("rtsp_transport=tcp"))
            lowerTransport = Transport::Tcp;
        else if (item == QLatin1String("udp") || item == QLatin1String("rtsp_transport=udp"))
            lowerTransport = Transport::Udp;
        else if (!item.isEmpty())
            kept << item;
    }
    url->setQuery(kept.isEmpty() ? QString() : kept.join(QLatin1Char('&')));
}

QByteArray StreamUrl::protocols() const
{
    switch (sourceKind) {
    case Kind::Rtsp:
        return "rtp,udp,tcp,tls";
    case Kind::Transport:
        return "rtp,udp,tcp";
    case Kind::Http:
        return "http,https,tcp,tls";
    case Kind::File:
        return "file";
    case Kind::Refused:
        break;
    }
    return "none";
}

QByteArray StreamUrl::containers() const
{
    switch (sourceKind) {
    case Kind::Rtsp:
        return "rtsp,mpegts";
    case Kind::Transport:
        return "rtp,sdp,mpegts,mjpeg,h264,hevc";
    case Kind::Http:
        return "mpjpeg,mjpeg,hls,mpegts,mov,matroska,webm,flv,h264,hevc";
    case Kind::File:
        return "mov,mp4,matroska,webm,avi,mpegts,mpeg,mpegvideo,mjpeg,h264,hevc,m4v,ivf,asf,flv,"
               "ogg";
    case Kind::Refused:
        break;
    }
    return "none";
}

} // namespace zolens
