#include "ImitatedBox.h"
#include "gige/BoxAnswer.h"

#include <QtTest>

#include <memory>

using namespace zolens;

namespace {

/// From a copy of just that size, so that every byte read beyond it is noticed where memory is
/// watched.
std::optional<NetworkBox> read(const QByteArray& bytes)
{
    const auto copy = std::make_unique<std::uint8_t[]>(std::size_t(bytes.size()));
    std::copy(bytes.begin(), bytes.end(), copy.get());
    return readBoxAnswer(copy.get(), std::size_t(bytes.size()));
}

} // namespace

class tst_BoxAnswer final : public QObject
{
    Q_OBJECT

private slots:
    void tellsWhoTheBoxIs()
    {
        BoxAnswerBytes bytes;
        bytes.userName = "left stand";
        const auto box = read(bytes.datagram());
        QVERIFY(box);
        QCOMPARE(box->address, 0x0a000009U);
        QCOMPARE(box->vendor, QStringLiteral("Optics"));
        QCOMPARE(box->model, QStringLiteral("Cam 5"));
        QCOMPARE(box->serialNumber, QStringLiteral("0815"));
        QCOMPARE(box->userName, QStringLiteral("left stand"));
    }

    void readsTextsThatFillTheirRoom()
    {
        BoxAnswerBytes bytes;
        bytes.vendor = QByteArray(32, 'V');
        bytes.model = QByteArray(32, 'M');
        bytes.serialNumber = QByteArray(16, 'S');
        bytes.userName = QByteArray(16, 'U');
        const auto box = read(bytes.datagram());
        QVERIFY(box);
        QCOMPARE(box->vendor, QString(32, QLatin1Char('V')));
        QCOMPARE(box->model, QString(32, QLatin1Char('M')));
        QCOMPARE(box->serialNumber, QString(16, QLatin1Char('S')));
        QCOMPARE(box->userName, QString(16, QLatin1Char('U')));
    }

    void makesTextsPlain_data()
    {
        QTest::addColumn<QByteArray>("bytes");
        QTest::addColumn<QString>("text");
        QTest::newRow("empty") << QByteArray() << QString();
        QTest::newRow("beyond ASCII") << QByteArray("M\xc3\xbcller") << QStringLiteral("Müller");
        QTest::newRow("beyond 16 bits")
            << QByteArray("\xf0\x9f\x94\xac lab") << QStringLiteral("🔬 lab");
        QTest::newRow("not UTF-8") << QByteArray("M\xfcller") << QStringLiteral("M\ufffdller");
        QTest::newRow("cut within a character")
            << QByteArray("Cam\xe2\x82") << QStringLiteral("Cam\ufffd\ufffd");
        QTest::newRow("control characters")
            << QByteArray("\tCam\n5\x1b[1m\x7f") << QStringLiteral("Cam 5 [1m");
        QTest::newRow("blanks") << QByteArray("  Cam   5 ") << QStringLiteral("Cam 5");
        QTest::newRow("rest after the end mark")
            << QByteArray("Cam\0rest", 8) << QStringLiteral("Cam");
    }

    void makesTextsPlain()
    {
        QFETCH(QByteArray, bytes);
        QFETCH(QString, text);
        BoxAnswerBytes answer;
        answer.model = bytes;
        const auto box = read(answer.datagram());
        QVERIFY(box);
        QCOMPARE(box->model, text);
    }

    void ignoresWhatIsNoAnswer_data()
    {
        QTest::addColumn<QByteArray>("bytes");
        const QByteArray good = BoxAnswerBytes().datagram();
        const auto changed = [&good](int place, char value) {
            QByteArray bytes = good;
            bytes[place] = value;
            return bytes;
        };
        QTest::newRow("nothing") << QByteArray();
        QTest::newRow("a byte") << good.left(1);
        QTest::newRow("header only") << good.left(8);
        QTest::newRow("one byte short") << good.left(255);
        QTest::newRow("one byte long") << good + '\0';
        QTest::newRow("as long as packets get") << good + QByteArray(1244, '\0');
        QTest::newRow("refusal") << changed(0, char(0x80));
        QTest::newRow("status") << changed(1, 1);
        QTest::newRow("other command") << changed(3, 2);
        QTest::newRow("other length") << changed(5, char(0xf7));
        QTest::newRow("other request") << changed(7, 2);
        QTest::newRow("the question")
            << QByteArray(reinterpret_cast<const char*>(boxQuestion.data()), 8);
        QTest::newRow("noise") << QByteArray(256, char(0xff));
    }

    void ignoresWhatIsNoAnswer()
    {
        QFETCH(QByteArray, bytes);
        QVERIFY(!read(bytes));
    }

    void ignoresAddressesThatNoBoxCanHave_data()
    {
        QTest::addColumn<QByteArray>("address");
        QTest::addColumn<bool>("possible");
        QTest::newRow("none") << QByteArray::fromHex("00000000") << false;
        QTest::newRow("this network") << QByteArray::fromHex("00000001") << false;
        QTest::newRow("group") << QByteArray::fromHex("e0000001") << false;
        QTest::newRow("everybody") << QByteArray::fromHex("ffffffff") << false;
        QTest::newRow("link-local") << QByteArray::fromHex("a9fe0102") << true;
        QTest::newRow("this machine") << QByteArray::fromHex("7f000002") << true;
    }

    void ignoresAddressesThatNoBoxCanHave()
    {
        QFETCH(QByteArray, address);
        QFETCH(bool, possible);
        BoxAnswerBytes bytes;
        bytes.address = address;
        QCOMPARE(read(bytes.datagram()).has_value(), possible);
    }
};

QTEST_APPLESS_MAIN(tst_BoxAnswer)
#include "tst_BoxAnswer.moc"
