#include "FakeBox.h"

#include "gige/Aravis.h"

#include <QElapsedTimer>
#include <QFile>
#include <QHostAddress>
#include <QNetworkDatagram>
#include <QRegularExpression>
#include <QUdpSocket>
#include <QtEndian>

#include <cstring>
#include <utility>

namespace {

constexpr int startTime = 20000;
constexpr int answerTime = 50;
constexpr quint16 controlPort = 3956;
constexpr int registerTime = 1000;
constexpr int headerSize = 8;
/// Asks a box to tell who it is.
const QByteArray discovery = QByteArray::fromHex("4201000200000001");
/// The address follows.
const QByteArray readRegister = QByteArray::fromHex("4201008000040001");

QByteArray contentOf(const QString& path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

} // namespace

FakeBox::FakeBox() : FakeBox(Options()) {}

FakeBox::FakeBox(Options boxOptions) : options(std::move(boxOptions)) {}

bool FakeBox::start()
{
    if (!options.description.isEmpty()) {
        QFile file(folder.filePath(QStringLiteral("features.xml")));
        if (!file.open(QIODevice::WriteOnly) || file.write(options.description) < 0)
            return false;
    }
    process.start(QStringLiteral("arv-fake-gv-camera-0.8"), arguments());
    if (!process.waitForStarted(startTime))
        return false;
    QElapsedTimer timer;
    timer.start();
    while (ask(discovery, answerTime).isEmpty()) {
        if (timer.elapsed() > startTime || process.waitForFinished(0))
            return false;
    }
    return true;
}

QStringList FakeBox::arguments() const
{
    QStringList list = {QStringLiteral("-i"), options.address,
                        QStringLiteral("-s"), options.serialNumber,
                        QStringLiteral("-r"), QString::number(options.lostPacketsPerThousand)};
    if (!options.description.isEmpty())
        list << QStringLiteral("-g") << folder.filePath(QStringLiteral("features.xml"));
    return list;
}

/// Empty when there is no answer.
QByteArray FakeBox::ask(const QByteArray& question, int patience) const
{
    QUdpSocket socket;
    socket.bind(QHostAddress(QHostAddress::AnyIPv4));
    socket.writeDatagram(question, QHostAddress(options.address), controlPort);
    return socket.waitForReadyRead(patience) ? socket.receiveDatagram().data() : QByteArray();
}

std::optional<quint32> FakeBox::registerValue(quint32 registerAddress) const
{
    QByteArray place(sizeof(registerAddress), 0);
    qToBigEndian(registerAddress, place.data());
    const QByteArray answer = ask(readRegister + place, registerTime);
    if (answer.size() < headerSize + int(sizeof(quint32)))
        return std::nullopt;
    return qFromBigEndian<quint32>(answer.constData() + headerSize);
}

std::optional<float> FakeBox::registerNumber(quint32 registerAddress) const
{
    const auto bits = registerValue(registerAddress);
    if (!bits)
        return std::nullopt;
    float number = 0.0F;
    std::memcpy(&number, &*bits, sizeof(number));
    return number;
}

QByteArray FakeBox::ownDescription()
{
    const zolens::AravisPointer<ArvFakeCamera> camera(arv_fake_camera_new("any"));
    std::size_t size = 0;
    const char* text = arv_fake_camera_get_genicam_xml(camera.get(), &size);
    return QByteArray(text, int(size));
}

QByteArray FakeBox::fullDescription()
{
    QByteArray description = ownDescription();
    const int end = description.lastIndexOf("</RegisterDescription>");
    return description.insert(end, contentOf(QStringLiteral(ORVO_CAMERA_FEATURES)));
}

QByteArray FakeBox::withFormats(QByteArray description, const QByteArrayList& names)
{
    static const QRegularExpression entry(
        QStringLiteral("<EnumEntry Name=\"((?:Mono|Bayer|RGB)\\w+)\".*?</EnumEntry>"),
        QRegularExpression::DotMatchesEverythingOption);
    QString text = QString::fromUtf8(description);
    int from = 0;
    for (auto match = entry.match(text); match.hasMatch(); match = entry.match(text, from)) {
        const bool wanted = names.contains(match.captured(1).toUtf8());
        from = wanted ? match.capturedEnd() : match.capturedStart();
        if (!wanted)
            text.remove(match.capturedStart(), match.capturedLength());
    }
    return text.toUtf8();
}

QByteArray FakeBox::withSensor(QByteArray description, int width, int height)
{
    const auto limit = [&description](const QByteArray& node, int length) {
        const int place = description.indexOf("<Integer Name=\"" + node + '"');
        const QByteArray before = "<pMax>Sensor" + node + "</pMax>";
        description.replace(description.indexOf(before, place), before.size(),
                            "<Max>" + QByteArray::number(length) + "</Max>");
    };
    limit("Width", width);
    limit("Height", height);
    return description;
}
