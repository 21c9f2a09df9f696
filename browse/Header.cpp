#include "browse/Header.h"

#include "app/ButtonStyles.h"
#include "browse/AccountButton.h"
#include "controls/TextLabel.h"
#include "look/Accessibility.h"
#include "look/Fonts.h"
#include "look/KeyboardFocus.h"

#include <QHBoxLayout>
#include <QVBoxLayout>

using namespace Qt::StringLiterals;

namespace {

constexpr int spacing = 12; ///< between the titles and the buttons
constexpr int belowBrand = 2;
constexpr int roomAbove = 10; ///< a button below the tagline

} // namespace

Header::Header(const Actions &actions, QWidget *parent)
    : QWidget(parent)
    , m_addAccount(new SecondaryButton(u"Ajouter un compte"_s, this))
    , m_addEvent(new PrimaryButton(u"Ajouter un événement"_s, this))
    , m_account(new AccountButton(this))
    , m_titles(new QVBoxLayout)
    , m_buttons(new QVBoxLayout)
    , m_across(new QVBoxLayout)
    , m_accountRow(new QVBoxLayout)
    , m_eventRow(new QVBoxLayout)
{
    m_addEvent->setSymbol(Symbol::Plus);
    m_addEvent->setMinimumWidth(180); // wider where the font is, rather than cut

    const auto act = [this](QAbstractButton *button, const std::function<void()> &action) {
        if (action)
            connect(button, &QAbstractButton::clicked, this, action);
    };
    act(m_addAccount, actions.onAddAccount);
    act(m_addEvent, actions.onAddEvent);
    act(m_account, actions.onAccount);

    makeTitles();
    makeButtons();
    auto *row = new QHBoxLayout;
    row->setSpacing(spacing);
    row->addLayout(m_titles, 1);
    row->addLayout(m_buttons);
    auto *column = new QVBoxLayout(this);
    column->setContentsMargins(0, 0, 0, 0);
    column->setSpacing(0);
    column->addLayout(row);
    column->addLayout(m_across);
    m_across->setSpacing(0);
    m_across->addLayout(m_eventRow);
}

void Header::setContent(const Content &content)
{
    if (content.hasSavedCredentials && window()->focusWidget() == m_addAccount)
        KeyboardFocus::handOver(m_addAccount, m_account);
    m_addAccount->setVisible(!content.hasSavedCredentials);
    m_addEvent->setVisible(content.isSignedIn);
    m_account->setEmail(content.email.value_or(QString()));
    m_account->setOpen(content.isAccountMenuPresented);
    arrange();
}

QWidget *Header::accountButton() const
{
    return m_account;
}

void Header::makeTitles()
{
    m_brand = new TextLabel(u"amorvelle.fr"_s, appFont(24, QFont::DemiBold), primaryText, this);
    setAccessibleRole(m_brand, QAccessible::Heading);
    m_tagline = new TextLabel(u"Les événements à Morvelle et ses environs"_s, appFont(13),
                              secondaryText, this);

    // Readers go by the order of the children: the brand is first, whatever was made before it.
    m_tagline->lower();
    m_brand->lower();

    m_titles->setSpacing(0);
    m_titles->addWidget(m_brand);
    m_titles->addSpacing(belowBrand);
    m_titles->addWidget(m_tagline);
    m_titles->addLayout(m_accountRow);
    m_titles->addStretch();
    m_accountRow->addWidget(m_addAccount, 0, Qt::AlignLeft);
}

void Header::makeButtons()
{
    m_buttons->setSpacing(6);
    m_buttons->addWidget(m_addEvent, 0, Qt::AlignRight);
    m_buttons->addWidget(m_account, 0, Qt::AlignRight);
    m_buttons->addStretch();
}

void Header::resizeEvent(QResizeEvent *event)
{
    QWidget::resizeEvent(event);
    arrange();
}

void Header::arrange()
{
    const bool hasEventButton = !m_addEvent->isHidden();
    const auto fits = [this](const TextLabel *title, const QWidget *button) {
        return title->naturalWidth() + spacing + button->sizeHint().width() <= width();
    };
    putEventButton(hasEventButton && !fits(m_brand, m_addEvent));
    // The address gives way before the brand breaks.
    m_account->setRoom(width() - spacing - m_brand->naturalWidth());
    // Beside both buttons it wraps rather: there is room for two lines.
    putTagline((!hasEventButton || m_isButtonBelow) && !fits(m_tagline, m_account));
    // The room above a button goes with the button.
    m_accountRow->setContentsMargins(0, m_addAccount->isHidden() ? 0 : roomAbove, 0, 0);
    m_eventRow->setContentsMargins(0, m_isButtonBelow ? roomAbove : 0, 0, 0);
}

void Header::putEventButton(bool below)
{
    if (below == m_isButtonBelow)
        return;
    m_isButtonBelow = below;
    (below ? m_buttons : m_eventRow)->removeWidget(m_addEvent);
    if (below)
        m_eventRow->addWidget(m_addEvent, 0, Qt::AlignLeft);
    else
        m_buttons->insertWidget(0, m_addEvent, 0, Qt::AlignRight);
}

void Header::putTagline(bool below)
{
    if (below == m_isTaglineBelow)
        return;
    m_isTaglineBelow = below;
    QVBoxLayout *from = below ? m_titles : m_across;
    QVBoxLayout *to = below ? m_across : m_titles;
    from->removeWidget(m_tagline);
    from->removeItem(m_accountRow);
    m_accountRow->setParent(nullptr);
    const int first = below ? 0 : 2; // after the brand and what is free below it
    to->insertWidget(first, m_tagline);
    to->insertLayout(first + 1, m_accountRow);
}
