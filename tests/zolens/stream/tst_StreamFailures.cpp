#include "BackgroundStart.h"
#include "TestPeers.h"
#include "TestVideo.h"
#include "stream/StreamCamera.h"
#include "support/TimeLimits.h"
#include "support/rtspserver/RtspServer.h"
#include "zolens/FrameCollector.h"

#include <QElapsedTimer>
#include <QFile>
#include <QRandomGenerator>
#include <QTemporaryDir>
#include <QUdpSocket>
#include <QtTest>

using namespace std::chrono_literals;
using zolens::StreamCamera;

namespace {

/// A port of this machine on which nobody listens.
int closedPort()
{
    QTcpServer server;
    server.listen(QHostAddress::LocalHost);
    return server.serverPort();
}

quint16 freeUdpPort()
{
    QUdpSocket probe;
    probe.bind(QHostAddress(QHostAddress::LocalHost));
    return probe.localPort();
}

} // namespace

class tst_StreamFailures : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void startFailsAtOnce_data();
    void startFailsAtOnce();
    void startEndsInTimeWithAMutePeer_data();
    void startEndsInTimeWithAMutePeer();
    void startEndsInTimeWithAFrozenServer();
    void stopsInTimeWhileTheServerIsFrozen_data();
    void stopsInTimeWhileTheServerIsFrozen();
    void stopsInTimeWhileItReconnects();
    void comesBackAfterAFrozenServer_data();
    void comesBackAfterAFrozenServer();
    void comesBackAfterTheServerWasKilled_data();
    void comesBackAfterTheServerWasKilled();
    void survivesDamagedPackets_data();
    void survivesDamagedPackets();
    void takesLeaveOfTheServer();
    void startsBeforeTheFirstKeyFrame();
    void survivesADamagedFile();
    void countsDamagedFrames();
    void survivesRubbishOverUdp();
    void keepsAPlaylistAwayFromLocalFiles();

private:
    RtspServer server;
    QTemporaryDir folder;
};

void tst_StreamFailures::initTestCase()
{
    QVERIFY(server.start());
}

void tst_StreamFailures::startFailsAtOnce_data()
{
    QTest::addColumn<QString>("text");
    const QString closed = QString::number(closedPort());
    QTest::newRow("empty") << "";
    QTest::newRow("no URL") << "camera";
    QTest::newRow("forbidden protocol") << "concat:/dev/zero";
    QTest::newRow("closed port") << QString(QLatin1String("rtsp://127.0.0.1:") + closed +
                                            QLatin1String("/h264"));
    QTest::newRow("closed port, UDP")
        << QString(QLatin1String("rtsp://127.0.0.1:") + closed + QLatin1String("/h264?udp"));
    QTest::newRow("closed port, HTTP")
        << QString(QLatin1String("http://127.0.0.1:") + closed + QLatin1String("/a.mjpg"));
    QTest::newRow("wrong path") << server.url(QStringLiteral("/nothing"));
    QTest::newRow("wrong protocol")
        << QString(QStringLiteral("http://127.0.0.1:") + QString::number(server.port()));
    QTest::newRow("missing file") << "/no/such/file.mp4";
}

void tst_StreamFailures::startFailsAtOnce()
{
    QFETCH(QString, text);
    FrameCollector sink;
    StreamCamera camera(text);
    QElapsedTimer timer;
    timer.start();
    QVERIFY(!camera.start(&sink));
    QVERIFY(timer.elapsed() < timelimits::atOnce);
    QCOMPARE(int(sink.asked), 0);
}

void tst_StreamFailures::startEndsInTimeWithAMutePeer_data()
{
    QTest::addColumn<QString>("scheme");
    for (const char* scheme : {"rtsp", "rtsps", "http", "https", "tcp"})
        QTest::newRow(scheme) << QString::fromLatin1(scheme);
}

