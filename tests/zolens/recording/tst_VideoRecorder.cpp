#include "recording/VideoRecorder.h"

#include "CounterPicture.h"
#include "RecordedVideo.h"
#include "recording/PlainMp4.h"
#include "support/NoNewThread.h"
#include "support/TimeLimits.h"

#include <QTemporaryDir>
#include <QtTest>

#include <cmath>
#include <numeric>

#include <sys/stat.h>
#include <unistd.h>

using zolens::Recording;
using zolens::RecordingEnd;
using zolens::VideoRecorder;
using namespace std::chrono_literals;
using Clock = Recording::Clock;

namespace {

const QSize small(320, 240);
constexpr auto frameTime = 33333us;
/// One tick of the file's clock, and rounding.
constexpr double exact = 1.5 / 90000;

std::vector<int> upTo(int count)
{
    std::vector<int> numbers(static_cast<std::size_t>(count));
    std::iota(numbers.begin(), numbers.end(), 0);
    return numbers;
}

/// Waits while the encoder is behind, so that none is dropped.
void offer(VideoRecorder& recorder, const QImage& image, Clock::time_point arrival)
{
    for (quint64 dropped = recorder.droppedFrames();; dropped = recorder.droppedFrames()) {
        recorder.offer(image, arrival);
        if (recorder.droppedFrames() == dropped || !recorder.isRecording())
            return;
        QTest::qSleep(2);
    }
}

} // namespace

class tst_VideoRecorder final : public QObject
{
    Q_OBJECT

private slots:
    void init()
    {
        folder = std::make_unique<QTemporaryDir>();
        path = folder->filePath(QStringLiteral("video.mp4"));
        recorder = VideoRecorder::start(path, [this](RecordingEnd) { ++ends; });
        QVERIFY(recorder);
        ends = 0;
    }

    void cleanup()
    {
        recorder.reset();
        QCOMPARE(int(ends), 0);
        QVERIFY(QDir(folder->path()).entryList(QDir::Files | QDir::Hidden).size() <= 1);
    }

    void everyFrameIsInTheFileAtItsTime()
    {
        send(small, 100);
        recorder.reset();
        const RecordedVideo video = RecordedVideo::read(path);
        QVERIFY(video.readable);
        QCOMPARE(video.codec, QByteArray("h264"));
        QCOMPARE(video.numbers(), upTo(100));
        for (std::size_t i = 0; i < video.frames.size(); ++i) {
            const double due = double(i) * 0.033333;
            QVERIFY(std::abs(video.frames[i].seconds - due) < exact);
            QVERIFY(std::abs(video.frames[i].duration - 0.033333) < 2 * exact);
        }
        QVERIFY(std::abs(video.seconds - 100 * 0.033333) < 0.002);
    }

    void whereNoThreadIsLeftNothingIsRecorded()
    {
        const QString other = folder->filePath(QStringLiteral("other.mp4"));
        QElapsedTimer timer;
        timer.start();
        {
            const NoNewThread limit;
            QVERIFY(!VideoRecorder::start(other, [this](RecordingEnd) { ++ends; }));
        }
        QVERIFY(timer.elapsed() < timelimits::atOnce);
        QVERIFY(!QFile::exists(other));
    }

    void aStoppedFileIsCompleteAtOnceAndSoonPlain()
    {
        send(small, 40);
        recorder->stop();
        QCOMPARE(RecordedVideo::read(path).numbers(), upTo(40));
        QTRY_VERIFY(recorder->isOver());
        QVERIFY(!RecordedVideo::isFragmented(path));
        QCOMPARE(RecordedVideo::read(path).numbers(), upTo(40));
    }

    void whileRecordingTheFileIsAtMostHalfASecondBehind()
    {
        send(small, 90);
        QTRY_VERIFY(RecordedVideo::read(path).frames.size() > 73);
        QVERIFY(RecordedVideo::isFragmented(path));
        const std::size_t readable = RecordedVideo::read(path).frames.size();
        QCOMPARE(RecordedVideo::read(path).numbers(), upTo(int(readable)));
    }

    void keyFramesComeEverySecond()
    {
        send(small, 100);
        recorder.reset();
        std::vector<int> keys;
        for (const auto& frame : RecordedVideo::read(path).frames) {
            if (frame.key)
                keys.push_back(frame.number);
        }
        // The 30th frame comes at 0.99999 s.
        QCOMPARE(keys, (std::vector<int>{0, 31, 62, 93}));
    }

