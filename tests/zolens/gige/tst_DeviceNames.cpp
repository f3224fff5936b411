#include "gige/DeviceNames.h"

#include <QtTest>

using zolens::deviceName;
using zolens::plainText;

/// Texts that no answer of a box holds, and how a vendor may stand in a model's name.
class tst_DeviceNames final : public QObject
{
    Q_OBJECT

private slots:
    void textThatIsNotThereIsEmpty()
    {
        QCOMPARE(plainText(nullptr), QString());
        QCOMPARE(plainText(nullptr, 0), QString());
        QCOMPARE(plainText(nullptr, 16), QString());
        QCOMPARE(plainText("Cam", 0), QString());
        QCOMPARE(plainText(""), QString());
    }

    void endsWhereTheBytesEnd()
    {
        QCOMPARE(plainText("Camera", 3), QStringLiteral("Cam"));
        QCOMPARE(plainText("Camera"), QStringLiteral("Camera"));
        // Without a length, an end mark ends it; with one, it is a character that cannot be shown.
        const char marked[] = "Cam\0era";
        QCOMPARE(plainText(marked), QStringLiteral("Cam"));
        QCOMPARE(plainText(marked, 7), QStringLiteral("Cam era"));
    }

    void isALineWithoutMarks_data()
    {
        QTest::addColumn<QByteArray>("bytes");
        QTest::newRow("line separator") << QByteArray("Cam\xe2\x80\xa8 5");
        QTest::newRow("next line") << QByteArray("Cam\xc2\x85\x35");
        QTest::newRow("written from right to left") << QByteArray("Cam\xe2\x80\xae\x35");
        QTest::newRow("byte order mark within") << QByteArray("Cam\xef\xbb\xbf\x35");
        QTest::newRow("hard blank") << QByteArray("Cam\xc2\xa0\x35");
        QTest::newRow("carriage returns") << QByteArray("\r\nCam\r\n5\r\n");
        QTest::newRow("for private use") << QByteArray("Cam\xee\x80\x80\x35");
    }

    void isALineWithoutMarks()
    {
        QFETCH(QByteArray, bytes);
        QCOMPARE(plainText(bytes.constData(), bytes.size()), QStringLiteral("Cam 5"));
    }

    void leavesTheVendorOutOnlyWhereTheModelBeginsWithIt_data()
    {
        QTest::addColumn<QString>("vendor");
        QTest::addColumn<QString>("model");
        QTest::addColumn<QString>("name");
        const auto row = [](const char* vendor, const char* model, const char* name) {
            QTest::addRow("%s, %s", vendor, model)
                << QString::fromUtf8(vendor) << QString::fromUtf8(model) << QString::fromUtf8(name);
        };
        row("Optics", "Cam by Optics", "Optics Cam by Optics");
        row("Optics", "Optics", "Optics");
        row("Optics Ltd", "Optics", "Optics Ltd Optics");
        row("MÜLLER", "Müller Cam", "Müller Cam");
        row("%2", "Cam", "%2 Cam");
        row("%1", "%2", "%1 %2");
    }

    void leavesTheVendorOutOnlyWhereTheModelBeginsWithIt()
    {
        QFETCH(QString, vendor);
        QFETCH(QString, model);
        QFETCH(QString, name);
        QCOMPARE(deviceName(vendor, model, QStringLiteral("USB3 Vision")), name);
    }
};

QTEST_APPLESS_MAIN(tst_DeviceNames)
#include "tst_DeviceNames.moc"
