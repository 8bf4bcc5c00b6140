#pragma once

#include "history/HistoryStore.h"

#include <cstdint>
#include <filesystem>
#include <string>

namespace tavero {

// A short life of a machine, one step every five minutes, each of which writes a row of the minute
// before, of three apps and of one Bluetooth device. The first step also forgets what is too old.
// Every figure of a row follows from its time, so that a row can be told from half a row.
namespace SmallHistory {

inline constexpr int steps = 6;
inline constexpr std::int64_t start = 1'749'988'800; // an hour begins

// Puts rows into the file that the first step forgets.
void addOldRows(const std::filesystem::path& file);
void live(HistoryStore& store, int step);
bool hasMinute(const std::filesystem::path& file, int step);

// What is wrong with the file after the program died, or its disk failed, at whatever moment. Empty
// if it is sound and has only whole rows, among them those of the steps before `finished`, unless
// some `mayBeLost`, and at most those of the step under way. Below 0 the store wasn't open yet.
std::string fault(const std::filesystem::path& file, int finished, bool mayBeLost);

} // namespace SmallHistory

} // namespace tavero
