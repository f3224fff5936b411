// Recording, with the live view beside it and alone.
//
//   fps          frames painted a second while every one is recorded
//   shown_lost   frames that the camera sent and nobody saw
//   file_lost    frames that the camera sent and the file lacks, by ffprobe
//   longest      the longest time that a frame of the file shows, in milliseconds, by ffprobe
//   file_fps     frames a second that are encoded and written when nothing else is to be done, up
//                to the complete file; from RGB by the recorder as cameras use it, from planes by
//                encoder and file alone
//   base_file_fps  those of the ffmpeg program with the same settings, its start included

#include "LiveCapture.h"
#include "MicroscopePictures.h"
#include "recording/VideoRecorder.h"
#include "support.h"

#include <benchmark/benchmark.h>

#include <libyuv.h>

#include <QElapsedTimer>
#include <QFile>
#include <QProcess>
#include <QThread>

namespace {

constexpr QSize size(1920, 1080);
constexpr int pictures = 32;
constexpr int rate = 30;
constexpr int settlingFrames = 15;
constexpr int recordedFrames = 360;
constexpr int encodedFrames = 450;

using bench::FrameCount;
using bench::LiveCapture;
using zolens::VideoRecorder;

const std::vector<QImage>& frames()
{
    static const std::vector<QImage> made = bench::microscopePictures(size, pictures);
    return made;
}

using Bytes = QByteArray (*)(const QImage& picture);

std::vector<QByteArray> all(Bytes bytes)
{
    std::vector<QByteArray> list;
    std::transform(frames().begin(), frames().end(), std::back_inserter(list), bytes);
    return list;
}

/// What ffprobe tells of the packets of a file.
struct Packets
{
    int count = 0;
    double longest = 0.0; ///< In seconds.
};

Packets probe(const QString& path)
{
    QProcess program;
    program.start(QStringLiteral("ffprobe"),
                  {QStringLiteral("-v"), QStringLiteral("error"), QStringLiteral("-show_entries"),
                   QStringLiteral("packet=duration_time"), QStringLiteral("-of"),
                   QStringLiteral("csv=p=0"), path});
    program.waitForFinished();
    Packets packets;
    for (const QByteArray& line : program.readAllStandardOutput().split('\n')) {
        if (line.isEmpty())
            continue;
        ++packets.count;
        packets.longest = std::max(packets.longest, line.split(',').first().toDouble());
    }
    return packets;
}

void besideTheLiveView(benchmark::State& state)
{
    const auto asJpeg = [](const QImage& picture) { return bench::jpeg(picture, TJSAMP_422); };
    LiveCapture live(all(asJpeg), size, rate);
    QTemporaryDir folder;
    const auto recorder = VideoRecorder::start(folder.filePath(QStringLiteral("video.mp4")), {});
    if (!recorder || !live.start() || !live.waitForFrames(settlingFrames))
        return state.SkipWithError("no frames");
    FrameCount sent(pictures);
    live.painted.restart();
    live.delivery.setTap([&](const QImage& frame, auto arrival) {
        sent.add(bench::numberOf(frame));
        recorder->offer(frame, arrival);
    });
    for (auto _ : state) {
        if (!live.waitForFrames(1)) {
            state.SkipWithError("the frames stopped");
            break;
        }
    }
    live.delivery.setTap({});
    recorder->stop();
    const Packets packets = probe(recorder->path());
    state.counters["fps"] = benchmark::Counter(recordedFrames, benchmark::Counter::kIsRate);
    state.counters["shown_lost"] = live.painted.lost();
    state.counters["file_lost"] = sent.frames() + sent.lost() - packets.count;
    state.counters["longest"] = packets.longest * 1e3;
}

std::chrono::microseconds timeOf(int number)
{
    return std::chrono::microseconds(number * 1000000LL / rate);
}

/// Offers every frame until it is taken.
void recordPictures(const QString& path)
{
    const auto recorder = VideoRecorder::start(path, {});
    const auto begin = zolens::Recording::Clock::now();
    for (int number = 0; number < encodedFrames;) {
        const quint64 dropped = recorder->droppedFrames();
        recorder->offer(frames()[std::size_t(number % pictures)], begin + timeOf(number));
        if (recorder->droppedFrames() == dropped)
            ++number;
        else
            QThread::msleep(1);
    }
    recorder->stop();
}

/// A picture as the planes that the encoder takes.
QByteArray planar(const QImage& picture)
{
    const int luma = size.width() * size.height();
    QByteArray data(luma * 3 / 2, 0);
    auto* bytes = reinterpret_cast<uchar*>(data.data());
    libyuv::ARGBToI420(picture.constBits(), picture.bytesPerLine(), bytes, size.width(),
                       bytes + luma, size.width() / 2, bytes + luma * 5 / 4, size.width() / 2,
                       size.width(), size.height());
    return data;
}

QByteArray packed(const QImage& picture)
{
    return QByteArray(reinterpret_cast<const char*>(picture.constBits()),
                      int(picture.sizeInBytes()));
}

void copyPlanes(const QByteArray& planes, AVFrame* picture)
{
    const int luma = size.width() * size.height();
    const auto* bytes = reinterpret_cast<const uchar*>(planes.constData());
    libyuv::I420Copy(bytes, size.width(), bytes + luma, size.width() / 2, bytes + luma * 5 / 4,
                     size.width() / 2, picture->data[0], picture->linesize[0], picture->data[1],
                     picture->linesize[1], picture->data[2], picture->linesize[2], size.width(),
                     size.height());
}

/// Encodes and writes planes, copying what is read, as the program does.
void recordPlanes(const QString& path)
{
    using zolens::H264Encoder;
    static const std::vector<QByteArray> planes = all(planar);
    H264Encoder encoder;
    zolens::RecordingFile file(path);
    zolens::PicturePool pool;
    const auto write = [&file](AVPacket* packet) { file.write(packet); };
    encoder.open(size);
    file.open();
    file.begin(*encoder.parameters(), H264Encoder::timeBase);
    for (int number = 0; number < encodedFrames; ++number) {
        const zolens::Picture picture = pool.acquire(size);
        copyPlanes(planes[std::size_t(number % pictures)], picture.get());
        picture->pts = int64_t{number} * H264Encoder::timeBase.den / rate;
        encoder.encode(picture.get(), write);
    }
    encoder.finish(write);
    file.finish();
}

/// The settings are those of H264Encoder for this size on two cores.
void encodeByProgram(const QString& source, const char* format, const QString& path)
{
    const QString command =
        QStringLiteral("-v error -y -f rawvideo -pix_fmt %1 -s 1920x1080 -r 30 -stream_loop -1 "
                       "-i %2 -frames:v %3 -pix_fmt yuv420p -c:v libx264 -preset ultrafast -crf 20 "
                       "-tune zerolatency -g 1000 -force_key_frames expr:gte(t,n_forced) "
                       "-sc_threshold 0 -threads 2 -movflags "
                       "frag_keyframe+empty_moov+default_base_moof %4")
            .arg(QLatin1String(format), source, QString::number(encodedFrames), path);
    QProcess program;
    program.start(QStringLiteral("ffmpeg"), command.split(QLatin1Char(' ')));
    program.waitForFinished(-1);
}

/// Frames a second, 0 when some are missing.
template <typename Work>
double rateOf(const QString& path, Work work)
{
    QElapsedTimer timer;
    timer.start();
    work();
    const double seconds = double(timer.nsecsElapsed()) / 1e9;
    return probe(path).count == encodedFrames ? encodedFrames / seconds : 0.0;
}

/// The program reads the pictures as `format`, made by `bytes`.
void alone(benchmark::State& state, void (*record)(const QString& path), const char* format,
           Bytes bytes)
{
    QTemporaryDir folder;
    QFile source(folder.filePath(QStringLiteral("pictures")));
    source.open(QIODevice::WriteOnly);
    for (const QByteArray& picture : all(bytes))
        source.write(picture);
    source.close();
    const QString path = folder.filePath(QStringLiteral("video.mp4"));
    for (auto _ : state) {
        state.counters["file_fps"] = rateOf(path, [&] { record(path); });
        state.counters["base_file_fps"] =
            rateOf(path, [&] { encodeByProgram(source.fileName(), format, path); });
    }
}

void fromRgb(benchmark::State& state)
{
    alone(state, recordPictures, "bgr0", packed);
}

void fromPlanes(benchmark::State& state)
{
    alone(state, recordPlanes, "yuv420p", planar);
}

} // namespace

BENCHMARK(besideTheLiveView)->Iterations(recordedFrames)->UseRealTime();
BENCHMARK(fromRgb)->Iterations(1)->UseRealTime();
BENCHMARK(fromPlanes)->Iterations(1)->UseRealTime();

int main(int argc, char** argv)
{
    QApplication application(argc, argv);
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    return 0;
}
