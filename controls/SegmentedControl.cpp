#include "controls/SegmentedControl.h"

#include "controls/TextLabel.h"
#include "look/Accessibility.h"
#include "look/Colors.h"
#include "look/FocusRing.h"
#include "look/Fonts.h"
#include "look/Painting.h"
#include "look/Shadow.h"

#include <QHBoxLayout>
#include <QPainter>
#include <QRadioButton>

#include <algorithm>

namespace {

constexpr int labelGap = 10;
constexpr int labelAbove = 6; ///< between the label and the track where it stands above that
constexpr int trackRadius = 7;
constexpr int inset = 2;
constexpr int segmentRadius = 5;
constexpr int padding = 12;
constexpr int trackHeight = 28;

/// One segment. It paints its text only: what marks the chosen one reaches beyond it.
class Segment final : public QRadioButton {
public:
    Segment(const QString &text, QWidget *parent)
        : QRadioButton(parent)
        , m_text(text)
    {
        setFont(appFont(13, QFont::Medium));
        setAccessibleName(text);
        setSizePolicy(QSizePolicy::Preferred, QSizePolicy::Fixed);
        new FocusRing(this, segmentRadius);
    }

    QSize sizeHint() const override { return {2 * padding + textWidth(), segmentHeight()}; }

    QSize minimumSizeHint() const override
    {
        const int ellipsis = 2 * fontMetrics().height();
        return {2 * padding + std::min(textWidth(), ellipsis), segmentHeight()};
    }

protected:
    bool hitButton(const QPoint &position) const override { return rect().contains(position); }

    void paintEvent(QPaintEvent *) override
    {
        const QRect label = rect().adjusted(padding, 0, -padding, 0);
        QPainter painter(this);
        painter.setPen(isChecked() ? primaryText(palette()) : secondaryText(palette()));
        painter.drawText(label, Qt::AlignCenter | Qt::TextSingleLine | Qt::TextDontClip,
                         isCut() ? fontMetrics().elidedText(m_text, Qt::ElideRight, label.width())
                                 : m_text);
    }

    void resizeEvent(QResizeEvent *event) override
    {
        QRadioButton::resizeEvent(event);
        setPlainToolTip(this, isCut() ? m_text : QString());
    }

private:
    int textWidth() const { return fontMetrics().horizontalAdvance(m_text); }
    static int segmentHeight() { return scaled(trackHeight) - 2 * inset; }
    bool isCut() const { return textWidth() > width() - 2 * padding; }

    QString m_text;
};

/// What the segments lie in.
class Track final : public QWidget {
public:
    explicit Track(QWidget *parent)
        : QWidget(parent)
    {
    }

protected:
    void paintEvent(QPaintEvent *) override
    {
        QPainter painter(this);
        fillRounded(painter, rect(), trackRadius, accountLift(palette()));
        fillRounded(painter, rect(), trackRadius, buttonFill(palette()));
        strokeRounded(painter, rect(), trackRadius, controlEdge(palette()));
        const auto segments = findChildren<QRadioButton *>(Qt::FindDirectChildrenOnly);
        for (const auto *segment : segments) {
            if (!segment->isChecked())
                continue;
            paintShadow(painter, segment->geometry(), {1, 2, segmentShadow(palette())});
            fillRounded(painter, segment->geometry(), segmentRadius, segmentFill(palette()));
            strokeRounded(painter, segment->geometry(), segmentRadius, controlEdge(palette()));
        }
    }
};

} // namespace

SegmentedControl::SegmentedControl(const QString &label, const QStringList &segments,
                                   QWidget *parent)
    : QWidget(parent)
    , m_label(new TextLabel(label, appFont(13), primaryText, this))
    , m_track(new Track(this))
{
    setAccessibleName(label);
    setAccessibleRole(this, QAccessible::Grouping);
    QSizePolicy policy(QSizePolicy::Preferred, QSizePolicy::Preferred);
    policy.setHeightForWidth(true);
    setSizePolicy(policy);

    auto *trackRow = new QHBoxLayout(m_track);
    trackRow->setContentsMargins(inset, inset, inset, inset);
    trackRow->setSpacing(0);
    for (const QString &text : segments)
        addSegment(text, m_track);
    setCurrentIndex(0);
}

int SegmentedControl::heightForWidth(int width) const
{
    const int track = m_track->sizeHint().height();
    return isOneRow(width) ? track : m_label->heightForWidth(width) + labelAbove + track;
}

QSize SegmentedControl::sizeHint() const
{
    return {m_label->sizeHint().width() + labelGap + m_track->sizeHint().width(),
            m_track->sizeHint().height()};
}

QSize SegmentedControl::minimumSizeHint() const
{
    const QSize track = m_track->minimumSizeHint();
    return {std::max(m_label->minimumSizeHint().width(), track.width()), track.height()};
}

void SegmentedControl::resizeEvent(QResizeEvent *event)
{
    QWidget::resizeEvent(event);
    const QSize label(std::min(width(), m_label->sizeHint().width()),
                      m_label->heightForWidth(width()));
    const QSize track = m_track->sizeHint();
    if (isOneRow(width())) {
        m_label->setGeometry({{0, (track.height() - label.height()) / 2}, label});
        m_track->setGeometry({{label.width() + labelGap, 0}, track});
    } else {
        m_label->setGeometry({{0, 0}, label});
        m_track->setGeometry(0, label.height() + labelAbove, std::min(width(), track.width()),
                             track.height());
    }
}

bool SegmentedControl::isOneRow(int width) const
{
    return sizeHint().width() <= width;
}

void SegmentedControl::setCurrentIndex(int index)
{
    if (index >= 0 && index < count())
        m_segments[index]->setChecked(true);
}

void SegmentedControl::addSegment(const QString &text, QWidget *track)
{
    const int index = count();
    auto *segment = new Segment(text, track);
    connect(segment, &QRadioButton::toggled, this, [this, track, index](bool isChosen) {
        track->update();
        if (isChosen)
            follow(index);
    });
    track->layout()->addWidget(segment);
    m_segments.append(segment);
}

void SegmentedControl::follow(int index)
{
    m_current = index;
    for (int i = 0; i < count(); ++i)
        m_segments[i]->setFocusPolicy(i == index ? Qt::StrongFocus : Qt::ClickFocus);
    Q_EMIT currentChanged(index);
}
