#include "stream/StreamCamera.h"
#include "support/rtspserver/ClockCode.h"
#include "support/rtspserver/RtspServer.h"
#include "zolens/CheckingSink.h"

#include <QtTest>

#include <cstdlib>

using namespace std::chrono_literals;
using zolens::StreamCamera;

namespace {

constexpr int watchedFrames = 40; ///< More than from one key frame to the next.
/// Of a colour component; the strongest blue is converted with 17 too much or too little.
constexpr int tolerance = 24;

bool isNear(QRgb a, QRgb b)
{
    return std::abs(qRed(a) - qRed(b)) <= tolerance &&
           std::abs(qGreen(a) - qGreen(b)) <= tolerance &&
           std::abs(qBlue(a) - qBlue(b)) <= tolerance;
}

/// The mean colour of the part of the picture around a place, both given as shares of its size.
QRgb meanColor(const QImage& image, double x, double y, double width, double height)
{
    const QRect part(int((x - width / 2) * image.width()), int((y - height / 2) * image.height()),
                     int(width * image.width()), int(height * image.height()));
    qint64 red = 0;
    qint64 green = 0;
    qint64 blue = 0;
    for (int row = part.top(); row <= part.bottom(); ++row) {
        for (int column = part.left(); column <= part.right(); ++column) {
            const QRgb pixel = image.pixel(column, row);
            red += qRed(pixel);
            green += qGreen(pixel);
            blue += qBlue(pixel);
        }
    }
    const qint64 count = qint64(part.width()) * part.height();
    return qRgb(int(red / count), int(green / count), int(blue / count));
}

/// JPEG takes brightness from 0 to 255, but the source makes it from 16 to 235.
QRgb asCoded(QRgb color, bool jpeg)
{
    const auto level = [jpeg](int value) { return jpeg ? 16 + value * 219 / 255 : value; };
    return qRgb(level(qRed(color)), level(qGreen(color)), level(qBlue(color)));
}

QString checkPart(const QImage& image, double x, double y, double width, double height,
                  QRgb expected)
{
    const QRgb found = meanColor(image, x, y, width, height);
    if (isNear(found, expected))
        return {};
    return QStringLiteral("%1 instead of %2 at %3, %4")
        .arg(found, 0, 16)
        .arg(expected, 0, 16)
        .arg(x)
        .arg(y);
}

/// Seven bars over two thirds of the height, short ones below them, and at the left of the bottom
/// blue and white; the rest of the bottom is dark and noise.
QString checkBars(const QImage& image, bool jpeg)
{
    const QRgb bars[] = {0xffffff, 0xffff00, 0x00ffff, 0x00ff00, 0xff00ff, 0xff0000, 0x0000ff};
    const QRgb shorts[] = {0x0000ff, 0x000000, 0xff00ff, 0x000000, 0x00ffff, 0x000000, 0xffffff};
    for (int bar = 0; bar < 7; ++bar) {
        const double x = (bar + 0.5) / 7;
        for (const double y : {0.05, 0.2, 0.35, 0.48, 0.52, 0.62}) {
            const QString bad = checkPart(image, x, y, 0.05, 0.02, asCoded(bars[bar], jpeg));
            if (!bad.isEmpty())
                return bad;
        }
        const QString bad = checkPart(image, x, 0.708, 0.05, 0.02, asCoded(shorts[bar], jpeg));
        if (!bad.isEmpty())
            return bad;
    }
    return checkPart(image, 0.25, 0.875, 0.1, 0.15, asCoded(0xffffff, jpeg));
}

/// One of two colours all over, so that a part left over from the frame before shows.
QString checkBlink(const QImage& image, bool jpeg)
{
    const QRgb colors[] = {asCoded(0xc83c28, jpeg), asCoded(0x1e5ab4, jpeg)};
    const QRgb center = meanColor(image, 0.5, 0.5, 0.1, 0.1);
    const QRgb expected = isNear(center, colors[0]) ? colors[0] : colors[1];
    for (int row = 0; row < 12; ++row) {
        for (int column = 0; column < 8; ++column) {
            const QString bad =
                checkPart(image, (column + 0.5) / 8, (row + 0.5) / 12, 0.12, 0.08, expected);
            if (!bad.isEmpty())
                return bad;
        }
    }
    return {};
}

} // namespace

/// Every frame of a stream, from the first on, shows what the server made, to its last row.
class tst_StreamPictures : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void showsWholeFramesInTheirColors_data();
    void showsWholeFramesInTheirColors();
    void showsFramesSoonAfterTheyWereMade();

private:
    RtspServer server;
};

void tst_StreamPictures::initTestCase()
{
    QVERIFY(server.start());
}

void tst_StreamPictures::showsWholeFramesInTheirColors_data()
{
    QTest::addColumn<QString>("path");
    for (const char* scene : {"/bars", "/blink"}) {
        for (const char* coding : {"/h264", "/h265", "/mjpeg", "/hd", "/hd-h265", "/hd-mjpeg"}) {
            for (const char* transport : {"tcp", "udp"})
                QTest::addRow("%s%s %s", scene, coding, transport) << QStringLiteral("%1%2?%3").arg(
                    QLatin1String(scene), QLatin1String(coding), QLatin1String(transport));
        }
    }
}

void tst_StreamPictures::showsWholeFramesInTheirColors()
{
    QFETCH(QString, path);
    const bool jpeg = path.contains(QLatin1String("mjpeg"));
    const auto check = path.startsWith(QLatin1String("/bars")) ? checkBars : checkBlink;
    CheckingSink sink([=](const QImage& image) { return check(image, jpeg); });
    StreamCamera camera(server.url(path));
    QVERIFY(camera.start(&sink));
    QVERIFY(sink.waitForFrames(watchedFrames, 20s));
    camera.stop();
    QCOMPARE(sink.complaint(), QString());
}

void tst_StreamPictures::showsFramesSoonAfterTheyWereMade()
{
    const auto checkAge = [](const QImage& image) {
        const uint32_t made =
            clockcode::read([&](int x, int y) { return qGray(image.pixel(x, y)) > 128; });
        const uint32_t age = clockcode::now() - made;
        return age < 2000000U ? QString() : QStringLiteral("made %1 microseconds ago").arg(age);
    };
    for (const char* path : {"/clock/h264", "/clock/h265", "/clock/mjpeg"}) {
        CheckingSink sink(checkAge);
        StreamCamera camera(server.url(QString::fromLatin1(path)));
        QVERIFY(camera.start(&sink));
        QVERIFY(sink.waitForFrames(watchedFrames, 20s));
        camera.stop();
        QCOMPARE(sink.complaint(), QString());
    }
}

QTEST_GUILESS_MAIN(tst_StreamPictures)

#include "tst_StreamPictures.moc"
