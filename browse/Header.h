#pragma once

#include <QWidget>

#include <functional>
#include <optional>

class AccountButton;
class PrimaryButton;
class QVBoxLayout;
class SecondaryButton;
class TextLabel;

/// The top of the window: the brand and the tagline on the left, what a member can do on the right.
/// Where the type is large, what has no room there stands below, across the window.
class Header : public QWidget {
    Q_OBJECT

public:
    /// What the buttons do; one without an action does nothing.
    struct Actions {
        std::function<void()> onAddAccount;
        std::function<void()> onAddEvent;
        std::function<void()> onAccount;
    };
    struct Content {
        bool isSignedIn = false;
        bool hasSavedCredentials = false;
        std::optional<QString> email; ///< the one to show beside the account button
        bool isAccountMenuPresented = false;
    };

    explicit Header(const Actions &actions, QWidget *parent = nullptr);

    void setContent(const Content &content);

    /// What the account menu is anchored to.
    QWidget *accountButton() const;

protected:
    void resizeEvent(QResizeEvent *event) override;

private:
    void makeTitles();
    void makeButtons();
    /// Puts below what has no room beside the other side: the wider button where the brand would
    /// have to break, the tagline where it would.
    void arrange();
    void putEventButton(bool below);
    void putTagline(bool below);

    SecondaryButton *m_addAccount;
    PrimaryButton *m_addEvent;
    AccountButton *m_account;
    QVBoxLayout *m_titles; ///< at the left
    QVBoxLayout *m_buttons; ///< at the right
    QVBoxLayout *m_across; ///< below all the rest
    QVBoxLayout *m_accountRow; ///< the button below the tagline
    QVBoxLayout *m_eventRow; ///< the button below that, or nothing
    TextLabel *m_brand = nullptr;
    TextLabel *m_tagline = nullptr;
    bool m_isButtonBelow = false;
    bool m_isTaglineBelow = false;
};
