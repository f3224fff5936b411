#include "camera/FormCameraControl.h"

#include <zolens/MyCamera.h>
#include <zowidgets/ZoLinkLabel.h>

#include <QSignalSpy>
#include <QToolButton>
#include <QtTest>

namespace {

constexpr int simulated = 3;

} // namespace

class tst_FormCameraControl : public QObject
{
    Q_OBJECT

private slots:
    void init()
    {
        page = std::make_unique<FormCameraControl>(true, nullptr);
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
        QVERIFY(camera.open(simulated, 0, true));
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
        QVERIFY(camera.open(simulated, 0, true));
        page->onCameraOpened(&camera);
        QTest::mouseClick(pause(), Qt::LeftButton);
        QVERIFY(pause()->isChecked());
        page->onCameraOpened(&camera);
        QVERIFY(!pause()->isChecked());
    }

    void noCameraOpensNothing()
    {
        page->onCameraOpened(nullptr);
        QVERIFY(!pause()->isVisible());
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
        QVERIFY(camera.open(simulated, 0, true));
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
        QVERIFY(camera.open(simulated, 0, true));
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
        const FormCameraControl bare(false, nullptr);
        QVERIFY(!bare.findChild<ZoLinkLabel*>());
    }

private:
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
