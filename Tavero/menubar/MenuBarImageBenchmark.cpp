#include "menubar/Face.h"
#include "menubar/ItemParts.h"
#include "menubar/MenuBarRenderer.h"
#include "menubar/test/Samples.h"

#include <QGuiApplication>

#include <benchmark/benchmark.h>

// What a picture of the menu bar costs. An item draws one every 5 s, if its content changed.
namespace tavero {
namespace {

constexpr double scale = 2;

const LiveSnapshot snapshot = laptopSnapshot();
const std::vector<GraphPoint> history = wavyHistory();

MetricContent content(Metric metric, MenuBarItemMode mode) {
    return metricContent(metric, mode, snapshot, history, {});
}

// The floor: an empty picture, and one with the item's texts alone.
void EmptyPicture(benchmark::State& state) {
    for (auto _ : state) benchmark::DoNotOptimize(drawnPicture({73, 18}, scale, [](QPainter&) {}));
}
BENCHMARK(EmptyPicture)->Unit(benchmark::kMicrosecond);

void TextAlone(benchmark::State& state) {
    const MenuBarFaces& faces = MenuBarFaces::shared();
    for (auto _ : state)
        benchmark::DoNotOptimize(drawnPicture({73, 18}, scale, [&](QPainter& painter) {
            faces.name.draw(painter, "CPU", 48, 4, templateInk);
            faces.namedValue.draw(painter, "47%", 48, 12.5, templateInk);
        }));
}
BENCHMARK(TextAlone)->Unit(benchmark::kMicrosecond);

void CPUItem(benchmark::State& state) {
    const ItemContent item = content(Metric::cpu, MenuBarItemMode::both);
    for (auto _ : state) benchmark::DoNotOptimize(MenuBarRenderer::image(item, scale));
}
BENCHMARK(CPUItem)->Unit(benchmark::kMicrosecond);

void MemoryItem(benchmark::State& state) {
    const ItemContent item = content(Metric::memory, MenuBarItemMode::both);
    for (auto _ : state) benchmark::DoNotOptimize(MenuBarRenderer::image(item, scale));
}
BENCHMARK(MemoryItem)->Unit(benchmark::kMicrosecond);

void NetworkItem(benchmark::State& state) {
    const ItemContent item = content(Metric::network, MenuBarItemMode::value);
    for (auto _ : state) benchmark::DoNotOptimize(MenuBarRenderer::image(item, scale));
}
BENCHMARK(NetworkItem)->Unit(benchmark::kMicrosecond);

void CPUItemInASquare(benchmark::State& state) {
    const ItemContent item = content(Metric::cpu, MenuBarItemMode::both);
    for (auto _ : state) benchmark::DoNotOptimize(MenuBarRenderer::squareImage(item, scale));
}
BENCHMARK(CPUItemInASquare)->Unit(benchmark::kMicrosecond);

// What it costs to find that there is nothing to draw.
void DecideOnTheCPUItem(benchmark::State& state) {
    const ItemContent shown = content(Metric::cpu, MenuBarItemMode::both);
    for (auto _ : state)
        benchmark::DoNotOptimize(shown == ItemContent(content(Metric::cpu, MenuBarItemMode::both)));
}
BENCHMARK(DecideOnTheCPUItem)->Unit(benchmark::kMicrosecond);

} // namespace
} // namespace tavero

int main(int argc, char** argv) {
    qputenv("QT_QPA_PLATFORM", "offscreen");
    const QGuiApplication application(argc, argv);
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
}
