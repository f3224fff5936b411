#include "camera/panels/PanelCamWhiteBalance.h"

#include "CustomCamera.h"
#include "app/Application.h"

#include <QCheckBox>
#include <QFrame>
#include <QLabel>
#include <QPushButton>
#include <QSettings>
#include <QSlider>
#include <QSpinBox>
#include <QTimer>
#include <QtTest>

namespace {

constexpr int pollInterval = 1000;
const QString useOnePush = QStringLiteral("camera/useonepushwb");
const std::vector<int> allModes{CWWhiteBalance_Auto, CWWhiteBalance_Manual, CWWhiteBalance_OnePush};
const std::vector<int> withoutOnePush{CWWhiteBalance_Auto, CWWhiteBalance_Manual};

} // namespace

class tst_PanelCamWhiteBalance : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase() { setApplicationNames(); }

    void init()
    {
        QSettings().clear();
        fake = std::make_unique<OpenFake>();
        fake->device->balanceModes = withoutOnePush;
        panel = std::make_unique<PanelCamWhiteBalance>(nullptr);
        panel->show();
    }

    void cleanup()
    {
        panel.reset();
        fake.reset();
    }

    void theFormStartsWithItsOwnRanges()
    {
        for (const QSlider* slider : panel->findChildren<QSlider*>()) {
            QCOMPARE(slider->minimum(), -255);
            QCOMPARE(slider->maximum(), 255);
            QCOMPARE(slider->orientation(), Qt::Horizontal);
        }
        for (const QSpinBox* spinBox : panel->findChildren<QSpinBox*>()) {
            QCOMPARE(spinBox->minimum(), -255);
            QCOMPARE(spinBox->maximum(), 255);
        }
    }

    void withoutCameraNothingHappens()
    {
        panel->updateControls();
        poll();
        onePush()->click();
        standard()->click();
        QVERIFY(!automatic()->isChecked());
        QVERIFY(!timer()->isActive());
    }

    void modesAndSettingDecideBetweenCheckBoxAndButton_data()
    {
        QTest::addColumn<bool>("wished");
        QTest::addColumn<bool>("device");
        QTest::addColumn<bool>("checkBox");
        QTest::addColumn<bool>("button");
        QTest::newRow("both, wished") << true << true << false << true;
        QTest::newRow("both, not wished") << false << true << true << false;
        QTest::newRow("no one-push, wished") << true << false << true << false;
        QTest::newRow("no one-push, not wished") << false << false << true << false;
    }

    void modesAndSettingDecideBetweenCheckBoxAndButton()
    {
        QFETCH(bool, wished);
        QFETCH(bool, device);
        QSettings().setValue(useOnePush, wished);
        fake->device->balanceModes = device ? allModes : withoutOnePush;
        open();
        QTEST(automatic()->isVisible(), "checkBox");
        QTEST(onePush()->isVisible(), "button");
    }

    void withNothingStoredOnePushIsWished()
    {
        fake->device->balanceModes = allModes;
        open();
        QVERIFY(onePush()->isVisible());
        QVERIFY(!automatic()->isVisible());
    }

    void aDeviceWithoutModesShowsNeither()
    {
        fake->device->balanceModes.clear();
        open();
        QVERIFY(!automatic()->isVisible());
        QVERIFY(!onePush()->isVisible());
    }

    void aTemperatureHidesTheGains()
    {
        supportTemperature();
        supportGains();
        open();
        QVERIFY(frame("frameTemperature")->isVisible());
        QVERIFY(!frame("frameGain")->isVisible());
        QCOMPARE(slider("sliderTemperature")->value(), 5000);
        QCOMPARE(label()->text(), QStringLiteral("5000 K"));
    }

    void withoutTemperatureTheGainsShow()
    {
        supportGains();
        open();
        QVERIFY(!frame("frameTemperature")->isVisible());
        QVERIFY(frame("frameGain")->isVisible());
        QCOMPARE(slider("sliderRGain")->value(), 110);
        QCOMPARE(spinBox("spinBoxGGain")->value(), 120);
        QCOMPARE(spinBox("spinBoxBGain")->maximum(), 400);
    }

    void onlyTheGainsThatTheDeviceHasShow()
    {
        supportGains();
        fake->device->properties.erase(CMProperty_GreenGain);
        open();
        QVERIFY(slider("sliderRGain")->isVisible());
        QVERIFY(!slider("sliderGGain")->isVisible());
        QVERIFY(!spinBox("spinBoxGGain")->isVisible());
        QVERIFY(!panel->findChild<QLabel*>(QStringLiteral("labelGGainTitle"))->isVisible());
        QVERIFY(spinBox("spinBoxBGain")->isVisible());
        supportGains();
        panel->updateControls();
        QVERIFY(slider("sliderGGain")->isVisible());
        QVERIFY(spinBox("spinBoxGGain")->isVisible());
    }

    void withoutBothTheFramesStayAsTheyWere()
    {
        open();
        QVERIFY(frame("frameTemperature")->isVisible());
        QVERIFY(frame("frameGain")->isVisible());
        supportTemperature();
        panel->updateControls();
        fake->device->properties.clear();
        panel->updateControls();
        QVERIFY(frame("frameTemperature")->isVisible());
        QVERIFY(!frame("frameGain")->isVisible());
    }

    void aCameraInAutomaticModeIsPolledOnceASecond()
    {
        supportTemperature();
        fake->device->balanceMode = CWWhiteBalance_Auto;
        open();
        QVERIFY(automatic()->isChecked());
        QVERIFY(!frame("frameTemperature")->isEnabled());
        QVERIFY(!frame("frameGain")->isEnabled());
        QVERIFY(timer()->isActive());
        QCOMPARE(timer()->interval(), pollInterval);
        fake->device->written.clear();
        fake->device->properties[CMProperty_ColorTemperature].value = 6100.0;
        QTRY_COMPARE_WITH_TIMEOUT(slider("sliderTemperature")->value(), 6100, 3 * pollInterval);
        QCOMPARE(label()->text(), QStringLiteral("6100 K"));
        QVERIFY(fake->device->written.isEmpty());
    }

    void theModeIsTheOneBeforeTheControlsAreFilled()
    {
        supportTemperature();
        fake->device->temperatureEndsAutomatic = true;
        fake->device->balanceMode = CWWhiteBalance_Auto;
        open();
        QVERIFY(fake->device->written.contains(QStringLiteral("16 = 5000")));
        QVERIFY(automatic()->isChecked());
        QVERIFY(timer()->isActive());
        QCOMPARE(fake->device->balanceMode, int(CWWhiteBalance_Auto));
    }

    void anAutomaticCameraAfterAnotherOneStaysAutomatic()
    {
        fake->device->balanceMode = CWWhiteBalance_Auto;
        open();
        OpenFake next;
        next.device->balanceModes = withoutOnePush;
        next.device->balanceMode = CWWhiteBalance_Auto;
        next.device->temperatureEndsAutomatic = true;
        next.device->properties[CMProperty_ColorTemperature] = {2000.0, 10000.0, 5000.0, 5500.0};
        panel->setCamera(&next.camera);
        panel->updateControls();
        QVERIFY(automatic()->isChecked());
        QVERIFY(timer()->isActive());
        QCOMPARE(next.device->balanceMode, int(CWWhiteBalance_Auto));
    }

    void aCameraInManualModeIsPolledWithoutPauseOnceAutomatic()
    {
        supportTemperature();
        open();
        QVERIFY(!automatic()->isChecked());
        QVERIFY(!timer()->isActive());
        automatic()->click();
        QCOMPARE(fake->device->balanceMode, int(CWWhiteBalance_Auto));
        QVERIFY(timer()->isActive());
        QCOMPARE(timer()->interval(), 0);
        automatic()->click();
        QCOMPARE(fake->device->balanceMode, int(CWWhiteBalance_Manual));
        QVERIFY(!timer()->isActive());
        QVERIFY(frame("frameTemperature")->isEnabled());
        QVERIFY(frame("frameGain")->isEnabled());
    }

    void aManualCameraAfterAnAutomaticOneIsNotPolled()
    {
        fake->device->balanceMode = CWWhiteBalance_Auto;
        open();
        OpenFake next;
        next.device->balanceModes = withoutOnePush;
        panel->setCamera(&next.camera);
        panel->updateControls();
        QVERIFY(!automatic()->isChecked());
        QVERIFY(!timer()->isActive());
        QCOMPARE(next.device->balanceMode, int(CWWhiteBalance_Manual));
    }

    void pollingShowsTheGainsThatCanBeRead()
    {
        supportGains();
        open();
        fake->device->written.clear();
        fake->device->properties[CMProperty_RedGain].value = 210.0;
        fake->device->properties[CMProperty_GreenGain] = {50.0, 400.0, 220.0, 100.0, false};
        poll();
        QCOMPARE(slider("sliderRGain")->value(), 210);
        QCOMPARE(spinBox("spinBoxRGain")->value(), 210);
        QCOMPARE(slider("sliderGGain")->value(), 120);
        QVERIFY(fake->device->written.isEmpty());
    }

    void onePushBalancesOnceAndShowsTheResultASecondLater()
    {
        supportTemperature();
        fake->device->balanceModes = allModes;
        open();
        onePush()->click();
        QCOMPARE(fake->device->balanceMode, int(CWWhiteBalance_OnePush));
        fake->device->properties[CMProperty_ColorTemperature].value = 4200.0;
        QTest::qWait(pollInterval / 2);
        QCOMPARE(slider("sliderTemperature")->value(), 5000);
        QTRY_COMPARE_WITH_TIMEOUT(slider("sliderTemperature")->value(), 4200, 2 * pollInterval);
    }

    void onePushEndsAnAutomaticModeWithoutCheckBox()
    {
        supportTemperature();
        fake->device->balanceModes = allModes;
        fake->device->balanceMode = CWWhiteBalance_Auto;
        open();
        QVERIFY(!frame("frameTemperature")->isEnabled());
        QVERIFY(timer()->isActive());
        fake->device->written.clear();
        onePush()->click();
        QCOMPARE(fake->device->written, QStringList(QStringLiteral("balance 2")));
        QVERIFY(!automatic()->isChecked());
        QVERIFY(!timer()->isActive());
        QVERIFY(frame("frameTemperature")->isEnabled());
        QVERIFY(frame("frameGain")->isEnabled());
        fake->device->properties[CMProperty_ColorTemperature].value = 4200.0;
        QTRY_COMPARE_WITH_TIMEOUT(slider("sliderTemperature")->value(), 4200, 2 * pollInterval);
    }

    void closingBeforeTheResultIsHarmless()
    {
        fake->device->balanceModes = allModes;
        open();
        onePush()->click();
        panel->setCamera(nullptr);
        const int reads = fake->device->reads;
        poll();
        QCOMPARE(fake->device->reads, reads);
    }

    void slidersAndSpinBoxesWriteAtOnce()
    {
        supportGains();
        supportTemperature();
        open();
        fake->device->properties.erase(CMProperty_ColorTemperature);
        panel->updateControls();
        fake->device->written.clear();
        slider("sliderRGain")->setValue(60);
        QCOMPARE(spinBox("spinBoxRGain")->value(), 60);
        spinBox("spinBoxGGain")->setValue(70);
        QCOMPARE(slider("sliderGGain")->value(), 70);
        slider("sliderBGain")->setValue(80);
        slider("sliderTemperature")->setValue(3000);
        QCOMPARE(fake->device->written,
                 QStringList({QStringLiteral("13 = 60"), QStringLiteral("14 = 70"),
                              QStringLiteral("15 = 80"), QStringLiteral("16 = 3000")}));
    }

    void defaultResetsInOrderAndTurnsAVisibleAutomaticOn()
    {
        supportTemperature();
        supportGains();
        open();
        fake->device->written.clear();
        standard()->click();
        QStringList resets = fake->device->written.filter(QStringLiteral("reset"));
        QCOMPARE(resets, QStringList({QStringLiteral("reset 16"), QStringLiteral("reset 13"),
                                      QStringLiteral("reset 14"), QStringLiteral("reset 15")}));
        QCOMPARE(slider("sliderTemperature")->value(), 5500);
        QCOMPARE(slider("sliderRGain")->value(), 100);
        QVERIFY(automatic()->isChecked());
        QCOMPARE(fake->device->balanceMode, int(CWWhiteBalance_Auto));
    }

    void defaultKeepsAnAutomaticDeviceAutomatic()
    {
        supportTemperature();
        fake->device->temperatureEndsAutomatic = true;
        fake->device->balanceMode = CWWhiteBalance_Auto;
        open();
        standard()->click();
        QVERIFY(automatic()->isChecked());
        QVERIFY(timer()->isActive());
        QCOMPARE(fake->device->balanceMode, int(CWWhiteBalance_Auto));
    }

    void defaultLeavesWhatADeviceHasNoLongerAlone()
    {
        supportTemperature();
        supportGains();
        open();
        slider("sliderRGain")->setValue(210);
        fake->device->properties.clear();
        standard()->click();
        QCOMPARE(slider("sliderTemperature")->value(), 5000);
        QCOMPARE(slider("sliderRGain")->value(), 210);
    }

    void defaultLeavesAHiddenAutomaticOff()
    {
        fake->device->balanceModes = allModes;
        open();
        standard()->click();
        QVERIFY(!automatic()->isChecked());
        QCOMPARE(fake->device->balanceMode, int(CWWhiteBalance_Manual));
    }

