#include "platform/linux/hardware/LinuxGPU.h"

#include "platform/linux/KeptFile.h"
#include "platform/linux/TextCursor.h"
#include "records/SaturatingSum.h"

#include <algorithm>
#include <string_view>
#include <system_error>
#include <tuple>
#include <utility>

namespace tavero {

namespace {

namespace fs = std::filesystem;

constexpr std::uint64_t millisecond = 1'000'000;
// The figures of one pass are asked for one after the other and come from one reading.
constexpr std::uint64_t onePass = 200 * millisecond;
constexpr std::uint64_t oldestAnswer = 5'000 * millisecond;

// "card0" and "renderD128", but no "card0-HDMI-A-1", which is a socket for a screen.
bool isNode(std::string_view name) {
    for (const std::string_view prefix : {"card", "renderD"})
        if (name.starts_with(prefix) && name.size() > prefix.size())
            return name.find_first_not_of("0123456789", prefix.size()) == name.npos;
    return false;
}

// "0000:01:00.0", beside the files of the driver's folder.
bool isAddress(std::string_view name) {
    return name.find(':') != name.npos && name.find('.') != name.npos;
}

// A value of a device's "uevent", which doesn't wake it.
std::string eventValue(const std::string& event, std::string_view key) {
    for (TextCursor cursor(event); !cursor.atEnd(); cursor.nextLine())
        if (cursor.skip(key)) return std::string(cursor.word());
    return "";
}

} // namespace

LinuxGPU::Card::Card(const fs::path& device, std::chrono::milliseconds limit)
    : drivesScreen(readAttribute(device / "boot_vga") == "1"), power(device) {
    const std::string event = readFile(device / "uevent").value_or("");
    driver = eventValue(event, "DRIVER=");
    address = eventValue(event, "PCI_SLOT_NAME=");
    if (driver == "amdgpu") amd.emplace(device, limit);
}

LinuxGPU::LinuxGPU(const fs::path& root, std::shared_ptr<ProcessFiles> files,
                   std::function<std::uint64_t()> clock, std::string nvidiaLibrary,
                   std::chrono::milliseconds limit)
    : files_(std::move(files)), clock_(std::move(clock)), hasNvidiaLibrary_(!nvidiaLibrary.empty()),
      limit_(limit), drm_(root / "sys/class/drm"), nvidia_(root / "sys/bus/pci/drivers/nvidia"),
      worker_(std::move(nvidiaLibrary), limit) {}

std::optional<GPUSnapshot> LinuxGPU::gpu() {
    refresh();
    const auto rank = [](const Card& card) {
        return std::tuple(card.state != State::asleep, card.told->device, card.drivesScreen);
    };
    const Card* chosen = nullptr;
    for (const auto& [device, card] : cards_)
        if (card.told && (!chosen || rank(card) > rank(*chosen))) chosen = &card;
    return chosen ? chosen->told : std::nullopt;
}

std::unordered_map<std::int32_t, std::uint64_t> LinuxGPU::gpuTimes() {
    refresh();
    std::unordered_map<std::int32_t, std::uint64_t> times = answer_.times;
    for (const auto& [pid, time] : clients_.times()) times[pid] = saturatingSum(times[pid], time);
    return times;
}

void LinuxGPU::refresh() {
    const std::uint64_t now = clock_();
    if (readAt_ && now - *readAt_ < onePass) return;
    readAt_ = now;
    const bool hasChanged = drm_.changed();
    if (nvidia_.changed() || hasChanged) findCards();
    for (auto& [device, card] : cards_) card.state = card.power.state(now);
    readClients(now);
    readNvidia(now);
    for (auto& [device, card] : cards_) readCard(card, now);
}

void LinuxGPU::findCards() {
    std::map<fs::path, Card> previous = std::exchange(cards_, {});
    const auto find = [&](const fs::path& link) -> Card* {
        std::error_code error;
        const fs::path device = fs::canonical(link, error);
        if (error) return nullptr;
        if (auto known = previous.extract(device)) {
            known.mapped().nodes.clear();
            cards_.insert(std::move(known));
        }
        return &cards_.try_emplace(device, device, limit_).first->second;
    };
    for (const std::string& name : drm_.names()) {
        if (!isNode(name)) continue;
        Card* card = find(drm_.path() / name / "device");
        if (!card) continue;
        card->nodes.push_back(name);
        const bool isIntels = card->driver == "i915" || card->driver == "xe";
        if (isIntels && !card->intel && name.starts_with("card"))
            card->intel.emplace(drm_.path() / name);
    }
    for (const std::string& name : nvidia_.names())
        if (isAddress(name)) find(nvidia_.path() / name);
}

LinuxGPU::Card* LinuxGPU::cardOf(const std::string& node) {
    for (auto& [device, card] : cards_)
        if (std::find(card.nodes.begin(), card.nodes.end(), node) != card.nodes.end()) return &card;
    return nullptr;
}

// A client of a processor that is left alone can't have used it.
void LinuxGPU::readClients(std::uint64_t now) {
    // NVIDIA's driver tells nothing of its clients there.
    if (std::any_of(cards_.begin(), cards_.end(),
                    [](const auto& card) { return !card.second.isNvidias(); }))
        files_->lookOn();
    clients_.beginRound(now);
    std::vector<HeldFile> closed;
    for (const GraphicsFile& graphics : files_->graphics()) {
        const Card* card = cardOf(graphics.node);
        if (card && card->isNvidias()) card = nullptr;
        if (card && card->state != State::awake) {
            clients_.keep(graphics.file.pid);
            continue;
        }
        const auto text = card ? files_->info(graphics.file, buffer_) : std::nullopt;
        if (const auto client = text ? parseDrmClient(*text) : std::nullopt)
            clients_.add(graphics.file.pid, *client);
        else
            closed.push_back(graphics.file);
    }
    for (const HeldFile& file : closed) files_->forget(file);
    clients_.endRound();
}

void LinuxGPU::readNvidia(std::uint64_t now) {
    if (!hasNvidiaLibrary_) return;
    std::vector<std::string> awake;
    for (const auto& [device, card] : cards_)
        if (card.isNvidias() && card.state == State::awake) awake.push_back(card.address);
    if (auto answer = worker_.ask(awake, now)) answer_ = std::move(*answer);
    if (now - std::min(now, answer_.at) > oldestAnswer) answer_.devices.clear();
}

void LinuxGPU::readCard(Card& card, std::uint64_t now) {
    card.told.reset();
    if (card.state == State::awake) {
        card.told = ask(card, now);
        if (card.told) card.last = card.told;
        const bool isUsed = card.told && card.told->device > 0;
        const auto nvidia = answer_.devices.find(card.address);
        const bool hasProcesses =
            card.isNvidias() && nvidia != answer_.devices.end() && nvidia->second.hasProcesses;
        // NVIDIA's library may still be starting.
        if (card.told || !card.isNvidias()) card.power.wasSeen(!isUsed && !hasProcesses, now);
    } else if (card.last) {
        card.told = GPUSnapshot{.cores = card.last->cores};
        if (card.state == State::leftAlone) {
            card.told->memoryInUse = card.last->memoryInUse;
            card.told->memoryAllocated = card.last->memoryAllocated;
        }
    }
}

std::optional<GPUSnapshot> LinuxGPU::ask(Card& card, std::uint64_t now) {
    if (card.isNvidias()) {
        const auto reading = answer_.devices.find(card.address);
        if (reading == answer_.devices.end()) return std::nullopt;
        return GPUSnapshot{.device = reading->second.load,
                           .memoryInUse = reading->second.memory,
                           .memoryAllocated = reading->second.memory,
                           .cores = reading->second.cores};
    }
    std::optional<GPUSnapshot> byDriver = card.amd ? card.amd->read() : std::nullopt;
    std::optional<GPUSnapshot> byClients = askClients(card, now);
    if (!byDriver) return byClients;
    if (byClients) byDriver->renderer = byClients->renderer;
    return byDriver;
}

std::optional<GPUSnapshot> LinuxGPU::askClients(Card& card, std::uint64_t now) {
    const std::optional<double> awake = card.intel ? card.intel->awake(now) : std::nullopt;
    const std::optional<DrmLoad> load = clients_.load(card.clientName());
    if (!load && !awake) return std::nullopt;
    const std::uint64_t memory = clients_.memory(card.clientName());
    return GPUSnapshot{.device = load ? load->busiest : *awake,
                       .renderer = load ? load->render : 0,
                       .memoryInUse = memory,
                       .memoryAllocated = memory};
}

} // namespace tavero
