#pragma once

#include <QWidget>

class PopupCard;
class QVBoxLayout;

/// A card that hangs from a control, its anchor: below it, above it where the screen ends, right
/// edges in line. Escape or a click anywhere else closes it, and that click does nothing more; the
/// anchor then has the focus. Opening returns at once.
class Popover : public QWidget {
    Q_OBJECT

public:
    explicit Popover(QWidget *anchor);

    /// What the card shows, in place of what it showed before, which is deleted. The card is 220
    /// wide, or as much more as the content cannot do without.
    void setContent(QWidget *content);

    void open();
    /// The card within this widget, which has room for the edge and the shadow as well.
    QRect card() const;

Q_SIGNALS:
    void closed(); ///< once for each open(), however it closed

protected:
    bool event(QEvent *event) override;
    void hideEvent(QHideEvent *event) override;
    void paintEvent(QPaintEvent *event) override;

private:
    QSize naturalSize() const;
    void place();
    void giveFocus();

    QWidget *m_anchor;
    PopupCard *m_card;
    bool m_isOpen = false;
    QWidget *m_content = nullptr;
    QVBoxLayout *m_column;
};
