#include "app/MainWindow.h"

#include "app/Application.h"
#include "camera/CustomCamera.h"
#include "camera/FormCameraControl.h"
#include "canvas/GraphicsScene.h"
#include "canvas/GraphicsView.h"

#include <zolens/MyCamera.h>

#include <QGroupBox>
#include <QSettings>
#include <QTreeWidget>
#include <QtTest>

#include <algorithm>

namespace {

constexpr int frameTime = 10000;
/// Two frames and the placeholder may come once the device has stopped.
constexpr int moreThanWereUnderWay = 5;

} // namespace

/// The window with a device that gives pictures and has no property.
class tst_PlainCamera final : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase() { setApplicationNames(); }

    void init()
    {
        QSettings().clear();
        window = std::make_unique<MainWindow>();
        window->show();
        QVERIFY(QTest::qWaitForWindowActive(window.get()));
        page()->findChild<QTreeWidget*>()->expandAll();
        QMetaObject::invokeMethod(window.get(), "openUsbDevice", Q_ARG(int, CWDevice_Simulated),
                                  Q_ARG(int, 0));
        QVERIFY(camera());
    }

    void cleanup() { window.reset(); }

    void itsPicturesShowAndNoGroupOfProperties()
    {
        QTRY_VERIFY(visibleGroups() > 0);
        auto device = std::make_unique<CustomCamera>();
        device->frameSource = std::move(camera()->camera);
        camera()->camera = std::move(device);
        page()->onCameraOpened(camera());
        QTRY_COMPARE(visibleGroups(), 0);
        for (int i = 0; i < moreThanWereUnderWay; ++i) {
            const qint64 shown = shownPicture();
            QTRY_VERIFY_WITH_TIMEOUT(shownPicture() != shown, frameTime);
        }
    }

private:
    FormCameraControl* page() const { return window->findChild<FormCameraControl*>(); }
    MyCamera* camera() const { return window->findChild<MyCamera*>(); }
    /// Changes with the picture.
    qint64 shownPicture() const
    {
        return window->findChild<GraphicsView*>()->imageScene()->currentImage().cacheKey();
    }
    int visibleGroups() const
    {
        const auto groups = page()->findChildren<QGroupBox*>();
        return int(std::count_if(groups.begin(), groups.end(),
                                 [](const QGroupBox* group) { return group->isVisible(); }));
    }

    std::unique_ptr<MainWindow> window;
};

QTEST_MAIN(tst_PlainCamera)
#include "tst_PlainCamera.moc"
