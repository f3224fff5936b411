#include "camera/panels/PanelCamCapture.h"

#include "CustomCamera.h"
#include "app/Application.h"

#include <QGroupBox>
#include <QToolButton>
#include <QtTest>

class tst_PanelCamCapture : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase()
    {
        setApplicationNames();
        installIconTheme();
    }

    void init() { panel = std::make_unique<PanelCamCapture>(nullptr); }

    void cleanup() { panel.reset(); }

    void picturesAndVideosHaveAGroupEach()
    {
        QCOMPARE(group("groupPicture")->title(), QStringLiteral("Picture"));
        QCOMPARE(group("groupVideo")->title(), QStringLiteral("Video"));
        QVERIFY(group("groupPicture")->isAncestorOf(button("toolButtonSnap")));
        for (const char* name :
             {"toolButtonStartRecord", "toolButtonPauseRecord", "toolButtonStopRecord"})
            QVERIFY2(group("groupVideo")->isAncestorOf(button(name)), name);
        QCOMPARE(panel->findChildren<QToolButton*>().size(), 4);
    }

    void eachButtonHasItsIconAndSaysWhatItDoes_data()
    {
        QTest::addColumn<QString>("name");
        QTest::addColumn<QString>("icon");
        QTest::newRow("snap") << QStringLiteral("toolButtonSnap") << QStringLiteral("actions/snap");
        QTest::newRow("start") << QStringLiteral("toolButtonStartRecord")
                               << QStringLiteral("actions/media-record");
        QTest::newRow("pause") << QStringLiteral("toolButtonPauseRecord")
                               << QStringLiteral("actions/media-playback-pause");
        QTest::newRow("stop") << QStringLiteral("toolButtonStopRecord")
                              << QStringLiteral("actions/media-playback-stop");
    }

    void eachButtonHasItsIconAndSaysWhatItDoes()
    {
        QFETCH(QString, name);
        QFETCH(QString, icon);
        const auto* each = panel->findChild<QToolButton*>(name);
        QCOMPARE(each->icon().name(), icon);
        QVERIFY(!each->icon().pixmap(each->iconSize()).isNull());
        QVERIFY(!each->toolTip().isEmpty());
        QVERIFY(!each->accessibleName().isEmpty());
    }

    void aDisabledPanelIsEnabledByTheNextCamera()
    {
        OpenFake fake;
        panel->setDisabled(true);
        QVERIFY(!button("toolButtonSnap")->isEnabled());
        panel->setCamera(&fake.camera);
        panel->updateControls();
        QVERIFY(panel->isEnabled());
        QVERIFY(button("toolButtonSnap")->isEnabled());
        QVERIFY(fake.device->written.isEmpty());
        QCOMPARE(fake.device->reads, 0);
    }

private:
    QGroupBox* group(const char* name) const
    {
        return panel->findChild<QGroupBox*>(QString::fromLatin1(name));
    }
    QToolButton* button(const char* name) const
    {
        return panel->findChild<QToolButton*>(QString::fromLatin1(name));
    }

    std::unique_ptr<PanelCamCapture> panel;
};

QTEST_MAIN(tst_PanelCamCapture)
#include "tst_PanelCamCapture.moc"