    void slowCamerasKeepTheirTime()
    {
        for (int number = 0; number < 5; ++number)
            offer(*recorder, counterpicture::draw(small, number), begin + number * 2500ms);
        // The file waits for the next frame, which tells how long one shows.
        QTRY_COMPARE(RecordedVideo::read(path).numbers(), upTo(4));
        recorder.reset();
        const RecordedVideo video = RecordedVideo::read(path);
        QCOMPARE(video.numbers(), upTo(5));
        QVERIFY(std::abs(video.frames[4].seconds - 10.0) < exact);
        QVERIFY(std::abs(video.seconds - 12.5) < 0.002);
    }

    // As after an exposure of many seconds; the program may be killed before the next one ends.
    void aPictureIsInTheFileBeforeAnotherComes()
    {
        offer(*recorder, counterpicture::draw(small, 0), Clock::now());
        QTRY_COMPARE(RecordedVideo::read(path).numbers(), upTo(1));
    }

    void aFileLastsAsLongAsItsRecording()
    {
        const auto start = Clock::now();
        for (int number = 0; number < 5; ++number)
            offer(*recorder, counterpicture::draw(small, number), start + number * frameTime);
        QTest::qWait(2300);
        recorder->stop();
        const double lasted = std::chrono::duration<double>(Clock::now() - start).count();
        const RecordedVideo video = RecordedVideo::read(path);
        QCOMPARE(video.numbers(), upTo(5));
        QVERIFY2(std::abs(video.seconds - lasted) < 0.7,
                 qPrintable(QStringLiteral("%1 of %2").arg(video.seconds).arg(lasted)));
    }

    void unevenRatesAndGapsKeepTheirTime()
    {
        const std::vector<std::chrono::milliseconds> times{0ms,   5ms,    70ms,   90ms,
                                                           400ms, 7000ms, 7033ms, 7500ms};
        for (std::size_t i = 0; i < times.size(); ++i)
            offer(*recorder, counterpicture::draw(small, int(i)), begin + times[i]);
        recorder.reset();
        const RecordedVideo video = RecordedVideo::read(path);
        QCOMPARE(video.numbers(), upTo(int(times.size())));
        for (std::size_t i = 0; i < times.size(); ++i)
            QVERIFY(std::abs(video.frames[i].seconds - double(times[i].count()) / 1000) < exact);
    }

    void framesOfOneMomentStayApart()
    {
        for (int number = 0; number < 4; ++number)
            offer(*recorder, counterpicture::draw(small, number), begin);
        recorder.reset();
        QCOMPARE(RecordedVideo::read(path).numbers(), upTo(4));
    }

    void sizesAreEven_data()
    {
        QTest::addColumn<QSize>("sent");
        QTest::addColumn<QSize>("recorded");
        QTest::newRow("even") << QSize(322, 242) << QSize(322, 242);
        QTest::newRow("odd width") << QSize(321, 240) << QSize(320, 240);
        QTest::newRow("odd height") << QSize(320, 241) << QSize(320, 240);
        QTest::newRow("odd both") << QSize(1287, 963) << QSize(1286, 962);
        QTest::newRow("tiny") << QSize(33, 17) << QSize(32, 16);
    }

    void sizesAreEven()
    {
        QFETCH(QSize, sent);
        QFETCH(QSize, recorded);
        send(sent, 10);
        recorder.reset();
        const RecordedVideo video = RecordedVideo::read(path);
        QCOMPARE(video.numbers(), upTo(10));
        QCOMPARE(video.frames.front().size, recorded);
    }

    void aChangeOfSizeIsScaledToTheFirst()
    {
        const std::vector<QSize> sizes{{640, 480}, {320, 240}, {1281, 721}, {640, 480}};
        for (int number = 0; number < 40; ++number) {
            const QSize size = sizes[std::size_t(number) / 10];
            offer(*recorder, counterpicture::draw(size, number), begin + number * frameTime);
        }
        recorder.reset();
        const RecordedVideo video = RecordedVideo::read(path);
        QVERIFY(video.readable);
        QCOMPARE(video.numbers(), upTo(40));
        for (const auto& frame : video.frames)
            QCOMPARE(frame.size, QSize(640, 480));
    }

