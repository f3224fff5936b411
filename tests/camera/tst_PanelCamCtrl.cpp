#include "camera/panels/PanelCamCtrl.h"

#include "app/Application.h"
#include "camera/FormCameraControl.h"

#include <QComboBox>
#include <QLabel>
#include <QLayout>
#include <QStyledItemDelegate>
#include <QToolButton>
#include <QtTest>

Q_DECLARE_METATYPE(QIcon::State)

namespace {

QImage themeImage(const QString& name, int size)
{
    return QIcon::fromTheme(name).pixmap(size).toImage();
}

} // namespace

/// What the panels have in common, and their icons.
class tst_PanelCamCtrl : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase()
    {
        setApplicationNames();
        installIconTheme();
        page = std::make_unique<FormCameraControl>(true, true, nullptr);
    }

    void cleanupTestCase() { page.reset(); }

    void everyPanelHasItsMargins_data()
    {
        QTest::addColumn<QByteArray>("name");
        for (const char* name :
             {"PanelCamVideoSource", "PanelCamCapture", "PanelCamDevices", "PanelCamExposure",
              "PanelCamWhiteBalance", "PanelCamColorAdjustment", "PanelCamFlip",
              "PanelCamMiscellaneous"})
            QTest::newRow(name) << QByteArray(name);
    }

    void everyPanelHasItsMargins()
    {
        QFETCH(QByteArray, name);
        const PanelCamCtrl* found = panel(name);
        QVERIFY(found);
        QCOMPARE(found->layout()->contentsMargins(), QMargins(4, 4, 4, 4));
    }

    void everyComboBoxHasAStyledDelegate_data()
    {
        QTest::addColumn<QString>("name");
        for (const char* name :
             {"comboBoxPreviewSize", "comboBoxPreviewFormat", "comboBoxPictureSize",
              "comboBoxColorMode", "comboBoxPowerFrequency"})
            QTest::newRow(name) << QString::fromLatin1(name);
    }

    void everyComboBoxHasAStyledDelegate()
    {
        QFETCH(QString, name);
        const auto* combo = page->findChild<QComboBox*>(name);
        QVERIFY(combo);
        QVERIFY(qobject_cast<QStyledItemDelegate*>(combo->itemDelegate()));
    }

    void noComboBoxIsLeftOut() { QCOMPARE(page->findChildren<QComboBox*>().size(), 5); }

    void theVideoSourceHasTheIconOfACamera()
    {
        const QImage shown = page->findChild<QLabel*>(QStringLiteral("labelIcon"))
                                 ->pixmap(Qt::ReturnByValue)
                                 .toImage();
        QCOMPARE(shown.size(), QSize(16, 16));
        QCOMPARE(shown, themeImage(QStringLiteral("cww-camera"), 16));
    }

    void thePauseIconHasTwentyFourPixels()
    {
        const auto* pause = page->findChild<QToolButton*>(QStringLiteral("toolButtonPause"));
        QCOMPARE(pause->iconSize(), QSize(24, 24));
    }

    void everyButtonHasItsIcon_data()
    {
        QTest::addColumn<QString>("name");
        QTest::addColumn<QIcon::State>("state");
        QTest::addColumn<QString>("icon");
        const auto row = [](const char* title, const char* name, QIcon::State state,
                            const char* icon) {
            QTest::newRow(title) << QString::fromLatin1(name) << state << QString::fromLatin1(icon);
        };
        row("paused", "toolButtonPause", QIcon::On, "cww-pause-on");
        row("not paused", "toolButtonPause", QIcon::Off, "cww-pause");
        row("close", "toolButtonClose", QIcon::Off, "cww-close");
        row("locked", "toolButtonDisableStill", QIcon::On, "cww-lock-on");
        row("not locked", "toolButtonDisableStill", QIcon::Off, "cww-lock");
    }

    void everyButtonHasItsIcon()
    {
        QFETCH(QString, name);
        QFETCH(QIcon::State, state);
        QFETCH(QString, icon);
        const auto* button = page->findChild<QToolButton*>(name);
        QVERIFY(button);
        const QImage shown = button->icon().pixmap(24, QIcon::Normal, state).toImage();
        QCOMPARE(shown.size(), QSize(24, 24));
        QCOMPARE(shown, themeImage(icon, 24));
    }

    void onAndOffLookDifferent_data()
    {
        QTest::addColumn<QString>("name");
        QTest::newRow("pause") << QStringLiteral("toolButtonPause");
        QTest::newRow("lock") << QStringLiteral("toolButtonDisableStill");
    }

    void onAndOffLookDifferent()
    {
        QFETCH(QString, name);
        const auto* button = page->findChild<QToolButton*>(name);
        QVERIFY(button->isCheckable());
        QVERIFY(button->icon().pixmap(24, QIcon::Normal, QIcon::On).toImage() !=
                button->icon().pixmap(24, QIcon::Normal, QIcon::Off).toImage());
    }

private:
    const PanelCamCtrl* panel(const QByteArray& name) const
    {
        for (const PanelCamCtrl* each : page->findChildren<PanelCamCtrl*>()) {
            if (name == each->metaObject()->className())
                return each;
        }
        return nullptr;
    }

    std::unique_ptr<FormCameraControl> page;
};

QTEST_MAIN(tst_PanelCamCtrl)
#include "tst_PanelCamCtrl.moc"
