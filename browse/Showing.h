#pragma once

#include <QPointer>

#include <functional>
#include <optional>
#include <utility>

/// The place of one kind of sheet or popover over a window: it holds an open one exactly while the
/// window's state asks for one, and of the item that it asks for. `Shown` has open(), close() and a
/// signal closed().
template <typename Shown>
class Showing {
public:
    Showing() = default;
    /// What is open goes with its window, which has no state any more to take anything back from.
    ~Showing() { QObject::disconnect(m_closing); }
    Q_DISABLE_COPY_MOVE(Showing)

    /// `item` names what is shown, if anything is asked for; with another name it is shown anew.
    /// `make` builds it; `onClosed` is called when it has closed by itself, and must take the
    /// asking back.
    void keep(const std::optional<QString> &item, const std::function<Shown *()> &make,
              const std::function<void()> &onClosed)
    {
        if (item == m_item)
            return;
        m_item = item;
        if (Shown *old = std::exchange(m_shown, nullptr)) {
            // Not asked for any more, it has nothing to take back.
            QObject::disconnect(m_closing);
            old->close();
            // Later: it may be this very one that tells of its closing.
            old->deleteLater();
        }
        if (!item)
            return;
        m_shown = make();
        m_closing = QObject::connect(m_shown, &Shown::closed, m_shown, onClosed);
        m_shown->open();
    }

    /// What is open, or null.
    Shown *shown() const { return m_shown; }

private:
    std::optional<QString> m_item;
    QPointer<Shown> m_shown;
    QMetaObject::Connection m_closing; ///< what its closing calls
};
