#pragma once

#include <QByteArray>
#include <QDataStream>
#include <QMap>
#include <QPoint>
#include <QSize>
#include <QString>

#include <tuple>

/// All that decides what the window paints and says. How it came to be so is not in it: that must
/// not show.
struct WalkState {
    enum class Body { Loading, Error, List };
    enum class Sheet { None, Detail, Edit, Delete, Add, Login };

    QSize size;
    bool dark = false;
    qint64 now = 0; ///< milliseconds since 1970

    Body body = Body::Loading;
    QByteArray rows; ///< the reply that the list shows
    int status = 0; ///< of the reply that failed; 0: none was asked for
    int failure = 0; ///< which of all that failed
    bool isDeletion = false; ///< it is a deletion that failed, not a load
    QString deleter; ///< who was signed in then

    bool isSignedIn = false;
    bool isSaved = false; ///< the record of `user` is remembered
    QString user; ///< the name, "u1" say

    int tab = 0;
    Sheet sheet = Sheet::None;
    QString sheetRow; ///< the title of the event that it is about
    QByteArray sheetRows; ///< what the list showed when it opened
    QMap<QString, QString> typed; ///< into the fields of its form, by their names
    bool isFormSent = false; ///< and not answered yet
    int formStatus = 0; ///< of the reply that refused the form; 0: none; -1: nobody was asked
    int formFailure = 0; ///< which of all that failed
    bool isMenuOpen = false;

    // Where the eye and the hands are.
    QString placeRow; ///< the first row in view, and where its top stands in the list
    int placeTop = 0;
    int sheetScroll = 0;
    QPoint pointer{-1, -1}; ///< less than 0: it was never over the window
    QString focusRow; ///< its title; or, of any other widget:
    int focusStop = 0; ///< 0: the row itself, then its buttons
    QString focusClass;
    QString focusName;
    int focusOrdinal = 0; ///< among the visible ones alike
    bool ring = false;

    auto tied() const
    {
        return std::tie(size, dark, now, body, rows, status, failure, isDeletion, deleter,
                        isSignedIn, isSaved, user, tab, sheet, sheetRow, sheetRows, typed,
                        isFormSent, formStatus, formFailure, isMenuOpen, placeRow, placeTop,
                        sheetScroll, pointer, focusRow, focusStop, focusClass, focusName,
                        focusOrdinal, ring);
    }
    auto tied()
    {
        return std::tie(size, dark, now, body, rows, status, failure, isDeletion, deleter,
                        isSignedIn, isSaved, user, tab, sheet, sheetRow, sheetRows, typed,
                        isFormSent, formStatus, formFailure, isMenuOpen, placeRow, placeTop,
                        sheetScroll, pointer, focusRow, focusStop, focusClass, focusName,
                        focusOrdinal, ring);
    }
    bool operator==(const WalkState &other) const { return tied() == other.tied(); }
};

inline QDataStream &operator<<(QDataStream &stream, const WalkState &state)
{
    std::apply([&stream](const auto &...member) { (stream << ... << member); }, state.tied());
    return stream;
}

inline QDataStream &operator>>(QDataStream &stream, WalkState &state)
{
    std::apply([&stream](auto &...member) { (stream >> ... >> member); }, state.tied());
    return stream;
}
