#include "device/VideoModes.h"

#include <QtTest>

using zolens::VideoFormat;
using zolens::VideoMode;
using zolens::VideoModes;

namespace {

const VideoFormat color{1, 2, {QSize(640, 480), QSize(1280, 720)}};
const VideoFormat grey{2, 7, {QSize(320, 240), QSize(640, 480)}};

} // namespace

class tst_VideoModes final : public QObject
{
    Q_OBJECT

private slots:
    void choosesFullHighDefinitionAtMost()
    {
        VideoModes modes;
        modes.offer({{1, 2, {QSize(640, 480), QSize(1920, 1080), QSize(3840, 2160)}},
                     {2, 7, {QSize(2592, 1944), QSize(3264, 2448)}}});
        QCOMPARE(modes.preview().size, QSize(1920, 1080));
        QCOMPARE(modes.still().size, QSize(3840, 2160));
        QVERIFY(modes.selectFormat(1));
        QCOMPARE(modes.preview().size, QSize(2592, 1944));
        QCOMPARE(modes.still().size, QSize(3264, 2448));
    }

    void keepsASizeThatTheNewFormatHas()
    {
        VideoModes modes;
        modes.offer({color, grey});
        QVERIFY(modes.selectSize(0));
        QVERIFY(modes.selectFormat(1));
        QCOMPARE(modes.preview().size, QSize(640, 480));
    }

    void goesDownFromSizeToSize()
    {
        VideoModes modes;
        QVERIFY(!modes.selectSmallerSize());
        modes.offer({{1, 2, {QSize(640, 360), QSize(640, 480), QSize(1280, 720)}}});
        // One that the device has made of a listed one.
        modes.correct(modes.preview(), {0, QSize(1272, 720)});
        QVERIFY(modes.selectSmallerSize());
        QCOMPARE(modes.preview().size, QSize(640, 480));
        QVERIFY(modes.selectSmallerSize());
        QCOMPARE(modes.preview().size, QSize(640, 360));
        QVERIFY(!modes.selectSmallerSize());
        QCOMPARE(modes.preview().size, QSize(640, 360));
    }

    void refusesPositionsThatAreNone()
    {
        VideoModes modes;
        QVERIFY(!modes.selectFormat(0));
        QVERIFY(!modes.selectSize(0));
        QVERIFY(!modes.selectStillSize(0));
        modes.offer({color});
        QVERIFY(!modes.selectFormat(1));
        QVERIFY(!modes.selectFormat(-1));
        QVERIFY(!modes.selectSize(2));
        QVERIFY(!modes.selectStillSize(-1));
    }

    void hasNoSizesWhileAStreamTellsNone()
    {
        VideoModes modes;
        modes.offer({{0, 20, {}}});
        QVERIFY(modes.selectFormat(0));
        QVERIFY(!modes.selectSize(0));
        QVERIFY(modes.sizes().empty());
        QCOMPARE(modes.preview().size, QSize(0, 0));
        modes.offer({{0, 20, {{640, 480}}}});
        QCOMPARE(modes.preview().size, QSize(640, 480));
    }

    void theSameOfferLeavesTheChoice()
    {
        VideoModes modes;
        QVERIFY(modes.offer({color, grey}));
        QVERIFY(modes.selectFormat(1));
        QVERIFY(modes.selectSize(0));
        QVERIFY(!modes.offer({color, grey}));
        QVERIFY(modes.preview() == (VideoMode{1, QSize(320, 240)}));
    }

    // The device may have rounded it.
    void choosingTheSameFormatAgainKeepsASizeThatIsNotListed()
    {
        VideoModes modes;
        modes.offer({color, grey});
        const VideoMode rounded{0, QSize(1272, 720)};
        modes.correct(modes.preview(), rounded);
        QVERIFY(modes.selectFormat(0));
        QVERIFY(modes.preview() == rounded);
        QVERIFY(modes.selectFormat(1));
        QCOMPARE(modes.preview().size, QSize(640, 480));
    }

    void aRefusedChoiceGoesBack()
    {
        VideoModes modes;
        modes.offer({color, grey});
        const VideoMode before = modes.preview();
        QVERIFY(modes.selectFormat(1));
        QVERIFY(modes.correct(modes.preview(), before));
        QVERIFY(modes.preview() == before);
        QVERIFY(!modes.correct(before, before));
    }

    void anAnswerToAnOlderChoiceDoesNotCount()
    {
        VideoModes modes;
        modes.offer({color});
        const VideoMode older = modes.preview();
        QVERIFY(modes.selectSize(0));
        QVERIFY(!modes.correct(older, {0, QSize(320, 240)}));
        QCOMPARE(modes.preview().size, QSize(640, 480));
    }

    // As by a box that was lost, and another one at its address.
    void aFormatThatIsNotOnOfferAnyMoreIsNotGoneBackTo()
    {
        VideoModes modes;
        modes.offer({color, grey});
        QVERIFY(modes.selectFormat(1));
        const VideoMode before = modes.preview();
        QVERIFY(modes.offer({color}));
        QVERIFY(!modes.correct(modes.preview(), before));
        QCOMPARE(modes.preview().format, 0);
        QCOMPARE(modes.sizes(), color.sizes);
    }
};

QTEST_APPLESS_MAIN(tst_VideoModes)
#include "tst_VideoModes.moc"
