#pragma once

#include "controls/PopupPlacement.h"

#include <QMargins>
#include <QObject>
#include <QPointer>

class QPainter;
class QPalette;
class QRectF;
class QSize;
class QWidget;

/// The card that menus and the popover are drawn on: popup colour, round corners, an edge around it
/// and a shadow. A window that shows one is larger than the card by these margins; it is
/// translucent where the desktop blends windows, else it is all card and edge, with square corners.

inline constexpr int popupRadius = 8;

/// What a window needs around its card.
QMargins popupMargins(bool isComposited);

/// Paints a whole window of such a card, with the margins above.
void paintPopupCard(QPainter &painter, const QRectF &window, const QPalette &palette,
                    bool isComposited);

/// Makes a popup such a window, which hangs from another widget, its anchor. Escape or a press
/// beside the card closes it, on its shadow too; a press on the anchor does not open it again. It
/// goes with its place, too: when the anchor's window is moved or its size changes.
class PopupCard : public QObject {
    Q_OBJECT

public:
    /// To be called while `window`, which it lives as long as, is being built. `gap` lies between
    /// the card and the anchor.
    PopupCard(QWidget *window, QWidget *anchor, PopupAlignment alignment, int gap);

    bool isComposited() const { return m_isComposited; }
    QMargins margins() const { return popupMargins(m_isComposited); }
    /// The card within the window.
    QRect rect() const;
    /// Where, on the screen, a window of this size and the card in it belong.
    QRect placeOfWindow(const QSize &window) const;
    QRect placeOfCard(const QSize &window) const;
    /// Paints the whole window.
    void paint(QPainter &painter) const;

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    QWidget *m_window;
    QWidget *m_anchor;
    QPointer<QWidget> m_below; ///< the anchor's window, while this one shows
    PopupAlignment m_alignment;
    int m_gap;
    bool m_isComposited;
};
