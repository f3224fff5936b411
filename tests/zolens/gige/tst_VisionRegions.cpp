#include "BoxRelay.h"
#include "FakeBox.h"
#include "gige/Aravis.h"
#include "gige/VisionCamera.h"
#include "support/CameraValues.h"
#include "support/MemoryLimit.h"
#include "zolens/FrameCollector.h"

#include <QtTest>

#include <memory>

using namespace cameravalues;
using namespace std::chrono_literals;
using zolens::VisionCamera;

namespace {

using Sizes = std::vector<QSize>;

constexpr auto patience = 20s;
/// What the box sends when nobody has chosen a size.
constexpr QSize ownSize(512, 512);

QByteArray smallSensor()
{
    return FakeBox::withSensor(FakeBox::withFormats(FakeBox::ownDescription(), {"Mono8"}), 800,
                               600);
}

/// The description with something else within that node.
QByteArray changed(QByteArray description, const QByteArray& node, const QByteArray& before,
                   const QByteArray& after)
{
    const int begin = description.indexOf("<Integer Name=\"" + node + '"');
    return description.replace(description.indexOf(before, begin), before.size(), after);
}

/// With that number of bytes for a picture of more than 480 rows.
QByteArray withPayloadAbove480(const QByteArray& bytes)
{
    return smallSensor().replace("<Formula>WIDTH * HEIGHT * (",
                                 "<Formula>(HEIGHT &gt; 480) ? " + bytes + " : WIDTH * HEIGHT * (");
}

} // namespace

/// What boxes may tell of the size of their pictures.
class tst_VisionRegions final : public QObject
{
    Q_OBJECT

private:
    void startBox(const QByteArray& description)
    {
        FakeBox::Options options;
        options.description = description;
        box = std::make_unique<FakeBox>(options);
        QVERIFY(box->start());
    }

    void open(const QString& address)
    {
        sink = std::make_unique<FrameCollector>();
        camera = std::make_unique<VisionCamera>(
            zolens::VisionAddress{CWDevice_NetworkBox, address, 0}, false);
        QVERIFY(camera->start(sink.get()));
        QVERIFY(sink->waitForFrames(1, patience));
    }

    std::unique_ptr<FakeBox> box;
    std::unique_ptr<BoxRelay> relay;
    std::unique_ptr<FrameCollector> sink;
    std::unique_ptr<VisionCamera> camera;

private slots:
    void cleanup()
    {
        camera.reset();
        relay.reset();
        box.reset();
    }

    void opensWhateverLimitsABoxTells_data()
    {
        QTest::addColumn<QByteArray>("node");
        QTest::addColumn<QByteArray>("before");
        QTest::addColumn<QByteArray>("after");
        QTest::addColumn<QSize>("largest");
        const auto row = [](const char* name, const char* node, const char* before,
                            const char* after, const QSize& largest) {
            QTest::newRow(name) << QByteArray(node) << QByteArray(before) << QByteArray(after)
                                << largest;
        };
        const QSize ownWidth(ownSize.width(), 600);
        row("all", "Width", "<Inc>1</Inc>", "<Inc>1</Inc>", {800, 600});
        row("no limit", "Width", "<Max>800</Max>", "", ownWidth);
        row("a giant", "Width", "<Max>800</Max>", "<Max>9223372036854775807</Max>", ownWidth);
        row("turned round", "Width", "<Min>1</Min>", "<Min>900</Min>", ownWidth);
        row("below zero", "Width", "<Min>1</Min>", "<Min>-2147483647</Min>", {800, 600});
        row("far below zero", "Width", "<Min>1</Min>", "<Min>-9223372036854775808</Min>", ownWidth);
        row("no steps", "Width", "<Inc>1</Inc>", "<Inc>0</Inc>", {800, 600});
        row("steps back", "Width", "<Inc>1</Inc>", "<Inc>-16</Inc>", {800, 600});
        row("a giant step", "Width", "<Inc>1</Inc>", "<Inc>4294967296</Inc>", {1, 600});
        row("no height", "Height", "<Max>600</Max>", "", {800, ownSize.height()});
        row("no room beside", "OffsetX", "<pMax>SensorWidth</pMax>", "<Max>-4</Max>", {800, 600});
    }

