#include <zolens/MyCamera.h>

#include "RecordedVideo.h"
#include "support/ProcessUse.h"

#include <QTemporaryDir>
#include <QtTest>

#include <cmath>
#include <csignal>

#include <sys/resource.h>

namespace {

constexpr int simulated = CWDevice_Simulated;

} // namespace

class tst_CameraRecording final : public QObject
{
    Q_OBJECT

private slots:
    void init()
    {
        folder = std::make_unique<QTemporaryDir>();
        path = folder->filePath(QStringLiteral("video.mp4"));
        camera = std::make_unique<MyCamera>();
        QVERIFY(camera->open(simulated, 0, true));
        QCOMPARE(camera->camera->setPreviewSize(0), 0);
        waitForSize(QSize(640, 480));
    }

    void cleanup() { camera.reset(); }

    void recordsInRealTime()
    {
        QElapsedTimer time;
        QVERIFY(camera->startRecording(path));
        time.start();
        QTest::qWait(2000);
        const double rate = double(camera->frameRate());
        camera->stopRecording();
        const double elapsed = double(time.elapsed()) / 1000;
        const RecordedVideo video = RecordedVideo::read(path);
        QVERIFY(video.readable);
        QVERIFY2(std::abs(video.seconds - elapsed) < 0.3,
                 qPrintable(QString::number(video.seconds)));
        QVERIFY2(std::abs(double(video.frames.size()) - rate * elapsed) < 0.3 * rate * elapsed,
                 qPrintable(QString::number(video.frames.size())));
    }

    void aPauseLeavesAGapInTime()
    {
        QVERIFY(camera->startRecording(path));
        QTest::qWait(500);
        camera->pause = true;
        QTest::qWait(1200);
        camera->pause = false;
        QTest::qWait(500);
        camera->stopRecording();
        const RecordedVideo video = RecordedVideo::read(path);
        double longest = 0.0;
        for (std::size_t i = 1; i < video.frames.size(); ++i)
            longest = std::max(longest, video.frames[i].seconds - video.frames[i - 1].seconds);
        QVERIFY2(longest > 1.1 && longest < 1.7, qPrintable(QString::number(longest)));
        QVERIFY(std::abs(video.seconds - 2.2) < 0.3);
    }

    void otherSizesKeepTheFileValid()
    {
        QVERIFY(camera->startRecording(path));
        QTest::qWait(300);
        QCOMPARE(camera->camera->setPreviewSize(1), 0);
        waitForSize(QSize(1280, 720));
        QTest::qWait(300);
        camera->stopRecording();
        const RecordedVideo video = RecordedVideo::read(path);
        QVERIFY(video.readable);
        for (const auto& frame : video.frames)
            QCOMPARE(frame.size, QSize(640, 480));
        QVERIFY(video.seconds > 0.5);
    }

    void closingEndsTheRecordingProperly()
    {
        QVERIFY(camera->startRecording(path));
        waitForFrames(10);
        QElapsedTimer time;
        time.start();
        camera->close();
        QVERIFY2(time.elapsed() < 6000, qPrintable(QString::number(time.elapsed())));
        const RecordedVideo video = RecordedVideo::read(path);
        QVERIFY(video.readable);
        QVERIFY(video.frames.size() >= 8);
        QVERIFY(!camera->startRecording(path));
    }

    void deletingEndsTheRecordingProperly()
    {
        QVERIFY(camera->startRecording(path));
        waitForFrames(10);
        camera.reset();
        QVERIFY(RecordedVideo::read(path).frames.size() >= 8);
        QVERIFY(!RecordedVideo::isFragmented(path));
    }

    void aSecondStartIsRefusedAndChangesNothing()
    {
        const QString other = folder->filePath(QStringLiteral("other.mp4"));
        QVERIFY(camera->startRecording(path));
        QTest::qWait(300);
        QVERIFY(!camera->startRecording(other));
        QVERIFY(!camera->startRecording(path));
        QTest::qWait(300);
        camera->stopRecording();
        QVERIFY(!QFile::exists(other));
        QVERIFY(RecordedVideo::read(path).seconds > 0.5);
    }

