#pragma once

#include "browse/EventOrder.h"
#include "platform/Worker.h"

#include <QCoro/QCoroTask>
#include <QPointer>
#include <QWidget>

class BusyIndicator;
class ErrorText;
class EventDetailView;
class EventList;
class Header;
class Pane;
class QStackedLayout;
class TabView;

/// The main window: a header above the events, coming and past ones each in a tab.
///
/// All that changes while it is open is in one State; render() makes the widgets agree with it.
class ContentView : public QWidget {
    Q_OBJECT
public:
    explicit ContentView(QWidget *parent = nullptr);

    /// Loads and shows the events. Loads may overlap: the last one to finish is shown. Never fails
    /// to its caller; a failure is shown in place of the list.
    QCoro::Task<void> loadEvents();

    QSize sizeHint() const override;

protected:
    void changeEvent(QEvent *event) override;
    void showEvent(QShowEvent *event) override;

private:
    struct State {
        DatedEvents events; ///< as last loaded
        bool isLoading = false;
        std::optional<QString> errorMessage; ///< of the last failed load
        std::optional<Event> selectedEvent;
        bool isSignedIn = false;
        std::optional<QString> currentUserId;
    };
    /// Where the keyboard was before the list gave way to the busy indicator.
    struct KeptFocus {
        QPointer<QWidget> widget;
        std::optional<QString> eventId;
    };

    QWidget *makeTabs();
    void appear();
    void reload();
    void finishLoad(DatedEvents events);
    void failLoad(const QString &description);

    void render();
    void renderEvents();
    void renderDetail();
    void showBody(QWidget *part);
    EventList *shownList() const;

    State m_state;
    std::optional<Instant> m_shownDay; ///< the start of the day that the lists are split at
    KeptFocus m_keptFocus;
    Worker m_worker; ///< orders large lists and frees them

    Header *m_header;
    QWidget *m_body;
    QStackedLayout *m_parts;
    BusyIndicator *m_busy;
    ErrorText *m_error;
    Pane *m_pane;
    TabView *m_tabs;
    EventList *m_upcoming;
    EventList *m_past;
    EventDetailView *m_detail = nullptr; ///< while an event is selected
};
