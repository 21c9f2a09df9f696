#pragma once

#include "controls/Sheet.h"
#include "model/Event.h"
#include "platform/Calendar.h"

/// The sheet that shows one event in full. It holds the event by value: what happens to the list
/// beneath it changes nothing here. Its only action is to close. The keyboard scrolls it, wherever
/// in it the focus is.
class EventDetailView : public Sheet {
    Q_OBJECT

public:
    /// `over` lies in the window that waits meanwhile.
    EventDetailView(const Event &event, const Calendar &calendar, QWidget *over);

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;
};
