#include "recording/VideoRecorder.h"

#include "CounterPicture.h"
#include "HangingDisk.h"
#include "RecordedVideo.h"
#include "support/FileSizeLimit.h"
#include "support/ProcessUse.h"
#include "support/TimeLimits.h"

#include <QProcess>
#include <QTemporaryDir>
#include <QtTest>

#include <cstdio>
#include <thread>

#include <fcntl.h>
#include <unistd.h>

using zolens::Recording;
using zolens::RecordingEnd;
using zolens::VideoRecorder;
using namespace std::chrono_literals;
using Clock = Recording::Clock;

namespace {

constexpr int framesPerSecond = 30;
constexpr auto frameTime = 33333us;

/// Fills the disk beside the recording.
void fillDisk(const QString& path)
{
    QFile ballast(path + QStringLiteral(".ballast"));
    if (!ballast.open(QIODevice::WriteOnly | QIODevice::Unbuffered))
        return;
    const QByteArray block(1 << 16, 'x');
    while (ballast.write(block) == block.size()) {
    }
}

/// A process of its own that records until it is killed or the recording ends by itself. Tells
/// every frame before it is sent, and the end.
int recordFrames(const QString& path, const QSize& size, std::chrono::microseconds interval,
                 int fullAt)
{
    std::atomic<int> ended{-1};
    const auto recorder =
        VideoRecorder::start(path, [&ended](RecordingEnd reason) { ended = int(reason); });
    if (!recorder)
        return 1;
    Clock::time_point due = Clock::now();
    for (int number = 0; ended < 0; ++number) {
        if (number == fullAt)
            fillDisk(path);
        std::printf("%d\n", number);
        std::fflush(stdout);
        recorder->offer(counterpicture::draw(size, number, true), Clock::now());
        due += interval;
        std::this_thread::sleep_until(due);
    }
    std::printf("ended %d\n", int(ended));
    return 0;
}

/// A process of its own that has recorded ten pictures and never gets their plain MP4 done. Tells
/// when it is at the end of that.
int rewriteFrames(const QString& path)
{
    const HangingSync disk;
    const auto recorder = VideoRecorder::start(path, {});
    if (!recorder)
        return 1;
    const Clock::time_point begin = Clock::now();
    for (int number = 0; number < 10; ++number)
        recorder->offer(counterpicture::draw(QSize(160, 120), number), begin + number * frameTime);
    recorder->stop();
    while (disk.callers() == 0)
        std::this_thread::sleep_for(1ms);
    std::puts("rewriting");
    std::fflush(stdout);
    std::this_thread::sleep_for(1h);
    return 0;
}

bool hasNamelessFiles(const QString& folder)
{
    const int file = open(QFile::encodeName(folder).constData(), O_TMPFILE | O_RDWR, 0600);
    return file >= 0 && close(file) == 0;
}

QString ownProgram()
{
    return QCoreApplication::applicationFilePath();
}

/// Ascending from 0, with a few dropped perhaps.
bool ascend(const std::vector<int>& numbers)
{
    return !numbers.empty() && numbers.front() == 0 &&
           std::adjacent_find(numbers.begin(), numbers.end(), std::greater_equal<>()) ==
               numbers.end();
}

} // namespace

class tst_RecordingFailures final : public QObject
{
    Q_OBJECT

private slots:
    void init()
    {
        folder = std::make_unique<QTemporaryDir>();
        path = folder->filePath(QStringLiteral("video.mp4"));
    }

    void aKilledProgramLosesAtMostTheLastSecond_data()
    {
        QTest::addColumn<int>("interval");
        QTest::addColumn<int>("frames");
        QTest::newRow("early") << 33333 << 50;
        QTest::newRow("before a key frame") << 33333 << 90;
        QTest::newRow("in between") << 33333 << 105;
        QTest::newRow("slow camera") << 400000 << 7;
        QTest::newRow("slow camera, a frame later") << 400000 << 8;
    }

    void aKilledProgramLosesAtMostTheLastSecond()
    {
        QFETCH(int, interval);
        QFETCH(int, frames);
        QProcess helper;
        helper.start(ownProgram(),
                     {QStringLiteral("record"), path, QStringLiteral("160"), QStringLiteral("120"),
                      QString::number(interval), QStringLiteral("-1")});
        int sent = -1;
        while (sent < frames && helper.waitForReadyRead(10000)) {
            while (helper.canReadLine())
                sent = helper.readLine().trimmed().toInt();
        }
        helper.kill();
        QVERIFY(helper.waitForFinished());
        while (helper.canReadLine())
            sent = helper.readLine().trimmed().toInt();
        QVERIFY(sent >= frames);
        const RecordedVideo video = RecordedVideo::read(path);
        QVERIFY(video.readable);
        QVERIFY(ascend(video.numbers()));
        // The last one in the file shows until the next one was sent.
        const int lost = sent - video.frames.back().number - 1;
        QVERIFY2(lost * interval <= 1000000,
                 qPrintable(QStringLiteral("%1 of %2").arg(video.frames.back().number).arg(sent)));
    }

