#pragma once

#include <QWidget>

class QStackedLayout;
class TabStrip;

/// Pages under a strip of tabs, one shown at a time.
class TabView : public QWidget {
    Q_OBJECT

public:
    explicit TabView(QWidget *parent = nullptr);

    void addTab(const QString &title, QWidget *page); ///< takes the page
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