    void coloursAreThoseOfBt601_data()
    {
        QTest::addColumn<QColor>("color");
        QTest::addColumn<int>("y");
        QTest::addColumn<int>("u");
        QTest::addColumn<int>("v");
        // ITU-R BT.601, 8 bits, limited range.
        QTest::newRow("red") << QColor(Qt::red) << 81 << 90 << 240;
        QTest::newRow("green") << QColor(Qt::green) << 145 << 54 << 34;
        QTest::newRow("blue") << QColor(Qt::blue) << 41 << 240 << 110;
        QTest::newRow("white") << QColor(Qt::white) << 235 << 128 << 128;
        QTest::newRow("black") << QColor(Qt::black) << 16 << 128 << 128;
    }

    void coloursAreThoseOfBt601()
    {
        QFETCH(QColor, color);
        QFETCH(int, y);
        QFETCH(int, u);
        QFETCH(int, v);
        QImage image(small, QImage::Format_RGB32);
        image.fill(color);
        offer(*recorder, image, begin);
        recorder.reset();
        const RecordedVideo video = RecordedVideo::read(path);
        QCOMPARE(video.colorSpace, int(AVCOL_SPC_SMPTE170M));
        QCOMPARE(video.colorRange, int(AVCOL_RANGE_MPEG));
        const std::array<int, 3> corner = video.frames.front().corner;
        QVERIFY2(
            std::abs(corner[0] - y) <= 3 && std::abs(corner[1] - u) <= 3 &&
                std::abs(corner[2] - v) <= 3,
            qPrintable(QStringLiteral("%1 %2 %3").arg(corner[0]).arg(corner[1]).arg(corner[2])));
    }

    void anEncoderThatIsBehindCostsFramesOnly()
    {
        const QSize large(3840, 2160);
        const QImage image = counterpicture::draw(large, 5, true);
        QElapsedTimer time;
        time.start();
        for (int number = 0; number < 60; ++number)
            recorder->offer(image, begin + number * frameTime);
        QVERIFY(recorder->droppedFrames() > 0);
        const quint64 taken = 60 - recorder->droppedFrames();
        QVERIFY(taken >= 10);
        time.start();
        recorder->stop();
        QVERIFY2(time.elapsed() < timelimits::recording,
                 qPrintable(QString::number(time.elapsed())));
    }

    void stoppingTwiceIsHarmless()
    {
        send(small, 10);
        recorder->stop();
        recorder->stop();
        QVERIFY(!recorder->isRecording());
        QCOMPARE(RecordedVideo::read(path).numbers(), upTo(10));
    }

    void withoutFramesThereIsNoFile()
    {
        recorder->stop();
        QVERIFY(!QFile::exists(path));
    }

    void framesWithoutAreaAreLeftOut()
    {
        offer(*recorder, counterpicture::draw(small, 0), begin);
        recorder->offer(QImage(1, 1, QImage::Format_RGB32), begin + 10ms);
        offer(*recorder, counterpicture::draw(small, 1), begin + 20ms);
        recorder.reset();
        QCOMPARE(RecordedVideo::read(path).numbers(), upTo(2));
    }

    void refusesPathsThatHoldNoFile_data()
    {
        QTest::addColumn<QString>("name");
        QTest::newRow("empty") << QString();
        QTest::newRow("folder") << QDir::tempPath();
        QTest::newRow("below no folder") << QStringLiteral("/no/such/folder/video.mp4");
        QTest::newRow("below a file") << QStringLiteral("/etc/passwd/video.mp4");
        QTest::newRow("device") << QStringLiteral("/dev/full");
        QTest::newRow("not to be written") << QStringLiteral("/proc/version");
    }

    void refusesPathsThatHoldNoFile()
    {
        QFETCH(QString, name);
        QVERIFY(!VideoRecorder::start(name, {}));
    }

    void refusesPipesWithoutWaiting()
    {
        const QString pipe = folder->filePath(QStringLiteral("pipe"));
        QCOMPARE(mkfifo(QFile::encodeName(pipe).constData(), 0600), 0);
        QVERIFY(!VideoRecorder::start(pipe, {}));
        QVERIFY(QFile::remove(pipe));
    }

