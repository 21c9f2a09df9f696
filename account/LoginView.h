#pragma once

#include "account/AuthMode.h"
#include "controls/Sheet.h"

#include <QCoro/QCoroTask>

#include <optional>

class ErrorText;
class PrimaryButton;
class SecondaryButton;
class SegmentedControl;
class TextField;

/// The sheet in which a member signs in to an account or creates one. It asks the service by
/// itself, shows why it was refused, and closes once it was not; who is signed in then is for
/// others to learn from the service's notification. Closing it never stops a request: one that ends
/// after it finds the form gone and leaves it alone.
class LoginView : public Sheet {
    Q_OBJECT

public:
    /// `over` lies in the window that waits meanwhile.
    LoginView(AuthMode initialMode, QWidget *over);

protected:
    void showEvent(QShowEvent *event) override;

private:
    struct State {
        AuthMode mode;
        QString email; ///< as typed, as is the password: sent so, blanks and all
        QString password;
        std::optional<QString> errorMessage; ///< of the last request
        bool isSigningIn = false;
    };

    QWidget *makeHeader();
    QWidget *makeBody();
    QWidget *makeFooter();

    void signIn();
    void signUp();
    void begin();
    QCoro::Task<void> follow(QCoro::Task<void> request);
    void finish(const std::optional<QString> &failure);

    void render();

    State m_state;
    SegmentedControl *m_mode;
    TextField *m_email;
    TextField *m_password;
    ErrorText *m_error;
    SecondaryButton *m_cancel;
    PrimaryButton *m_primary;
};