void tst_StreamFailures::startEndsInTimeWithAMutePeer()
{
    QFETCH(QString, scheme);
    const MutePeer peer;
    FrameCollector sink;
    StreamCamera camera(peer.url(scheme));
    QElapsedTimer timer;
    timer.start();
    QVERIFY(!camera.start(&sink));
    QVERIFY2(timer.elapsed() < timelimits::start, qPrintable(QString::number(timer.elapsed())));
}

void tst_StreamFailures::startEndsInTimeWithAFrozenServer()
{
    RtspServer frozen;
    QVERIFY(frozen.start());
    frozen.freeze();
    FrameCollector sink;
    StreamCamera camera(frozen.url(QStringLiteral("/h264")));
    QElapsedTimer timer;
    timer.start();
    QVERIFY(!camera.start(&sink));
    QVERIFY(timer.elapsed() < timelimits::start);
}

void tst_StreamFailures::stopsInTimeWhileTheServerIsFrozen_data()
{
    QTest::addColumn<QString>("path");
    QTest::addColumn<int>("wait");
    QTest::newRow("TCP, at once") << "/h264" << 0;
    QTest::newRow("UDP, at once") << "/h264?udp" << 0;
    QTest::newRow("TCP, after the watchdog") << "/h264" << 2700;
}

void tst_StreamFailures::stopsInTimeWhileTheServerIsFrozen()
{
    QFETCH(QString, path);
    QFETCH(int, wait);
    RtspServer frozen;
    QVERIFY(frozen.start());
    FrameCollector sink;
    StreamCamera camera(frozen.url(path));
    QVERIFY(camera.start(&sink));
    QVERIFY(sink.waitForFrames(5, 5s));
    frozen.freeze();
    QTest::qWait(wait);
    QElapsedTimer timer;
    timer.start();
    camera.stop();
    QVERIFY2(timer.elapsed() < timelimits::stop, qPrintable(QString::number(timer.elapsed())));
}

void tst_StreamFailures::stopsInTimeWhileItReconnects()
{
    RtspServer lost;
    QVERIFY(lost.start());
    FrameCollector sink;
    StreamCamera camera(lost.url(QStringLiteral("/h264")));
    QVERIFY(camera.start(&sink));
    lost.kill();
    QTest::qWait(1500);
    QElapsedTimer timer;
    timer.start();
    camera.stop();
    QVERIFY(timer.elapsed() < timelimits::stop);
}

void tst_StreamFailures::comesBackAfterAFrozenServer_data()
{
    QTest::addColumn<QString>("path");
    QTest::newRow("TCP") << "/h264";
    QTest::newRow("UDP") << "/h264?udp";
    QTest::newRow("MJPEG") << "/mjpeg";
}

void tst_StreamFailures::comesBackAfterAFrozenServer()
{
    QFETCH(QString, path);
    RtspServer frozen;
    QVERIFY(frozen.start());
    FrameCollector sink;
    StreamCamera camera(frozen.url(path));
    QVERIFY(camera.start(&sink));
    QVERIFY(sink.waitForFrames(20, 5s));
    frozen.freeze();
    QTest::qWait(3500);
    const int before = sink.count();
    QTest::qWait(300);
    QCOMPARE(sink.count(), before);
    frozen.thaw();
    QVERIFY(sink.waitForFrames(20, 15s));
}

void tst_StreamFailures::comesBackAfterTheServerWasKilled_data()
{
    comesBackAfterAFrozenServer_data();
}

void tst_StreamFailures::comesBackAfterTheServerWasKilled()
{
    QFETCH(QString, path);
    RtspServer restarted;
    QVERIFY(restarted.start());
    FrameCollector sink;
    StreamCamera camera(restarted.url(path));
    QVERIFY(camera.start(&sink));
    QVERIFY(sink.waitForFrames(5, 5s));
    restarted.kill();
    QTest::qWait(1000);
    QVERIFY(restarted.start());
    QVERIFY(sink.waitForFrames(20, 15s));
    QVERIFY(camera.restarts() > 0);
}

