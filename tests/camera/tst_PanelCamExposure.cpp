#include "camera/panels/PanelCamExposure.h"

#include "CustomCamera.h"

#include <QCheckBox>
#include <QGroupBox>
#include <QLabel>
#include <QSlider>
#include <QTimer>
#include <QtTest>

namespace {

constexpr int pollInterval = 1000;

} // namespace

class tst_PanelCamExposure : public QObject
{
    Q_OBJECT

private slots:
    void init()
    {
        fake = std::make_unique<OpenFake>();
        fake->device->properties = {
            {CMProperty_ExposureTime, {100.0, 50000.0, 20000.9, 10000.0}},
            {CMProperty_ExposureTarget, {20.0, 235.0, 120.0, 205.0}},
            {CMProperty_Gain, {100.0, 1600.0, 200.0, 100.0}},
        };
        panel = std::make_unique<PanelCamExposure>(nullptr);
        panel->show();
    }

    void cleanup()
    {
        panel.reset();
        fake.reset();
    }

    void withoutCameraNothingHappens()
    {
        panel->updateControls();
        QVERIFY(!automatic()->isChecked());
        QVERIFY(!timer()->isActive());
        poll();
        automatic()->click();
        automatic()->click();
        slider("sliderTime")->setValue(5);
    }

    void openingShowsRangesAndValuesCutToIntegers()
    {
        open();
        QCOMPARE(slider("sliderTime")->minimum(), 100);
        QCOMPARE(slider("sliderTime")->maximum(), 50000);
        QCOMPARE(slider("sliderTime")->value(), 20000);
        QCOMPARE(slider("sliderTime")->pageStep(), 1);
        QCOMPARE(slider("sliderTime")->tickInterval(), 1);
        QCOMPARE(slider("sliderTarget")->value(), 120);
        QCOMPARE(slider("sliderGain")->value(), 200);
        QCOMPARE(label("labelTarget")->text(), QStringLiteral("120"));
        QCOMPARE(label("labelTime")->text(),
                 fake->camera.getFormatedProperty(CMProperty_ExposureTime, false));
        QCOMPARE(label("labelGain")->text(), QStringLiteral("x 2.0"));
    }

    void openingFillsTimeTargetAndGainAndThenTurnsAutomaticOn()
    {
        open();
        QCOMPARE(fake->device->writtenOnceEach(),
                 QStringList({QStringLiteral("12"), QStringLiteral("11"), QStringLiteral("6"),
                              QStringLiteral("auto")}));
        QCOMPARE(fake->device->written.last(), QStringLiteral("auto on"));
    }

    void everyCameraStartsInAutomaticExposure()
    {
        open();
        QVERIFY(automatic()->isChecked());
        QVERIFY(fake->device->automatic);
        OpenFake next;
        panel->setCamera(&next.camera);
        panel->updateControls();
        QVERIFY(next.device->automatic);
        QVERIFY(timer()->isActive());
        QCOMPARE(timer()->interval(), pollInterval);
    }

    void unsupportedPropertiesHideTheirGroups()
    {
        fake->device->properties.erase(CMProperty_Gain);
        open();
        QVERIFY(group("groupTime")->isVisible());
        QVERIFY(group("groupTarget")->isVisible());
        QVERIFY(!group("groupGain")->isVisible());
        fake->device->properties.clear();
        panel->updateControls();
        QVERIFY(!group("groupTime")->isVisible());
        QVERIFY(!group("groupTarget")->isVisible());
        fake->device->properties[CMProperty_Gain] = {};
        panel->updateControls();
        QVERIFY(group("groupGain")->isVisible());
    }

    void theModeDecidesWhichSlidersAreTheUsers()
    {
        open();
        QVERIFY(slider("sliderTarget")->isEnabled());
        QVERIFY(!slider("sliderTime")->isEnabled());
        QVERIFY(!slider("sliderGain")->isEnabled());
        automatic()->click();
        QVERIFY(!slider("sliderTarget")->isEnabled());
        QVERIFY(slider("sliderTime")->isEnabled());
        QVERIFY(slider("sliderGain")->isEnabled());
    }

    void pollingShowsTheCamerasValuesAndWritesNothing()
    {
        open();
        fake->device->written.clear();
        setValue(CMProperty_ExposureTime, 700.0);
        setValue(CMProperty_Gain, 300.0);
        QTRY_COMPARE_WITH_TIMEOUT(slider("sliderTime")->value(), 700, 3 * pollInterval);
        QCOMPARE(slider("sliderGain")->value(), 300);
        QCOMPARE(label("labelGain")->text(), QStringLiteral("x 3.0"));
        QVERIFY(fake->device->written.isEmpty());
    }

    void pollingAnUnreadableValueLeavesTheSliderAlone()
    {
        open();
        fake->device->properties[CMProperty_Gain].readable = false;
        poll();
        QCOMPARE(slider("sliderGain")->value(), 200);
    }

