#include "TestVideo.h"
#include "stream/StreamCamera.h"
#include "support/CameraValues.h"
#include "support/TimeLimits.h"
#include "zolens/FrameCollector.h"

#include <zolens/MyCamera.h>

#include <QElapsedTimer>
#include <QTemporaryDir>
#include <QThread>
#include <QtTest>

#include <atomic>

using namespace std::chrono_literals;
using zolens::StreamCamera;

/// Files that are played as if they were cameras.
class tst_StreamFiles final : public QObject
{
    Q_OBJECT

private slots:
    void playsAFileInRealTimeAndStartsOver_data();
    void playsAFileInRealTimeAndStartsOver();
    void playsOnAfterAPauseInAFile();
    void playsAFileOnWhileNoBufferIsFree();
    void followsAChangeOfSize();
    void refusesAFileWithoutVideo();

private:
    QTemporaryDir folder;
};

void tst_StreamFiles::playsAFileInRealTimeAndStartsOver_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QByteArray>("encoder");
    QTest::newRow("H.264 in MP4") << "a.mp4" << QByteArray("libx264");
    QTest::newRow("MPEG-4 in MKV") << "a.mkv" << QByteArray("mpeg4");
    QTest::newRow("MJPEG in AVI") << "a.avi" << QByteArray("mjpeg");
    QTest::newRow("H.264 in TS") << "a.ts" << QByteArray("libx264");
    QTest::newRow("bare H.264") << "a.h264" << QByteArray("libx264");
}

void tst_StreamFiles::playsAFileInRealTimeAndStartsOver()
{
    QFETCH(QString, name);
    QFETCH(QByteArray, encoder);
    TestVideo video;
    video.encoder = encoder;
    video.frames = 15;
    const QString path = folder.filePath(name);
    QVERIFY(video.write(path));

    FrameCollector sink;
    StreamCamera camera(QUrl::fromLocalFile(path).toString());
    QVERIFY(camera.start(&sink));
    QElapsedTimer timer;
    timer.start();
    // Three times the file's 0.6 seconds.
    QVERIFY(sink.waitForFrames(45, 10s));
    QVERIFY2(timer.elapsed() > 1500, qPrintable(QString::number(timer.elapsed())));
    QVERIFY2(timer.elapsed() < 4000, qPrintable(QString::number(timer.elapsed())));
    QVERIFY(TestVideo::barPosition(sink.lastFrame()) >= 0);
}

void tst_StreamFiles::playsOnAfterAPauseInAFile()
{
    const QString path = folder.filePath(QStringLiteral("pause.mkv"));
    TestVideo video;
    video.encoder = "mjpeg";
    video.frames = 10;
    video.pauseSeconds = 3;
    QVERIFY(video.write(path));
    FrameCollector sink;
    int frames = 0;
    std::atomic<int> framesUntilEnd{0};
    constexpr int lastPosition = 9 * 16;
    sink.look = [&](const QImage& frame) {
        ++frames;
        if (framesUntilEnd == 0 && TestVideo::barPosition(frame) >= lastPosition)
            framesUntilEnd = frames;
    };
    StreamCamera camera(path);
    QVERIFY(camera.start(&sink));
    QTRY_VERIFY_WITH_TIMEOUT(framesUntilEnd > 0, 10000);
    QVERIFY2(framesUntilEnd <= 10, qPrintable(QString::number(framesUntilEnd)));
}

void tst_StreamFiles::playsAFileOnWhileNoBufferIsFree()
{
    const QString path = folder.filePath(QStringLiteral("refused.avi"));
    TestVideo video;
    video.encoder = "mjpeg";
    video.frames = 5;
    QVERIFY(video.write(path));
    FrameCollector sink;
    sink.refusing = true;
    StreamCamera camera(path);
    QVERIFY(camera.start(&sink));
    // Several rounds, without the pauses of a source that is lost.
    QTRY_VERIFY_WITH_TIMEOUT(sink.asked > 40, 1600 + timelimits::slack);
    QCOMPARE(sink.count(), 0);
}

void tst_StreamFiles::followsAChangeOfSize()
{
    TestVideo video;
    video.frames = 10;
    const QString small = folder.filePath(QStringLiteral("small.h264"));
    QVERIFY(video.write(small));
    video.size = QSize(640, 360);
    const QString large = folder.filePath(QStringLiteral("large.h264"));
    QVERIFY(video.write(large));
    QFile first(small);
    QFile second(large);
    QVERIFY(first.open(QIODevice::Append) && second.open(QIODevice::ReadOnly));
    first.write(second.readAll());
    first.close();

    FrameCollector sink;
    StreamCamera camera(small);
    QVERIFY(camera.start(&sink));
    QCOMPARE(sink.lastFrame().size(), QSize(320, 240));
    QTRY_COMPARE(sink.lastFrame().size(), QSize(640, 360));
    QTRY_COMPARE(sink.lastFrame().size(), QSize(320, 240));
    camera.stop();

    MyCamera viewed;
    QVector<QSize> told;
    connect(&viewed, &MyCamera::modesChanged, this, [&viewed, &told] {
        QCOMPARE(QThread::currentThread(), viewed.thread());
        told << cameravalues::previewSizeOf(*viewed.camera);
    });
    QVERIFY(viewed.open(CWDevice_NetworkStream, small));
    QTRY_VERIFY(told.contains(QSize(640, 360)) && told.contains(QSize(320, 240)));
}

void tst_StreamFiles::refusesAFileWithoutVideo()
{
    QFile file(folder.filePath(QStringLiteral("text.mp4")));
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.write(QByteArray(100000, 'x'));
    file.close();
    FrameCollector sink;
    StreamCamera camera(file.fileName());
    QVERIFY(!camera.start(&sink));
    QCOMPARE(int(sink.asked), 0);
}

QTEST_GUILESS_MAIN(tst_StreamFiles)
#include "tst_StreamFiles.moc"
