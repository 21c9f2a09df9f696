#pragma once

#include "controls/PopupLabel.h"
#include "editor/TagSet.h"

/// Chooses tags: a label with all that are chosen, which opens a menu of those that are offered. A
/// chosen tag that is not offered is shown, and stays.
class TagMenuView : public PopupLabel {
    Q_OBJECT

public:
    /// `tags` are offered, in their order. `name` is what screen readers call it.
    TagMenuView(const QString &name, const QStringList &tags, QWidget *parent = nullptr);

    /// Shows these as chosen. The set is its owner's, who is told of a change and shows it here.
    void setSelection(const TagSet &selection);

Q_SIGNALS:
    void selectionChanged(const TagSet &selection); ///< by the person

private:
    QStringList m_tags;
    TagSet m_selection;
};
