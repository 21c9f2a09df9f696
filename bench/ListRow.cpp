#include "ListRow.h"

#include "controls/IconButton.h"
#include "controls/TextLabel.h"
#include "look/Fonts.h"

#include <QPainter>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace {
constexpr int padding = 6;
constexpr int spacing = 6;
} // namespace

ListItem listItem(int row)
{
    static const QString words =
        u"Chacun apporte un bol, les voisins s'occupent des histoires, entrée libre, sur une idée "
        "de "
        "la bibliothèque, et la fanfare passe à seize heures avec le vin chaud et les crêpes. "_s;
    ListItem item;
    item.title = u"Soirée numéro %1"_s.arg(row);
    if (row % 9 == 0)
        item.title += u", "_s + words.left(90);
    item.description = words.repeated(row % 5).left((row * 37) % 600);
    item.meta =
        u"2026-%1-%2   19:00   Salle Vaudrelle"_s.arg(1 + row / 30 % 12, 2, 10, QLatin1Char('0'))
            .arg(1 + row % 30, 2, 10, QLatin1Char('0'));
    if (row % 3 != 0)
        item.tags = u"Repas   Spectacle   Jeune public"_s;
    return item;
}

ListRow::ListRow()
    : m_title(new TextLabel({}, appFont(17, QFont::DemiBold), primaryText, this))
    , m_description(new TextLabel({}, appFont(13), secondaryText, this))
    , m_meta(new TextLabel({}, appFont(12), secondaryText, this))
    , m_tags(new TextLabel({}, appFont(11, QFont::Medium), secondaryText, this))
    , m_edit(new IconButton(Symbol::Pencil, u"Modifier"_s, secondaryText, this))
    , m_remove(new IconButton(Symbol::Trash, u"Supprimer"_s, red, this))
{
    m_description->setMaximumLines(3);
    m_meta->setMaximumLines(1);
    m_tags->setMaximumLines(1);
}

void ListRow::show(const ListItem &item, bool hasButtons)
{
    m_title->setText(item.title);
    m_description->setText(item.description);
    m_description->setVisible(!item.description.isEmpty());
    m_meta->setText(item.meta);
    m_tags->setText(item.tags);
    m_tags->setVisible(!item.tags.isEmpty());
    m_edit->setVisible(hasButtons);
    m_remove->setVisible(hasButtons);
    setAccessibleName(item.title);
    arrange();
}

int ListRow::heightFor(int width) const
{
    int height = 2 * padding - spacing;
    for (const auto *label : {m_title, m_description, m_meta, m_tags}) {
        if (!label->isHidden())
            height += label->heightForWidth(textWidth(width)) + spacing;
    }
    return height;
}

QList<QWidget *> ListRow::buttons() const
{
    return {m_edit, m_remove};
}

void ListRow::resizeEvent(QResizeEvent *)
{
    arrange();
}

void ListRow::arrange()
{
    const QRect content = contentRect();
    const int width = textWidth(content.width());
    int y = content.top() + padding;
    for (auto *label : {m_title, m_description, m_meta, m_tags}) {
        if (label->isHidden())
            continue;
        const int height = label->heightForWidth(width);
        label->setGeometry(content.left(), y, width, height);
        y += height + spacing;
    }
    m_remove->setGeometry(content.right() - 19, content.top() + padding, 24, 24);
    m_edit->setGeometry(content.right() - 43, content.top() + padding, 24, 24);
}

int ListRow::textWidth(int width) const
{
    return m_edit->isHidden() ? width : std::max(0, width - 56);
}

void ListDelegate::paint(QPainter *painter, const QStyleOptionViewItem &option,
                         const QModelIndex &index) const
{
    const ListItem item = listItem(index.row());
    QRect rest = option.rect.adjusted(12, 10, -12, 0);
    const auto draw = [&](const QFont &font, const QString &text, int most) {
        if (text.isEmpty())
            return;
        painter->setFont(font);
        const QFontMetrics metrics(font);
        const QRect asked = metrics.boundingRect(rest, Qt::TextWordWrap, text);
        rest.setHeight(std::min(asked.height(), most * metrics.lineSpacing()));
        painter->drawText(rest, Qt::TextWordWrap, text);
        rest.translate(0, rest.height() + spacing);
    };
    draw(appFont(17, QFont::DemiBold), item.title, 9);
    draw(appFont(13), item.description, 3);
    draw(appFont(12), item.meta, 1);
    draw(appFont(11, QFont::Medium), item.tags, 1);
}

QSize ListDelegate::sizeHint(const QStyleOptionViewItem &option, const QModelIndex &index) const
{
    const ListItem item = listItem(index.row());
    const QRect room(0, 0, option.widget->width() - 36, 10000);
    int height = 14;
    const auto add = [&](const QFont &font, const QString &text, int most) {
        if (text.isEmpty())
            return;
        const QFontMetrics metrics(font);
        height += spacing
            + std::min(metrics.boundingRect(room, Qt::TextWordWrap, text).height(),
                       most * metrics.lineSpacing());
    };
    add(appFont(17, QFont::DemiBold), item.title, 9);
    add(appFont(13), item.description, 3);
    add(appFont(12), item.meta, 1);
    add(appFont(11, QFont::Medium), item.tags, 1);
    return {room.width(), height};
}
