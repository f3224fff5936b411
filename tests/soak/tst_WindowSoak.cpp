#include "app/MainWindow.h"

#include "Soak.h"
#include "app/Application.h"
#include "canvas/GraphicsScene.h"
#include "canvas/GraphicsView.h"
#include "support/TimeLimits.h"
#include "support/rtspserver/RtspServer.h"
#include "zolens/recording/RecordedVideo.h"

#include <zolens/MyCamera.h>

#include <QAction>
#include <QApplication>
#include <QSettings>
#include <QToolButton>

#include <algorithm>

namespace {

constexpr int stillLimit = 5000 + timelimits::slack;
constexpr int callLimit = 1000 + timelimits::slack;
constexpr int framesLimit = 15000;
constexpr int serverLimit = 20000;
constexpr int recordedFrames = 10;
constexpr int pauseTime = 200;
constexpr int smallestPreview = 0;
const QSize pictureSize(640, 480);

} // namespace

/// Both kinds of sources in turn in the main window, with its own actions and buttons.
class tst_WindowSoak final : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase()
    {
        setApplicationNames();
        QVERIFY(server.start());
    }

    void staysSoundInUse()
    {
        Soak soak;
        log = &soak.log();
        QSettings().setValue(QStringLiteral("preferences/capture/filepath"),
                             QString(soak.folder() + QLatin1Char('/')));
        QSettings().setValue(QStringLiteral("preferences/capture/popup"), false);
        MainWindow mainWindow;
        window = &mainWindow;
        window->show();
        QVERIFY(QTest::qWaitForWindowActive(window));
        const QString problem = soak.run([&](int number) {
            useCamera(number % 2 == 0);
            checkObjects(number);
            takeFiles(soak.folder());
        });
        QVERIFY2(problem.isEmpty(), qPrintable(problem));
    }

private:
    void useCamera(bool simulated)
    {
        log->run("open", timelimits::start,
                 [&] { return simulated ? openSimulated() : openStream(); });
        awaitPictures("first pictures");
        trigger("Snap", stillLimit);
        pause();
        trigger("Record", callLimit);
        awaitPictures("recorded pictures");
        if (!simulated)
            restartServer();
        trigger("Record", timelimits::recording);
        close();
    }

    bool openSimulated()
    {
        QMetaObject::invokeMethod(window, "openUsbDevice", Q_ARG(int, CWDevice_Simulated),
                                  Q_ARG(int, 0));
        const MyCamera* opened = camera();
        return opened && opened->camera->setPreviewSize(smallestPreview) == 0;
    }

    bool openStream()
    {
        QMetaObject::invokeMethod(window, "openNetworkDevice", Q_ARG(int, CWDevice_NetworkStream),
                                  Q_ARG(QString, server.url(QStringLiteral("/h264"))));
        return camera() != nullptr;
    }

    /// Pictures of the camera on the canvas, which shows each as another image.
    void awaitPictures(const char* what)
    {
        log->run(what, framesLimit, [this] {
            const auto* scene = window->findChild<GraphicsView*>()->imageScene();
            int seen = 0;
            qint64 last = 0;
            return QTest::qWaitFor(
                [&] {
                    const QImage image = scene->currentImage();
                    seen += image.size() == pictureSize && image.cacheKey() != last ? 1 : 0;
                    last = image.cacheKey();
                    return seen > recordedFrames;
                },
                framesLimit);
        });
    }

    void trigger(const char* text, int limit)
    {
        log->run(text, limit, [&] {
            for (QAction* action : window->findChildren<QAction*>()) {
                if (action->text() == QLatin1String(text)) {
                    action->trigger();
                    return true;
                }
            }
            return false;
        });
    }

    void pause()
    {
        for (int times = 0; times < 2; ++times) {
            log->run("pause button", callLimit, [this] {
                window->findChild<QToolButton*>(QStringLiteral("toolButtonPause"))->click();
                return true;
            });
            QTest::qWait(pauseTime);
        }
        awaitPictures("pictures after a pause");
    }

    void restartServer()
    {
        server.kill();
        log->run("start of the server", serverLimit, [this] { return server.start(); });
        awaitPictures("return of pictures");
    }

    void close()
    {
        log->run("close button", timelimits::rewriting, [this] {
            window->findChild<QToolButton*>(QStringLiteral("toolButtonClose"))->click();
            return !camera();
        });
        log->run("placeholder", framesLimit, [this] {
            const auto* scene = window->findChild<GraphicsView*>()->imageScene();
            return QTest::qWaitFor([&] { return scene->currentImage().size() != pictureSize; },
                                   framesLimit);
        });
    }

    /// Of each recording the status bar keeps a timer and an animation.
    void checkObjects(int number)
    {
        const int recordings = number + 1;
        const int count = window->findChildren<QObject*>().size() - 2 * recordings;
        if (number < 2)
            objects = std::max(objects, count);
        else if (count > objects)
            log->problem(QStringLiteral("%1 objects instead of %2").arg(count).arg(objects));
    }

    /// One picture and one video, which are removed.
    void takeFiles(const QString& folder)
    {
        int pictures = 0;
        int videos = 0;
        for (const QFileInfo& file : QDir(folder).entryInfoList(QDir::Files)) {
            const QString path = file.filePath();
            pictures += QImage(path).isNull() ? 0 : 1;
            videos += RecordedVideo::read(path).codec == "h264" ? 1 : 0;
            QFile::remove(path);
        }
        if (pictures != 1 || videos != 1)
            log->problem(QStringLiteral("%1 pictures and %2 videos").arg(pictures).arg(videos));
    }

    MyCamera* camera() const { return window->findChild<MyCamera*>(); }

    RtspServer server;
    SoakLog* log = nullptr;
    MainWindow* window = nullptr;
    int objects = 0;
};

int main(int argc, char** argv)
{
    return Soak::main<tst_WindowSoak, QApplication>(argc, argv);
}

#include "tst_WindowSoak.moc"
