#include "FakeBox.h"
#include "gige/FeatureAccess.h"

#include <QElapsedTimer>
#include <QtTest>

#include <future>

using namespace std::chrono_literals;
using zolens::AravisError;
using zolens::AravisPointer;
using zolens::FeatureAccess;
using zolens::FeatureRange;
using zolens::VisionDevice;

namespace {

/// A number and an entry of a list that are there while a switch says so, and numbers without
/// bounds.
const QByteArray oddFeatures = R"(
<Integer Name="Sometimes">
  <pIsAvailable>SometimesThere</pIsAvailable>
  <Value>7</Value>
  <Min>0</Min>
  <Max>10</Max>
</Integer>
<Enumeration Name="List">
  <EnumEntry Name="Always"><Value>0</Value></EnumEntry>
  <EnumEntry Name="Sometimes">
    <pIsAvailable>SometimesThere</pIsAvailable>
    <Value>1</Value>
  </EnumEntry>
  <pValue>ListRegister</pValue>
</Enumeration>
<IntReg Name="ListRegister">
  <Address>0x2108</Address>
  <Length>4</Length>
  <AccessMode>RW</AccessMode>
  <pPort>Device</pPort>
  <Sign>Unsigned</Sign>
  <Endianess>BigEndian</Endianess>
</IntReg>
<Integer Name="SometimesThere"><pValue>SometimesRegister</pValue></Integer>
<IntReg Name="SometimesRegister">
  <Address>0x2100</Address>
  <Length>4</Length>
  <AccessMode>RW</AccessMode>
  <pPort>Device</pPort>
  <Sign>Unsigned</Sign>
  <Endianess>BigEndian</Endianess>
</IntReg>
<Float Name="Boundless"><pValue>BoundlessRegister</pValue></Float>
<Float Name="WithoutLeast"><pValue>BoundlessRegister</pValue><Max>10</Max></Float>
<FloatReg Name="BoundlessRegister">
  <Address>0x2104</Address>
  <Length>4</Length>
  <AccessMode>RW</AccessMode>
  <pPort>Device</pPort>
  <Endianess>BigEndian</Endianess>
</FloatReg>
)";

FakeBox::Options boxOptions()
{
    FakeBox::Options options;
    options.description = FakeBox::fullDescription();
    options.description.insert(options.description.lastIndexOf("</RegisterDescription>"),
                               oddFeatures);
    return options;
}

} // namespace

class tst_FeatureAccess final : public QObject
{
    Q_OBJECT

private:
    std::unique_ptr<FakeBox> box;
    std::unique_ptr<VisionDevice> device;
    std::atomic<int> losses{0};

private slots:
    void init()
    {
        box = std::make_unique<FakeBox>(boxOptions());
        QVERIFY(box->start());
        AravisError error;
        AravisPointer<ArvCamera> camera(
            arv_camera_new(box->address().toUtf8().constData(), error.out()));
        QVERIFY2(camera, error.text());
        losses = 0;
        device = std::make_unique<VisionDevice>(std::move(camera), [this] { ++losses; });
    }

    void cleanup()
    {
        device.reset();
        box.reset();
    }

    void readsAndWritesNumbersOfEveryKind_data()
    {
        QTest::addColumn<QByteArray>("feature");
        QTest::addColumn<double>("written");
        QTest::addColumn<double>("read");
        QTest::newRow("float") << QByteArray("Gain") << 2.5 << 2.5;
        QTest::newRow("whole") << QByteArray("Saturation") << 115.0 << 115.0;
        QTest::newRow("whole, rounded up") << QByteArray("Hue") << 41.5 << 42.0;
        QTest::newRow("whole, rounded to below zero") << QByteArray("Hue") << -41.6 << -42.0;
        QTest::newRow("switch on") << QByteArray("GammaEnable") << 1.0 << 1.0;
        QTest::newRow("switch off") << QByteArray("GammaEnable") << 0.0 << 0.0;
        QTest::newRow("any other number is on") << QByteArray("GammaEnable") << 0.4 << 1.0;
    }

    void readsAndWritesNumbersOfEveryKind()
    {
        QFETCH(QByteArray, feature);
        QFETCH(double, written);
        QFETCH(double, read);
        FeatureAccess features(*device);
        QVERIFY(features.setNumber(feature, written));
        QCOMPARE(features.number(feature), std::optional(read));
    }

    void tellsTheRangesOfNumbers()
    {
        FeatureAccess features(*device);
        const auto gain = features.range("Gain");
        QVERIFY(gain);
        QCOMPARE(gain->lowest, 0.0);
        QCOMPARE(gain->highest, 24.0);
        QVERIFY(!gain->isWhole);
        QCOMPARE(gain->unit, std::string("dB"));
        const auto saturation = features.range("Saturation");
        QVERIFY(saturation);
        QCOMPARE(saturation->lowest, 0.0);
        QCOMPARE(saturation->highest, 200.0);
        QCOMPARE(saturation->step, 5.0);
        QVERIFY(saturation->isWhole);
    }

