#include "ffmpeg/VideoDecoder.h"
#include "zolens/stream/TestVideo.h"

#include <QTemporaryDir>
#include <QtEndian>
#include <QtTest>

#include <cstring>

using zolens::AvPointer;
using zolens::VideoDecoder;

namespace {

constexpr int frameCount = 25;

/// The packets of a short video, and what its container says of them.
class Packets final
{
public:
    explicit Packets(const QByteArray& encoder)
    {
        const QString path = folder.filePath(QStringLiteral("video.mkv"));
        TestVideo video;
        video.encoder = encoder;
        video.frames = frameCount;
        AVFormatContext* opened = nullptr;
        if (!video.write(path) ||
            avformat_open_input(&opened, path.toUtf8().constData(), nullptr, nullptr) < 0)
            return;
        input.reset(opened);
        AvPointer<AVPacket> packet(av_packet_alloc());
        while (av_read_frame(input.get(), packet.get()) >= 0) {
            all.push_back(std::move(packet));
            packet.reset(av_packet_alloc());
        }
    }

    const AVCodecParameters& parameters() const { return *input->streams[0]->codecpar; }

    std::vector<AvPointer<AVPacket>> all;

private:
    QTemporaryDir folder;
    AvPointer<AVFormatContext> input;
};

/// The numbers of the pictures that come out, by where their white bar stands.
class Numbers final
{
public:
    VideoDecoder::FrameHandler handler()
    {
        return [this](const AVFrame& frame) { list << numberOf(frame); };
    }

    /// The bar has 16 pixels, and steps by as many over the 304 that it has room in.
    static int numberOf(const AVFrame& frame)
    {
        const std::uint8_t* line = frame.data[0] + frame.height / 2 * frame.linesize[0];
        int x = 0;
        while (x < frame.width && line[x] < 190)
            ++x;
        return x / 16;
    }

    static QList<int> expected()
    {
        QList<int> numbers;
        for (int i = 0; i < frameCount; ++i)
            numbers << i % 19;
        return numbers;
    }

    QList<int> list;
};

/// A square picture of that length, of which one point is drawn.
QByteArray gifOf(quint16 length)
{
    QByteArray sides(4, '\0');
    qToLittleEndian(length, sides.data());
    qToLittleEndian(length, sides.data() + 2);
    return "GIF89a" + sides +
           QByteArray::fromHex("800000ffffff000000"
                               "2c00000000010001000002024401003b");
}

AvPointer<AVPacket> packetOf(const QByteArray& data)
{
    AvPointer<AVPacket> packet(av_packet_alloc());
    av_new_packet(packet.get(), data.size());
    std::memcpy(packet->data, data.constData(), std::size_t(data.size()));
    return packet;
}

} // namespace

class tst_VideoDecoder final : public QObject
{
    Q_OBJECT

private slots:
    void showsEveryPictureInOrder_data()
    {
        QTest::addColumn<QByteArray>("encoder");
        QTest::addColumn<bool>("live");
        for (const char* encoder : {"libx264", "mpeg4", "mjpeg"}) {
            for (const bool live : {false, true})
                QTest::addRow("%s %s", encoder, live ? "live" : "file")
                    << QByteArray(encoder) << live;
        }
    }

    void showsEveryPictureInOrder()
    {
        QFETCH(QByteArray, encoder);
        QFETCH(bool, live);
        const Packets packets(encoder);
        QCOMPARE(int(packets.all.size()), frameCount);
        VideoDecoder decoder;
        QVERIFY(decoder.open(packets.parameters(), live));
        // After a drain it begins anew.
        for (int round = 0; round < 2; ++round) {
            Numbers numbers;
            for (const auto& packet : packets.all)
                decoder.decode(*packet, numbers.handler());
            decoder.drain(numbers.handler());
            QCOMPARE(numbers.list, Numbers::expected());
        }
        QCOMPARE(decoder.damagedFrames(), quint64(0));
    }

    void aLivePictureIsShownAsSoonAsItIsThere_data()
    {
        QTest::addColumn<QByteArray>("encoder");
        QTest::newRow("MPEG-4") << QByteArray("mpeg4");
        QTest::newRow("MJPEG") << QByteArray("mjpeg");
    }

    void aLivePictureIsShownAsSoonAsItIsThere()
    {
        QFETCH(QByteArray, encoder);
        const Packets packets(encoder);
        VideoDecoder decoder;
        QVERIFY(decoder.open(packets.parameters(), true));
        Numbers numbers;
        for (std::size_t i = 0; i < packets.all.size(); ++i) {
            decoder.decode(*packets.all[i], numbers.handler());
            QCOMPARE(numbers.list.size(), int(i) + 1);
        }
    }

    void knowsWhichFramesStandAlone()
    {
        VideoDecoder decoder;
        QVERIFY(decoder.open(Packets("mjpeg").parameters(), true));
        QVERIFY(decoder.isIntraOnly());
        QVERIFY(decoder.open(Packets("libx264").parameters(), true));
        QVERIFY(!decoder.isIntraOnly());
    }

    void countsADamagedFrameOnceAndGoesOn()
    {
        const Packets packets("mjpeg");
        VideoDecoder decoder;
        QVERIFY(decoder.open(packets.parameters(), true));
        Numbers numbers;
        decoder.decode(*packets.all[0], numbers.handler());
        std::memset(packets.all[1]->data, 0x55, std::size_t(packets.all[1]->size));
        decoder.decode(*packets.all[1], numbers.handler());
        QCOMPARE(decoder.damagedFrames(), quint64(1));
        decoder.decode(*packets.all[2], numbers.handler());
        QCOMPARE(numbers.list, (QList<int>{0, 2}));
        QCOMPARE(decoder.damagedFrames(), quint64(1));
    }

    void refusesAHugePicture_data()
    {
        QTest::addColumn<int>("length");
        QTest::addColumn<int>("pictures");
        QTest::newRow("small") << 20 << 1;
        // 35 bytes that ask for 784 MB, which the library itself would allow.
        QTest::newRow("huge") << 14000 << 0;
    }

    void refusesAHugePicture()
    {
        QFETCH(int, length);
        QFETCH(int, pictures);
        const AvPointer<AVCodecParameters> parameters(avcodec_parameters_alloc());
        parameters->codec_type = AVMEDIA_TYPE_VIDEO;
        parameters->codec_id = AV_CODEC_ID_GIF;
        const AvPointer<AVPacket> packet = packetOf(gifOf(quint16(length)));
        VideoDecoder decoder;
        QVERIFY(decoder.open(*parameters, true));
        int shown = 0;
        decoder.decode(*packet, [&shown](const AVFrame&) { ++shown; });
        QCOMPARE(shown, pictures);
        QCOMPARE(decoder.damagedFrames(), quint64(1 - pictures));
    }

    void refusesAnUnknownCodec()
    {
        const AvPointer<AVCodecParameters> parameters(avcodec_parameters_alloc());
        parameters->codec_type = AVMEDIA_TYPE_VIDEO;
        QVERIFY(!VideoDecoder().open(*parameters, true));
    }
};

QTEST_GUILESS_MAIN(tst_VideoDecoder)
#include "tst_VideoDecoder.moc"
