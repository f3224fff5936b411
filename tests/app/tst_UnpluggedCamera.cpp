#include "app/MainWindow.h"

#include "DeviceClasses.h"
#include "app/Application.h"
#include "app/ModalDialog.h"
#include "camera/SelectDeviceDialog.h"
#include "canvas/GraphicsScene.h"
#include "canvas/GraphicsView.h"
#include "support/fakev4l2/CameraBench.h"

#include <zolens/MyCamera.h>

#include <QAction>
#include <QListWidget>
#include <QPushButton>
#include <QSettings>
#include <QtTest>

namespace {

constexpr int frameTime = 20000;
constexpr int node = 0;
const QSize firstSize(640, 480);
const QSize nextSize(320, 240);

} // namespace

/// The window while its USB camera is pulled out and plugged in again.
class tst_UnpluggedCamera final : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase()
    {
        setApplicationNames();
        zolens::setCaptureHost(bench.host());
    }

    void init()
    {
        QSettings().clear();
        QSettings().setValue(QStringLiteral("preferences/capture/filepath"),
                             QString(videos.path() + QLatin1Char('/')));
        plug(firstSize);
        window = std::make_unique<MainWindow>();
        window->show();
        QVERIFY(QTest::qWaitForWindowActive(window.get()));
        open();
        QVERIFY(camera());
        QTRY_COMPARE_WITH_TIMEOUT(shownSize(), firstSize, frameTime);
    }

    void cleanup() { window.reset(); }

    void aCameraThatIsThereIsGreyInTheDialog() { QVERIFY(!choose()); }

    void aCameraThatIsPluggedInAgainCanBeChosen()
    {
        unplug();
        plug(nextSize);
        QVERIFY(choose());
        QVERIFY(!camera()->isGone());
        QTRY_COMPARE_WITH_TIMEOUT(shownSize(), nextSize, frameTime);
    }

    void aCameraThatDidNotOpenCanBeChosen()
    {
        QMetaObject::invokeMethod(window.get(), "closeCamera");
        const auto device = plug(nextSize);
        device->setInUse(true);
        DialogAnswer<QMessageBox> answer(
            [](QMessageBox* box) { clickButton(box, QMessageBox::Ok); });
        open();
        QVERIFY(answer.wasAsked());
        QVERIFY(!camera());
        device->setInUse(false);
        QVERIFY(choose());
        QVERIFY(camera());
    }

    void aRecordingOfACameraThatIsGoneDoesNotStart()
    {
        unplug();
        QString text;
        DialogAnswer<QMessageBox> answer([&text](QMessageBox* box) {
            text = box->text();
            clickButton(box, QMessageBox::Ok);
        });
        record()->trigger();
        QVERIFY(answer.wasAsked());
        QCOMPARE(text, QStringLiteral("Failed to start recording."));
        QVERIFY(record()->isChecked());
        record()->trigger();
        QVERIFY(!record()->isChecked());
        QVERIFY(QDir(videos.path()).isEmpty());
    }

private:
    /// A camera that has that size only.
    std::shared_ptr<FakeCamera> plug(const QSize& size)
    {
        const auto device = CameraBench::webcam();
        device->formats = {{V4L2_PIX_FMT_MJPEG, {size}, {}}};
        bench.plug(node, device, "1234", "5678");
        return device;
    }
    void open()
    {
        QMetaObject::invokeMethod(window.get(), "openUsbDevice", Q_ARG(int, CWDevice_Uvc),
                                  Q_ARG(int, node));
    }
    void unplug()
    {
        bench.unplug(node);
        QTRY_VERIFY(camera()->isGone());
    }
    /// Opens the first camera of the dialog. False when that cannot be chosen.
    bool choose()
    {
        bool possible = false;
        DialogAnswer<SelectDeviceDialog> answer([&possible](SelectDeviceDialog* dialog) {
            auto* list = dialog->findChild<QListWidget*>(QStringLiteral("listWidget"));
            const QPoint place = list->visualItemRect(list->item(0)).center();
            QTest::mouseClick(list->viewport(), Qt::LeftButton, {}, place);
            possible = list->item(0)->isSelected();
            if (!possible)
                return dialog->reject();
            QTest::mouseClick(
                dialog->findChild<QPushButton*>(QStringLiteral("pushButtonOpenCamera")),
                Qt::LeftButton);
        });
        QMetaObject::invokeMethod(window.get(), "openSelectDeviceDialog");
        return possible;
    }
    MyCamera* camera() const { return window->findChild<MyCamera*>(); }
    QSize shownSize() const
    {
        return window->findChild<GraphicsView*>()->imageScene()->currentImage().size();
    }
    QAction* record() const
    {
        const auto actions = window->findChildren<QAction*>();
        const auto found = std::find_if(actions.begin(), actions.end(), [](const QAction* action) {
            return action->text() == QStringLiteral("Record");
        });
        return found == actions.end() ? nullptr : *found;
    }

    CameraBench bench;
    QTemporaryDir videos;
    std::unique_ptr<MainWindow> window;
};

QTEST_MAIN(tst_UnpluggedCamera)
#include "tst_UnpluggedCamera.moc"
