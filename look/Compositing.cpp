#include "look/Compositing.h"

#ifdef AMORVELLE_HAS_XCB

#include <QByteArray>
#include <QGuiApplication>

#include <cstdlib>
#include <memory>
#include <xcb/xcb.h>

namespace {

struct Free {
    void operator()(void *reply) const { std::free(reply); }
};

/// The first screen's compositing manager owns a selection that is named after the screen.
bool hasManager(xcb_connection_t *connection)
{
    const QByteArray name("_NET_WM_CM_S0");
    const auto length = static_cast<uint16_t>(name.size());
    const std::unique_ptr<xcb_intern_atom_reply_t, Free> atom(xcb_intern_atom_reply(
        connection, xcb_intern_atom(connection, 1, length, name.constData()), nullptr));
    if (!atom || atom->atom == XCB_NONE)
        return false;
    const std::unique_ptr<xcb_get_selection_owner_reply_t, Free> owner(
        xcb_get_selection_owner_reply(connection, xcb_get_selection_owner(connection, atom->atom),
                                      nullptr));
    return owner && owner->owner != XCB_NONE;
}

} // namespace

bool isComposited()
{
    const auto *x11 = qGuiApp->nativeInterface<QNativeInterface::QX11Application>();
    return !x11 || !x11->connection() || hasManager(x11->connection());
}

#else

bool isComposited()
{
    return true;
}

#endif
