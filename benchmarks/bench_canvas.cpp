// Time to show a new frame in a view of 1600 x 900: the canvas with labelled lines in view, against
// a bare opaque widget that draws the same pixels.

#include "support.h"

#include <benchmark/benchmark.h>

namespace {

QSize frameSize(const benchmark::State& state)
{
    return {static_cast<int>(state.range(0)), static_cast<int>(state.range(0)) * 9 / 16};
}

void bareWidget(benchmark::State& state)
{
    const QImage frames[] = {bench::frame(frameSize(state), 0), bench::frame(frameSize(state), 99)};
    bench::BareWidget widget;
    bench::show(widget);
    int count = 0;
    for (auto _ : state) {
        widget.image = frames[++count % 2];
        widget.repaint();
    }
}

void canvas(benchmark::State& state)
{
    const QImage frames[] = {bench::frame(frameSize(state), 0), bench::frame(frameSize(state), 99)};
    GraphicsView view;
    bench::show(view);
    view.setImage(frames[0]);
    view.resize(bench::viewport + view.size() - view.viewport()->size());
    bench::addLines(view, static_cast<int>(state.range(1)));
    bench::settle();
    if (view.viewport()->size() != bench::viewport)
        state.SkipWithError("the viewport has another size");
    int count = 0;
    for (auto _ : state) {
        view.setImage(frames[++count % 2]);
        view.viewport()->repaint();
    }
}

} // namespace

BENCHMARK(bareWidget)->ArgName("width")->Arg(1920)->Arg(3840)->Unit(benchmark::kMicrosecond);
BENCHMARK(canvas)
    ->ArgNames({"width", "tools"})
    ->ArgsProduct({{1920, 3840}, {0, 10, 100, 1000}})
    ->Unit(benchmark::kMicrosecond);

int main(int argc, char** argv)
{
    QApplication application(argc, argv);
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    return 0;
}
