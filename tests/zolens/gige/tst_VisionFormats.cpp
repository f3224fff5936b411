#include "FakeBox.h"
#include "ImitatedCamera.h"
#include "gige/VisionFormats.h"

#include <QtTest>

using zolens::FeatureAccess;
using zolens::VideoFormat;
using zolens::VisionDevice;

namespace {

using Codes = std::vector<quint32>;
using Sizes = std::vector<QSize>;

constexpr quint32 mono8 = 0x01080001;
constexpr quint32 mono16 = 0x01100007;
constexpr quint32 bayerGR8 = 0x01080008;
constexpr quint32 bayerRG8 = 0x01080009;
constexpr quint32 bayerGB8 = 0x0108000a;
constexpr quint32 bayerBG8 = 0x0108000b;
constexpr quint32 rgb8 = 0x02180014;

/// A length or a place as the camera counts it.
struct Steps
{
    int least = 0;
    int step = 1;
};

/// Of 1300 x 1030 pixels. As with real ones, the region has to lie on the sensor: how long it may
/// be depends on where it begins, and the other way round.
class Sensor final
{
public:
    Steps width{4, 4};
    Steps height{2, 2};
    Steps x;
    Steps y;

    QByteArray description(const QByteArrayList& formats) const
    {
        QByteArray text = FakeBox::withFormats(FakeBox::ownDescription(), formats);
        limit(&text, "Width", width, "1300 - OffsetX");
        limit(&text, "Height", height, "1030 - OffsetY");
        limit(&text, "OffsetX", x, "1300 - Width");
        limit(&text, "OffsetY", y, "1030 - Height");
        return text;
    }

private:
    static void limit(QByteArray* text, const QByteArray& node, const Steps& steps,
                      const QByteArray& most)
    {
        const QByteArray other = most.mid(most.lastIndexOf(' ') + 1);
        QByteArray formula = most;
        formula.replace(other, "OTHER");
        const QByteArray limits =
            "<Min>" + QByteArray::number(steps.least) + "</Min><pMax>" + node + "Most</pMax><Inc>" +
            QByteArray::number(steps.step) + "</Inc></Integer>" + "<IntSwissKnife Name=\"" + node +
            "Most\"><pVariable Name=\"OTHER\">" + other + "Register</pVariable><Formula>" +
            formula + "</Formula></IntSwissKnife>";
        const int begin = text->indexOf("<Min>", text->indexOf("<Integer Name=\"" + node + '"'));
        const QByteArray end = "</Integer>";
        text->replace(begin, text->indexOf(end, begin) + end.size() - begin, limits);
    }
};

const QByteArrayList ownFormats = {"BayerBG8", "BayerGB8", "BayerGR8", "BayerRG8",
                                   "Mono8",    "RGB8",     "Mono16"};

Codes codesOf(const std::vector<VideoFormat>& formats)
{
    Codes codes;
    for (const VideoFormat& format : formats)
        codes.push_back(format.code);
    return codes;
}

} // namespace

/// On the camera that needs no network.
class tst_VisionFormats final : public QObject
{
    Q_OBJECT

private:
    void plug(const QByteArray& description)
    {
        auto camera = imitatedCamera(description);
        QVERIFY(camera);
        device = std::make_unique<VisionDevice>(std::move(camera), [] {});
        features = std::make_unique<FeatureAccess>(*device);
    }

    double number(const char* feature) const { return features->number(feature).value_or(-1); }

    /// Where the region lies, and how long it is.
    QRect region() const
    {
        return QRect(int(number("OffsetX")), int(number("OffsetY")), int(number("Width")),
                     int(number("Height")));
    }

    void setFormat(quint32 code) { arv_camera_set_pixel_format(features->camera(), code, nullptr); }
    quint32 format() const { return arv_camera_get_pixel_format(features->camera(), nullptr); }

    std::unique_ptr<VisionDevice> device;
    std::unique_ptr<FeatureAccess> features;

private slots:
    void cleanup()
    {
        features.reset();
        device.reset();
    }

    void prefersThePatternInUse_data()
    {
        QTest::addColumn<quint32>("inUse");
        QTest::newRow("GR") << bayerGR8;
        QTest::newRow("RG") << bayerRG8;
        QTest::newRow("GB") << bayerGB8;
        QTest::newRow("BG") << bayerBG8;
    }

    void prefersThePatternInUse()
    {
        QFETCH(quint32, inUse);
        plug(Sensor().description(ownFormats));
        setFormat(inUse);
        QCOMPARE(codesOf(zolens::visionFormats(*features)), (Codes{inUse, rgb8, mono8}));
        QCOMPARE(format(), inUse);
    }

    void prefersFewBitsAndColorToTheFormatInUse_data()
    {
        QTest::addColumn<quint32>("inUse");
        QTest::newRow("RGB") << rgb8;
        QTest::newRow("grey") << mono8;
        QTest::newRow("grey of many bits") << mono16;
    }

    void prefersFewBitsAndColorToTheFormatInUse()
    {
        QFETCH(quint32, inUse);
        plug(Sensor().description({"Mono8", "Mono16", "RGB8", "BayerGB8"}));
        setFormat(inUse);
        const auto formats = zolens::visionFormats(*features);
        QCOMPARE(codesOf(formats), (Codes{bayerGB8, rgb8, mono8}));
        QCOMPARE(formats[0].number, 1);
        QCOMPARE(formats[1].number, 0);
        QCOMPARE(formats[2].number, 7);
    }