    void opensWhateverLimitsABoxTells()
    {
        QFETCH(QByteArray, node);
        QFETCH(QByteArray, before);
        QFETCH(QByteArray, after);
        QFETCH(QSize, largest);
        startBox(changed(smallSensor(), node, before, after));
        open(box->address());
        QCOMPARE(sizesOf(*camera).back(), largest);
        QCOMPARE(sink->lastFrame().size(), largest);
        camera->setPreviewSize(0);
        QTRY_COMPARE_WITH_TIMEOUT(sink->lastFrame().size(), sizesOf(*camera).front(), 20000);
    }

    void opensABoxThatHasOneSizeOnly()
    {
        startBox(changed(changed(smallSensor(), "Width", "<Max>800</Max>", ""), "Height",
                         "<Max>600</Max>", ""));
        relay = std::make_unique<BoxRelay>(box->address(), [](QByteArray*) {});
        for (const quint32 number :
             {ARV_FAKE_CAMERA_REGISTER_WIDTH, ARV_FAKE_CAMERA_REGISTER_HEIGHT,
              ARV_FAKE_CAMERA_REGISTER_X_OFFSET, ARV_FAKE_CAMERA_REGISTER_Y_OFFSET,
              ARV_FAKE_CAMERA_REGISTER_PIXEL_FORMAT})
            relay->protect(number);
        QVERIFY(relay->start());
        open(BoxRelay::address());
        QCOMPARE(sizesOf(*camera), Sizes{ownSize});
        QCOMPARE(sink->lastFrame().size(), ownSize);
    }

    void opensInASmallerSizeWhereItsPicturesAreTooLarge_data()
    {
        QTest::addColumn<QByteArray>("payload");
        QTest::addColumn<QSize>("opened");
        QTest::newRow("large") << QByteArray("150000000") << QSize(800, 600);
        QTest::newRow("several are too large") << QByteArray("250000000") << QSize(640, 480);
        QTest::newRow("one is too large") << QByteArray("4000000000") << QSize(640, 480);
        QTest::newRow("none") << QByteArray("0") << QSize(640, 480);
    }

    void opensInASmallerSizeWhereItsPicturesAreTooLarge()
    {
        QFETCH(QByteArray, payload);
        QFETCH(QSize, opened);
        startBox(withPayloadAbove480(payload));
        open(box->address());
        QCOMPARE(sizesOf(*camera).back(), QSize(800, 600));
        QCOMPARE(sink->lastFrame().size(), opened);
        QCOMPARE(previewSizeOf(*camera), opened);
    }

    void opensInASmallerSizeWhereMemoryIsShort()
    {
#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
        QSKIP("Sanitizers need all the addresses.");
#endif
        startBox(withPayloadAbove480("90000000"));
        // Enough for four of them.
        const MemoryLimit limit(400'000'000);
        open(box->address());
        QCOMPARE(sink->lastFrame().size(), QSize(640, 480));
    }

    void keepsToTheStepsOfTheFormat()
    {
        QByteArray description = FakeBox::withSensor(
            FakeBox::withFormats(FakeBox::ownDescription(), {"Mono8", "BayerGR8"}), 700, 500);
        description = changed(description, "Width", "<Inc>1</Inc>", "<pInc>WidthStep</pInc>");
        const int end = description.lastIndexOf("</RegisterDescription>");
        startBox(description.insert(
            end, "<IntSwissKnife Name=\"WidthStep\"><pVariable Name=\"FORMAT\">PixelFormat"
                 "</pVariable><Formula>(FORMAT = 17301505) ? 1 : 64</Formula></IntSwissKnife>"));
        open(box->address());
        // One more than ten times 64, which is the most below 700.
        const QSize expected(641, 500);
        QCOMPARE(sink->lastFrame().size(), expected);
        QCOMPARE(previewSizeOf(*camera), expected);
        QCOMPARE(box->registerValue(ARV_FAKE_CAMERA_REGISTER_WIDTH), std::optional(641U));
    }
};

QTEST_GUILESS_MAIN(tst_VisionRegions)
#include "tst_VisionRegions.moc"
