#include "camera/panels/PanelCamDevices.h"

#include "CustomCamera.h"
#include "app/Application.h"
#include "support/CameraValues.h"

#include <QComboBox>
#include <QSettings>
#include <QToolButton>
#include <QtTest>

namespace {

const QString disableStill = QStringLiteral("cwwidgets/disablestill");

QStringList textsOf(const QComboBox* combo)
{
    QStringList texts;
    for (int index = 0; index < combo->count(); ++index)
        texts << combo->itemText(index);
    return texts;
}

} // namespace

class tst_PanelCamDevices : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase()
    {
        setApplicationNames();
        installIconTheme();
    }

    void init()
    {
        QSettings().clear();
        fake = std::make_unique<OpenFake>();
        panel = std::make_unique<PanelCamDevices>(nullptr);
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
        panel->showModes();
        QCOMPARE(video()->count(), 0);
        disable()->toggle();
        QCOMPARE(picture()->count(), 0);
    }

    void openingListsFormatsAndSizesAndWritesTheCurrentOnes()
    {
        open();
        QCOMPARE(textsOf(format()), QStringList({QStringLiteral("RGB"), QStringLiteral("MJPEG")}));
        QCOMPARE(textsOf(video()),
                 QStringList({QStringLiteral("640 x 480"), QStringLiteral("1280 x 720")}));
        QCOMPARE(format()->currentText(), QStringLiteral("RGB"));
        QCOMPARE(video()->currentText(), QStringLiteral("1280 x 720"));
        QCOMPARE(fake->device->written,
                 QStringList({QStringLiteral("format 0"), QStringLiteral("size 1")}));
    }

    void aNewFormatSetsTheSameSizeAgain()
    {
        open();
        fake->device->written.clear();
        format()->setCurrentIndex(1);
        QCOMPARE(fake->device->written,
                 QStringList({QStringLiteral("format 1"), QStringLiteral("size 1")}));
        QCOMPARE(video()->currentText(), QStringLiteral("1280 x 720"));
    }

    void aNewFormatListsTheSizesThatItHas()
    {
        open();
        fake->device->previews = {{320, 240}, {1280, 720}, {1920, 1080}};
        format()->setCurrentIndex(1);
        QCOMPARE(video()->count(), 3);
        QCOMPARE(video()->currentIndex(), 1);
    }

    void withoutStillCaptureThePictureSizeFollowsTheVideo()
    {
        open();
        QVERIFY(!disable()->isVisible());
        QVERIFY(!picture()->isEnabled());
        QCOMPARE(textsOf(picture()), QStringList(QStringLiteral("1280 x 720")));
        video()->setCurrentIndex(0);
        QCOMPARE(textsOf(picture()), QStringList(QStringLiteral("640 x 480")));
        QVERIFY(!fake->device->written.contains(QStringLiteral("still 0")));
        QVERIFY(!QSettings().contains(disableStill));
    }

    void withNothingStoredStillCaptureStartsDisabledAndThatIsStored()
    {
        fake->device->still = true;
        open();
        QVERIFY(disable()->isVisible());
        QVERIFY(disable()->isChecked());
        QVERIFY(!picture()->isEnabled());
        QCOMPARE(textsOf(picture()), QStringList(QStringLiteral("1280 x 720")));
        QCOMPARE(QSettings().value(disableStill), QVariant(true));
        QCOMPARE(fake->device->written,
                 QStringList({QStringLiteral("format 0"), QStringLiteral("size 1"),
                              QStringLiteral("still 1")}));
    }

    void storedStillCaptureListsItsSizes()
    {
        openWithStill();
        QVERIFY(!disable()->isChecked());
        QVERIFY(picture()->isEnabled());
        QCOMPARE(textsOf(picture()),
                 QStringList({QStringLiteral("800 x 600"), QStringLiteral("1600 x 1200")}));
        QCOMPARE(picture()->currentText(), QStringLiteral("1600 x 1200"));
        picture()->setCurrentIndex(0);
        QCOMPARE(fake->device->stillNow, QSize(800, 600));
    }

    void disablingLeavesOneItemAndEnablingRestoresTheList()
    {
        openWithStill();
        disable()->click();
        QCOMPARE(QSettings().value(disableStill), QVariant(true));
        QCOMPARE(textsOf(picture()), QStringList(QStringLiteral("1280 x 720")));
        QVERIFY(!picture()->isEnabled());
        QCOMPARE(fake->device->stillNow, QSize(1600, 1200));
        disable()->click();
        QCOMPARE(QSettings().value(disableStill), QVariant(false));
        QCOMPARE(picture()->count(), 2);
        QCOMPARE(picture()->currentText(), QStringLiteral("1600 x 1200"));
        QVERIFY(picture()->isEnabled());
    }

    void withStillCaptureTheVideoSizeLeavesThePictureSizeAlone()
    {
        openWithStill();
        video()->setCurrentIndex(0);
        QCOMPARE(picture()->currentText(), QStringLiteral("1600 x 1200"));
    }

    void aCurrentSizeThatIsNotListedSelectsNothingAndWritesNothing()
    {
        fake->device->preview = QSize(1, 1);
        open();
        QCOMPARE(video()->currentIndex(), -1);
        QCOMPARE(fake->device->written, QStringList(QStringLiteral("format 0")));
    }

    void showsWhatTheDeviceChoseItselfAndWritesNothing()
    {
        openWithStill();
        fake->device->written.clear();
        fake->device->formats = {19, 1};
        fake->device->previews = {{320, 240}, {640, 480}};
        fake->device->preview = QSize(320, 240);
        fake->device->stillNow = QSize(800, 600);
        panel->showModes();
        QCOMPARE(textsOf(format()), QStringList({QStringLiteral("MJPEG"), QStringLiteral("RGB")}));
        QCOMPARE(format()->currentText(), QStringLiteral("RGB"));
        QCOMPARE(textsOf(video()),
                 QStringList({QStringLiteral("320 x 240"), QStringLiteral("640 x 480")}));
        QCOMPARE(video()->currentText(), QStringLiteral("320 x 240"));
        QCOMPARE(picture()->currentText(), QStringLiteral("800 x 600"));
        fake->device->still = false;
        panel->showModes();
        QVERIFY(!disable()->isVisible());
        QCOMPARE(textsOf(picture()), QStringList(QStringLiteral("320 x 240")));
        QCOMPARE(fake->device->written, QStringList());
        video()->setCurrentIndex(1);
        QCOMPARE(fake->device->written, QStringList(QStringLiteral("size 1")));
    }

    void aDisabledPanelIsEnabledByTheNextCamera()
    {
        panel->setDisabled(true);
        open();
        QVERIFY(panel->isEnabled());
    }

    void theSimulatedMicroscopeChangesItsSize()
    {
        MyCamera microscope;
        QVERIFY(microscope.open(CWDevice_Simulated, 0, true));
        panel->setCamera(&microscope);
        panel->updateControls();
        QVERIFY(video()->findText(QStringLiteral("640 x 480")) >= 0);
        video()->setCurrentText(QStringLiteral("640 x 480"));
        QCOMPARE(cameravalues::previewSizeOf(*microscope.camera), QSize(640, 480));
    }

    void theListsEndAtOneEdge()
    {
        panel->show();
        open();
        QVERIFY(QTest::qWaitForWindowExposed(panel.get()));
        QTRY_COMPARE(picture()->geometry().right(), video()->geometry().right());
        QCOMPARE(format()->geometry().right(), video()->geometry().right());
        openWithStill();
        QTRY_COMPARE(disable()->geometry().right(), video()->geometry().right());
        QVERIFY(picture()->geometry().right() < disable()->geometry().left());
    }

    void theLockSaysWhatItDoes()
    {
        const QString text = QStringLiteral("Disable still capture, take picture in video size.");
        QCOMPARE(disable()->statusTip(), text);
        QVERIFY(!disable()->accessibleName().isEmpty());
        QVERIFY(!disable()->icon().isNull());
    }

private:
    void open()
    {
        panel->setCamera(&fake->camera);
        panel->updateControls();
    }
    void openWithStill()
    {
        QSettings().setValue(disableStill, false);
        fake->device->still = true;
        open();
    }
    QComboBox* combo(const char* name) const
    {
        return panel->findChild<QComboBox*>(QString::fromLatin1(name));
    }
    QComboBox* video() const { return combo("comboBoxPreviewSize"); }
    QComboBox* picture() const { return combo("comboBoxPictureSize"); }
    QComboBox* format() const { return combo("comboBoxPreviewFormat"); }
    QToolButton* disable() const { return panel->findChild<QToolButton*>(); }

    std::unique_ptr<OpenFake> fake;
    std::unique_ptr<PanelCamDevices> panel;
};

QTEST_MAIN(tst_PanelCamDevices)
#include "tst_PanelCamDevices.moc"
