#pragma once

#include <QPointer>
#include <QWidget>

class SheetBody;
struct Shadow;

/// A card over a window that waits for an answer: flush with the top of the window's content, which
/// is dimmed and takes no input meanwhile. It may hang below its window, moves with it, and stays
/// clear of the end of the screen: its body scrolls when there is no room, its header and footer
/// stay put. Opening returns at once.
class Sheet : public QWidget {
    Q_OBJECT

public:
    /// `cardWidth` is that of the card, in pixels; `over` lies in the window that waits.
    Sheet(int cardWidth, QWidget *over);
    ~Sheet() override;

    /// The parts, from top to bottom, with their own paddings; any may be missing. A body with a
    /// minimum height keeps it. Heights follow when a part's layout changes.
    void setHeader(QWidget *header);
    void setBody(QWidget *body);
    void setFooter(QWidget *footer);
    /// A line above the footer, for a body that scrolls under it.
    void setFooterLine(bool line);

    /// Whether the keyboard's cancel closes it, and so does the desktop; otherwise only close()
    /// and reject() of the program do. Without this set, they do not.
    void setClosesOnCancel(bool closes);
    /// What has the focus when it opens, its ring shown.
    void setInitialFocus(QWidget *widget);

    void open();
    /// The card within this widget, which has room for the edge and the shadow as well.
    QRect card() const;

Q_SIGNALS:
    void closed(); ///< once for each open(), however it closed

protected:
    void closeEvent(QCloseEvent *event) override;
    bool eventFilter(QObject *watched, QEvent *event) override;
    void hideEvent(QHideEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;
    void paintEvent(QPaintEvent *event) override;

private:
    Shadow shadow() const;
    int naturalHeight() const;
    int roomOnScreen() const;
    void place();
    void layOutParts(const QRect &card);
    void watch(QWidget *part);

    int m_cardWidth;
    bool m_composited;
    bool m_closesOnCancel = false;
    bool m_footerLine = false;
    bool m_isOpen = false;
    QWidget *m_window; ///< the one that waits
    QPointer<QWidget> m_dim;
    QPointer<QWidget> m_header;
    QPointer<QWidget> m_bodyContent;
    QPointer<QWidget> m_footer;
    QPointer<QWidget> m_initialFocus;
    SheetBody *m_body;
};
