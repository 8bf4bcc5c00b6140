#include "desktop/Compositing.h"

#include "desktop/linux/XServer.h"

namespace tavero {

// A compositing manager owns the selection _NET_WM_CM_S0 of an X display. Wayland always composes.
bool windowsMayBeClear() {
    xcb_connection_t* x = xConnection();
    if (!x) return true;
    const auto question = xcb_get_selection_owner(x, atom(x, "_NET_WM_CM_S0"));
    const XReply<xcb_get_selection_owner_reply_t> owner(
        xcb_get_selection_owner_reply(x, question, nullptr));
    return owner && owner->owner != XCB_WINDOW_NONE;
}

} // namespace tavero
