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

Header::Header(const Actions &actions, QWidget *parent)
    : QWidget(parent)
    , m_addAccount(new SecondaryButton(u"Ajouter un compte"_s, this))
    , m_addEvent(new PrimaryButton(u"Ajouter un événement"_s, this))
    , m_account(new AccountButton(this))
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

    auto *row = new QHBoxLayout(this);
    row->setContentsMargins(0, 0, 0, 0);
    row->setSpacing(12);
    row->addWidget(makeTitles(), 1, Qt::AlignTop);
    row->addWidget(makeButtons(), 0, Qt::AlignTop);
}

void Header::setContent(const Content &content)
{
    if (content.hasSavedCredentials && window()->focusWidget() == m_addAccount)
        KeyboardFocus::handOver(m_addAccount, m_account);
    m_addAccount->setVisible(!content.hasSavedCredentials);
    m_addEvent->setVisible(content.isSignedIn);
    m_account->setEmail(content.email.value_or(QString()));
    m_account->setOpen(content.isAccountMenuPresented);
}

QWidget *Header::accountButton() const
{
    return m_account;
}

QWidget *Header::makeTitles()
{
    auto *titles = new QWidget(this);
    auto *brand =
        new TextLabel(u"amorvelle.fr"_s, appFont(24, QFont::DemiBold), primaryText, titles);
    setAccessibleRole(brand, QAccessible::Heading);
    auto *tagline = new TextLabel(u"Les événements à Morvelle et ses environs"_s, appFont(13),
                                  secondaryText, titles);

    auto *column = new QVBoxLayout(titles);
    column->setContentsMargins(0, 0, 0, 0);
    column->setSpacing(0);
    column->addWidget(brand);
    column->addSpacing(2);
    column->addWidget(tagline);
    // The room above the button goes with the button.
    auto *below = new QVBoxLayout;
    below->setContentsMargins(0, 10, 0, 0);
    below->addWidget(m_addAccount, 0, Qt::AlignLeft);
    column->addLayout(below);
    return titles;
}

QWidget *Header::makeButtons()
{
    auto *buttons = new QWidget(this);
    auto *column = new QVBoxLayout(buttons);
    column->setContentsMargins(0, 0, 0, 0);
    column->setSpacing(6);
    column->addWidget(m_addEvent, 0, Qt::AlignRight);
    column->addWidget(m_account, 0, Qt::AlignRight);
    return buttons;
}
