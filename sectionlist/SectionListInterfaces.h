#pragma once

#include "sectionlist/SectionList.h"

#include <QAccessibleWidget>
#include <QHash>
#include <QPointer>

/// The list: its children are headings and rows in the order of reading.
class SectionListInterface final : public QAccessibleWidget {
public:
    explicit SectionListInterface(SectionList *list);
    ~SectionListInterface() override;
    Q_DISABLE_COPY_MOVE(SectionListInterface)

    int childCount() const override;
    QAccessibleInterface *child(int index) const override;
    int indexOfChild(const QAccessibleInterface *child) const override;
    QAccessibleInterface *childAt(int x, int y) const override;

private:
    SectionList *list() const;
    QAccessibleInterface *item(int index) const;

    /// Of headings and of rows without a widget; made when asked for, gone with the content.
    mutable QHash<int, QAccessible::Id> m_items;
    mutable int m_contentNumber = 0;
};

/// A row that has a widget.
class SectionListRowInterface final : public QAccessibleWidget {
public:
    explicit SectionListRowInterface(SectionListRow *row);

    QAccessibleInterface *parent() const override;
    QAccessible::State state() const override;
    QStringList actionNames() const override;
    void doAction(const QString &action) override;

private:
    SectionListRow *row() const;
};

/// A heading, or a row without a widget. A reader may keep it while the row comes into view: it
/// then tells the state of the row's widget, and what is in it.
class SectionListItemInterface final : public QAccessibleInterface,
                                       public QAccessibleActionInterface {
public:
    SectionListItemInterface(SectionList *list, int index);

    int index() const { return m_index; }

    bool isValid() const override;
    QObject *object() const override { return nullptr; }
    QAccessibleInterface *parent() const override;
    int childCount() const override;
    QAccessibleInterface *child(int index) const override;
    int indexOfChild(const QAccessibleInterface *) const override { return -1; }
    QAccessibleInterface *childAt(int, int) const override { return nullptr; }
    QRect rect() const override;
    QAccessible::Role role() const override;
    QAccessible::State state() const override;
    QString text(QAccessible::Text kind) const override;
    void setText(QAccessible::Text, const QString &) override { }
    void *interface_cast(QAccessible::InterfaceType type) override;

    QStringList actionNames() const override;
    void doAction(const QString &action) override;
    QStringList keyBindingsForAction(const QString &) const override { return {}; }

private:
    QAccessibleInterface *shownRow() const;

    QPointer<SectionList> m_list;
    int m_index;
};
