#include "support/StandInWindowManager.h"

#include <QSocketNotifier>

#include <cstdlib>
#include <memory>

namespace {

struct Free {
    void operator()(void *event) const { std::free(event); }
};

constexpr uint8_t kindOfEvent = 0x7F; ///< the highest bit only tells who sent it

} // namespace

StandInWindowManager::StandInWindowManager()
    : m_connection(xcb_connect(nullptr, nullptr))
{
    if (xcb_connection_has_error(m_connection) != 0)
        qFatal("the stand-in window manager has no screen");
    const uint32_t events = XCB_EVENT_MASK_SUBSTRUCTURE_NOTIFY;
    const auto *screen = xcb_setup_roots_iterator(xcb_get_setup(m_connection)).data;
    xcb_change_window_attributes(m_connection, screen->root, XCB_CW_EVENT_MASK, &events);
    xcb_flush(m_connection);
    auto *notifier =
        new QSocketNotifier(xcb_get_file_descriptor(m_connection), QSocketNotifier::Read, this);
    connect(notifier, &QSocketNotifier::activated, this, &StandInWindowManager::follow);
}

StandInWindowManager::~StandInWindowManager()
{
    xcb_disconnect(m_connection);
}

void StandInWindowManager::follow()
{
    while (
        const std::unique_ptr<xcb_generic_event_t, Free> event{xcb_poll_for_event(m_connection)}) {
        const void *const any = event.get();
        switch (event->response_type & kindOfEvent) {
        case XCB_MAP_NOTIFY: {
            const auto *map = static_cast<const xcb_map_notify_event_t *>(any);
            if (map->override_redirect != 0)
                break; // menus and tooltips keep out of it
            m_open.append(map->window);
            giveKeyboard();
            break;
        }
        case XCB_UNMAP_NOTIFY:
            forget(static_cast<const xcb_unmap_notify_event_t *>(any)->window);
            break;
        case XCB_DESTROY_NOTIFY:
            forget(static_cast<const xcb_destroy_notify_event_t *>(any)->window);
            break;
        default:
            break;
        }
    }
}

void StandInWindowManager::forget(xcb_window_t window)
{
    if (m_open.removeAll(window) > 0 && !m_open.isEmpty())
        giveKeyboard();
}

void StandInWindowManager::giveKeyboard()
{
    xcb_set_input_focus(m_connection, XCB_INPUT_FOCUS_PARENT, m_open.last(), XCB_CURRENT_TIME);
    xcb_flush(m_connection);
}
