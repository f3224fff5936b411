// What tools cost as their number grows: moving one among n, adding, deleting and recalibrating n,
// each up to and with the repaint.

#include "support.h"

#include "calibration/PrimitiveCalibration.h"

#include <benchmark/benchmark.h>

#include <QStandardPaths>

namespace {

class Canvas
{
public:
    Canvas()
    {
        view.resize(1615, 915);
        bench::show(view);
        view.setImage(bench::frame(QSize(1920, 1080), 0));
        view.setPrimitiveDragMode(PrimitiveManager::Select, -1);
        bench::settle();
    }

    GraphicsView view;
};

void moveOne(benchmark::State& state)
{
    Canvas canvas;
    const auto tools = bench::addLines(canvas.view, static_cast<int>(state.range(0)));
    bench::settle();
    PrimitiveGeneralTool* tool = tools[tools.size() / 2];
    const QPointF home = tool->mapToScene(QPointF(0, 0));
    int step = 0;
    for (auto _ : state) {
        tool->moveControlPoint(0, home + QPointF(step % 7, step % 5));
        ++step;
        QApplication::processEvents();
    }
}

void add(benchmark::State& state)
{
    Canvas canvas;
    for (auto _ : state) {
        bench::addLines(canvas.view, static_cast<int>(state.range(0)));
        bench::settle();
        state.PauseTiming();
        canvas.view.manager()->deleteAllTools(true);
        bench::settle();
        state.ResumeTiming();
    }
}

void deleteAll(benchmark::State& state)
{
    Canvas canvas;
    for (auto _ : state) {
        state.PauseTiming();
        bench::addLines(canvas.view, static_cast<int>(state.range(0)));
        bench::settle();
        state.ResumeTiming();
        canvas.view.manager()->deleteAllTools(true);
        bench::settle();
    }
}

void recalibrate(benchmark::State& state)
{
    Canvas canvas;
    bench::addLines(canvas.view, static_cast<int>(state.range(0)));
    bench::settle();
    const QString unit = QStringLiteral("1_µm");
    double metresPerPixel = 1e-6;
    for (auto _ : state) {
        metresPerPixel *= 1.0001;
        const PrimitiveCalibration calibration(QStringLiteral("10X"), metresPerPixel, QString(),
                                               unit);
        canvas.view.manager()->setCalibration(calibration, unit);
        bench::settle();
    }
}

} // namespace

BENCHMARK(moveOne)->ArgName("tools")->Arg(10)->Arg(100)->Arg(1000)->Unit(benchmark::kMicrosecond);
BENCHMARK(add)->ArgName("tools")->Arg(10)->Arg(100)->Arg(1000)->Unit(benchmark::kMillisecond);
BENCHMARK(deleteAll)->ArgName("tools")->Arg(10)->Arg(100)->Arg(1000)->Unit(benchmark::kMillisecond);
BENCHMARK(recalibrate)
    ->ArgName("tools")
    ->Arg(10)
    ->Arg(100)
    ->Arg(1000)
    ->Unit(benchmark::kMillisecond);

int main(int argc, char** argv)
{
    QStandardPaths::setTestModeEnabled(true);
    qputenv("QT_LOGGING_RULES", "*.debug=false");
    QApplication application(argc, argv);
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    return 0;
}
