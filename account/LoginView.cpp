#include "account/LoginView.h"

#include "app/ButtonStyles.h"
#include "backend/LocalizedError.h"
#include "backend/SupabaseClient.h"
#include "backend/Unattended.h"
#include "controls/ErrorText.h"
#include "controls/SegmentedControl.h"
#include "controls/TextField.h"
#include "controls/TextLabel.h"
#include "look/Accessibility.h"
#include "look/Fonts.h"

#include <QHBoxLayout>
#include <QPointer>
#include <QShowEvent>
#include <QVBoxLayout>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace {

constexpr int cardWidth = 360;
constexpr int padding = 20;
constexpr int spacing = 12;
constexpr int headingSpacing = 6;
/// Where two parts of the sheet meet each gives half: the rings of what stands there need room.
constexpr int halfSpacing = spacing / 2;
constexpr int shownErrorLines = 4;

QStringList modeLabels()
{
    QStringList labels;
    for (const AuthMode mode : AuthMode::allCases)
        labels.append(mode.rawValue());
    return labels;
}

int indexOf(AuthMode mode)
{
    const auto &all = AuthMode::allCases;
    return static_cast<int>(std::find(all.begin(), all.end(), mode) - all.begin());
}

} // namespace

LoginView::LoginView(AuthMode initialMode, QWidget *over)
    : Sheet(cardWidth, over)
    , m_state{.mode = initialMode, .email = {}, .password = {}, .errorMessage = {}}
{
    setHeader(makeHeader());
    setBody(makeBody());
    setFooter(makeFooter());
    setInitialFocus(m_email);
    setWayOut(m_cancel);

    connect(m_mode, &SegmentedControl::currentChanged, this, [this](int index) {
        m_state.mode = AuthMode::allCases.at(static_cast<size_t>(index));
        render();
    });
    connect(m_email, &QLineEdit::textChanged, this, [this](const QString &text) {
        m_state.email = text;
        render();
    });
    connect(m_password, &QLineEdit::textChanged, this, [this](const QString &text) {
        m_state.password = text;
        render();
    });
    connect(m_cancel, &QPushButton::clicked, this, &QWidget::close);
    connect(m_primary, &QPushButton::clicked, this, [this] {
        if (m_state.mode == AuthMode::signUp)
            signUp();
        else
            signIn();
    });
    render();
}

QWidget *LoginView::makeHeader()
{
    auto *header = new QWidget;
    auto *title = new TextLabel(u"Compte aMorvelle"_s, appFont(20, QFont::DemiBold));
    setAccessibleRole(title, QAccessible::Heading);
    setAccessibleName(title->text());

    auto *column = new QVBoxLayout(header);
    column->setContentsMargins(padding, padding, padding, halfSpacing);
    column->setSpacing(headingSpacing);
    column->addWidget(title);
    column->addWidget(
        new TextLabel(u"Connectez-vous ou créez un compte."_s, appFont(13), secondaryText));
    return header;
}

QWidget *LoginView::makeBody()
{
    auto *body = new QWidget;
    m_mode = new SegmentedControl(u"Mode"_s, modeLabels());
    m_mode->setCurrentIndex(indexOf(m_state.mode));
    m_email = new TextField(u"Email"_s);
    m_email->setInputMethodHints(Qt::ImhNoPredictiveText | Qt::ImhNoAutoUppercase);
    m_password = new TextField(u"Mot de passe"_s);
    m_password->setEchoMode(QLineEdit::Password);

    auto *column = new QVBoxLayout(body);
    column->setContentsMargins(padding, halfSpacing, padding, halfSpacing);
    column->setSpacing(spacing);
    column->addWidget(m_mode);
    column->addWidget(m_email);
    column->addWidget(m_password);
    return body;
}

QWidget *LoginView::makeFooter()
{
    auto *footer = new QWidget;
    m_error = new ErrorText;
    m_error->setMaximumLines(shownErrorLines);
    m_cancel = new SecondaryButton(u"Annuler"_s);
    m_primary = new PrimaryButton({});

    auto *buttons = new QHBoxLayout;
    buttons->addWidget(m_cancel);
    buttons->addStretch();
    buttons->addWidget(m_primary);

    auto *column = new QVBoxLayout(footer);
    column->setContentsMargins(padding, halfSpacing, padding, padding);
    column->setSpacing(spacing);
    column->addWidget(m_error);
    column->addLayout(buttons);
    return footer;
}

void LoginView::showEvent(QShowEvent *event)
{
    Sheet::showEvent(event);
    if (event->spontaneous())
        return;
    // The one sheet for which the program comes to the front; the field gets the focus once it has.
    window()->raise();
    window()->activateWindow();
    QMetaObject::invokeMethod(
        this, [this] { m_email->setFocus(Qt::OtherFocusReason); }, Qt::QueuedConnection);
}

void LoginView::signIn()
{
    begin();
    runUnattended(follow(SupabaseClient::signIn(m_state.email, m_state.password)));
}

void LoginView::signUp()
{
    begin();
    runUnattended(follow(SupabaseClient::signUp(m_state.email, m_state.password)));
}

void LoginView::begin()
{
    m_state.errorMessage.reset();
    m_state.isSigningIn = true;
    render();
}

QCoro::Task<void> LoginView::follow(QCoro::Task<void> request)
{
    const QPointer<LoginView> self(this);
    std::optional<QString> failure;
    try {
        co_await request;
    } catch (...) {
        failure = currentFailure();
    }
    if (self && isVisible())
        finish(failure);
}

void LoginView::finish(const std::optional<QString> &failure)
{
    m_state.isSigningIn = false;
    m_state.errorMessage = failure;
    render();
    if (!failure)
        close();
}

void LoginView::render()
{
    m_primary->setLabel(m_state.mode == AuthMode::signUp ? u"Créer un compte"_s
                                                         : u"Se connecter"_s);
    const bool canSubmit =
        !m_state.isSigningIn && !m_state.email.isEmpty() && !m_state.password.isEmpty();
    // The button that is disabled under the person's hand keeps its place: the focus waits in the
    // sheet itself, not on whatever comes next, and goes back when the button can be pressed again.
    if (!canSubmit && focusWidget() == m_primary)
        setFocus(Qt::OtherFocusReason);
    m_primary->setEnabled(canSubmit);
    if (canSubmit && focusWidget() == this)
        m_primary->setFocus(Qt::PopupFocusReason);

    m_error->setText(m_state.errorMessage.value_or(QString()));
    m_error->setVisible(m_state.errorMessage.has_value());
    setHolds(m_state.isSigningIn || !m_state.email.isEmpty() || !m_state.password.isEmpty());
}
