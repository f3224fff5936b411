#include "CameraWindow.h"

#include "app/Application.h"
#include "app/ModalDialog.h"
#include "camera/CustomCamera.h"
#include "camera/SelectDeviceDialog.h"
#include "canvas/GraphicsScene.h"
#include "canvas/GraphicsView.h"

#include <zowidgets/ZoLinkLabel.h>

#include <QImageReader>
#include <QListWidget>
#include <QSettings>
#include <QStandardPaths>
#include <QTcpServer>
#include <QtTest>

namespace {

const QString fileFormat = QStringLiteral("preferences/capture/fileformat");
const QString disableStill = QStringLiteral("cwwidgets/disablestill");

} // namespace

/// The flows of the one camera, with the simulated microscope.
class tst_MainWindowCamera final : public QObject, protected CameraWindow
{
    Q_OBJECT

private slots:
    void initTestCase() { setApplicationNames(); }
    void init() { makeWindow(); }
    void cleanup() { window.reset(); }

    void openingShowsFramesAndEnablesCapture()
    {
        QTest::ignoreMessage(QtDebugMsg, "MainWindow::openCamera end.");
        open();
        QVERIFY(action("Snap")->isEnabled());
        QVERIFY(action("Record")->isEnabled());
        QCOMPARE(QSettings().value(disableStill), QVariant(true));
        QVERIFY(sourceName()->text() != QStringLiteral("Open Video Source..."));
        QVERIFY(button("toolButtonPause")->isVisible());
        QTRY_VERIFY_WITH_TIMEOUT(!showsPlaceholder(), frameTime);
    }

    void theStoredWishForStillCaptureReachesTheCamera_data()
    {
        QTest::addColumn<QVariant>("stored");
        QTest::addColumn<bool>("wished");
        QTest::newRow("nothing stored") << QVariant() << true;
        QTest::newRow("wished") << QVariant(true) << true;
        QTest::newRow("not wished") << QVariant(false) << false;
    }

    void theStoredWishForStillCaptureReachesTheCamera()
    {
        QFETCH(QVariant, stored);
        if (stored.isValid())
            QSettings().setValue(QStringLiteral("camera/tryStillCapture"), stored);
        open();
        QTEST(camera()->camera->hasStillCapture(), "wished");
    }

    // In another size than the placeholder's, which shows by the change of sizes.
    void thePlaceholderComesASecondAfterEveryOpenAndGoesWithTheNextFrame()
    {
        QSignalSpy sizes(view(), &GraphicsView::imageInfoChanged);
        open();
        QCOMPARE(camera()->camera->setPreviewSize(0), 0);
        QTRY_COMPARE_WITH_TIMEOUT(sizes.size(), 1, frameTime);
        action("200%")->trigger();
        QTRY_COMPARE_WITH_TIMEOUT(sizes.size(), 3, frameTime);
        const QVariantList small{640, 480};
        const QVariantList placeholder{1920, 1080};
        QCOMPARE(QList<QVariantList>(sizes), (QList<QVariantList>{small, placeholder, small}));
        const double shown = view()->level();
        action("Fit in view")->trigger();
        QCOMPARE(shown, view()->level());
    }

    void theFrameRateShowsWithinTwoSeconds()
    {
        open();
        QTRY_VERIFY_WITH_TIMEOUT(fpsText().endsWith(QStringLiteral(" fps")), 3000);
        QVERIFY(fpsText().split(QLatin1Char(' ')).first().toDouble() > 1.0);
    }

    void pausingHoldsThePictureAndResumingGoesOn()
    {
        open();
        QTest::qWait(1200);
        QTRY_VERIFY_WITH_TIMEOUT(!showsPlaceholder(), frameTime);
        QTest::mouseClick(button("toolButtonPause"), Qt::LeftButton);
        QVERIFY(camera()->pause);
        QTest::qWait(200);
        const FrameCounter frames(camera());
        QTest::qWait(300);
        QCOMPARE(frames.count, 0);
        QTest::mouseClick(button("toolButtonPause"), Qt::LeftButton);
        QVERIFY(!camera()->pause);
        QTRY_VERIFY_WITH_TIMEOUT(frames.count > 0, frameTime);
    }

