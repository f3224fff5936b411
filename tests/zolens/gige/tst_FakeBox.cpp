#include "FakeBox.h"
#include "gige/Aravis.h"

#include <QNetworkInterface>
#include <QtTest>

namespace {

using Camera = zolens::AravisPointer<ArvCamera>;

Camera connectTo(const FakeBox& box)
{
    return Camera(arv_camera_new(qPrintable(box.address()), nullptr));
}

} // namespace

/// That the tests of network boxes have what they stand on.
class tst_FakeBox final : public QObject
{
    Q_OBJECT

private slots:
    void theNetworkIsPrivate()
    {
        const auto interfaces = QNetworkInterface::allInterfaces();
        QStringList names;
        for (const QNetworkInterface& interface : interfaces)
            names << interface.name();
        names.sort();
        QCOMPARE(names, (QStringList{QStringLiteral("lo"), QStringLiteral("silence"),
                                     QStringLiteral("silence-end")}));
    }

    void answersUntilItIsKilled()
    {
        FakeBox box;
        QVERIFY(box.start());
        Camera camera = connectTo(box);
        QVERIFY(camera);
        QCOMPARE(QString::fromLatin1(arv_camera_get_device_serial_number(camera.get(), nullptr)),
                 QStringLiteral("ORVO1"));
        camera.reset();
        box.kill();
        QVERIFY(!connectTo(box));
        QVERIFY(box.start());
        QVERIFY(connectTo(box));
    }

    void severalAnswerAtTheirOwnAddresses()
    {
        FakeBox first;
        FakeBox::Options options;
        options.address = QStringLiteral("10.0.0.3");
        options.serialNumber = QStringLiteral("ORVO2");
        FakeBox second(options);
        QVERIFY(first.start());
        QVERIFY(second.start());
        const Camera camera = connectTo(second);
        QVERIFY(camera);
        QCOMPARE(QString::fromLatin1(arv_camera_get_device_serial_number(camera.get(), nullptr)),
                 QStringLiteral("ORVO2"));
    }

    void aFrozenBoxAnswersLater()
    {
        FakeBox box;
        QVERIFY(box.start());
        box.freeze();
        QVERIFY(!connectTo(box));
        box.thaw();
        QVERIFY(connectTo(box));
    }
};

QTEST_GUILESS_MAIN(tst_FakeBox)
#include "tst_FakeBox.moc"
