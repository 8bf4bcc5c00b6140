#pragma once

#include <cstdint>
#include <span>
#include <string_view>

namespace tavero {

// A part of a picture, painted in one go.
struct SymbolShape {
    std::uint32_t firstCommand = 0;
    std::uint32_t commandCount = 0;
    std::uint32_t firstPoint = 0;
    std::int16_t strokeWidth = 0; // with round ends; 0: filled
    bool isEvenOdd = false;       // crossings, not turns, tell what is inside
};

// A symbol's picture: some shapes that follow each other.
struct SymbolEntry {
    std::string_view name;
    std::uint32_t firstShape = 0;
    std::uint32_t shapeCount = 0;
};

// The pictures of all symbols, as make_outlines.py writes them down. Commands are M (move), L
// (line), C (curve) and Z (close), followed among the points by one, one, three and no pairs of
// coordinates; y points down.
struct SymbolOutlines {
    double side = 0; // of every picture, which is a square
    double unit = 1; // so many of the points are one of `side`
    std::string_view commands;
    std::span<const std::int16_t> points;
    std::span<const SymbolShape> shapes;
    std::span<const SymbolEntry> entries; // in the order of their names
};

extern const SymbolOutlines symbolOutlines;

} // namespace tavero