void tst_StreamFailures::survivesDamagedPackets_data()
{
    QTest::addColumn<QString>("path");
    QTest::newRow("H.264") << "/h264?tcp";
    QTest::newRow("H.265") << "/h265?tcp";
    QTest::newRow("MJPEG") << "/mjpeg?tcp";
}

void tst_StreamFailures::survivesDamagedPackets()
{
    QFETCH(QString, path);
    DamagingProxy proxy(server.port());
    FrameCollector sink;
    StreamCamera camera(QStringLiteral("rtsp://127.0.0.1:") + QString::number(proxy.port()) + path);
    BackgroundStart start(&camera, &sink);
    QTRY_VERIFY(sink.count() > 3);
    QVERIFY(start.join());

    proxy.damaging = true;
    QTRY_VERIFY_WITH_TIMEOUT(proxy.damagedPackets > 30, 20000);
    proxy.damaging = false;
    const int before = sink.count();
    QTRY_VERIFY_WITH_TIMEOUT(sink.count() > before + 20, 10000);
    QCOMPARE(sink.lastFrame().size(), QSize(640, 480));
    camera.stop();
}

void tst_StreamFailures::takesLeaveOfTheServer()
{
    DamagingProxy proxy(server.port());
    FrameCollector sink;
    StreamCamera camera(QStringLiteral("rtsp://127.0.0.1:") + QString::number(proxy.port()) +
                        QStringLiteral("/h264"));
    BackgroundStart start(&camera, &sink);
    QTRY_VERIFY(sink.count() > 0);
    QVERIFY(start.join());
    QVERIFY(!proxy.sawFarewell);
    camera.stop();
    QTRY_VERIFY(proxy.sawFarewell);
}

void tst_StreamFailures::startsBeforeTheFirstKeyFrame()
{
    const QString path = folder.filePath(QStringLiteral("rarekeys.ts"));
    TestVideo video;
    video.frames = 300;
    video.keyFrameDistance = 150;
    QVERIFY(video.write(path));
    QFile file(path);
    QVERIFY(file.open(QIODevice::ReadOnly));
    const QByteArray data = file.readAll();
    constexpr int packetSize = 188;
    const int packets = data.size() / packetSize;

    const quint16 port = freeUdpPort();
    FrameCollector sink;
    StreamCamera camera(QStringLiteral("udp://127.0.0.1:") + QString::number(port));
    QElapsedTimer timer;
    timer.start();
    BackgroundStart start(&camera, &sink);
    // From the first second of the twelve on; the next key frame comes in the sixth.
    QUdpSocket sender;
    int framesAtStart = -1;
    std::vector<int> formatsAtStart;
    for (int i = packets / 12; i < packets; ++i) {
        while (timer.elapsed() < 12000LL * i / packets - 1000)
            QTest::qWait(5);
        sender.writeDatagram(data.constData() + i * packetSize, packetSize,
                             QHostAddress(QHostAddress::LocalHost), port);
        if (start.isOver() && framesAtStart < 0) {
            framesAtStart = sink.count();
            camera.previewFormats(&formatsAtStart);
            QVERIFY(timer.elapsed() < timelimits::start);
        }
    }
    QVERIFY(start.join());
    QCOMPARE(framesAtStart, 0);
    QCOMPARE(formatsAtStart, std::vector<int>{20});
    QVERIFY(sink.count() > 50);
}

void tst_StreamFailures::survivesADamagedFile()
{
    const QString path = folder.filePath(QStringLiteral("damaged.ts"));
    TestVideo video;
    video.frames = 50;
    QVERIFY(video.write(path));
    QFile file(path);
    QVERIFY(file.open(QIODevice::ReadWrite));
    QByteArray data = file.readAll();
    QRandomGenerator random(7);
    for (int i = data.size() / 4; i < data.size(); i += random.bounded(1, 300))
        data[i] = char(random.bounded(256));
    file.seek(0);
    file.write(data);
    file.close();

    FrameCollector sink;
    StreamCamera camera(path);
    QVERIFY(camera.start(&sink));
    // More than one round.
    QVERIFY(sink.waitForFrames(60, 20s));
}

