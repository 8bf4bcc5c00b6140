#include "text/DeviceLines.h"

#include "bluetooth/DeviceKind.h"
#include "presentation/Section.h"
#include "text/TextDrawing.h"

#include <algorithm>

namespace tavero {

namespace {

constexpr int nameColumns = 30;
constexpr int kindColumns = 16;

// "Left 80%  Right 75%"; one battery needs no name.
std::string batteries(const BluetoothDevice& device) {
    std::string text;
    for (const BluetoothDevice::Battery& battery : device.batteries) {
        if (!text.empty()) text += "  ";
        if (device.batteries.size() > 1) text += battery.label + " ";
        text += std::to_string(battery.percent) + "%";
    }
    return text;
}

std::string line(const BluetoothDevice& device, const TextPen& pen, int columns) {
    int left = columns;
    const auto taking = [&](const std::string& text, int width) {
        width = std::min(width, left);
        left -= width;
        return fitted(text, width);
    };
    std::string text = taking(device.name, nameColumns);
    text += pen.dim(taking(" " + DeviceKind::label(device).value_or(""), kindColumns));
    const std::string levels = " " + batteries(device);
    return text + taking(levels, textWidth(levels));
}

} // namespace

std::vector<std::string> deviceLines(const std::optional<BluetoothSnapshot>& bluetooth,
                                     const TextPen& pen, int columns) {
    if (!bluetooth || !bluetooth->isOn || bluetooth->connected.empty()) return {};
    const std::string heading(title(Section::bluetooth));
    std::vector<std::string> lines{
        "", pen.bold(fitted(heading, std::min(textWidth(heading), columns)))};
    for (const BluetoothDevice& device : bluetooth->connected)
        lines.push_back(line(device, pen, columns));
    return lines;
}

} // namespace tavero
