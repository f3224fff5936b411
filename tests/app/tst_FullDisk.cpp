#include "app/MainWindow.h"

#include "app/Application.h"

#include <zolens/MyCamera.h>

#include <QAction>
#include <QProcess>
#include <QSettings>
#include <QStatusBar>
#include <QtTest>

#include <unistd.h>

namespace {

constexpr int noDisk = 77;
constexpr qint64 somePictures = 50000; ///< In bytes.
constexpr int longEnough = 60000;

/// Where the small disk is; empty before there is one.
QString smallDisk()
{
    return qEnvironmentVariable("ORVO_SMALL_DISK");
}

/// Fills the disk to the last byte.
void fillDisk()
{
    QFile ballast(smallDisk() + QStringLiteral("/ballast"));
    QVERIFY(ballast.open(QIODevice::WriteOnly | QIODevice::Unbuffered));
    const QByteArray block(1 << 16, 'x');
    while (ballast.write(block) == block.size()) {
    }
}

} // namespace

/// The window while the disk of its recording fills. The test runs a second time in a process of
/// its own, for which alone the disk is mounted.
class tst_FullDisk final : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase() { setApplicationNames(); }

    void theEndOfTheRecordingIsToldInTheStatusBar()
    {
        if (!smallDisk().isEmpty())
            return record();
        const int code = runOnSmallDisk();
        if (code == noDisk)
            QSKIP("no private mounts here");
        QCOMPARE(code, 0);
    }

private:
    static void record()
    {
        QSettings().setValue(QStringLiteral("preferences/capture/filepath"),
                             QString(smallDisk() + QLatin1Char('/')));
        MainWindow window;
        window.show();
        QVERIFY(QTest::qWaitForWindowActive(&window));
        QMetaObject::invokeMethod(&window, "openUsbDevice", Q_ARG(int, CWDevice_Simulated),
                                  Q_ARG(int, 0));
        actionRecord(window)->trigger();
        QTRY_VERIFY_WITH_TIMEOUT(videoSize() > somePictures, longEnough);
        fillDisk();
        const auto* bar = window.findChild<QStatusBar*>();
        QTRY_COMPARE_WITH_TIMEOUT(bar->currentMessage(),
                                  QStringLiteral("Recording ended: The disk is full."), longEnough);
        QVERIFY(actionRecord(window)->isChecked());
        actionRecord(window)->trigger();
        QVERIFY(!actionRecord(window)->isChecked());
        QCOMPARE(bar->currentMessage(), QString());
        QVERIFY(videoSize() > somePictures);
    }

    static qint64 videoSize()
    {
        const QFileInfoList videos = QDir(smallDisk()).entryInfoList({QStringLiteral("*.mp4")});
        return videos.isEmpty() ? 0 : videos.first().size();
    }

    /// Gives what the process gives.
    static int runOnSmallDisk()
    {
        const QTemporaryDir folder;
        const QString script =
            QStringLiteral("mount -t tmpfs -o size=24m none '%1' || exit %2\n"
                           "export ORVO_SMALL_DISK='%1'\n"
                           "exec '%3' theEndOfTheRecordingIsToldInTheStatusBar\n")
                .arg(folder.path())
                .arg(noDisk)
                .arg(QCoreApplication::applicationFilePath());
        QProcess shell;
        shell.setProcessChannelMode(QProcess::ForwardedChannels);
        shell.start(QStringLiteral("unshare"),
                    {geteuid() == 0 ? QStringLiteral("-m") : QStringLiteral("-rm"),
                     QStringLiteral("sh"), QStringLiteral("-c"), script});
        return shell.waitForFinished(3 * longEnough) ? shell.exitCode() : -1;
    }

    static QAction* actionRecord(const MainWindow& window)
    {
        const auto actions = window.findChildren<QAction*>();
        const auto found = std::find_if(actions.begin(), actions.end(), [](const QAction* action) {
            return action->text() == QStringLiteral("Record");
        });
        return found == actions.end() ? nullptr : *found;
    }
};

QTEST_MAIN(tst_FullDisk)
#include "tst_FullDisk.moc"