void tst_StreamFailures::countsDamagedFrames()
{
    const QString path = folder.filePath(QStringLiteral("damaged.avi"));
    TestVideo video;
    video.encoder = "mjpeg";
    video.frames = 10;
    QVERIFY(video.write(path));
    QFile file(path);
    QVERIFY(file.open(QIODevice::ReadWrite));
    const QByteArray startOfImage("\xff\xd8", 2);
    const QByteArray data = file.readAll();
    const int second = data.indexOf(startOfImage, data.indexOf(startOfImage) + 1);
    const int third = data.indexOf(startOfImage, second + 1);
    constexpr int chunkHeader = 8;
    file.seek(second);
    file.write(QByteArray(third - second - chunkHeader, '\0'));
    file.close();

    FrameCollector sink;
    StreamCamera camera(path);
    QVERIFY(camera.start(&sink));
    QVERIFY(sink.waitForFrames(9, 20s));
    QVERIFY(camera.damagedFrames() > 0);
    QCOMPARE(camera.restarts(), quint64(0));
}

void tst_StreamFailures::survivesRubbishOverUdp()
{
    const QString path = folder.filePath(QStringLiteral("sent.ts"));
    TestVideo video;
    video.frames = 200;
    video.size = QSize(640, 480);
    QVERIFY(video.write(path));
    QFile file(path);
    QVERIFY(file.open(QIODevice::ReadOnly));

    const quint16 port = freeUdpPort();
    FrameCollector sink;
    StreamCamera camera(QStringLiteral("udp://127.0.0.1:") + QString::number(port));
    BackgroundStart start(&camera, &sink);
    QUdpSocket sender;
    int packets = 0;
    const auto sendPacket = [&] {
        if (file.atEnd())
            file.seek(0);
        QByteArray packet = file.read(7 * 188);
        if (++packets % 9 == 0)
            packet.fill('#');
        sender.writeDatagram(packet, QHostAddress(QHostAddress::LocalHost), port);
        QTest::qWait(2);
        return sink.count();
    };
    QElapsedTimer timer;
    timer.start();
    while (sendPacket() < 50 && timer.elapsed() < 20000) {
    }
    QVERIFY(start.join());
    QVERIFY(sink.count() >= 50);
}

void tst_StreamFailures::keepsAPlaylistAwayFromLocalFiles()
{
    const QString path = folder.filePath(QStringLiteral("segment.ts"));
    QVERIFY(TestVideo().write(path));
    QFile video(path);
    QVERIFY(video.open(QIODevice::ReadOnly));
    const auto playlist = [](const QByteArray& segment) {
        return QByteArray("#EXTM3U\n#EXT-X-TARGETDURATION:1\n#EXTINF:1,\n" + segment +
                          "\n#EXT-X-ENDLIST\n");
    };
    WebPeer web;
    web.add("/segment.ts", "video/mp2t", video.readAll());
    web.add("/good.m3u8", "application/vnd.apple.mpegurl", playlist("segment.ts"));
    web.add("/bad.m3u8", "application/vnd.apple.mpegurl",
            playlist("file://" + QFile::encodeName(path)));

    FrameCollector sink;
    StreamCamera good(web.url(QStringLiteral("/good.m3u8")));
    BackgroundStart goodStart(&good, &sink);
    QTRY_VERIFY(sink.count() > 5);
    QVERIFY(goodStart.join());

    FrameCollector noSink;
    StreamCamera bad(web.url(QStringLiteral("/bad.m3u8")));
    BackgroundStart badStart(&bad, &noSink);
    QTRY_VERIFY_WITH_TIMEOUT(badStart.isOver(), 5000);
    QVERIFY(!badStart.join());
    QCOMPARE(noSink.count(), 0);
}

QTEST_GUILESS_MAIN(tst_StreamFailures)
#include "tst_StreamFailures.moc"
