#include "Readers.h"
#include "platform/linux/LinuxMachine.h"

#include <benchmark/benchmark.h>

namespace tavero {
namespace {

// What each reader of the hardware and of the connection adds to a full pass. A machine that was
// composed for the tests answers from plain files where this one may have no hardware; work that is
// done on another thread counts.
void measure(benchmark::State& state, const char* machine, void (*read)(Readers&)) {
    Readers readers = machine
                          ? tavero::readers(linuxMachine(std::string(TAVERO_HARDWARE) + machine))
                          : tavero::readers(Machine::host());
    for (int i = 0; i < 3; ++i) read(readers); // the first looks for what there is
    for (auto _ : state) read(readers);
}

constexpr const char* laptop = "/composed-energy-laptop";
constexpr const char* thisMachine = nullptr;

void battery(Readers& readers) { benchmark::DoNotOptimize(readers.battery()); }
void controller(Readers& readers) { benchmark::DoNotOptimize(readers.smc()); }
void sensors(Readers& readers) { benchmark::DoNotOptimize(readers.sensors()); }
void wifi(Readers& readers) {
    if (readers.wifi) benchmark::DoNotOptimize(readers.wifi());
}
void connection(Readers& readers) { benchmark::DoNotOptimize(readers.connection()); }
void gpu(Readers& readers) { benchmark::DoNotOptimize(readers.gpu()); }

BENCHMARK_CAPTURE(measure, BatteryReader, laptop, battery)->MeasureProcessCPUTime();
BENCHMARK_CAPTURE(measure, ControllerReader, laptop, controller)->MeasureProcessCPUTime();
BENCHMARK_CAPTURE(measure, SensorReader, laptop, sensors)->MeasureProcessCPUTime();
BENCHMARK_CAPTURE(measure, WiFiReader, thisMachine, wifi)->MeasureProcessCPUTime();
BENCHMARK_CAPTURE(measure, ConnectionReader, thisMachine, connection)->MeasureProcessCPUTime();
BENCHMARK_CAPTURE(measure, GPUReader, thisMachine, gpu)->MeasureProcessCPUTime();

} // namespace
} // namespace tavero
