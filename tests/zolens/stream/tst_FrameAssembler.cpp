#include "stream/FrameAssembler.h"

#include <QtTest>

#include <cstring>

using zolens::AvPointer;
using zolens::FrameAssembler;

namespace {

AvPointer<AVPacket> piece(int64_t timeStamp, const QByteArray& data)
{
    AvPointer<AVPacket> packet(av_packet_alloc());
    if (packet && av_new_packet(packet.get(), data.size()) >= 0)
        std::memcpy(packet->data, data.constData(), size_t(data.size()));
    packet->pts = timeStamp;
    return packet;
}

QByteArray dataOf(const AVPacket& packet)
{
    return QByteArray(reinterpret_cast<const char*>(packet.data), packet.size);
}

} // namespace

class tst_FrameAssembler : public QObject
{
    Q_OBJECT

private slots:
    void joinsPiecesOfOneTimeStamp();
    void tellsFramesApartByTheirTimeStampAlone();
    void joinsPiecesBeforeTheFirstTimeStamp();
    void keepsTheMarkOfDamage();
    void leavesRoomThatDecodersReadBeyondTheEnd();
    void limitsTheSizeOfAFrame();
};

void tst_FrameAssembler::joinsPiecesOfOneTimeStamp()
{
    FrameAssembler assembler;
    QVERIFY(!assembler.add(*piece(7, "one ")));
    QVERIFY(!assembler.add(*piece(7, "two ")));
    QVERIFY(!assembler.add(*piece(7, "three")));
    const AVPacket* frame = assembler.add(*piece(8, "next"));
    QVERIFY(frame);
    QCOMPARE(dataOf(*frame), QByteArray("one two three"));
    QCOMPARE(frame->pts, int64_t(7));
    frame = assembler.add(*piece(9, "after"));
    QVERIFY(frame);
    QCOMPARE(dataOf(*frame), QByteArray("next"));
    QCOMPARE(frame->pts, int64_t(8));
}

void tst_FrameAssembler::tellsFramesApartByTheirTimeStampAlone()
{
    const QByteArray parameters("\0\0\0\1\x67", 5);
    const QByteArray slice("\0\0\0\1\x65", 5);
    FrameAssembler assembler;
    for (int slices = 0; slices < 2; ++slices) {
        QVERIFY(!assembler.add(*piece(90, parameters)));
        QVERIFY(!assembler.add(*piece(90, slice)));
    }
    // Time stamps may jump back, as when a server starts its clock anew.
    const AVPacket* frame = assembler.add(*piece(0, slice));
    QVERIFY(frame);
    QCOMPARE(dataOf(*frame), parameters + slice + parameters + slice);
}

void tst_FrameAssembler::joinsPiecesBeforeTheFirstTimeStamp()
{
    FrameAssembler assembler;
    QVERIFY(!assembler.add(*piece(AV_NOPTS_VALUE, "a")));
    QVERIFY(!assembler.add(*piece(AV_NOPTS_VALUE, "b")));
    const AVPacket* frame = assembler.add(*piece(0, "c"));
    QVERIFY(frame);
    QCOMPARE(dataOf(*frame), QByteArray("ab"));
}

void tst_FrameAssembler::keepsTheMarkOfDamage()
{
    FrameAssembler assembler;
    QVERIFY(!assembler.add(*piece(1, "a")));
    const AvPointer<AVPacket> damaged = piece(1, "b");
    damaged->flags |= AV_PKT_FLAG_CORRUPT;
    QVERIFY(!assembler.add(*damaged));
    const AVPacket* frame = assembler.add(*piece(2, "c"));
    QVERIFY(frame);
    QVERIFY(frame->flags & AV_PKT_FLAG_CORRUPT);
    frame = assembler.add(*piece(3, "d"));
    QVERIFY(frame);
    QVERIFY(!(frame->flags & AV_PKT_FLAG_CORRUPT));
}

void tst_FrameAssembler::leavesRoomThatDecodersReadBeyondTheEnd()
{
    FrameAssembler assembler;
    for (int i = 0; i < 100; ++i)
        QVERIFY(!assembler.add(*piece(1, QByteArray(1391, 'x'))));
    const AVPacket* frame = assembler.add(*piece(2, "y"));
    QVERIFY(frame);
    QCOMPARE(frame->size, 139100);
    const QByteArray room(reinterpret_cast<const char*>(frame->data) + frame->size,
                          AV_INPUT_BUFFER_PADDING_SIZE);
    QCOMPARE(room, QByteArray(AV_INPUT_BUFFER_PADDING_SIZE, '\0'));
}

void tst_FrameAssembler::limitsTheSizeOfAFrame()
{
    FrameAssembler assembler;
    constexpr int pieceSize = 1 << 20;
    int frames = 0;
    for (int i = 0; i < 100; ++i) {
        if (const AVPacket* frame = assembler.add(*piece(1, QByteArray(pieceSize, 'x')))) {
            ++frames;
            QCOMPARE(frame->size, 32 * pieceSize);
        }
    }
    QCOMPARE(frames, 3);
}

QTEST_GUILESS_MAIN(tst_FrameAssembler)

#include "tst_FrameAssembler.moc"
