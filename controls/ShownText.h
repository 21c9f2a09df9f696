#pragma once

#include <QString>

/// A text as an entry field can hold it, and what becomes of the whole text when the person changes
/// what the field holds. A field knows one kind of line break and takes seconds to lay out a text
/// beyond any page; what is changed nowhere must still be kept letter by letter.
class ShownText {
public:
    /// Of a text of more than `most` code units the beginning is shown, and a mark for the rest.
    explicit ShownText(const QString &whole = {}, qsizetype most = mostShown);

    /// To be given to the field: bounded, its line breaks all "\n".
    const QString &shown() const { return m_shown; }

    /// The whole text with the changes that turn what is shown into `now`. The mark stands for the
    /// rest: it goes when the mark is deleted. Between the first and the last change the line
    /// breaks are those of the field.
    QString wholeAfter(const QString &now) const;

    static constexpr qsizetype mostShown = 20'000;

private:
    qsizetype indexInWhole(qsizetype shownIndex) const;

    QString m_whole;
    QString m_shown;
    qsizetype m_end; ///< of what is shown, in the whole
    QChar m_mark; ///< null when all is shown
};
