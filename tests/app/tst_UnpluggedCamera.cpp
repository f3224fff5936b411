#include "app/MainWindow.h"

#include "DeviceClasses.h"
#include "app/Application.h"
#include "app/ModalDialog.h"
#include "camera/SelectDeviceDialog.h"
#include "camera/UdevTestbed.h"
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
constexpr int refreshTime = 10000;
constexpr int node = 0;
const QSize firstSize(640, 480);
const QSize nextSize(320, 240);
const QByteArray sameProduct("5678");
const QByteArray otherProduct("9abc");

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
        testbed.addCamera(node);
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

    void aCameraThatIsPluggedInUnderTheDialogCanBeChosen_data()
    {
        QTest::addColumn<QByteArray>("productId");
        QTest::addColumn<bool>("byButton");
        QTest::newRow("the same, by itself") << sameProduct << false;
        QTest::newRow("the same, by the button") << sameProduct << true;
        QTest::newRow("another in its place, by itself") << otherProduct << false;
    }

    void aCameraThatIsPluggedInUnderTheDialogCanBeChosen()
    {
        QFETCH(QByteArray, productId);
        QFETCH(bool, byButton);
        bool wasGrey = false;
        bool wasChosen = false;
        DialogAnswer<SelectDeviceDialog> answer([&](SelectDeviceDialog* dialog) {
            wasGrey = !isSelectable(dialog);
            unplug();
            plug(nextSize, productId);
            if (byButton)
                refresh(dialog);
            else
                testbed.tell(UdevTestbed::videoNode(node), "add");
            wasChosen = QTest::qWaitFor([dialog] { return isSelectable(dialog); }, refreshTime) &&
                        openFirst(dialog);
            if (!wasChosen)
                dialog->reject();
        });
        QMetaObject::invokeMethod(window.get(), "openSelectDeviceDialog");
        QVERIFY(wasGrey);
        QVERIFY(wasChosen);
        QVERIFY(!camera()->isGone());
        QTRY_COMPARE_WITH_TIMEOUT(shownSize(), nextSize, frameTime);
    }

    void aCameraThatIsThereStaysGreyUnderTheDialog()
    {
        bool staysGrey = false;
        DialogAnswer<SelectDeviceDialog> answer([&staysGrey](SelectDeviceDialog* dialog) {
            refresh(dialog);
            staysGrey = !isSelectable(dialog);
            dialog->reject();
        });
        QMetaObject::invokeMethod(window.get(), "openSelectDeviceDialog");
        QVERIFY(staysGrey);
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
    std::shared_ptr<FakeCamera> plug(const QSize& size, const QByteArray& productId = sameProduct)
    {
        const auto device = CameraBench::webcam();
        device->formats = {{V4L2_PIX_FMT_MJPEG, {size}, {}}};
        bench.plug(node, device, "1234", productId.constData());
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
    static QListWidget* listOf(const SelectDeviceDialog* dialog)
    {
        return dialog->findChild<QListWidget*>(QStringLiteral("listWidget"));
    }
    /// Whether the first camera can be selected.
    static bool isSelectable(const SelectDeviceDialog* dialog)
    {
        return listOf(dialog)->item(0)->flags().testFlag(Qt::ItemIsSelectable);
    }
    static void refresh(const SelectDeviceDialog* dialog)
    {
        QTest::mouseClick(dialog->findChild<QPushButton*>(QStringLiteral("pushButtonRefresh")),
                          Qt::LeftButton);
    }
    /// False when the first camera cannot be selected.
    static bool openFirst(const SelectDeviceDialog* dialog)
    {
        const QListWidget* list = listOf(dialog);
        const QPoint place = list->visualItemRect(list->item(0)).center();
        QTest::mouseClick(list->viewport(), Qt::LeftButton, {}, place);
        if (!list->item(0)->isSelected())
            return false;
        QTest::mouseClick(dialog->findChild<QPushButton*>(QStringLiteral("pushButtonOpenCamera")),
                          Qt::LeftButton);
        return true;
    }
    /// Opens the first camera of a new dialog. False when that cannot be selected.
    bool choose()
    {
        bool possible = false;
        DialogAnswer<SelectDeviceDialog> answer([&possible](SelectDeviceDialog* dialog) {
            possible = openFirst(dialog);
            if (!possible)
                dialog->reject();
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
    UdevTestbed testbed;
    QTemporaryDir videos;
    std::unique_ptr<MainWindow> window;
};

QTEST_MAIN(tst_UnpluggedCamera)
#include "tst_UnpluggedCamera.moc"
