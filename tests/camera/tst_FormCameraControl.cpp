#include "camera/FormCameraControl.h"

#include "CustomCamera.h"
#include "app/Application.h"
#include "camera/panels/PanelCamCapture.h"
#include "camera/panels/PanelCamColorAdjustment.h"
#include "camera/panels/PanelCamExposure.h"
#include "camera/panels/PanelCamWhiteBalance.h"

#include <zolens/MyCamera.h>
#include <zowidgets/ZoCategoryToolBox.h>
#include <zowidgets/ZoLinkLabel.h>

#include <QAccessible>
#include <QAction>
#include <QComboBox>
#include <QGroupBox>
#include <QPushButton>
#include <QSignalSpy>
#include <QSlider>
#include <QSpinBox>
#include <QTimer>
#include <QToolButton>
#include <QtTest>

class tst_FormCameraControl : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase()
    {
        setApplicationNames();
        installStyle(QStringLiteral("darkblue"));
        installIconTheme();
        installFont();
    }

    void init()
    {
        page = std::make_unique<FormCameraControl>(true, false, nullptr);
        page->resize(250, 400);
        page->show();
        QVERIFY(QTest::qWaitForWindowExposed(page.get()));
    }

    void cleanup() { page.reset(); }

    void withoutCameraTheNameInvitesToOpenOne()
    {
        QCOMPARE(name()->text(), QStringLiteral("Open Video Source..."));
        QVERIFY(name()->toolTip().isEmpty());
        QVERIFY(!pause()->isVisible());
        QVERIFY(!close()->isVisible());
        QCOMPARE(page->sizeHint(), QSize(220, 0));
    }

    void anOpenCameraIsNamedWithItsButtons()
    {
        MyCamera camera;
        QVERIFY(camera.open(CWDevice_Simulated, 0, true));
        page->onCameraOpened(&camera);
        const QString device = QString::fromStdString(camera.deviceInfo().name);
        QVERIFY(!device.isEmpty());
        QCOMPARE(name()->toolTip(), device);
        QVERIFY(pause()->isVisible());
        QVERIFY(!pause()->isChecked());
        QVERIFY(close()->isVisible());
        page->onCameraClosed();
        QCOMPARE(name()->text(), QStringLiteral("Open Video Source..."));
        QVERIFY(name()->toolTip().isEmpty());
        QVERIFY(!pause()->isVisible());
        QVERIFY(!close()->isVisible());
    }

    void aNewCameraIsNotPaused()
    {
        MyCamera camera;
        QVERIFY(camera.open(CWDevice_Simulated, 0, true));
        page->onCameraOpened(&camera);
        QTest::mouseClick(pause(), Qt::LeftButton);
        QVERIFY(pause()->isChecked());
        page->onCameraOpened(&camera);
        QVERIFY(!pause()->isChecked());
    }

    void followsTheSizeThatTheDeviceChose()
    {
        OpenFake fake;
        page->onCameraOpened(&fake.camera);
        auto* const video = page->findChild<QComboBox*>(QStringLiteral("comboBoxPreviewSize"));
        QCOMPARE(video->currentText(), QStringLiteral("1280 x 720"));
        fake.device->preview = QSize(640, 480);
        fake.device->written.clear();
        emit fake.camera.modesChanged();
        QCOMPARE(video->currentText(), QStringLiteral("640 x 480"));
        QCOMPARE(fake.device->written, QStringList());
        page->onCameraClosed();
        emit fake.camera.modesChanged();
        QCOMPARE(video->currentText(), QStringLiteral("640 x 480"));
    }

    void noCameraOpensNothing()
    {
        page->onCameraOpened(nullptr);
        QVERIFY(!pause()->isVisible());
        QVERIFY(!toolBox()->isEnabled());
    }

    void thePanelsFoldUnderTheirTitles()
    {
        QCOMPARE(titles(*page),
                 QStringList({QStringLiteral("Image Source"), QStringLiteral("Exposure && Gain"),
                              QStringLiteral("White Balance"), QStringLiteral("Color Adjustment"),
                              QStringLiteral("Flip"), QStringLiteral("Miscellaneous")}));
        QVERIFY(toolBox()->topLevelItem(0)->isExpanded());
        for (int index = 1; index < toolBox()->topLevelItemCount(); ++index)
            QVERIFY(!toolBox()->topLevelItem(index)->isExpanded());
        QVERIFY(!page->findChild<PanelCamCapture*>());
    }

    void aCapturePanelComesFirstWhereItIsWished()
    {
        const FormCameraControl whole(true, true, nullptr);
        QCOMPARE(titles(whole).first(), QStringLiteral("Capture"));
        QCOMPARE(titles(whole).size(), 7);
        QVERIFY(whole.findChild<ZoCategoryToolBox*>()->topLevelItem(0)->isExpanded());
        QVERIFY(whole.findChild<PanelCamCapture*>());
    }

    void theToolBoxIsEnabledWhileACameraIsOpen()
    {
        QVERIFY(!toolBox()->isEnabled());
        MyCamera camera;
        QVERIFY(camera.open(CWDevice_Simulated, 0, true));
        page->onCameraOpened(&camera);
        QVERIFY(toolBox()->isEnabled());
        page->onCameraClosed();
        QVERIFY(!toolBox()->isEnabled());
    }

    // The timers run on, without effect.
    void aClosedCameraLeavesItsValuesAndIsNotPolled()
    {
        OpenFake fake;
        fake.device->properties[CMProperty_Gain] = {0.0, 100.0, 40.0, 0.0};
        fake.device->balanceModes = {CWWhiteBalance_Auto};
        fake.device->balanceMode = CWWhiteBalance_Auto;
        page->onCameraOpened(&fake.camera);
        page->onCameraClosed();
        const int reads = fake.device->reads;
        const auto* gain = page->findChild<QSlider*>(QStringLiteral("sliderGain"));
        fake.device->properties[CMProperty_Gain].value = 60.0;
        QSignalSpy exposurePolls(timerOf<PanelCamExposure>(), &QTimer::timeout);
        QSignalSpy balancePolls(timerOf<PanelCamWhiteBalance>(), &QTimer::timeout);
        QTRY_VERIFY_WITH_TIMEOUT(!exposurePolls.isEmpty() && !balancePolls.isEmpty(), 2500);
        QCOMPARE(gain->value(), 40);
        QCOMPARE(fake.device->reads, reads);
    }

    void thePanelsAreFilledFromTheTopDown()
    {
        OpenFake fake;
        for (const auto id : {CMProperty_Gain, CMProperty_ColorTemperature, CMProperty_Brightness})
            fake.device->properties[id] = {10.0, 100.0, 40.0, 0.0};
        fake.device->frequencies = {0, 1};
        fake.device->frequency = 1;
        page->onCameraOpened(&fake.camera);
        const QStringList order{QStringLiteral("format"),   QStringLiteral("size"),
                                QStringLiteral("6"),        QStringLiteral("auto"),
                                QStringLiteral("16"),       QStringLiteral("0"),
                                QStringLiteral("frequency")};
        QCOMPARE(fake.device->writtenOnceEach(), order);
    }

    void returnInASpinBoxOnlyCommitsItsNumber_data()
    {
        QTest::addColumn<Qt::Key>("key");
        QTest::newRow("Return") << Qt::Key_Return;
        QTest::newRow("Enter") << Qt::Key_Enter;
    }

    void returnInASpinBoxOnlyCommitsItsNumber()
    {
        QFETCH(Qt::Key, key);
        QAction picture;
        picture.setShortcut(key);
        page->addAction(&picture);
        QSignalSpy taken(&picture, &QAction::triggered);
        OpenFake fake;
        fake.device->properties[CMProperty_Brightness] = {-100.0, 100.0, 40.0, 0.0};
        toolBox()->expandAll();
        page->onCameraOpened(&fake.camera);
        QVERIFY(QTest::qWaitForWindowActive(page.get()));
        auto* number = page->findChild<QSpinBox*>(QStringLiteral("spinBoxBrightness"));
        number->setFocus();
        number->selectAll();
        QTest::keyClicks(number, QStringLiteral("7"));
        QTest::keyClick(number, key);
        QCOMPARE(number->value(), 7);
        QCOMPARE(taken.count(), 0);
        QTest::keyClick(page->findChild<QSlider*>(QStringLiteral("sliderBrightness")), key);
        QCOMPARE(taken.count(), 1);
    }

    void aDeviceWithoutAnyPropertyHidesEveryPropertyGroup()
    {
        OpenFake fake;
        page->onCameraOpened(&fake.camera);
        toolBox()->expandAll();
        QCoreApplication::processEvents();
        for (const QGroupBox* group : page->findChildren<QGroupBox*>())
            QVERIFY2(!group->isVisible(), qPrintable(group->objectName()));
        QVERIFY(page->findChild<QComboBox*>(QStringLiteral("comboBoxPreviewSize"))->isVisible());
    }

    void rowsShrinkWithTheGroupsThatADeviceLacks()
    {
        MyCamera microscope;
        QVERIFY(microscope.open(CWDevice_Simulated, 0, true));
        toolBox()->expandAll();
        page->onCameraOpened(&microscope);
        const auto* panel = page->findChild<PanelCamColorAdjustment*>();
        QTRY_COMPARE(panel->height(), panel->sizeHint().height());
        const int whole = panel->height();
        OpenFake fake;
        page->onCameraOpened(&fake.camera);
        QTRY_VERIFY(panel->height() < whole / 2);
        QCOMPARE(panel->height(), panel->sizeHint().height());
    }

    void everyControlFitsIntoANarrowPage()
    {
        MyCamera camera;
        QVERIFY(camera.open(CWDevice_Simulated, 0, true));
        page->resize(205, 400);
        toolBox()->expandAll();
        page->onCameraOpened(&camera);
        QCoreApplication::processEvents();
        for (const QWidget* control : toolBox()->findChildren<QWidget*>()) {
            if (!control->isVisible() || !control->parentWidget()->layout())
                continue;
            QVERIFY2(control->geometry().right() < control->parentWidget()->width(),
                     qPrintable(control->objectName()));
            QVERIFY2(control->width() >= control->minimumSizeHint().width(),
                     qPrintable(control->objectName()));
        }
    }

    void everyButtonWithoutTextHasAToolTip()
    {
        for (const QToolButton* button : page->findChildren<QToolButton*>())
            QVERIFY2(!button->toolTip().isEmpty(), qPrintable(button->objectName()));
    }

    void everyControlHasAnAccessibleName()
    {
        for (QWidget* control : toolBox()->viewport()->findChildren<QWidget*>()) {
            const QString name = control->objectName();
            if (control->focusPolicy() == Qt::NoFocus || name.isEmpty() ||
                name.startsWith(QStringLiteral("qt_")))
                continue;
            QAccessibleInterface* read = QAccessible::queryAccessibleInterface(control);
            QVERIFY2(!read->text(QAccessible::Name).isEmpty(), qPrintable(control->objectName()));
        }
    }

    void theNameAsksForTheChoiceOfADevice()
    {
        QSignalSpy wished(page.get(), &FormCameraControl::openSelectDeviceDialog);
        QTest::mouseClick(name(), Qt::LeftButton);
        QCOMPARE(wished.count(), 1);
    }

    void theButtonsAskToPauseAndToClose()
    {
        MyCamera camera;
        QVERIFY(camera.open(CWDevice_Simulated, 0, true));
        page->onCameraOpened(&camera);
        QSignalSpy paused(page.get(), &FormCameraControl::pauseCamera);
        QSignalSpy closed(page.get(), &FormCameraControl::closeCamera);
        QTest::mouseClick(pause(), Qt::LeftButton);
        QTest::mouseClick(pause(), Qt::LeftButton);
        QCOMPARE(paused.count(), 2);
        QCOMPARE(paused[0][0].toBool(), true);
        QCOMPARE(paused[1][0].toBool(), false);
        QTest::mouseClick(close(), Qt::LeftButton);
        QCOMPARE(closed.count(), 1);
    }

    void aNarrowPageElidesTheNameAndAWideOneShowsItWhole()
    {
        MyCamera camera;
        QVERIFY(camera.open(CWDevice_Simulated, 0, true));
        page->onCameraOpened(&camera);
        const QString device = QString::fromStdString(camera.deviceInfo().name);
        page->resize(900, 400);
        QTRY_COMPARE(name()->text(), device);
        page->setMinimumWidth(0);
        page->resize(130, 400);
        QTRY_VERIFY(name()->text().contains(QChar(0x2026)));
        QVERIFY(name()->fontMetrics().horizontalAdvance(name()->text()) <= name()->width());
        QCOMPARE(name()->toolTip(), device);
    }

    void theIconButtonsHaveAccessibleNames()
    {
        QVERIFY(!pause()->accessibleName().isEmpty());
        QVERIFY(!close()->accessibleName().isEmpty());
        QCOMPARE(name()->accessibleName(), QStringLiteral("Open Video Source..."));
    }

    void withoutVideoSourceThereIsNoName()
    {
        const FormCameraControl bare(false, false, nullptr);
        QVERIFY(!bare.findChild<ZoLinkLabel*>());
    }

private:
    static QStringList titles(const FormCameraControl& form)
    {
        QStringList texts;
        for (const QPushButton* title :
             form.findChildren<QPushButton*>(QStringLiteral("categoryTitle")))
            texts << title->text();
        return texts;
    }
    /// The one that polls.
    template <class Panel>
    QTimer* timerOf() const
    {
        return page->findChild<Panel*>()->template findChild<QTimer*>(QString(),
                                                                      Qt::FindDirectChildrenOnly);
    }
    ZoCategoryToolBox* toolBox() const { return page->findChild<ZoCategoryToolBox*>(); }
    ZoLinkLabel* name() const { return page->findChild<ZoLinkLabel*>(); }
    QToolButton* pause() const
    {
        return page->findChild<QToolButton*>(QStringLiteral("toolButtonPause"));
    }
    QToolButton* close() const
    {
        return page->findChild<QToolButton*>(QStringLiteral("toolButtonClose"));
    }

    std::unique_ptr<FormCameraControl> page;
};

QTEST_MAIN(tst_FormCameraControl)
#include "tst_FormCameraControl.moc"