    void stoppingTwiceAndStartingAgainIsFine()
    {
        camera->stopRecording();
        for (int round = 0; round < 3; ++round) {
            QVERIFY(camera->startRecording(path));
            waitForFrames(5);
            camera->stopRecording();
            camera->stopRecording();
            QVERIFY(RecordedVideo::read(path).readable);
        }
        QTRY_VERIFY(!RecordedVideo::isFragmented(path));
    }

    void withoutDeviceOrPathNothingIsRecorded()
    {
        QVERIFY(!camera->startRecording(QString()));
        QVERIFY(!camera->startRecording(folder->path()));
        QVERIFY(!camera->startRecording(QStringLiteral("/no/such/folder/video.mp4")));
        QVERIFY(camera->startRecording(path));
        camera->close();
        QVERIFY(!camera->startRecording(path));
        MyCamera closed;
        QVERIFY(!closed.startRecording(path));
    }

    void tellsWhenARecordingEndsByItself()
    {
        std::signal(SIGXFSZ, SIG_IGN);
        rlimit before{};
        getrlimit(RLIMIT_FSIZE, &before);
        const rlimit smaller{200000, before.rlim_max};
        QSignalSpy ends(camera.get(), &MyCamera::recordingEnded);
        QVERIFY(camera->startRecording(path));
        setrlimit(RLIMIT_FSIZE, &smaller);
        const bool told = ends.wait(30000);
        setrlimit(RLIMIT_FSIZE, &before);
        QVERIFY(told);
        QCOMPARE(ends.first().first().toString(), QStringLiteral("The file cannot be written."));
        QVERIFY(RecordedVideo::read(path).readable);
        // The next one may begin without a stop in between.
        const QString next = folder->filePath(QStringLiteral("next.mp4"));
        QVERIFY(camera->startRecording(next));
        waitForFrames(5);
        camera->stopRecording();
        QVERIFY(RecordedVideo::read(next).readable);
        QCOMPARE(ends.size(), 1);
    }

    void theLiveViewShowsEveryFrameMeanwhile()
    {
        int shown = 0;
        connect(camera.get(), &MyCamera::getImage, this, [&shown] { ++shown; });
        QVERIFY(camera->startRecording(path));
        QTest::qWait(1500);
        camera->stopRecording();
        const int recorded = int(RecordedVideo::read(path).frames.size());
        QVERIFY2(shown > 10 && std::abs(shown - recorded) <= 5,
                 qPrintable(QStringLiteral("%1 %2").arg(shown).arg(recorded)));
    }

    void manyRecordingsLeaveNothingBehind()
    {
        record();
        const int threads = processuse::threads();
        const int descriptors = processuse::descriptors();
        for (int round = 0; round < 20; ++round)
            record();
        QTRY_COMPARE(processuse::threads(), threads);
        QCOMPARE(processuse::descriptors(), descriptors);
        QCOMPARE(QDir(folder->path()).entryList(QDir::Files | QDir::Hidden),
                 QStringList(QStringLiteral("video.mp4")));
    }

private:
    void waitForSize(const QSize& size)
    {
        bool seen = false;
        const QObject context;
        connect(camera.get(), &MyCamera::getImage, &context,
                [&seen, size](const QImage& image) { seen = seen || image.size() == size; });
        QTRY_VERIFY(seen);
    }

    void waitForFrames(int count)
    {
        int seen = 0;
        const QObject context;
        connect(camera.get(), &MyCamera::getImage, &context, [&seen] { ++seen; });
        QTRY_VERIFY_WITH_TIMEOUT(seen >= count, 20000);
    }

    /// Waits for the rewriting too.
    void record()
    {
        QVERIFY(camera->startRecording(path));
        waitForFrames(3);
        camera->stopRecording();
        QTRY_VERIFY(!RecordedVideo::isFragmented(path));
    }

    std::unique_ptr<QTemporaryDir> folder;
    QString path;
    std::unique_ptr<MyCamera> camera;
};

QTEST_GUILESS_MAIN(tst_CameraRecording)
#include "tst_CameraRecording.moc"
