#pragma once

#include <QGuiApplication>

#include <xcb/xcb.h>

#include <cstdint>
#include <cstdlib>
#include <memory>
#include <string_view>

namespace tavero {

struct FreeReply {
    void operator()(void* reply) const { std::free(reply); }
};

// The connection of this application to the X server. Null if it shows its windows by other means;
// a platform that draws to no screen answers too, with nothing.
inline xcb_connection_t* xConnection() {
    const auto* x11 = qGuiApp->nativeInterface<QNativeInterface::QX11Application>();
    return x11 ? x11->connection() : nullptr;
}

// An answer of the X server. Null if it refused.
template <typename Reply>
using XReply = std::unique_ptr<Reply, FreeReply>;

// The number that the X server has for a name. XCB_ATOM_NONE if it refused.
inline xcb_atom_t atom(xcb_connection_t* x, std::string_view name) {
    const auto length = static_cast<std::uint16_t>(name.size());
    const XReply<xcb_intern_atom_reply_t> reply(
        xcb_intern_atom_reply(x, xcb_intern_atom(x, 0, length, name.data()), nullptr));
    return reply ? reply->atom : xcb_atom_t{XCB_ATOM_NONE};
}

} // namespace tavero