    void tellsNoRangeWhereThereIsNone_data()
    {
        QTest::addColumn<QByteArray>("feature");
        QTest::newRow("no such feature") << QByteArray("Nonsense");
        QTest::newRow("a switch") << QByteArray("GammaEnable");
        QTest::newRow("without bounds") << QByteArray("Boundless");
        QTest::newRow("without the lower bound") << QByteArray("WithoutLeast");
        QTest::newRow("a number that is not there now") << QByteArray("Sometimes");
    }

    void tellsNoRangeWhereThereIsNone()
    {
        QFETCH(QByteArray, feature);
        QVERIFY(!FeatureAccess(*device).range(feature));
        QVERIFY(!device->isLost());
    }

    void aFeatureMayComeAndGo()
    {
        FeatureAccess features(*device);
        QVERIFY(features.setNumber("SometimesThere", 0));
        QVERIFY(!features.has("Sometimes"));
        QVERIFY(features.setNumber("SometimesThere", 1));
        QVERIFY(features.has("Sometimes"));
        QCOMPARE(features.number("Sometimes"), std::optional(7.0));
        QVERIFY(features.range("Sometimes"));
    }

    void anEntryMayComeAndGo()
    {
        FeatureAccess features(*device);
        QVERIFY(features.setNumber("SometimesThere", 0));
        QVERIFY(features.offers("List", "Always"));
        QVERIFY(!features.offers("List", "Sometimes"));
        QVERIFY(!features.choose("List", "Sometimes"));
        QCOMPARE(features.choice("List"), std::optional<std::string>("Always"));
        QVERIFY(features.setNumber("SometimesThere", 1));
        QVERIFY(features.choose("List", "Sometimes"));
        QCOMPARE(features.choice("List"), std::optional<std::string>("Sometimes"));
    }

    void choosesFromLists()
    {
        FeatureAccess features(*device);
        QVERIFY(features.offers("BalanceWhiteAuto", "Once"));
        QVERIFY(features.choose("BalanceWhiteAuto", "Continuous"));
        QCOMPARE(features.choice("BalanceWhiteAuto"), std::optional<std::string>("Continuous"));
        QVERIFY(features.choose("BalanceWhiteAuto", "Off"));
        QCOMPARE(features.choice("BalanceWhiteAuto"), std::optional<std::string>("Off"));
        QVERIFY(!features.offers("BalanceWhiteAuto", "Nonsense"));
        QVERIFY(!features.choose("BalanceWhiteAuto", "Nonsense"));
        QCOMPARE(features.choice("BalanceWhiteAuto"), std::optional<std::string>("Off"));
    }

    void aFeatureThatIsMissingIsNoLoss()
    {
        FeatureAccess features(*device);
        QVERIFY(!features.has("Nonsense"));
        QVERIFY(!features.number("Nonsense"));
        QVERIFY(!features.setNumber("Nonsense", 1.0));
        QVERIFY(!features.choice("Nonsense"));
        QVERIFY(!features.offers("Nonsense", "Off"));
        QVERIFY(!features.choose("Nonsense", "Off"));
        QVERIFY(!device->isLost());
        QVERIFY(features.has("Gain"));
    }

    void othersWaitUntilItIsDone()
    {
        auto features = std::make_unique<FeatureAccess>(*device);
        auto other =
            std::async(std::launch::async, [this] { return FeatureAccess(*device).has("Gain"); });
        QVERIFY(other.wait_for(100ms) == std::future_status::timeout);
        features.reset();
        QVERIFY(other.get());
    }

    void aCameraWithoutAnAnswerIsGivenUp()
    {
        FeatureAccess features(*device);
        box->kill();
        QVERIFY(!features.setNumber("Gain", 3.0));
        QVERIFY(device->isLost());
        QCOMPARE(losses.load(), 1);
        QElapsedTimer timer;
        timer.start();
        for (int i = 0; i < 10; ++i) {
            QVERIFY(!features.number("Gain"));
            QVERIFY(!features.setNumber("Gain", 4.0));
            QVERIFY(!features.has("Sometimes"));
            QVERIFY(!features.range("Saturation"));
            QVERIFY(!features.choose("BalanceWhiteAuto", "Off"));
        }
        // Each would wait for the box for two seconds and a half.
        QVERIFY2(timer.elapsed() < 2000, qPrintable(QString::number(timer.elapsed())));
        QCOMPARE(losses.load(), 1);
    }
};

QTEST_GUILESS_MAIN(tst_FeatureAccess)
#include "tst_FeatureAccess.moc"
