#pragma once

#include "sectionlist/SectionListRow.h"

#include <QAbstractListModel>
#include <QStyledItemDelegate>

class IconButton;
class TextLabel;

/// What a row of the benchmark shows, as an event's row would.
struct ListItem {
    QString title;
    QString description;
    QString meta;
    QString tags;
};

/// Row `row` of any number: titles that wrap now and then, descriptions of none to many lines.
ListItem listItem(int row);

/// A row of a SectionList with labels and two buttons.
class ListRow : public SectionListRow {
    Q_OBJECT

public:
    ListRow();

    void show(const ListItem &item, bool hasButtons);
    int heightFor(int width) const override;
    QList<QWidget *> buttons() const override;

protected:
    void resizeEvent(QResizeEvent *event) override;

private:
    void arrange();
    int textWidth(int width) const;

    TextLabel *m_title;
    TextLabel *m_description;
    TextLabel *m_meta;
    TextLabel *m_tags;
    IconButton *m_edit;
    IconButton *m_remove;
};

/// The same rows for a stock list view.
class ListModel : public QAbstractListModel {
    Q_OBJECT

public:
    explicit ListModel(int count)
        : m_count(count)
    {
    }

    int rowCount(const QModelIndex &) const override { return m_count; }
    QVariant data(const QModelIndex &, int) const override { return {}; }

private:
    int m_count;
};

class ListDelegate : public QStyledItemDelegate {
    Q_OBJECT

public:
    void paint(QPainter *painter, const QStyleOptionViewItem &option,
               const QModelIndex &index) const override;
    QSize sizeHint(const QStyleOptionViewItem &option, const QModelIndex &index) const override;
};
