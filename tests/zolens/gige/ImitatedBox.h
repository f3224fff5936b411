#pragma once

#include <QByteArray>
#include <QHostAddress>
#include <QList>
#include <QObject>
#include <QUdpSocket>
#include <QtEndian>

/// What a box answers to the question who it is, as the standard of GigE Vision lays it out.
struct BoxAnswerBytes
{
    QByteArray address = QByteArray::fromHex("0a000009");
    QByteArray vendor = "Optics";
    QByteArray model = "Cam 5";
    QByteArray serialNumber = "0815";
    QByteArray userName;

    QByteArray datagram() const
    {
        QByteArray bytes = QByteArray::fromHex("0000000300f80001");
        bytes.append(QByteArray(248, '\0'));
        const auto put = [&bytes](int place, const QByteArray& text) {
            bytes.replace(8 + place, text.size(), text);
        };
        put(36, address);
        put(72, vendor);
        put(104, model);
        put(216, serialNumber);
        put(232, userName);
        return bytes;
    }
};

/// Answers the question for boxes with what a test wants, while events are processed. Only for
/// tests in a private network.
class ImitatedBox final : public QObject
{
public:
    ImitatedBox() { connect(&socket, &QUdpSocket::readyRead, this, &ImitatedBox::answer); }

    bool start() { return socket.bind(QHostAddress(QHostAddress::AnyIPv4), 3956); }

    /// Of another network: nothing arrives but broadcasts, which only who allows them gets.
    bool isStranger = false;
    QList<QByteArray> answers;
    QList<QByteArray> questions;
    QStringList askers;

private:
    /// One question at a time, so that a test goes on however many there are.
    void answer()
    {
        QByteArray question(int(socket.pendingDatagramSize()), '\0');
        QHostAddress asker;
        quint16 port = 0;
        socket.readDatagram(question.data(), question.size(), &asker, &port);
        questions << question;
        askers << asker.toString();
        if (isStranger && !(question[1] & allowsBroadcast))
            return;
        for (const QByteArray& bytes : qAsConst(answers))
            socket.writeDatagram(bytes, isStranger ? QHostAddress::Broadcast : asker, port);
    }

    static constexpr int allowsBroadcast = 0x10;

    QUdpSocket socket;
};