    // Nothing shows before the first update, which comes while the picture is held.
    void theFrameRateIsUpdatedWhilePaused()
    {
        open();
        QTest::mouseClick(button("toolButtonPause"), Qt::LeftButton);
        QVERIFY(camera()->pause);
        QCOMPARE(fpsText(), QString());
        QTRY_VERIFY_WITH_TIMEOUT(fpsText().endsWith(QStringLiteral(" fps")), 3000);
    }

    void closingReturnsToThePlaceholder()
    {
        open();
        QTRY_VERIFY_WITH_TIMEOUT(!showsPlaceholder(), frameTime);
        QTest::mouseClick(button("toolButtonClose"), Qt::LeftButton);
        QVERIFY(!camera());
        QVERIFY(!action("Snap")->isEnabled());
        QVERIFY(!action("Record")->isEnabled());
        QCOMPARE(sourceName()->text(), QStringLiteral("Open Video Source..."));
        QVERIFY(!button("toolButtonPause")->isVisible());
        QVERIFY(!button("toolButtonClose")->isVisible());
        QTRY_VERIFY_WITH_TIMEOUT(showsPlaceholder(), 3000);
    }

    // Opening has closed once too. Another picture takes the place of each placeholder, or several
    // would look like one.
    void everyCloseShowsAPlaceholderOfItsOwn()
    {
        QImage other(640, 480, QImage::Format_RGB32);
        other.fill(Qt::blue);
        int placeholders = 0;
        connect(view(), &GraphicsView::imageInfoChanged, window.get(), [&] {
            if (!showsPlaceholder())
                return;
            ++placeholders;
            emit window->getImage(other);
        });
        open();
        call("closeCamera");
        call("closeCamera");
        emit window->getImage(other);
        QTRY_COMPARE_WITH_TIMEOUT(placeholders, 3, 3000);
        QTest::qWait(100);
        QCOMPARE(placeholders, 3);
        QVERIFY(!camera());
    }

    // A frame is still on its way when the camera closes, and the window is busy until the
    // placeholder is due.
    void noFrameComesAfterThePlaceholderOfAClosedCamera()
    {
        open();
        QTRY_VERIFY_WITH_TIMEOUT(!showsPlaceholder(), frameTime);
        QTest::qSleep(200);
        call("closeCamera");
        QTest::qSleep(1200);
        QTest::qWait(100);
        QVERIFY(showsPlaceholder());
        QTest::qWait(200);
        QVERIFY(showsPlaceholder());
    }

    void theOpenDeviceIsGreyInTheDialogOnceItIsRemembered()
    {
        open();
        QCOMPARE(enabledRow(), false);
        open();
        QCOMPARE(enabledRow(), true);
        call("closeCamera");
        QCOMPARE(enabledRow(), true);
    }

    void theDialogOpensTheChosenCamera()
    {
        bool openWhileUp = false;
        DialogAnswer<SelectDeviceDialog> answer([this, &openWhileUp](SelectDeviceDialog* dialog) {
            auto* list = dialog->findChild<QListWidget*>(QStringLiteral("listWidget"));
            list->setCurrentRow(list->count() - 1);
            connect(dialog, &SelectDeviceDialog::openUsbDevice, this, [this, &openWhileUp, dialog] {
                openWhileUp = camera() && dialog->isVisible();
            });
            QTest::mouseClick(
                dialog->findChild<QPushButton*>(QStringLiteral("pushButtonOpenCamera")),
                Qt::LeftButton);
        });
        QTest::mouseClick(sourceName(), Qt::LeftButton);
        QVERIFY(answer.wasAsked());
        QVERIFY(openWhileUp);
        QVERIFY(camera());
        QVERIFY(action("Snap")->isEnabled());
    }