private:
    void open()
    {
        panel->setCamera(&fake->camera);
        panel->updateControls();
    }
    void supportTemperature()
    {
        fake->device->properties[CMProperty_ColorTemperature] = {2000.0, 10000.0, 5000.0, 5500.0};
    }
    void supportGains()
    {
        fake->device->properties[CMProperty_RedGain] = {50.0, 400.0, 110.0, 100.0};
        fake->device->properties[CMProperty_GreenGain] = {50.0, 400.0, 120.0, 100.0};
        fake->device->properties[CMProperty_BlueGain] = {50.0, 400.0, 130.0, 100.0};
    }
    void poll() { QVERIFY(QMetaObject::invokeMethod(panel.get(), "autoUpdate")); }
    QCheckBox* automatic() const { return panel->findChild<QCheckBox*>(); }
    QTimer* timer() const { return panel->findChild<QTimer*>(); }
    QPushButton* onePush() const { return button("pushButtonOnePush"); }
    QPushButton* standard() const { return button("pushButtonDefault"); }
    QPushButton* button(const char* name) const
    {
        return panel->findChild<QPushButton*>(QString::fromLatin1(name));
    }
    QSlider* slider(const char* name) const
    {
        return panel->findChild<QSlider*>(QString::fromLatin1(name));
    }
    QSpinBox* spinBox(const char* name) const
    {
        return panel->findChild<QSpinBox*>(QString::fromLatin1(name));
    }
    QFrame* frame(const char* name) const
    {
        return panel->findChild<QFrame*>(QString::fromLatin1(name));
    }
    QLabel* label() const { return panel->findChild<QLabel*>(QStringLiteral("labelTemperature")); }

    std::unique_ptr<OpenFake> fake;
    std::unique_ptr<PanelCamWhiteBalance> panel;
};

QTEST_MAIN(tst_PanelCamWhiteBalance)
#include "tst_PanelCamWhiteBalance.moc"
