#include "TestPeers.h"

#include <QTcpSocket>

#include <memory>

namespace {

constexpr char interleavedMark = '$';
constexpr int interleavedHeader = 4;
/// Behind the fixed part of an RTP header.
constexpr int payloadBegin = interleavedHeader + 12;
constexpr int damageInterval = 5;

int lengthOfInterleaved(const QByteArray& data)
{
    if (data.size() < interleavedHeader)
        return 0;
    return interleavedHeader + (quint8(data.at(2)) << 8 | quint8(data.at(3)));
}

int lengthOfReply(const QByteArray& data)
{
    const int end = data.indexOf("\r\n\r\n");
    if (end < 0)
        return 0;
    const int field = data.indexOf("Content-Length: ");
    if (field < 0 || field > end)
        return end + 4;
    const int value = field + int(strlen("Content-Length: "));
    return end + 4 + data.mid(value, data.indexOf('\r', value) - value).toInt();
}

} // namespace

MutePeer::MutePeer()
{
    server.listen(QHostAddress::LocalHost);
}

QString MutePeer::url(const QString& scheme) const
{
    return scheme + QStringLiteral("://127.0.0.1:") + QString::number(server.serverPort()) +
           QStringLiteral("/live");
}

WebPeer::WebPeer()
{
    connect(&server, &QTcpServer::newConnection, this, [this] {
        QTcpSocket* client = server.nextPendingConnection();
        connect(client, &QTcpSocket::readyRead, this, [=] { answer(client); });
        connect(client, &QTcpSocket::disconnected, client, &QObject::deleteLater);
    });
    server.listen(QHostAddress::LocalHost);
}

void WebPeer::add(const QByteArray& path, const QByteArray& contentType, const QByteArray& body)
{
    replies[path] = "HTTP/1.0 200 OK\r\nContent-Type: " + contentType + "\r\n\r\n" + body;
}

QString WebPeer::url(const QString& path) const
{
    return QStringLiteral("http://127.0.0.1:") + QString::number(server.serverPort()) + path;
}

void WebPeer::answer(QTcpSocket* client)
{
    const QByteArray path = client->readAll().split(' ').value(1);
    client->write(replies.value(path, "HTTP/1.0 404 Not Found\r\n\r\n"));
    client->disconnectFromHost();
}

DamagingProxy::DamagingProxy(int port) : serverPort(port)
{
    connect(&server, &QTcpServer::newConnection, this, &DamagingProxy::accept);
    server.listen(QHostAddress::LocalHost);
}

void DamagingProxy::accept()
{
    QTcpSocket* client = server.nextPendingConnection();
    auto* upstream = new QTcpSocket(client);
    connect(client, &QTcpSocket::readyRead, upstream, [=] {
        const QByteArray request = client->readAll();
        if (request.startsWith("TEARDOWN"))
            sawFarewell = true;
        upstream->write(request);
    });
    connect(client, &QTcpSocket::disconnected, client, &QObject::deleteLater);
    connect(upstream, &QTcpSocket::disconnected, client, &QTcpSocket::disconnectFromHost);
    passBack(upstream, client);
    upstream->connectToHost(QHostAddress(QHostAddress::LocalHost), quint16(serverPort));
}

void DamagingProxy::passBack(QTcpSocket* from, QTcpSocket* to)
{
    const auto data = std::make_shared<QByteArray>();
    connect(from, &QTcpSocket::readyRead, to, [=] {
        *data += from->readAll();
        while (const int length = takeMessage(data.get())) {
            to->write(data->constData(), length);
            data->remove(0, length);
        }
    });
}

/// The length of the first whole message, which may have been damaged; 0 when there is none.
int DamagingProxy::takeMessage(QByteArray* data)
{
    if (data->isEmpty())
        return 0;
    const bool interleaved = data->at(0) == interleavedMark;
    const int length = interleaved ? lengthOfInterleaved(*data) : lengthOfReply(*data);
    if (length == 0 || length > data->size())
        return 0;
    // Even channels carry pictures, odd ones reports.
    const bool picture = interleaved && data->at(1) % 2 == 0;
    if (picture && damaging && ++packets % damageInterval == 0) {
        for (int i = payloadBegin; i < length; i += 3)
            (*data)[i] = char(data->at(i) ^ 0x5a);
        ++damagedPackets;
    }
    return length;
}