    void aDeviceThatDoesNotOpenIsReported()
    {
        open();
        QString text;
        DialogAnswer<QMessageBox> answer([&text](QMessageBox* box) {
            text = box->text();
            QCOMPARE(box->windowTitle(), QStringLiteral("Error"));
            QCOMPARE(box->icon(), QMessageBox::Critical);
            clickButton(box, QMessageBox::Ok);
        });
        QTest::ignoreMessage(QtDebugMsg, "MainWindow::openCamera end.");
        QMetaObject::invokeMethod(window.get(), "openUsbDevice", Q_ARG(int, 0), Q_ARG(int, 9999));
        QVERIFY(answer.wasAsked());
        QCOMPARE(text, QStringLiteral("Failed to open camera"));
        QVERIFY(!camera());
        QVERIFY(!action("Snap")->isEnabled());
        QTRY_VERIFY_WITH_TIMEOUT(showsPlaceholder(), 3000);
    }

    void aStreamWithoutServerIsReported()
    {
        QTcpServer server;
        QVERIFY(server.listen(QHostAddress::LocalHost));
        const QString url = QStringLiteral("rtsp://127.0.0.1:%1/live").arg(server.serverPort());
        server.close();
        DialogAnswer<QMessageBox> answer([](QMessageBox* box) {
            QCOMPARE(box->text(), QStringLiteral("Failed to open camera"));
            clickButton(box, QMessageBox::Ok);
        });
        QTest::ignoreMessage(QtDebugMsg, "MainWindow::openNetworkDevice end.");
        QMetaObject::invokeMethod(window.get(), "openNetworkDevice", Q_ARG(int, 8),
                                  Q_ARG(QString, url));
        QVERIFY(answer.wasAsked());
        QVERIFY(!camera());
    }

    void aPictureLandsInTheStoredFolderInTheStoredFormat_data()
    {
        QTest::addColumn<QString>("stored");
        QTest::addColumn<QByteArray>("format");
        QTest::newRow("jpg") << QStringLiteral("jpg") << QByteArray("jpeg");
        QTest::newRow("png") << QStringLiteral("png") << QByteArray("png");
        QTest::newRow("capitals") << QStringLiteral("PNG") << QByteArray("png");
        QTest::newRow("bmp") << QStringLiteral("bmp") << QByteArray("bmp");
    }

    void aPictureLandsInTheStoredFolderInTheStoredFormat()
    {
        QFETCH(QString, stored);
        QFETCH(QByteArray, format);
        QSettings().setValue(fileFormat, stored);
        open();
        action("Snap")->trigger();
        const QStringList files = saved();
        QCOMPARE(files.size(), 1);
        QVERIFY2(files[0].contains(
                     QRegularExpression(QStringLiteral("^\\d{8}-\\d{6}-\\d{3}\\.%1$").arg(stored))),
                 qPrintable(files[0]));
        QImageReader reader(pictures->filePath(files[0]));
        reader.setDecideFormatFromContent(true);
        QCOMPARE(reader.format(), format);
        QVERIFY(!reader.read().isNull());
    }

    void withNothingStoredAPictureGoesToTheDocuments()
    {
        QSettings().remove(filePath);
        open();
        action("Snap")->trigger();
        const QDir images(QStandardPaths::writableLocation(QStandardPaths::DocumentsLocation) +
                          QStringLiteral("/Orvo Files/Images"));
        QCOMPARE(images.entryList({QStringLiteral("*.jpg")}, QDir::Files).size(), 1);
    }

    void withoutStillCaptureThePictureIsTheVisibleCanvas()
    {
        QSettings().setValue(disableStill, true);
        QSettings().setValue(fileFormat, QStringLiteral("png"));
        open();
        QTest::qWait(1200);
        QTRY_VERIFY_WITH_TIMEOUT(!showsPlaceholder(), frameTime);
        action("100%")->trigger();
        action("Snap")->trigger();
        const QStringList files = saved();
        QCOMPARE(files.size(), 1);
        const QSize visible =
            view()->mapToScene(view()->rect()).boundingRect().toAlignedRect().size();
        const QSize size = QImage(pictures->filePath(files[0])).size();
        QVERIFY(qAbs(size.width() - qMin(visible.width(), int(view()->sceneRect().width()))) <= 2);
    }

