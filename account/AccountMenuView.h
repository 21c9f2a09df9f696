#pragma once

#include <QWidget>

#include <functional>
#include <optional>

/// What the account button's popover shows: who the account is remembered for, and what can be done
/// with it. It keeps no state and does nothing by itself: each button calls its callback, and
/// whoever shows the menu closes it.
class AccountMenuView : public QWidget {
    Q_OBJECT

public:
    struct Properties {
        bool isSignedIn = false; ///< a session is open
        bool hasSavedCredentials = false; ///< an account is remembered
        std::optional<QString> email = {}; ///< shown when there is one and it is not empty
        std::function<void()> onConnect = {}; ///< sign in again with the remembered account
        std::function<void()> onLogout = {}; ///< close the session
        std::function<void()> onRemove = {}; ///< forget the remembered account
    };

    explicit AccountMenuView(const Properties &properties, QWidget *parent = nullptr);
};
