#pragma once

#include <QWidget>

class QHBoxLayout;
class TabButton;

/// Underlined text tabs on a hairline. One of them is chosen; it is the strip's one stop on the tab
/// key's way, and Left, Right, Home and End move the choice.
class TabStrip : public QWidget {
    Q_OBJECT

public:
    explicit TabStrip(QWidget *parent = nullptr);

    void addTab(const QString &title); ///< the first one is chosen
    int count() const { return static_cast<int>(m_tabs.size()); }
    int currentIndex() const { return m_current; }
    void setCurrentIndex(int index);
    QWidget *currentTab() const; ///< where the keyboard is when it is on the strip

Q_SIGNALS:
    void currentChanged(int index);

protected:
    void keyPressEvent(QKeyEvent *event) override;
    void paintEvent(QPaintEvent *event) override;

private:
    QList<TabButton *> m_tabs;
    QHBoxLayout *m_row;
    int m_current = -1;
};
