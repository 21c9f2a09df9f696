#pragma once

#include "account/LoginView.h"
#include "app/ButtonStyles.h"
#include "controls/ErrorText.h"
#include "controls/TextField.h"

#include <QApplication>
#include <QPointer>
#include <QRadioButton>
#include <QTest>

using namespace Qt::StringLiterals;

/// The sign-in form over a window, met as a person does: by what is named on it.
struct LoginForm {
    QWidget window;
    QPointer<LoginView> view;

    explicit LoginForm(AuthMode mode = AuthMode::signIn)
    {
        window.setGeometry(100, 40, 760, 620);
        window.show();
        view = new LoginView(mode, &window);
        view->open();
        // The focus has come to its field, as it has before a person can do anything.
        if (!QTest::qWaitFor([this] { return view->isActiveWindow() && email()->hasFocus(); }))
            qFatal("the form does not come to the front");
        QCoreApplication::processEvents();
    }

    /// The form's control with this name, which must be there.
    template <typename Control>
    Control *named(const QString &name) const
    {
        const auto controls = view->findChildren<Control *>();
        for (Control *control : controls) {
            if (control->accessibleName() == name)
                return control;
        }
        qFatal("nothing is named %s", qPrintable(name));
        return nullptr;
    }

    TextField *email() const { return named<TextField>(u"Email"_s); }
    TextField *password() const { return named<TextField>(u"Mot de passe"_s); }
    SecondaryButton *cancel() const { return named<SecondaryButton>(u"Annuler"_s); }
    PrimaryButton *primary() const { return view->findChild<PrimaryButton *>(); }
    QRadioButton *segment(const QString &name) const { return named<QRadioButton>(name); }
    ErrorText *error() const { return view->findChild<ErrorText *>(); }

    bool isOpen() const { return view && view->isVisible(); }
    /// The error line as it is shown; empty when there is none.
    QString shownError() const
    {
        return isOpen() && error()->isVisible() ? error()->text() : QString();
    }

    void type(const QString &address, const QString &secret) const
    {
        for (TextField *field : {email(), password()})
            field->clear();
        QTest::keyClicks(email(), address);
        QTest::keyClicks(password(), secret);
    }
    void press() const { QTest::mouseClick(primary(), Qt::LeftButton); }
    void submit() const
    {
        type(u"a@b.fr"_s, u"secret"_s);
        press();
    }
};
