#pragma once

#include <QWidget>

class QStackedLayout;
class TabStrip;

/// Pages under a strip of tabs, one shown at a time.
class TabView : public QWidget {
    Q_OBJECT

public:
    explicit TabView(QWidget *parent = nullptr);

    /// Takes the page, which stays unnamed to screen readers: they would read all that is in it
    /// whenever the focus comes to it. Name what is in it.
    void addTab(const QString &title, QWidget *page);
    int currentIndex() const;
    void setCurrentIndex(int index);
    QWidget *page(int index) const;
    TabStrip *strip() const { return m_strip; }

Q_SIGNALS:
    void currentChanged(int index);

private:
    TabStrip *m_strip;
    QStackedLayout *m_pages;
};
