#include "menubar/ItemContent.h"

namespace tavero {

namespace {

struct Speaker {
    std::string operator()(const TitleContent& item) const {
        return std::string(title(item.metric));
    }
    std::string operator()(const MetricContent& item) const { return item.spoken; }
    std::string operator()(const Strain& strain) const { return "Under strain: " + strain.text; }
    std::string operator()(const MarkContent& item) const {
        return item.updateReady ? "Tavero, update ready" : "Tavero";
    }
    std::string operator()(const SoundContent&) const { return "Sound"; }
    std::string operator()(const BluetoothContent& item) const {
        if (!item.device) return "Bluetooth, nothing connected";
        return item.device->name + " battery " + std::to_string(item.device->percent) + " percent";
    }
};

} // namespace

std::string spokenText(const ItemContent& content) { return std::visit(Speaker{}, content); }

} // namespace tavero
