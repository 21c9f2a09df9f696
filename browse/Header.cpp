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
constexpr int roomAbove = 10; ///< a button below the tagline

} // namespace

Header::Header(const Actions &actions, QWidget *parent)
    : QWidget(parent)
    , m_addAccount(new SecondaryButton(u"Ajouter un compte"_s, this))
    , m_addEvent(new PrimaryButton(u"Ajouter un événement"_s, this))
    , m_account(new AccountButton(this))
    , m_across(new QVBoxLayout)
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

    auto *row = new QHBoxLayout;
    row->setSpacing(spacing);
    row->addLayout(makeTitles(), 1);
    row->addLayout(makeButtons());
    auto *column = new QVBoxLayout(this);
    column->setContentsMargins(0, 0, 0, 0);
    column->setSpacing(0);
    column->addLayout(row);
    column->addLayout(m_across);
}

void Header::setContent(const Content &content)
{
    if (content.hasSavedCredentials && window()->focusWidget() == m_addAccount)
        KeyboardFocus::handOver(m_addAccount, m_account);
    m_addAccount->setVisible(!content.hasSavedCredentials);
    m_addEvent->setVisible(content.isSignedIn);
    arrange();
    m_account->setEmail(content.email.value_or(QString()));
    m_account->setOpen(content.isAccountMenuPresented);
}

QWidget *Header::accountButton() const
{
    return m_account;
}

QVBoxLayout *Header::makeTitles()
{
    m_brand = new TextLabel(u"amorvelle.fr"_s, appFont(24, QFont::DemiBold), primaryText, this);
    setAccessibleRole(m_brand, QAccessible::Heading);
    auto *tagline = new TextLabel(u"Les événements à Morvelle et ses environs"_s, appFont(13),
                                  secondaryText, this);

    // Readers go by the order of the children: the brand is first, whatever was made before it.
    tagline->lower();
    m_brand->lower();

    auto *column = new QVBoxLayout;
    column->setSpacing(0);
    column->addWidget(m_brand);
    column->addSpacing(2);
    column->addWidget(tagline);
    // The room above the button goes with the button.
    auto *below = new QVBoxLayout;
    below->setContentsMargins(0, roomAbove, 0, 0);
    below->addWidget(m_addAccount, 0, Qt::AlignLeft);
    column->addLayout(below);
    column->addStretch();
    return column;
}

QVBoxLayout *Header::makeButtons()
{
    m_buttons = new QVBoxLayout;
    m_buttons->setSpacing(6);
    m_buttons->addWidget(m_addEvent, 0, Qt::AlignRight);
    m_buttons->addWidget(m_account, 0, Qt::AlignRight);
    m_buttons->addStretch();
    return m_buttons;
}

void Header::resizeEvent(QResizeEvent *event)
{
    QWidget::resizeEvent(event);
    arrange();
}

void Header::arrange()
{
    const int beside = m_brand->naturalWidth() + spacing + m_addEvent->sizeHint().width();
    const bool isNarrow = !m_addEvent->isHidden() && width() < beside;
    if (isNarrow == m_isNarrow)
        return;
    m_isNarrow = isNarrow;
    (isNarrow ? m_buttons : m_across)->removeWidget(m_addEvent);
    m_across->setContentsMargins(0, isNarrow ? roomAbove : 0, 0, 0);
    if (isNarrow)
        m_across->addWidget(m_addEvent, 0, Qt::AlignLeft);
    else
        m_buttons->insertWidget(0, m_addEvent, 0, Qt::AlignRight);
}
