#pragma once

#include "browse/ContentView.h"
#include "sectionlist/SectionList.h"
#include "support/HttpServer.h"

#include <QAbstractButton>
#include <QAccessible>
#include <QDateTime>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QTest>

#include <algorithm>
#include <memory>
#include <utility>

using namespace Qt::StringLiterals;

/// Ways for a test to meet the window as a person does: by what is visible and how it is named.
namespace WindowTest {

/// One row of the events reply. `days` from now; `more` adds to or replaces its members.
inline QJsonObject row(const QString &id, int days, const QJsonObject &more = {})
{
    const QDateTime start = QDateTime::currentDateTimeUtc().addDays(days);
    QJsonObject object{
        {u"id"_s, id},
        {u"titre"_s, id},
        {u"starts_at"_s, start.toString(u"yyyy-MM-ddTHH:mm:ss.zzz000+00:00"_s)},
    };
    for (auto it = more.begin(); it != more.end(); ++it)
        object.insert(it.key(), it.value());
    return object;
}

inline HttpAnswer reply(const QJsonArray &rows)
{
    return HttpAnswer::whole(200, QJsonDocument(rows).toJson(QJsonDocument::Compact),
                             {{"Content-Type", "application/json; charset=utf-8"}});
}

/// The visible widget with this accessible name, or null.
inline QWidget *named(const QWidget *within, const QString &name)
{
    const auto widgets = within->findChildren<QWidget *>();
    for (QWidget *widget : widgets) {
        if (widget->isVisible() && widget->accessibleName() == name)
            return widget;
    }
    return nullptr;
}

/// The visible button with this text or accessible name, or null.
inline QAbstractButton *button(const QWidget *within, const QString &name)
{
    const auto buttons = within->findChildren<QAbstractButton *>();
    for (QAbstractButton *candidate : buttons) {
        if (candidate->isVisible()
            && (candidate->text() == name || candidate->accessibleName() == name))
            return candidate;
    }
    return nullptr;
}

/// The list in view.
inline SectionList *shownList(const ContentView *window)
{
    const auto lists = window->findChildren<SectionList *>();
    const auto shown = std::find_if(lists.begin(), lists.end(),
                                    [](const SectionList *list) { return list->isVisible(); });
    return shown == lists.end() ? nullptr : *shown;
}

/// The headings of a list, as a screen reader finds them.
inline QStringList headings(SectionList *list)
{
    QStringList titles;
    const QAccessibleInterface *reader = QAccessible::queryAccessibleInterface(list);
    for (int i = 0; reader && i < reader->childCount(); ++i) {
        const QAccessibleInterface *child = reader->child(i);
        if (child && child->role() == QAccessible::Heading)
            titles.append(child->text(QAccessible::Name));
    }
    return titles;
}

inline std::unique_ptr<ContentView> shownWindow()
{
    auto window = std::make_unique<ContentView>();
    window->resize(760, 620);
    window->show();
    window->activateWindow();
    return QTest::qWaitForWindowActive(window.get()) ? std::move(window) : nullptr;
}

} // namespace WindowTest
