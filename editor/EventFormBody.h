#pragma once

#include "editor/EventForm.h"
#include "platform/WallClock.h"

#include <QWidget>

#include <functional>

class DateField;
class PopupButton;
class QVBoxLayout;
class TagMenuView;
class TextEditor;
class TextField;
class TimeField;

/// The fields of the event form, from the title to the time. They hold no truth of their own: what
/// the person has not touched is as it was given, letter by letter and to the millisecond.
class EventFormBody : public QWidget {
    Q_OBJECT

public:
    /// Days and times are shown as `calendar` has it.
    EventFormBody(const EventForm &initial, const Calendar &calendar, QWidget *parent = nullptr);

    const EventForm &form() const { return m_form; }
    /// The field that comes first.
    QWidget *titleField() const;

Q_SIGNALS:
    void edited(); ///< form() is another

private:
    TextField *makeField(const QString &name, const QString &prompt, QString EventForm::*text);
    void addGroup(QVBoxLayout *column, const QString &caption, QWidget *control);
    QWidget *makeOrganiser();
    QWidget *makeMoment();
    void change(const std::function<void(EventForm &)> &how);
    void render();

    const EventForm m_initial;
    EventForm m_form;
    const WallClock m_clock;

    TextField *m_title;
    TextEditor *m_description;
    TagMenuView *m_tags;
    PopupButton *m_organiser;
    QWidget *m_custom; ///< the organiser typed by hand, with its caption
    DateField *m_date;
    TimeField *m_time;
};