    void turningAutomaticOffHoldsThePolledValuesAndWritesThem()
    {
        open();
        setValue(CMProperty_ExposureTime, 700.0);
        setValue(CMProperty_Gain, 300.0);
        poll();
        fake->device->written.clear();
        automatic()->click();
        QCOMPARE(fake->device->written,
                 QStringList({QStringLiteral("auto off"), QStringLiteral("12 = 700"),
                              QStringLiteral("6 = 300")}));
        QVERIFY(!timer()->isActive());
        automatic()->click();
        QVERIFY(fake->device->automatic);
        QVERIFY(timer()->isActive());
        QCOMPARE(timer()->interval(), pollInterval);
    }

    void slidersWriteAtOnce()
    {
        open();
        automatic()->click();
        fake->device->written.clear();
        QTest::ignoreMessage(QtDebugMsg, "exposure time value changed");
        slider("sliderTime")->setValue(500);
        slider("sliderGain")->setValue(400);
        QTest::ignoreMessage(QtDebugMsg, "exposure target value changed");
        slider("sliderTarget")->setValue(90);
        QCOMPARE(fake->device->written,
                 QStringList({QStringLiteral("12 = 500"), QStringLiteral("6 = 400"),
                              QStringLiteral("11 = 90")}));
        QCOMPARE(label("labelGain")->text(), QStringLiteral("x 4.0"));
        QCOMPARE(label("labelTarget")->text(), QStringLiteral("90"));
        QCOMPARE(label("labelTime")->text(),
                 fake->camera.getFormatedProperty(CMProperty_ExposureTime, false));
    }

    void aClosedDeviceIsNotAsked()
    {
        open();
        panel->setCamera(nullptr);
        const int reads = fake->device->reads;
        fake->device->written.clear();
        poll();
        slider("sliderTarget")->setValue(77);
        automatic()->click();
        QCOMPARE(fake->device->reads, reads);
        QVERIFY(fake->device->written.isEmpty());
    }

    void changingTextsMoveNoSlider()
    {
        panel->setFont(QFont(panel->font().family(), 14));
        open();
        automatic()->click();
        const auto places = [this] {
            QTest::qWait(20);
            QList<QRect> rects;
            for (const char* name : {"sliderTarget", "sliderTime", "sliderGain"})
                rects << slider(name)->geometry();
            return rects;
        };
        slider("sliderTime")->setValue(100);
        slider("sliderGain")->setValue(100);
        const QList<QRect> before = places();
        slider("sliderTime")->setValue(44440);
        slider("sliderGain")->setValue(1600);
        QCOMPARE(label("labelTime")->text(), QStringLiteral("44.4 ms"));
        QCOMPARE(places(), before);
    }

    void rangesBeyondIntegersAreHeldAtTheirEnds()
    {
        fake->device->properties[CMProperty_ExposureTime] = {-1e300, 1e300, qQNaN(), 0.0};
        open();
        QCOMPARE(slider("sliderTime")->minimum(), std::numeric_limits<int>::min());
        QCOMPARE(slider("sliderTime")->maximum(), std::numeric_limits<int>::max());
        QCOMPARE(slider("sliderTime")->value(), 0);
    }

    void theSimulatedMicroscopeSettlesOnTheTarget()
    {
        MyCamera microscope;
        QVERIFY(microscope.open(CWDevice_Simulated, 0, true));
        panel->setCamera(&microscope);
        panel->updateControls();
        automatic()->click();
        slider("sliderTime")->setValue(1000);
        double time = 0.0;
        QCOMPARE(microscope.camera->getProperty(CMProperty_ExposureTime, &time), 0);
        QCOMPARE(time, 1000.0);
        QCOMPARE(label("labelTime")->text(), QStringLiteral("1.00 ms"));
        automatic()->click();
        QTRY_VERIFY_WITH_TIMEOUT(slider("sliderTime")->value() > 2000, 10000);
    }

private:
    void open()
    {
        panel->setCamera(&fake->camera);
        panel->updateControls();
    }
    void poll() { QVERIFY(QMetaObject::invokeMethod(panel.get(), "autoUpdate")); }
    void setValue(tagCMProperty id, double value) { fake->device->properties[id].value = value; }
    QCheckBox* automatic() const { return panel->findChild<QCheckBox*>(); }
    QTimer* timer() const { return panel->findChild<QTimer*>(); }
    QSlider* slider(const char* name) const
    {
        return panel->findChild<QSlider*>(QString::fromLatin1(name));
    }
    QLabel* label(const char* name) const
    {
        return panel->findChild<QLabel*>(QString::fromLatin1(name));
    }
    QGroupBox* group(const char* name) const
    {
        return panel->findChild<QGroupBox*>(QString::fromLatin1(name));
    }

    std::unique_ptr<OpenFake> fake;
    std::unique_ptr<PanelCamExposure> panel;
};

QTEST_MAIN(tst_PanelCamExposure)
#include "tst_PanelCamExposure.moc"
