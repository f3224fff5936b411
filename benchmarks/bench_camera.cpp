// Cameras, from the device to the screen: frames per second, the time from open() to the first
// painted frame, and how old a frame is when it is painted in a view of 1600 x 900. The baseline of
// the simulated camera is itself with nobody looking, that of a stream the rate of the server.
//
//   fps         frames painted a second, or handed out where nothing is painted
//   server_fps  pictures that the server makes a second
//   first_ms    from the call of open() to the first frame painted
//   paint_ms    median from the library's handing a frame out to the end of its painting
//   made_ms     median from the server's making a picture to the end of its painting, by the time
//               that stands in the picture: includes the coding, the frame time for which the
//               server holds every picture back, sending and decoding, and for H.264 the wait for
//               the next frame, whose begin shows that one is complete

#include "Arrivals.h"
#include "support.h"
#include "support/rtspserver/ClockCode.h"
#include "support/rtspserver/RtspServer.h"
#include "zolens/MyCamera.h"

#include <benchmark/benchmark.h>

#include <QElapsedTimer>

#include <algorithm>

namespace {

constexpr int frames = 120;
constexpr int settlingFrames = 30;
constexpr double serverRate = 30.0;
constexpr double shortExposure = 1000; // In microseconds: it does not limit the rate.

double millisecondsSince(uint32_t time)
{
    return (clockcode::now() - time) / 1000.0;
}

uint32_t clockIn(const QImage& image)
{
    return clockcode::read([&image](int x, int y) { return qGray(image.pixel(x, y)) > 128; });
}

/// A camera and, if it is painted, the view that shows it. `clocked` frames hold their time.
class Viewing final
{
public:
    Viewing(bool painted, bool clocked);
    ~Viewing() { camera.close(); }

    /// False when no frame comes in time.
    bool waitForFrames(int count) { return arrivals.waitFor(count); }
    /// Forgets what was measured so far.
    void restart();
    void report(benchmark::State& state) const;

    MyCamera camera;

private:
    void paint(const QImage& image, uint32_t handedOut);

    const bool isPainted;
    const bool isClocked;
    GraphicsView view;
    bench::Arrivals arrivals;
    std::vector<double> sinceHandedOut;
    std::vector<double> sinceMade;
};

Viewing::Viewing(bool painted, bool clocked) : isPainted(painted), isClocked(clocked)
{
    if (isPainted) {
        view.setFrameShape(QFrame::NoFrame);
        view.resize(bench::viewport + QSize(15, 15));
        bench::show(view);
    }
    const auto handOut = [this](const QImage& image) {
        const auto receive = [this, image, time = clockcode::now()] {
            arrivals.add();
            if (isPainted)
                paint(image, time);
        };
        QMetaObject::invokeMethod(&view, receive, Qt::QueuedConnection);
    };
    QObject::connect(&camera, &MyCamera::getImage, &camera, handOut, Qt::DirectConnection);
}

void Viewing::restart()
{
    sinceHandedOut.clear();
    sinceMade.clear();
}

void Viewing::paint(const QImage& image, uint32_t handedOut)
{
    view.setImage(image);
    view.viewport()->repaint();
    sinceHandedOut.push_back(millisecondsSince(handedOut));
    if (isClocked)
        sinceMade.push_back(millisecondsSince(clockIn(image)));
}

void Viewing::report(benchmark::State& state) const
{
    state.counters["fps"] = benchmark::Counter(frames, benchmark::Counter::kIsRate);
    if (isPainted)
        state.counters["paint_ms"] = bench::median(sinceHandedOut);
    if (isClocked)
        state.counters["made_ms"] = bench::median(sinceMade);
}

void measure(benchmark::State& state, Viewing& viewing)
{
    if (!viewing.waitForFrames(settlingFrames))
        state.SkipWithError("no frames");
    viewing.restart();
    for (auto _ : state) {
        if (!viewing.waitForFrames(1)) {
            state.SkipWithError("the frames stopped");
            break;
        }
    }
    viewing.report(state);
}

void simulated(benchmark::State& state)
{
    Viewing viewing(state.range(1) != 0, false);
    if (!viewing.camera.open(CWDevice_Simulated, 0, false)) {
        state.SkipWithError("the camera does not open");
        return;
    }
    CWCamera& device = *viewing.camera.camera;
    std::vector<QSize> sizes;
    device.previewSizes(&sizes);
    const auto wanted = std::find_if(sizes.begin(), sizes.end(), [&](const QSize& size) {
        return size.width() == state.range(0);
    });
    device.setAutoExposure(false);
    device.setProperty(CMProperty_ExposureTime, shortExposure);
    if (device.setPreviewSize(int(wanted - sizes.begin())) != 0)
        state.SkipWithError("the camera lacks the size");
    measure(state, viewing);
}

void stream(benchmark::State& state, const RtspServer& server, const QString& path)
{
    Viewing viewing(true, true);
    QElapsedTimer timer;
    timer.start();
    if (!viewing.camera.open(CWDevice_NetworkStream, server.url(path)) ||
        !viewing.waitForFrames(1)) {
        state.SkipWithError("the stream does not open");
        return;
    }
    const double first = double(timer.nsecsElapsed()) / 1e6;
    measure(state, viewing);
    state.counters["first_ms"] = first;
    state.counters["server_fps"] = serverRate;
}

void registerBenchmarks(const RtspServer& server)
{
    const auto prepare = [](benchmark::internal::Benchmark* made) {
        made->Iterations(frames)->UseRealTime()->Unit(benchmark::kMillisecond);
    };
    prepare(benchmark::RegisterBenchmark("simulated", simulated)
                ->ArgNames({"width", "painted"})
                ->ArgsProduct({{1920, 3840}, {0, 1}}));
    for (const char* coding : {"h264", "mjpeg", "hd", "hd-mjpeg"}) {
        const QString path = QStringLiteral("/clock/") + QLatin1String(coding);
        const std::string name = std::string("rtsp/") + coding;
        prepare(
            benchmark::RegisterBenchmark(name.c_str(), [&server, path](benchmark::State& state) {
                stream(state, server, path);
            }));
    }
}

} // namespace

int main(int argc, char** argv)
{
    QApplication application(argc, argv);
    RtspServer server;
    if (!server.start())
        return 1;
    benchmark::Initialize(&argc, argv);
    registerBenchmarks(server);
    benchmark::RunSpecifiedBenchmarks();
    return 0;
}