    void aProgramThatIsKilledInTheRewritingLeavesTheRecordingAlone()
    {
        QProcess helper;
        helper.start(ownProgram(), {QStringLiteral("rewrite"), path});
        QVERIFY(helper.waitForReadyRead(10000));
        QCOMPARE(helper.readLine().trimmed(), QByteArray("rewriting"));
        helper.kill();
        QVERIFY(helper.waitForFinished());
        const RecordedVideo video = RecordedVideo::read(path);
        QVERIFY(video.readable);
        QVERIFY(RecordedVideo::isFragmented(path));
        QCOMPARE(video.numbers(), (std::vector<int>{0, 1, 2, 3, 4, 5, 6, 7, 8, 9}));
        if (!hasNamelessFiles(folder->path()))
            QSKIP("the file system knows no files without a name");
        QCOMPARE(QDir(folder->path()).entryList(QDir::Files | QDir::Hidden),
                 QStringList(QStringLiteral("video.mp4")));
    }

    void aFileThatMayNotGrowEndsPlayable()
    {
        std::atomic<int> ended{0};
        const auto recorder =
            VideoRecorder::start(path, [&ended](RecordingEnd reason) { ended = int(reason); });
        const FileSizeLimit limit(1 << 20);
        QVERIFY(recorder);
        const Clock::time_point begin = Clock::now();
        int sent = 0;
        for (; ended == 0 && sent < 2000; ++sent) {
            recorder->offer(counterpicture::draw(QSize(320, 240), sent, true),
                            begin + sent * frameTime);
            QTest::qSleep(2);
        }
        QCOMPARE(int(ended), int(RecordingEnd::WriteFailed));
        QVERIFY(!recorder->isRecording());
        const RecordedVideo video = RecordedVideo::read(path);
        QVERIFY(video.readable);
        QVERIFY(ascend(video.numbers()));
        QVERIFY(QFileInfo(path).size() > (1 << 19));
        // Nothing is taken or changed any more.
        recorder->offer(counterpicture::draw(QSize(320, 240), sent), Clock::now());
        recorder->stop();
        QCOMPARE(RecordedVideo::read(path).numbers(), video.numbers());
    }

    void whereNoPictureFitsNoFileStays_data()
    {
        QTest::addColumn<int>("bytes");
        QTest::newRow("not even the head") << 100;
        QTest::newRow("the head only") << 2000;
    }

    void whereNoPictureFitsNoFileStays()
    {
        QFETCH(int, bytes);
        std::atomic<int> ended{0};
        const auto recorder =
            VideoRecorder::start(path, [&ended](RecordingEnd reason) { ended = int(reason); });
        QVERIFY(recorder);
        const FileSizeLimit limit(static_cast<rlim_t>(bytes));
        const Clock::time_point begin = Clock::now();
        for (int number = 0; number < 5; ++number)
            recorder->offer(counterpicture::draw(QSize(320, 240), number, true),
                            begin + number * 1s);
        QTRY_COMPARE(int(ended), int(RecordingEnd::WriteFailed));
        QTRY_VERIFY(recorder->isOver());
        QVERIFY(!QFile::exists(path));
    }

    void aFullDiskEndsTheRecordingPlayable_data()
    {
        QTest::addColumn<int>("fullAt");
        QTest::newRow("filled by the recording") << -1;
        QTest::newRow("filled by others") << 45;
    }

    void aFullDiskEndsTheRecordingPlayable()
    {
        QFETCH(int, fullAt);
        const QString output = recordOnSmallDisk(12, fullAt);
        if (output.isNull())
            QSKIP("no private mounts here");
        QVERIFY2(output.endsWith(QStringLiteral("ended %1").arg(int(RecordingEnd::DiskFull))),
                 qPrintable(output.right(200)));
        const RecordedVideo video = RecordedVideo::read(path);
        QVERIFY(video.readable);
        QVERIFY(ascend(video.numbers()));
        QVERIFY(video.frames.size() > 10);
        const int sent = output.section(QLatin1Char('\n'), -2, -2).toInt();
        QVERIFY(sent - video.frames.back().number <= 2 * framesPerSecond);
    }

