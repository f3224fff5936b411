#include "BoxRelay.h"

#include <QHostAddress>
#include <QtEndian>

#include <netinet/in.h>
#include <poll.h>
#include <sys/socket.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <utility>

namespace {

constexpr std::uint16_t controlPort = 3956;
constexpr int glance = 20; // milliseconds
constexpr int longestPacket = 65536;
constexpr int largeBuffer = 8 << 20;

// The registers that tell a box where to send its pictures, and the commands that write them.
constexpr std::uint32_t portRegister = 0x0d00;
constexpr std::uint32_t addressRegister = 0x0d18;
constexpr std::uint16_t writeRegister = 0x0082;
constexpr std::uint16_t writeMemory = 0x0086;
constexpr int commandPlace = 2;
constexpr int registerPlace = 8;
constexpr int valuePlace = 12;

constexpr int formatPlace = 4;
constexpr char leaderFormat = 1;

std::uint32_t ipv4(const QString& text)
{
    return QHostAddress(text).toIPv4Address();
}

sockaddr_in place(std::uint32_t address, std::uint16_t port)
{
    sockaddr_in result = {};
    result.sin_family = AF_INET;
    result.sin_addr.s_addr = htonl(address);
    result.sin_port = htons(port);
    return result;
}

int openSocket(std::uint16_t port)
{
    const int file = socket(AF_INET, SOCK_DGRAM | SOCK_NONBLOCK | SOCK_CLOEXEC, 0);
    const sockaddr_in own = place(ipv4(BoxRelay::address()), port);
    setsockopt(file, SOL_SOCKET, SO_RCVBUF, &largeBuffer, sizeof largeBuffer);
    if (bind(file, reinterpret_cast<const sockaddr*>(&own), sizeof own) == 0)
        return file;
    close(file);
    return -1;
}

std::uint16_t portOf(int file)
{
    sockaddr_in own = {};
    socklen_t length = sizeof own;
    getsockname(file, reinterpret_cast<sockaddr*>(&own), &length);
    return ntohs(own.sin_port);
}

/// Null when there is none.
QByteArray receive(int file, sockaddr_in* from)
{
    QByteArray packet(longestPacket, Qt::Uninitialized);
    socklen_t length = sizeof *from;
    const auto size = recvfrom(file, packet.data(), std::size_t(packet.size()), 0,
                               reinterpret_cast<sockaddr*>(from), &length);
    if (size < 0)
        return {};
    packet.resize(int(size));
    return packet;
}

void send(int file, const QByteArray& packet, const sockaddr_in& to)
{
    sendto(file, packet.constData(), std::size_t(packet.size()), 0,
           reinterpret_cast<const sockaddr*>(&to), sizeof to);
}

template <typename T>
T numberAt(const QByteArray& packet, int offset)
{
    return qFromBigEndian<T>(packet.constData() + offset);
}

/// With the status of a protected register, the command's own acknowledgement and number.
QByteArray refusalOf(const QByteArray& command)
{
    QByteArray refusal = QByteArray::fromHex("80040000") + QByteArray(2, 0) + command.mid(6, 2);
    qToBigEndian(std::uint16_t(numberAt<std::uint16_t>(command, commandPlace) + 1),
                 refusal.data() + commandPlace);
    return refusal;
}

/// Whether the packet writes that register.
bool writes(const QByteArray& packet, std::uint32_t number)
{
    if (packet.size() < valuePlace + int(sizeof(std::uint32_t)))
        return false;
    const auto command = numberAt<std::uint16_t>(packet, commandPlace);
    return (command == writeRegister || command == writeMemory) &&
           numberAt<std::uint32_t>(packet, registerPlace) == number;
}

} // namespace

BoxRelay::BoxRelay(const QString& boxAddress, Change leaderChange)
    : box(ipv4(boxAddress)),
      change(std::move(leaderChange))
{
}

BoxRelay::~BoxRelay()
{
    ending = true;
    if (thread.joinable())
        thread.join();
    for (const int file : {questions, answers, pictures})
        close(file);
}

bool BoxRelay::start()
{
    questions = openSocket(controlPort);
    answers = openSocket(0);
    pictures = openSocket(0);
    if (questions < 0 || answers < 0 || pictures < 0)
        return false;
    thread = std::thread([this] { run(); });
    return true;
}

void BoxRelay::run()
{
    std::array<pollfd, 3> waiting = {
        {{questions, POLLIN, 0}, {answers, POLLIN, 0}, {pictures, POLLIN, 0}}};
    while (!ending) {
        if (poll(waiting.data(), waiting.size(), glance) <= 0)
            continue;
        passQuestion();
        passAnswer();
        passPicture();
    }
}

void BoxRelay::passQuestion()
{
    sockaddr_in client = {};
    QByteArray packet = receive(questions, &client);
    if (packet.isEmpty())
        return;
    clientAddress = ntohl(client.sin_addr.s_addr);
    clientPort = ntohs(client.sin_port);
    const auto isProtected = [&](std::uint32_t number) { return writes(packet, number); };
    if (std::any_of(readOnly.begin(), readOnly.end(), isProtected)) {
        send(questions, refusalOf(packet), client);
        return;
    }
    if (writes(packet, portRegister)) {
        picturePort = std::uint16_t(numberAt<std::uint32_t>(packet, valuePlace));
        qToBigEndian(std::uint32_t(picturePort ? portOf(pictures) : 0), packet.data() + valuePlace);
    } else if (writes(packet, addressRegister)) {
        qToBigEndian(ipv4(address()), packet.data() + valuePlace);
    }
    send(answers, packet, place(box, controlPort));
}

void BoxRelay::passAnswer()
{
    sockaddr_in from = {};
    const QByteArray packet = receive(answers, &from);
    if (!packet.isEmpty())
        send(questions, packet, place(clientAddress, clientPort));
}

void BoxRelay::passPicture()
{
    sockaddr_in from = {};
    QByteArray packet = receive(pictures, &from);
    if (packet.isEmpty())
        return;
    if (packet.size() > padding + 1 && packet[formatPlace] == leaderFormat)
        change(&packet);
    send(pictures, packet, place(clientAddress, picturePort));
}