    void aChosenFileNameIsUsed()
    {
        QSettings().setValue(popup, true);
        open();
        const QString path = pictures->filePath(QStringLiteral("deeper/mine.png"));
        DialogAnswer<QFileDialog> answer(
            [&path](QFileDialog* dialog) { chooseFile(dialog, path); });
        action("Snap")->trigger();
        QVERIFY(answer.wasAsked());
        QVERIFY(!QImage(path).isNull());
        QVERIFY(!QGuiApplication::overrideCursor());
    }

    void cancellingTheFileDialogWritesNothing()
    {
        QSettings().setValue(popup, true);
        open();
        DialogAnswer<QFileDialog> answer([](QFileDialog* dialog) { dialog->reject(); });
        action("Snap")->trigger();
        QVERIFY(answer.wasAsked());
        QVERIFY(saved().isEmpty());
        QVERIFY(!QGuiApplication::overrideCursor());
    }

    void aPictureThatCannotBeWrittenSaysNothing()
    {
        refuseFiles();
        open();
        DialogAnswer<QMessageBox> answer(
            [](QMessageBox* box) { clickButton(box, QMessageBox::Ok); });
        action("Snap")->trigger();
        QTest::qWait(50);
        QVERIFY(!answer.wasAsked());
        QCOMPARE(saved(), QStringList(QStringLiteral("file")));
        const FrameCounter frames(camera());
        QTRY_VERIFY_WITH_TIMEOUT(frames.count > 0, frameTime);
    }

    void aStillPictureThatFailsSaysNothing()
    {
        QSettings().setValue(disableStill, false);
        QSettings().setValue(popup, true);
        open();
        auto device = std::make_unique<CustomCamera>();
        device->still = true;
        camera()->camera->stop();
        camera()->camera = std::move(device);
        QVERIFY(camera()->snap().isNull());
        DialogAnswer<QDialog> answer([](QDialog* dialog) { dialog->reject(); });
        action("Snap")->trigger();
        QTest::qWait(50);
        QVERIFY(!answer.wasAsked());
        QVERIFY(saved().isEmpty());
        QVERIFY(!QGuiApplication::overrideCursor());
    }

    void withoutCameraNothingIsTaken()
    {
        call("snap");
        QVERIFY(saved().isEmpty());
        QVERIFY(!QGuiApplication::overrideCursor());
    }

    void closingTheWindowClosesTheCamera()
    {
        open();
        window->close();
        QVERIFY(!camera());
    }

private:
    GraphicsView* view() const { return window->findChild<GraphicsView*>(); }
    ZoLinkLabel* sourceName() const { return window->findChild<ZoLinkLabel*>(); }
    bool showsPlaceholder() const
    {
        const QImage& image = view()->imageScene()->currentImage();
        return image.size() == QSize(1920, 1080) &&
               image.pixelColor(3, 3) == QColor(Qt::lightGray) &&
               image.pixelColor(1916, 1076) == QColor(Qt::lightGray);
    }
    QString fpsText() const
    {
        const QLabel* rate = label(QStringLiteral(" fps"));
        return rate ? rate->text() : QString();
    }
    /// Whether the last camera of the dialog can be chosen.
    bool enabledRow()
    {
        bool enabled = false;
        DialogAnswer<SelectDeviceDialog> answer([&enabled](SelectDeviceDialog* dialog) {
            auto* list = dialog->findChild<QListWidget*>(QStringLiteral("listWidget"));
            enabled = list->item(list->count() - 1)->flags().testFlag(Qt::ItemIsEnabled);
            dialog->reject();
        });
        QMetaObject::invokeMethod(window.get(), "openSelectDeviceDialog");
        return enabled;
    }
};

QTEST_MAIN(tst_MainWindowCamera)
#include "tst_MainWindowCamera.moc"
