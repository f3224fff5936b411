// USB cameras, from the driver to the screen, and the conversion of their pictures. The driver is
// the fake one of the tests, its time is not counted. The baselines are measured in turn with what
// they are compared with, frame by frame, so that both meet the same machine.
//
//   time, base_time  milliseconds a frame: for MJPEG from the moment in which the driver hands a
//                    frame out to the end of its painting, with nothing else to do, against
//                    libjpeg-turbo alone and the drawing in a bare widget; for YUYV and the formats
//                    of machine vision cameras the conversion of a frame against libyuv alone, or
//                    where it has none against copying the pixels
//   cpu, base_cpu    the same in processor time, of all threads
//   fps              frames painted a second
//   lost             frames that the camera sent and nobody saw
//   ordered          1 when they came in their order

#include "LiveCapture.h"
#include "MicroscopePictures.h"
#include "pixels/SensorConverter.h"
#include "support.h"
#include "v4l2/FrameDecoder.h"

#include <benchmark/benchmark.h>

#include <libyuv.h>

#include <QElapsedTimer>
#include <QThread>

#include <cstring>
#include <map>
#include <thread>

namespace {

constexpr int pictures = 32;
constexpr int unhurriedRate = 8; // Leaves time for the baseline.
constexpr int unhurriedFrames = 24;
constexpr int rest = 15; // In milliseconds: threads that show frames have slept before, too.
constexpr int fullRate = 30;
constexpr int fullRateFrames = 150;
constexpr int settlingFrames = 8;
constexpr int conversions = 100;

// Of the GenICam Pixel Format Naming Convention.
constexpr std::uint32_t mono8 = 0x01080001;
constexpr std::uint32_t bayerRg8 = 0x01080009;
constexpr std::uint32_t bayerRg12p = 0x010C0059;
constexpr std::uint32_t rgb8 = 0x02180014;

using bench::LiveCapture;

QSize sizeOf(const benchmark::State& state)
{
    return {int(state.range(0)), int(state.range(0)) * 9 / 16};
}

/// Made once.
const std::vector<QByteArray>& jpegs(const QSize& size, TJSAMP sampling)
{
    static std::map<std::pair<int, TJSAMP>, std::vector<QByteArray>> made;
    std::vector<QByteArray>& list = made[{size.width(), sampling}];
    if (list.empty()) {
        for (const QImage& picture : bench::microscopePictures(size, pictures))
            list.push_back(bench::jpeg(picture, sampling));
    }
    return list;
}

double milliseconds(const QElapsedTimer& timer)
{
    return double(timer.nsecsElapsed()) / 1e6;
}

/// What cannot be saved of a frame: to decode it, which no GUI thread may do, and to draw it there.
class BareShow final
{
public:
    explicit BareShow(const QSize& size) : handle(tjInitDecompress())
    {
        widget.image = QImage(size, QImage::Format_RGB32);
        widget.move(bench::viewport.width() + 50, 0);
        bench::show(widget);
    }
    ~BareShow() { tjDestroy(handle); }

    void decode(const QByteArray& jpeg)
    {
        QImage& image = widget.image;
        tjDecompress2(handle, reinterpret_cast<const uchar*>(jpeg.constData()),
                      static_cast<unsigned long>(jpeg.size()), image.bits(), image.width(),
                      image.bytesPerLine(), image.height(), TJPF_BGRX, 0);
    }
    void draw() { widget.repaint(); }