    void withoutAKnownFormatThereIsNone()
    {
        const QByteArray depth = "<EnumEntry Name=\"Depth\"><Value>17825974</Value></EnumEntry>";
        QByteArray description = Sensor().description({});
        plug(description.insert(description.indexOf("<pValue>PixelFormatRegister"), depth));
        QVERIFY(zolens::visionFormats(*features).empty());
    }

    void withoutALengthThereIsNone()
    {
        QByteArray description = FakeBox::ownDescription();
        plug(description.replace("<Integer Name=\"Width\"", "<Integer Name=\"Breadth\""));
        QVERIFY(zolens::visionFormats(*features).empty());
    }

    void offersTheSizesOnTheSteps_data()
    {
        QTest::addColumn<int>("least");
        QTest::addColumn<int>("step");
        QTest::addColumn<Sizes>("sizes");
        const Sizes upTo1024 = {{320, 240}, {640, 360}, {640, 480}, {800, 600}, {1024, 768}};
        const Sizes wide = {{1280, 720}, {1280, 960}, {1280, 1024}};
        const auto joined = [](Sizes first, const Sizes& second) {
            first.insert(first.end(), second.begin(), second.end());
            return first;
        };
        QTest::newRow("of four") << 4 << 4 << joined(joined(upTo1024, wide), {{1300, 1030}});
        // 12 x 64 + 32 = 800 is none of them; the most is 20 x 64 = 1280.
        Sizes of64 = upTo1024;
        of64.erase(of64.begin() + 3);
        QTest::newRow("of 64") << 64 << 64 << joined(joined(of64, wide), {{1280, 1030}});
        // From 801 on, 1301 would be the first one beyond the sensor.
        QTest::newRow("none in common use") << 801 << 250 << Sizes{{1051, 1030}};
        QTest::newRow("one only") << 1300 << 1 << Sizes{{1300, 1030}};
    }

    void offersTheSizesOnTheSteps()
    {
        QFETCH(int, least);
        QFETCH(int, step);
        QFETCH(Sizes, sizes);
        Sensor sensor;
        sensor.width = {least, step};
        plug(sensor.description(ownFormats));
        const auto formats = zolens::visionFormats(*features);
        QCOMPARE(formats.size(), std::size_t(3));
        for (const VideoFormat& format : formats)
            QCOMPARE(format.sizes, sizes);
    }

    void findsTheWholeSensorWhereverTheRegionLies()
    {
        plug(Sensor().description(ownFormats));
        QVERIFY(features->setNumber("Width", 100) && features->setNumber("Height", 100));
        QVERIFY(features->setNumber("OffsetX", 900) && features->setNumber("OffsetY", 700));
        QCOMPARE(zolens::visionFormats(*features).front().sizes.back(), QSize(1300, 1030));
        QCOMPARE(region(), QRect(0, 0, 100, 100));
    }

    void laysTheRegionAboutTheMiddle_data()
    {
        QTest::addColumn<int>("stepX");
        QTest::addColumn<int>("stepY");
        QTest::addColumn<QSize>("size");
        QTest::addColumn<QRect>("expected");
        QTest::newRow("all") << 1 << 1 << QSize(1300, 1030) << QRect(0, 0, 1300, 1030);
        QTest::newRow("a part") << 1 << 1 << QSize(640, 480) << QRect(330, 275, 640, 480);
        QTest::newRow("in steps") << 16 << 2 << QSize(640, 480) << QRect(320, 274, 640, 480);
        QTest::newRow("in large steps") << 400 << 300 << QSize(640, 480) << QRect(0, 0, 640, 480);
        QTest::newRow("a size between the steps")
            << 1 << 1 << QSize(643, 481) << QRect(328, 274, 640, 480);
    }

    void laysTheRegionAboutTheMiddle()
    {
        QFETCH(int, stepX);
        QFETCH(int, stepY);
        QFETCH(QSize, size);
        QFETCH(QRect, expected);
        Sensor sensor;
        sensor.x.step = stepX;
        sensor.y.step = stepY;
        plug(sensor.description(ownFormats));
        const auto formats = zolens::visionFormats(*features);
        // From a region that leaves no room at first.
        QVERIFY(features->setNumber("OffsetX", 400) && features->setNumber("OffsetY", 600));
        for (const VideoFormat& chosen : formats) {
            QVERIFY(zolens::selectMode(*features, chosen, size));
            QCOMPARE(format(), chosen.code);
            QCOMPARE(region(), expected);
        }
    }

    void needsNoOffsets()
    {
        QByteArray description = FakeBox::withSensor(FakeBox::ownDescription(), 1300, 1030);
        description.replace("Name=\"OffsetX\"", "Name=\"OtherX\"");
        description.replace("Name=\"OffsetY\"", "Name=\"OtherY\"");
        plug(description);
        const auto formats = zolens::visionFormats(*features);
        QVERIFY(zolens::selectMode(*features, formats.front(), {800, 600}));
        QCOMPARE(number("Width"), 800.0);
        QCOMPARE(number("Height"), 600.0);
    }

    void tellsWhatTheCameraRefuses()
    {
        plug(Sensor().description({"Mono8"}));
        const auto formats = zolens::visionFormats(*features);
        QCOMPARE(codesOf(formats), Codes{mono8});
        VideoFormat other = formats.front();
        other.code = rgb8;
        QVERIFY(!zolens::selectMode(*features, other, {640, 480}));
        QVERIFY(zolens::selectMode(*features, formats.front(), {640, 480}));
        device->giveUp();
        QVERIFY(!zolens::selectMode(*features, formats.front(), {640, 480}));
        QVERIFY(zolens::visionFormats(*features).empty());
    }
};

QTEST_APPLESS_MAIN(tst_VisionFormats)
#include "tst_VisionFormats.moc"
