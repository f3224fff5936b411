#include "gige/BoxList.h"

#include <QtTest>

using namespace zolens;

namespace {

constexpr std::uint32_t network = 0xc0a80100; // 192.168.1.0

NetworkBox makeBox(int host, const QString& serialNumber = {}, const QString& userName = {})
{
    return {network + std::uint32_t(host), QStringLiteral("Optics"), QStringLiteral("Cam 5"),
            serialNumber, userName};
}

QStringList names(const BoxList& list)
{
    QStringList result;
    for (const _tag_VideoDeviceInfo& device : list.devices())
        result << QString::fromStdString(device.name);
    return result;
}

QStringList addresses(const BoxList& list)
{
    QStringList result;
    for (const _tag_VideoDeviceInfo& device : list.devices())
        result << QString::fromStdString(device.address);
    return result;
}

} // namespace

class tst_BoxList final : public QObject
{
    Q_OBJECT

private slots:
    void describesABox()
    {
        BoxList list;
        list.heard(makeBox(7, QStringLiteral("0815"), QStringLiteral("left")));
        QCOMPARE(list.devices().size(), std::size_t(1));
        const _tag_VideoDeviceInfo device = list.devices().front();
        QCOMPARE(device.type, std::int32_t(CWDevice_NetworkBox));
        QCOMPARE(device.index, std::int32_t(0));
        QCOMPARE(device.name, std::string("Optics Cam 5"));
        QCOMPARE(device.address, std::string("192.168.1.7"));
    }

    void keepsTheOrderOfAddressesWhoeverAnswersFirst()
    {
        BoxList list;
        for (const int host : {200, 3, 10})
            list.heard(makeBox(host));
        const QStringList expected = {QStringLiteral("192.168.1.3"), QStringLiteral("192.168.1.10"),
                                      QStringLiteral("192.168.1.200")};
        QCOMPARE(addresses(list), expected);
        list.endRound();
        for (const int host : {10, 200, 3})
            list.heard(makeBox(host));
        QCOMPARE(addresses(list), expected);
        for (int i = 0; i < 3; ++i)
            QCOMPARE(list.devices()[std::size_t(i)].index, std::int32_t(i));
    }

    void listsABoxThatAnswersSeveralTimesOnce()
    {
        BoxList list;
        for (int i = 0; i < 5; ++i)
            list.heard(makeBox(7));
        QCOMPARE(list.devices().size(), std::size_t(1));
    }

    void followsABoxThatIsRenamed()
    {
        BoxList list;
        list.heard(makeBox(7));
        NetworkBox renamed = makeBox(7);
        renamed.model = QStringLiteral("Cam 6");
        list.heard(renamed);
        QCOMPARE(names(list), QStringList(QStringLiteral("Optics Cam 6")));
    }

    void forgetsABoxAfterThreeSilentRounds()
    {
        BoxList list;
        list.heard(makeBox(7));
        list.endRound();
        for (int silent = 1; silent <= 2; ++silent) {
            list.endRound();
            QCOMPARE(list.devices().size(), std::size_t(1));
        }
        list.heard(makeBox(7));
        list.endRound();
        for (int silent = 1; silent <= 3; ++silent) {
            QCOMPARE(list.devices().size(), std::size_t(1));
            list.endRound();
        }
        QVERIFY(list.devices().empty());
    }

    void tellsBoxesOfOneModelApart_data()
    {
        QTest::addColumn<QStringList>("userNames");
        QTest::addColumn<QStringList>("serialNumbers");
        QTest::addColumn<QStringList>("expected");
        const auto row = [](const char* name, const QStringList& userNames,
                            const QStringList& serialNumbers, const QStringList& suffixes) {
            QStringList expected;
            for (const QString& suffix : suffixes)
                expected << QStringLiteral("Optics Cam 5") + suffix;
            QTest::newRow(name) << userNames << serialNumbers << expected;
        };
        const auto l = [](const char* text) { return QString::fromLatin1(text); };
        row("by user", {l("left"), l("right")}, {l("1"), l("2")}, {l(" (left)"), l(" (right)")});
        row("by serial number", {l(""), l("")}, {l("1"), l("2")}, {l(" (1)"), l(" (2)")});
        row("one named", {l(""), l("right")}, {l("1"), l("2")}, {l(" (1)"), l(" (right)")});
        row("named alike", {l("a"), l("a")}, {l("1"), l("2")}, {l(" (1)"), l(" (2)")});
        row("two of three named alike", {l("a"), l("a"), l("b")}, {l("1"), l("2"), l("3")},
            {l(" (1)"), l(" (2)"), l(" (b)")});
        row("named by the other's number", {l("2"), l("")}, {l("1"), l("2")}, {l(" (1)"), l("")});
        row("named by its own number", {l("1"), l("")}, {l("1"), l("2")}, {l(" (1)"), l(" (2)")});
        row("not at all", {l(""), l("")}, {l("1"), l("1")}, {l(""), l("")});
    }

    void tellsBoxesOfOneModelApart()
    {
        QFETCH(QStringList, userNames);
        QFETCH(QStringList, serialNumbers);
        QFETCH(QStringList, expected);
        BoxList list;
        for (int i = 0; i < userNames.size(); ++i)
            list.heard(makeBox(i + 1, serialNumbers[i], userNames[i]));
        QCOMPARE(names(list), expected);
    }

    void namesTheModelOnly_data()
    {
        QTest::addColumn<QString>("vendor");
        QTest::addColumn<QString>("model");
        QTest::addColumn<QString>("name");
        const auto l = [](const char* text) { return QString::fromLatin1(text); };
        QTest::newRow("vendor in the model") << l("Optics") << l("OPTICS Cam") << l("OPTICS Cam");
        QTest::newRow("no vendor") << QString() << l("Cam") << l("Cam");
        QTest::newRow("no model") << l("Optics") << QString() << l("Optics");
        QTest::newRow("nothing") << QString() << QString() << l("GigE Vision");
    }

    void namesTheModelOnly()
    {
        QFETCH(QString, vendor);
        QFETCH(QString, model);
        QFETCH(QString, name);
        BoxList list;
        NetworkBox box = makeBox(1);
        box.vendor = vendor;
        box.model = model;
        list.heard(box);
        QCOMPARE(names(list), QStringList(name));
    }

    void hasRoomForAsManyAsANetworkHolds()
    {
        BoxList list;
        for (int host = 0; host < 5000; ++host)
            list.heard(makeBox(host, QString::number(host)));
        QCOMPARE(list.devices().size(), BoxList::mostBoxes);
        NetworkBox known = makeBox(3);
        known.model = QStringLiteral("Cam 6");
        list.heard(known);
        QVERIFY(names(list).contains(QStringLiteral("Optics Cam 6")));
    }
};

QTEST_APPLESS_MAIN(tst_BoxList)
#include "tst_BoxList.moc"
