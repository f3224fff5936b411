#pragma once

#include <QByteArray>
#include <QHash>
#include <QObject>
#include <QTcpServer>

#include <atomic>

class QTcpSocket;

/// A server that accepts connections and never says a word.
class MutePeer final : public QObject
{
    Q_OBJECT

public:
    MutePeer();
    QString url(const QString& scheme) const;

private:
    QTcpServer server;
};

/// A web server with a few files. Works while the event loop runs.
class WebPeer final : public QObject
{
    Q_OBJECT

public:
    WebPeer();
    void add(const QByteArray& path, const QByteArray& contentType, const QByteArray& body);
    QString url(const QString& path) const;

private:
    void answer(QTcpSocket* client);

    QTcpServer server;
    QHash<QByteArray, QByteArray> replies;
};

/// Passes RTSP connections on to a server and, while it is told to, damages the pictures of every
/// few packets that come back. Works while the event loop runs.
class DamagingProxy final : public QObject
{
    Q_OBJECT

public:
    explicit DamagingProxy(int serverPort);
    int port() const { return server.serverPort(); }

    std::atomic<bool> damaging{false};
    std::atomic<int> damagedPackets{0};
    /// Whether a client took its leave.
    std::atomic<bool> sawFarewell{false};

private:
    void accept();
    void passBack(QTcpSocket* from, QTcpSocket* to);
    int takeMessage(QByteArray* data);

    QTcpServer server;
    int serverPort;
    int packets = 0;
};
