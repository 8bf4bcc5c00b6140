#include "desktop/linux/DockWindow.h"

#include "desktop/linux/XServer.h"

#include <QScreen>

#include <array>
#include <cstdint>

namespace tavero {

namespace {

constexpr std::uint32_t onEveryDesktop = 0xFFFFFFFF;

template <std::size_t size>
void setProperty(xcb_connection_t* x, const QWindow& window, const char* name, xcb_atom_t type,
                 const std::array<std::uint32_t, size>& values) {
    xcb_change_property(x, XCB_PROP_MODE_REPLACE, static_cast<xcb_window_t>(window.winId()),
                        atom(x, name), type, 32, static_cast<std::uint32_t>(size), values.data());
}

// In pixels from the top of all screens: how far down the space goes, and from where to where.
std::array<std::uint32_t, 12> topStrut(const QWindow& window) {
    const QScreen& screen = *window.screen();
    std::array<std::uint32_t, 12> strut{};
    if (screen.geometry().top() != 0) return strut; // it would take from the screen above, too
    const auto pixels = [&screen](int distance) {
        return static_cast<std::uint32_t>(distance * screen.devicePixelRatio());
    };
    const int left = screen.geometry().left();
    const QRect place = window.geometry();
    strut[2] = pixels(place.bottom() + 1);
    strut[8] = static_cast<std::uint32_t>(left) + pixels(place.left() - left);
    strut[9] = static_cast<std::uint32_t>(left) + pixels(place.right() + 1 - left) - 1;
    return strut;
}

} // namespace

void makeDock(QWindow& window) {
    xcb_connection_t* x = xConnection();
    if (!x) return;
    window.create();
    setProperty(x, window, "_NET_WM_WINDOW_TYPE", XCB_ATOM_ATOM,
                std::array{atom(x, "_NET_WM_WINDOW_TYPE_DOCK")});
    setProperty(x, window, "_NET_WM_DESKTOP", XCB_ATOM_CARDINAL, std::array{onEveryDesktop});
    setProperty(x, window, "_NET_WM_STRUT_PARTIAL", XCB_ATOM_CARDINAL, topStrut(window));
    xcb_flush(x);
}

} // namespace tavero
