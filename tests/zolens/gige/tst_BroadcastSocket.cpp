#include "gige/BroadcastSocket.h"
#include "support/ProcessUse.h"

#include <QElapsedTimer>
#include <QProcess>
#include <QUdpSocket>
#include <QtTest>

#include <sys/eventfd.h>
#include <unistd.h>

using namespace std::chrono_literals;
using zolens::BroadcastSocket;

namespace {

constexpr int patience = 20000;
const QByteArray question = "Who is there?";

const std::uint8_t* bytesOf(const QByteArray& text)
{
    return reinterpret_cast<const std::uint8_t*>(text.constData());
}

/// What this machine has in a test's network.
const QStringList ownAddresses = {QStringLiteral("10.0.0.1"), QStringLiteral("10.0.0.2"),
                                  QStringLiteral("10.0.0.3"), QStringLiteral("10.0.0.4"),
                                  QStringLiteral("10.0.1.1"), QStringLiteral("127.0.0.1")};

/// Somebody on the network.
class Neighbour final
{
public:
    Neighbour() { socket.bind(QHostAddress(QHostAddress::AnyIPv4)); }

    quint16 port() const { return socket.localPort(); }

    /// The addresses that have asked the question so far, sorted.
    QStringList askers()
    {
        for (; socket.hasPendingDatagrams(); ++asked) {
            QByteArray text(int(socket.pendingDatagramSize()), '\0');
            QHostAddress address;
            quint16 from = 0;
            socket.readDatagram(text.data(), text.size(), &address, &from);
            if (text == question)
                ports[address.toString()] = from;
        }
        return ports.keys();
    }
    void answer(const QByteArray& text)
    {
        for (auto it = ports.cbegin(); it != ports.cend(); ++it)
            socket.writeDatagram(text, QHostAddress(it.key()), it.value());
    }

    int asked = 0; ///< How often.

private:
    QUdpSocket socket;
    QMap<QString, quint16> ports;
};

void ip(const QString& arguments)
{
    QCOMPARE(QProcess::execute(QStringLiteral("ip"), arguments.split(QLatin1Char(' '))), 0);
}

} // namespace

class tst_BroadcastSocket final : public QObject
{
    Q_OBJECT

private:
    void ask() { socket->send(bytesOf(question), std::size_t(question.size()), neighbour->port()); }

    /// What comes while a wait of that time lasts.
    QByteArrayList received(std::chrono::milliseconds time)
    {
        QByteArrayList texts;
        socket->receive(bell, time, [&texts](const std::uint8_t* data, std::size_t size) {
            texts << QByteArray(reinterpret_cast<const char*>(data), int(size));
        });
        return texts;
    }

    std::unique_ptr<Neighbour> neighbour;
    std::unique_ptr<BroadcastSocket> socket;
    int bell = -1;

private slots:
    void init()
    {
        bell = eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK);
        neighbour = std::make_unique<Neighbour>();
        socket = std::make_unique<BroadcastSocket>();
    }

    void cleanup()
    {
        socket.reset();
        neighbour.reset();
        close(bell);
    }

    void asksFromEachAddressOfTheMachine()
    {
        ask();
        QTRY_COMPARE_WITH_TIMEOUT(neighbour->askers(), ownAddresses, patience);
        QCOMPARE(neighbour->asked, ownAddresses.size());
    }

    void followsInterfacesThatGoDownAndUp()
    {
        QStringList others = ownAddresses;
        others.removeOne(QStringLiteral("10.0.1.1"));
        ip(QStringLiteral("link set silence down"));
        ask();
        ip(QStringLiteral("link set silence up"));
        QTRY_COMPARE_WITH_TIMEOUT(neighbour->askers(), others, patience);
        QCOMPARE(neighbour->asked, others.size());
        ask();
        QTRY_COMPARE_WITH_TIMEOUT(neighbour->askers(), ownAddresses, patience);
    }

    void handsOverWhatIsAnswered_data()
    {
        QTest::addColumn<QByteArray>("answer");
        QTest::newRow("bytes") << QByteArray("\0Me\xff", 4);
        QTest::newRow("nothing") << QByteArray();
    }

    void handsOverWhatIsAnswered()
    {
        QFETCH(QByteArray, answer);
        ask();
        QTRY_COMPARE_WITH_TIMEOUT(neighbour->askers(), ownAddresses, patience);
        neighbour->answer(answer);
        QByteArrayList texts;
        QElapsedTimer timer;
        timer.start();
        while (texts.size() < ownAddresses.size() && timer.elapsed() < patience)
            texts << received(100ms);
        QCOMPARE(texts.size(), ownAddresses.size());
        QCOMPARE(texts.count(answer), ownAddresses.size());
    }

    void waitsNoLongerThanAllowed()
    {
        QElapsedTimer timer;
        timer.start();
        QVERIFY(received(200ms).isEmpty());
        QVERIFY(timer.elapsed() >= 199);
        QVERIFY(timer.elapsed() < 10000);
    }

    void theBellEndsAWait()
    {
        QElapsedTimer timer;
        timer.start();
        eventfd_write(bell, 1);
        QVERIFY(received(60s).isEmpty());
        QVERIFY(timer.elapsed() < 30000);
    }

    void keepsOneSocketAndClosesIt()
    {
        const auto before = processuse::settledHoldings();
        for (int i = 0; i < 100; ++i)
            ask();
        QCOMPARE(processuse::descriptors(), before.descriptors + 1);
        socket.reset();
        QCOMPARE(processuse::descriptors(), before.descriptors);
    }
};

QTEST_GUILESS_MAIN(tst_BroadcastSocket)
#include "tst_BroadcastSocket.moc"