    void aFullDiskIsRefused()
    {
        const QString output = recordOnSmallDisk(4, -1);
        if (output.isNull())
            QSKIP("no private mounts here");
        QCOMPARE(output, QString());
        QVERIFY(!QFile::exists(path));
    }

    void aDiskThatHangsHoldsNobodyUp()
    {
        const auto before = processuse::settledHoldings();
        auto recorder = VideoRecorder::start(path, {});
        QVERIFY(recorder);
        HangingWrites hanging(path);
        QElapsedTimer timer;
        timer.start();
        qint64 longest = 0;
        for (int number = 0; recorder->droppedFrames() < 30; ++number) {
            const QImage picture = counterpicture::draw(QSize(320, 240), number, true);
            const qint64 start = timer.elapsed();
            recorder->offer(picture, Clock::now());
            longest = std::max(longest, timer.elapsed() - start);
            QVERIFY(timer.elapsed() < 20000);
            QTest::qSleep(5);
        }
        QVERIFY2(longest < timelimits::atOnce, qPrintable(QString::number(longest)));
        timer.restart();
        recorder->stop();
        recorder->stop();
        QVERIFY2(timer.elapsed() < timelimits::recording,
                 qPrintable(QString::number(timer.elapsed())));
        timer.restart();
        recorder.reset();
        QVERIFY2(timer.elapsed() < timelimits::atOnce,
                 qPrintable(QString::number(timer.elapsed())));
        // Nobody waits for the threads, which end by themselves.
        QVERIFY(processuse::threads() > before.threads);
        hanging.fail();
        QCOMPARE(processuse::growthSince(before), QString());
    }

    void aDiskThatHangsWhenTheRecordingStartsIsRefusedInTime()
    {
        const auto before = processuse::settledHoldings();
        HangingOpening hanging(path);
        QElapsedTimer timer;
        timer.start();
        QVERIFY(!VideoRecorder::start(path, {}));
        QVERIFY2(timer.elapsed() < timelimits::recording,
                 qPrintable(QString::number(timer.elapsed())));
        hanging.recover();
        QCOMPARE(processuse::growthSince(before), QString());
        QVERIFY(!QFile::exists(path));
        const auto recorder = VideoRecorder::start(path, {});
        QVERIFY(recorder);
    }

    void aDiskThatAnswersLateIsRecordedTo()
    {
        HangingOpening hanging(path);
        std::thread recovery([&hanging] {
            std::this_thread::sleep_for(1s);
            hanging.recover();
        });
        auto recorder = VideoRecorder::start(path, {});
        recovery.join();
        QVERIFY(recorder);
        recorder->offer(counterpicture::draw(QSize(320, 240), 0), Clock::now());
        recorder.reset();
        QCOMPARE(RecordedVideo::read(path).numbers(), std::vector<int>{0});
    }

private:
    /// What the recording process says, with its file copied to `path`; null when disks cannot be
    /// made here.
    QString recordOnSmallDisk(int megabytes, int fullAt) const
    {
        const QString script = QStringLiteral("mount -t tmpfs -o size=%1m none '%2' || exit 77\n"
                                              "'%3' record '%2/small.mp4' 320 240 %4 %5\n"
                                              "cp '%2/small.mp4' '%6' 2>/dev/null; exit 0")
                                   .arg(megabytes)
                                   .arg(disk.path(), ownProgram())
                                   .arg(frameTime.count())
                                   .arg(fullAt)
                                   .arg(path);
        const QString rights = geteuid() == 0 ? QStringLiteral("-m") : QStringLiteral("-rm");
        QProcess shell;
        shell.start(QStringLiteral("unshare"),
                    {rights, QStringLiteral("sh"), QStringLiteral("-c"), script});
        if (!shell.waitForFinished(60000) || shell.exitCode() != 0)
            return QString();
        return QStringLiteral("") + QString::fromLatin1(shell.readAllStandardOutput()).trimmed();
    }

    const QTemporaryDir disk;
    std::unique_ptr<QTemporaryDir> folder;
    QString path;
};

int main(int argc, char** argv)
{
    QCoreApplication application(argc, argv);
    const QStringList arguments = QCoreApplication::arguments();
    if (arguments.size() == 7 && arguments.at(1) == QLatin1String("record"))
        return recordFrames(
            arguments.at(2), QSize(arguments.at(3).toInt(), arguments.at(4).toInt()),
            std::chrono::microseconds(arguments.at(5).toInt()), arguments.at(6).toInt());
    if (arguments.size() == 3 && arguments.at(1) == QLatin1String("rewrite"))
        return rewriteFrames(arguments.at(2));
    tst_RecordingFailures test;
    return QTest::qExec(&test, argc, argv);
}

#include "tst_RecordingFailures.moc"