    bench::BareWidget widget;

private:
    const tjhandle handle;
};

/// Milliseconds, frame by frame.
struct Costs
{
    std::vector<double> time;
    double processor = 0.0; ///< Of all frames.
};

void report(benchmark::State& state, const Costs& ours, const Costs& base)
{
    const auto mean = benchmark::Counter::kAvgIterations;
    state.counters["time"] = bench::median(ours.time);
    state.counters["base_time"] = bench::median(base.time);
    state.counters["cpu"] = benchmark::Counter(ours.processor, mean);
    state.counters["base_cpu"] = benchmark::Counter(base.processor, mean);
}

template <typename Work>
void measure(Costs* costs, Work work)
{
    const double before = bench::processorTime(CLOCK_THREAD_CPUTIME_ID);
    QElapsedTimer timer;
    timer.start();
    work();
    costs->time.push_back(milliseconds(timer));
    costs->processor += bench::processorTime(CLOCK_THREAD_CPUTIME_ID) - before;
}

void processing(benchmark::State& state, TJSAMP sampling)
{
    const auto& list = jpegs(sizeOf(state), sampling);
    LiveCapture live(list, sizeOf(state), unhurriedRate);
    BareShow bare(sizeOf(state));
    if (!live.start() || !live.waitForFrames(settlingFrames))
        return state.SkipWithError("no frames");
    if (live.view.geometry().intersects(bare.widget.geometry()))
        return state.SkipWithError("the screen is too small for both windows");
    Costs ours;
    Costs decoding;
    Costs drawing;
    const double before = live.processorTime();
    for (auto _ : state) {
        if (!live.waitForFrames(1))
            return state.SkipWithError("the frames stopped");
        ours.time.push_back(live.lastProcessing());
        QThread::msleep(rest);
        const auto decode = [&] { bare.decode(list[ours.time.size() % list.size()]); };
        std::thread([&] { measure(&decoding, decode); }).join();
        measure(&drawing, [&] { bare.draw(); });
    }
    ours.processor = live.processorTime() - before - decoding.processor - drawing.processor;
    report(state, ours,
           {{bench::median(decoding.time) + bench::median(drawing.time)},
            decoding.processor + drawing.processor});
}

void atFullRate(benchmark::State& state, TJSAMP sampling)
{
    LiveCapture live(jpegs(sizeOf(state), sampling), sizeOf(state), fullRate);
    if (!live.start() || !live.waitForFrames(settlingFrames))
        return state.SkipWithError("no frames");
    live.painted.restart();
    const double before = live.processorTime();
    for (auto _ : state) {
        if (!live.waitForFrames(1))
            return state.SkipWithError("the frames stopped");
    }
    state.counters["cpu"] = (live.processorTime() - before) / fullRateFrames;
    state.counters["fps"] = benchmark::Counter(fullRateFrames, benchmark::Counter::kIsRate);
    state.counters["lost"] = live.painted.lost();
    state.counters["ordered"] = live.painted.isOrdered();
}

template <typename Ours, typename Base>
void compare(benchmark::State& state, Ours ours, Base base)
{
    Costs ourCosts;
    Costs baseCosts;
    for (auto _ : state) {
        measure(&ourCosts, ours);
        measure(&baseCosts, base);
    }
    report(state, ourCosts, baseCosts);
}

void packedYuv(benchmark::State& state, zolens::FrameConverter::Orientation orientation)
{
    const QSize size = sizeOf(state);
    const QByteArray data = bench::yuyv(bench::microscopePictures(size, 1).front());
    const auto* pixels = reinterpret_cast<const uchar*>(data.constData());
    const zolens::DriverFrame frame = {0, pixels, std::size_t(data.size()), false};
    const auto decoder = zolens::makeDecoder({zolens::findPixelFormat(V4L2_PIX_FMT_YUYV), size, 0});
    QImage target(size, QImage::Format_RGB32);
    const auto convert = [&] { decoder->decode(frame, orientation, &target); };
    compare(state, convert, [&] {
        libyuv::YUY2ToARGB(pixels, size.width() * 2, target.bits(), target.bytesPerLine(),
                           size.width(), size.height());
    });
}

struct SensorCase
{
    std::uint32_t code;
    /// The least that anything can do to the pixels; makes as many as the target holds.
    void (*base)(const uchar* pixels, QImage* target);
};

void expandMono(const uchar* pixels, QImage* target)
{
    libyuv::I400ToARGB(pixels, target->width(), target->bits(), target->bytesPerLine(),
                       target->width(), target->height());
}

void expandRgb(const uchar* pixels, QImage* target)
{
    libyuv::RAWToARGB(pixels, target->width() * 3, target->bits(), target->bytesPerLine(),
                      target->width(), target->height());
}

void copyPixels(const uchar* pixels, QImage* target)
{
    std::memcpy(target->bits(), pixels, std::size_t(target->sizeInBytes()));
}

void sensor(benchmark::State& state, SensorCase sensorCase)
{
    const QImage source = bench::microscopePictures(sizeOf(state), 1).front();
    const zolens::SensorFormat& format = *zolens::findSensorFormat(sensorCase.code);
    const zolens::SensorData data = {source.constBits(), std::size_t(source.sizeInBytes())};
    zolens::SensorConverter converter;
    QImage target(source.size(), QImage::Format_RGB32);
    const auto convert = [&] { converter.convert(format, data, {}, &target); };
    compare(state, convert, [&] { sensorCase.base(source.constBits(), &target); });
}

template <typename Function, typename Argument>
void add(const char* name, Function function, Argument argument, std::vector<int64_t> widths,
         int iterations)
{
    benchmark::RegisterBenchmark(
        name, [function, argument](benchmark::State& state) { function(state, argument); })
        ->ArgName("width")
        ->ArgsProduct({std::move(widths)})
        ->Iterations(iterations)
        ->UseRealTime()
        ->Unit(benchmark::kMillisecond);
}

void registerBenchmarks()
{
    add("MJPEG 4:2:2", processing, TJSAMP_422, {1920, 3840}, unhurriedFrames);
    add("MJPEG 4:2:0", processing, TJSAMP_420, {1920, 3840}, unhurriedFrames);
    add("full rate, 4:2:2", atFullRate, TJSAMP_422, {3840}, fullRateFrames);
    add("full rate, 4:2:0", atFullRate, TJSAMP_420, {3840}, fullRateFrames);
    using Orientation = zolens::FrameConverter::Orientation;
    add("YUYV", packedYuv, Orientation{false, false}, {1920, 3840}, conversions);
    add("YUYV, flipped", packedYuv, Orientation{true, false}, {1920, 3840}, conversions);
    add("YUYV, mirrored", packedYuv, Orientation{false, true}, {1920, 3840}, conversions);
    add("Mono8", sensor, SensorCase{mono8, expandMono}, {1920, 3840}, conversions);
    add("RGB8", sensor, SensorCase{rgb8, expandRgb}, {1920, 3840}, conversions);
    add("BayerRG8", sensor, SensorCase{bayerRg8, copyPixels}, {1920, 3840}, conversions);
    add("BayerRG12p", sensor, SensorCase{bayerRg12p, copyPixels}, {1920, 3840}, conversions);
}

} // namespace

int main(int argc, char** argv)
{
    QApplication application(argc, argv);
    benchmark::Initialize(&argc, argv);
    registerBenchmarks();
    benchmark::RunSpecifiedBenchmarks();
    return 0;
}