    void refusesWhatTheUserMayNotWrite()
    {
        const QString locked = folder->filePath(QStringLiteral("locked.mp4"));
        QFile file(locked);
        QVERIFY(file.open(QIODevice::WriteOnly));
        file.close();
        QVERIFY(file.setPermissions(QFile::ReadOwner));
        QVERIFY(QFile::setPermissions(folder->path(), QFile::ReadOwner | QFile::ExeOwner));
        // Root may write anything, hence is somebody else for the while.
        constexpr uid_t nobody = 65534;
        const uid_t user = geteuid();
        QVERIFY(user != 0 || seteuid(nobody) == 0);
        const bool existing = VideoRecorder::start(locked, {}) != nullptr;
        const bool beside =
            VideoRecorder::start(folder->filePath(QStringLiteral("new.mp4")), {}) != nullptr;
        QCOMPARE(seteuid(user), 0);
        QVERIFY(QFile::setPermissions(folder->path(),
                                      QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner));
        QVERIFY(!existing);
        QVERIFY(!beside);
        QVERIFY(QFile::remove(locked));
    }

    void namesMayHoldAnything()
    {
        const QString odd = folder->filePath(QString::fromUtf8("ü %d http:#?.mp4"));
        recorder = VideoRecorder::start(odd, {});
        send(small, 5);
        recorder.reset();
        QCOMPARE(RecordedVideo::read(odd).numbers(), upTo(5));
    }

    void anEarlierFileIsReplaced()
    {
        send(small, 50);
        recorder.reset();
        recorder = VideoRecorder::start(path, {});
        send(small, 5);
        recorder.reset();
        QCOMPARE(RecordedVideo::read(path).numbers(), upTo(5));
    }

    void aCancelledRewritingLeavesTheRecording()
    {
        const QString other = recordedFragments();
        zolens::ReplacementPermit permit;
        QVERIFY(permit.withdraw());
        QVERIFY(!zolens::rewriteAsPlainMp4(other, &permit));
        QVERIFY(RecordedVideo::isFragmented(other));
        QCOMPARE(RecordedVideo::read(other).numbers(), upTo(21));
        QVERIFY(QFile::remove(other));
    }

    void rewritingKeepsEveryFrameAndTime()
    {
        const QString other = recordedFragments();
        const RecordedVideo before = RecordedVideo::read(other);
        zolens::ReplacementPermit permit;
        QVERIFY(zolens::rewriteAsPlainMp4(other, &permit));
        QVERIFY(!permit.withdraw());
        const RecordedVideo after = RecordedVideo::read(other);
        QVERIFY(!RecordedVideo::isFragmented(other));
        QCOMPARE(after.numbers(), before.numbers());
        for (std::size_t i = 0; i < after.frames.size(); ++i)
            QCOMPARE(after.frames[i].seconds, before.frames[i].seconds);
        QVERIFY(QFile::remove(other));
    }

    void whatIsNoRecordingIsNotRewritten()
    {
        const QString other = folder->filePath(QStringLiteral("text.mp4"));
        QFile file(other);
        QVERIFY(file.open(QIODevice::WriteOnly));
        file.write("no video");
        file.close();
        zolens::ReplacementPermit permit;
        QVERIFY(!zolens::rewriteAsPlainMp4(other, &permit));
        QCOMPARE(file.size(), qint64{8});
        QVERIFY(file.remove());
        QVERIFY(!zolens::rewriteAsPlainMp4(other, &permit));
        QVERIFY(!QFile::exists(other));
    }

private:
    void send(const QSize& size, int count)
    {
        for (int number = 0; number < count; ++number)
            offer(*recorder, counterpicture::draw(size, number), begin + number * frameTime);
    }

    /// What a running recording has on disk: 21 frames.
    QString recordedFragments()
    {
        const QString copy = folder->filePath(QStringLiteral("copy.mp4"));
        for (int number = 0; number < 22; ++number)
            offer(*recorder, counterpicture::draw(small, number), begin + number * 600ms);
        [&] { QTRY_COMPARE(RecordedVideo::read(path).frames.size(), std::size_t{21}); }();
        QFile::copy(path, copy);
        return copy;
    }

    const Clock::time_point begin = Clock::now();
    std::unique_ptr<QTemporaryDir> folder;
    QString path;
    std::unique_ptr<VideoRecorder> recorder;
    std::atomic<int> ends{0};
};

QTEST_GUILESS_MAIN(tst_VideoRecorder)
#include "tst_VideoRecorder.moc"
