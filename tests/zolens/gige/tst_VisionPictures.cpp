#include "BoxRelay.h"
#include "FakeBox.h"
#include "ReferenceFrames.h"
#include "gige/VisionCamera.h"
#include "zolens/FrameCollector.h"

#include <QtEndian>
#include <QtTest>

#include <algorithm>
#include <memory>

using namespace std::chrono_literals;
using zolens::VisionCamera;

namespace {

constexpr QSize sensor(320, 240);
constexpr int extraPixels = 6;
constexpr auto patience = 20s;

/// Of a box that sends some more pixels in each row than its width says.
QByteArray descriptionWithLongRows(const QByteArrayList& formats)
{
    QByteArray description = FakeBox::withSensor(
        FakeBox::withFormats(FakeBox::ownDescription(), formats), sensor.width(), sensor.height());
    const QByteArray extra = QByteArray::number(extraPixels);
    const int width = description.indexOf("<Integer Name=\"Width\"");
    const int value = description.indexOf("WidthRegister", width);
    description.replace(value, 13, "WidthConverter");
    description.replace("<Formula>WIDTH *", "<Formula>(WIDTH + " + extra + ") *");
    description.insert(width, "<IntConverter Name=\"WidthConverter\"><FormulaTo>FROM + " + extra +
                                  "</FormulaTo><FormulaFrom>TO - " + extra +
                                  "</FormulaFrom><pValue>WidthRegister</pValue></IntConverter>");
    return description;
}

template <typename T>
void put(QByteArray* leader, int place, T number)
{
    qToBigEndian(number, leader->data() + place);
}

/// Calls the extra pixels padding.
void tellOfPadding(QByteArray* leader, int bytesPerPixel)
{
    put(leader, BoxRelay::width, quint32(sensor.width()));
    put(leader, BoxRelay::padding, quint16(extraPixels * bytesPerPixel));
}

} // namespace

/// What a box may send instead of plain pictures.
class tst_VisionPictures final : public QObject
{
    Q_OBJECT

private:
    void start(const QByteArrayList& formats, BoxRelay::Change change)
    {
        FakeBox::Options options;
        options.description = descriptionWithLongRows(formats);
        box = std::make_unique<FakeBox>(options);
        QVERIFY(box->start());
        relay = std::make_unique<BoxRelay>(box->address(), std::move(change));
        QVERIFY(relay->start());
        const zolens::VisionAddress address = {CWDevice_NetworkBox, BoxRelay::address(), 0};
        camera = std::make_unique<VisionCamera>(address, false);
        sink = std::make_unique<FrameCollector>();
        QVERIFY(camera->start(sink.get()));
    }

    std::unique_ptr<FrameCollector> sink;
    std::unique_ptr<FakeBox> box;
    std::unique_ptr<BoxRelay> relay;
    std::unique_ptr<VisionCamera> camera;

private slots:
    void cleanup()
    {
        camera.reset();
        relay.reset();
        box.reset();
    }

    void skipsThePaddingOfRows_data()
    {
        QTest::addColumn<QByteArray>("format");
        QTest::addColumn<quint32>("code");
        QTest::addColumn<int>("bytesPerPixel");
        QTest::newRow("Mono8") << QByteArray("Mono8") << quint32(ARV_PIXEL_FORMAT_MONO_8) << 1;
        QTest::newRow("Mono16") << QByteArray("Mono16") << quint32(ARV_PIXEL_FORMAT_MONO_16) << 2;
        QTest::newRow("Bayer") << QByteArray("BayerGR8") << quint32(ARV_PIXEL_FORMAT_BAYER_GR_8)
                               << 1;
        QTest::newRow("RGB") << QByteArray("RGB8") << quint32(ARV_PIXEL_FORMAT_RGB_8_PACKED) << 3;
    }

    void skipsThePaddingOfRows()
    {
        QFETCH(QByteArray, format);
        QFETCH(quint32, code);
        QFETCH(int, bytesPerPixel);
        start({format}, [=](QByteArray* leader) { tellOfPadding(leader, bytesPerPixel); });
        QVERIFY(sink->waitForFrames(3, patience));
        QCOMPARE(sink->lastFrame().size(), sensor);
        QVERIFY(ReferenceFrames(code, sensor).contain(sink->lastFrame()));
    }

    void countsPicturesThatAreNotAsTheyTell_data()
    {
        QTest::addColumn<int>("place");
        QTest::addColumn<int>("size");
        QTest::addColumn<quint32>("number");
        QTest::newRow("padding beyond the data") << BoxRelay::padding << 2 << quint32(0xffff);
        QTest::newRow("a byte of padding too many")
            << BoxRelay::padding << 2 << quint32(extraPixels + 1);
        QTest::newRow("no width") << BoxRelay::width << 4 << 0U;
        QTest::newRow("another width") << BoxRelay::width << 4 << 321U;
        QTest::newRow("a giant's width") << BoxRelay::width << 4 << 0x7fffffffU;
        QTest::newRow("a height below zero") << BoxRelay::height << 4 << 0xffffffffU;
        QTest::newRow("a file") << BoxRelay::payloadType << 2 << 3U;
        QTest::newRow("several parts") << BoxRelay::payloadType << 2 << 10U;
        QTest::newRow("nothing known") << BoxRelay::payloadType << 2 << 0x3fffU;
    }

    void countsPicturesThatAreNotAsTheyTell()
    {
        QFETCH(int, place);
        QFETCH(int, size);
        QFETCH(quint32, number);
        std::atomic<bool> lying{true};
        start({"Mono8"}, [&, place, size, number](QByteArray* leader) {
            tellOfPadding(leader, 1);
            if (lying && size == 2)
                put(leader, place, quint16(number));
            else if (lying)
                put(leader, place, number);
        });
        QTRY_VERIFY_WITH_TIMEOUT(camera->damagedFrames() >= 3, 20000);
        QCOMPARE(sink->count(), 0);
        lying = false;
        QVERIFY(sink->waitForFrames(3, patience));
        cleanup();
    }

    // More of them than the watchdog's time takes, as on a way that others use too.
    void aWhileOfDamagedPicturesRestartsNothing()
    {
        std::atomic<int> lies{60};
        start({"Mono8"}, [&lies](QByteArray* leader) {
            tellOfPadding(leader, 1);
            if (lies > 0 && lies-- > 0)
                put(leader, BoxRelay::payloadType, quint16(3));
        });
        QVERIFY(sink->waitForFrames(3, patience));
        QVERIFY(camera->damagedFrames() >= 50);
        QCOMPARE(camera->restarts(), quint64(0));
        cleanup();
    }

    void aBoxThatSendsNoWholePictureIsRestarted()
    {
        start({"Mono8"}, [](QByteArray* leader) {
            tellOfPadding(leader, 1);
            put(leader, BoxRelay::payloadType, quint16(3));
        });
        QTRY_VERIFY_WITH_TIMEOUT(camera->restarts() > 0, 60000);
        QCOMPARE(sink->count(), 0);
        cleanup();
    }
};

QTEST_GUILESS_MAIN(tst_VisionPictures)
#include "tst_VisionPictures.moc"
