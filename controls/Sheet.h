#pragma once

#include "controls/OutOfReach.h"
#include "controls/SheetCard.h"

#include <QPointer>
#include <QWidget>

#include <optional>

class QKeyEvent;
class SheetBody;

/// A card within its window that waits for an answer: flush with the top of the window's content,
/// which is dimmed and out of reach meanwhile, for the pointer, the keyboard and screen readers.
/// The card stays clear of the window's end: its body scrolls when there is no room, its header and
/// footer stay put. Opening returns at once, and brings nothing to the front.
class Sheet : public QWidget {
    Q_OBJECT

public:
    /// `cardWidth` is that of the card, in pixels, before it grows with large type; `over` lies in
    /// the window that waits.
    Sheet(int cardWidth, QWidget *over);
    ~Sheet() override;

    /// The parts, from top to bottom, with their own paddings; any may be missing. Heights follow
    /// when a part's layout changes. The body is at least `leastHeight` high where there is room.
    void setHeader(QWidget *header);
    void setBody(QWidget *body, int leastHeight = 0);
    void setFooter(QWidget *footer);
    /// A line that always stands above the footer, for a body that scrolls right under it. Without
    /// it, one comes and goes with what is hidden there.
    void setFooterLine(bool line);

    /// While it holds something that must not be lost, only close() closes it: not the keyboard's
    /// cancel, and not its window, which stays open and points to the way out.
    void setHolds(bool holds);
    /// The button that closes it in any case.
    void setWayOut(QWidget *button);
    /// What has the focus when it opens, its ring shown; the sheet itself unless set.
    void setInitialFocus(QWidget *widget);

    void open();
    /// The card within this widget, which covers the window.
    QRect card() const { return m_card; }

Q_SIGNALS:
    void closed(); ///< once for each open(), however it closed

protected:
    /// Scrolls the body if it is a key for that; whether it was.
    bool scroll(const QKeyEvent *event);

    bool eventFilter(QObject *watched, QEvent *event) override;
    void hideEvent(QHideEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;
    void paintEvent(QPaintEvent *event) override;

private:
    bool filterWindow(QEvent *event);
    void place();
    void layOutParts(int header, int footer);
    int roomForFooter(int width, int room) const;
    int line() const;
    void watch(QWidget *part);

    const int m_cardWidth;
    bool m_holds = false;
    bool m_sessionEnds = false; ///< the desktop has said so since something was last changed here
    bool m_footerLine = false;
    bool m_isOpen = false;
    int m_leastBody = 0;
    QRect m_card;
    QPointer<QWidget> m_window; ///< the one that waits
    QPointer<QWidget> m_header;
    QPointer<QWidget> m_bodyContent;
    QPointer<QWidget> m_footer;
    QPointer<QWidget> m_initialFocus;
    QPointer<QWidget> m_wayOut;
    SheetBody *m_body;
    std::optional<OutOfReach> m_below;
    SheetCard m_cardPainter;
};
