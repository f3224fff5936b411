#include "CameraWindow.h"

#include "app/Application.h"
#include "app/ModalDialog.h"
#include "camera/panels/PanelCamDevices.h"

#include <QSettings>
#include <QStatusBar>
#include <QtTest>

/// The recordings of the window, with the simulated microscope.
class tst_MainWindowRecording final : public QObject, protected CameraWindow
{
    Q_OBJECT

private slots:
    void initTestCase() { setApplicationNames(); }
    void init() { makeWindow(); }
    void cleanup() { window.reset(); }

    void recordWritesAVideoUntilItIsPressedAgain()
    {
        open();
        action("Record")->trigger();
        QVERIFY(action("Record")->isChecked());
        QVERIFY(!action("Snap")->isEnabled());
        QVERIFY(recordIndicator());
        waitForFrames();
        action("Record")->trigger();
        QVERIFY(!action("Record")->isChecked());
        QVERIFY(action("Snap")->isEnabled());
        QVERIFY(!recordIndicator());
        QCOMPARE(saved().size(), 1);
        QVERIFY(isVideo(saved().constFirst()));
    }

    void whileRecordingTheDeviceCannotBeChanged()
    {
        open();
        const auto* devices = window->findChild<PanelCamDevices*>();
        QVERIFY(devices->isEnabled());
        DialogAnswer<QMessageBox> answer(
            [](QMessageBox* box) { clickButton(box, QMessageBox::Ok); });
        action("Record")->setChecked(true);
        QVERIFY(!devices->isEnabled());
        action("Record")->setChecked(false);
        QVERIFY(devices->isEnabled());
    }

    void aRefusedRecordingStaysCheckedUntilRecordIsPressedAgain()
    {
        refuseFiles();
        open();
        QVERIFY(recordIsRefused());
        QVERIFY(action("Record")->isChecked());
        QVERIFY(action("Record")->isEnabled());
        QVERIFY(!action("Snap")->isEnabled());
        QVERIFY(recordIndicator());
        QVERIFY(button("toolButtonClose")->isEnabled());
        action("Record")->trigger();
        QVERIFY(!action("Record")->isChecked());
        QVERIFY(action("Snap")->isEnabled());
        QVERIFY(!recordIndicator());
    }

    void cancellingTheFileDialogOfARecordingIsReportedToo()
    {
        QSettings().setValue(popup, true);
        open();
        DialogAnswer<QFileDialog> cancel([](QFileDialog* dialog) { dialog->reject(); });
        QVERIFY(recordIsRefused());
        QVERIFY(cancel.wasAsked());
        QVERIFY(action("Record")->isChecked());
        QVERIFY(saved().isEmpty());
    }

    void aRecordingThatEndsByItselfIsToldInTheStatusBar()
    {
        open();
        action("Record")->trigger();
        emit camera()->recordingEnded(QStringLiteral("The disk is full."));
        QCOMPARE(window->QMainWindow::statusBar()->currentMessage(),
                 QStringLiteral("Recording ended: The disk is full."));
        QVERIFY(action("Record")->isChecked());
        action("Record")->trigger();
        QVERIFY(!action("Record")->isChecked());
        QVERIFY(action("Snap")->isEnabled());
        QCOMPARE(window->QMainWindow::statusBar()->currentMessage(), QString());
    }

    void closingWhileRecordingLeavesAVideoAndRecordCheckedAndDisabled()
    {
        open();
        action("Record")->trigger();
        waitForFrames();
        call("closeCamera");
        QVERIFY(action("Record")->isChecked());
        QVERIFY(!action("Record")->isEnabled());
        QVERIFY(!action("Snap")->isEnabled());
        QVERIFY(recordIndicator());
        QVERIFY(isVideo(saved().constFirst()));
    }

    // Record is the user's to press, although nothing is recorded any more.
    void afterAClosedRecordingTheNextCameraIsReadyForCapture()
    {
        open();
        action("Record")->trigger();
        waitForFrames();
        call("closeCamera");
        open();
        QVERIFY(action("Snap")->isEnabled());
        QVERIFY(action("Record")->isEnabled());
        QVERIFY(action("Record")->isChecked());
        action("Record")->trigger();
        QVERIFY(!action("Record")->isChecked());
        QVERIFY(action("Snap")->isEnabled());
        QVERIFY(!recordIndicator());
        QCOMPARE(saved().size(), 1);
        action("Record")->trigger();
        waitForFrames();
        action("Record")->trigger();
        const QStringList videos = saved();
        QCOMPARE(videos.size(), 2);
        QVERIFY(isVideo(videos.constFirst()));
        QVERIFY(isVideo(videos.constLast()));
    }

private:
    void waitForFrames()
    {
        const FrameCounter frames(camera());
        QTRY_VERIFY_WITH_TIMEOUT(frames.count > 3, frameTime);
    }
    bool isVideo(const QString& name) const
    {
        QFile file(pictures->filePath(name));
        return name.endsWith(QStringLiteral(".mp4")) && file.open(QIODevice::ReadOnly) &&
               file.read(8).endsWith("ftyp") && file.readAll().contains("avc1");
    }
    /// Presses Record and confirms the message that nothing is recorded.
    bool recordIsRefused()
    {
        bool asExpected = false;
        DialogAnswer<QMessageBox> answer([&asExpected](QMessageBox* box) {
            asExpected = box->windowTitle() == QStringLiteral("Error") &&
                         box->text() == QStringLiteral("Failed to start recording.") &&
                         box->icon() == QMessageBox::Information &&
                         box->standardButtons() == QMessageBox::Ok;
            clickButton(box, QMessageBox::Ok);
        });
        action("Record")->trigger();
        return answer.wasAsked() && asExpected;
    }
    QLabel* recordIndicator() const { return label(QStringLiteral("record_indicator")); }
};

QTEST_MAIN(tst_MainWindowRecording)
#include "tst_MainWindowRecording.moc"
