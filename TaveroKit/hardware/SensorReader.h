#pragma once

#include "platform/SensorSource.h"
#include "records/TemperatureSnapshot.h"

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

namespace tavero {

// The temperatures of the processor's dies and of the battery. Asking a sensor takes a while and a
// processor has dozens, so most rounds ask only the dies that were the hottest; every twelfth asks
// all and finds the hottest anew. The battery's are asked every time.
class SensorReader {
  public:
    // Looks up once which sensors there are. The source has to outlive the reader.
    explicit SensorReader(SensorSource& source);

    // A sensor that says nothing, or what no working sensor shows, is left out of this round. So
    // rounds differ in length, and the list doesn't tell how many sensors there are.
    TemperatureSnapshot read();

  private:
    struct Sensor {
        std::string name;
        std::size_t index; // in the source
        bool isDie;
    };
    struct Reading {
        std::size_t sensor; // in sensors_
        double celsius;
    };

    std::vector<std::size_t> everySensor() const;
    std::vector<std::size_t> hottestDiesAndOthers() const;
    std::vector<Reading> ask(const std::vector<std::size_t>& sensors);
    std::vector<std::size_t> hottestDies(std::vector<Reading> readings) const;

    SensorSource& source_;
    std::vector<Sensor> sensors_;
    std::int64_t reads_ = 0;
    std::vector<std::size_t> hottest_; // in sensors_, the hottest first
};

} // namespace tavero
