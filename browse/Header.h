#pragma once

#include <QWidget>

#include <functional>
#include <optional>

class AccountButton;
class PrimaryButton;
class QVBoxLayout;
class SecondaryButton;
class TextLabel;

/// The top of the window: the brand and the tagline on the left, what a member can do on the right,
/// or below where the type is large.
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
    QVBoxLayout *makeTitles();
    QVBoxLayout *makeButtons();
    /// Puts the wider button below the tagline where the brand would have to break beside it.
    void arrange();

    SecondaryButton *m_addAccount;
    PrimaryButton *m_addEvent;
    AccountButton *m_account;
    QVBoxLayout *m_across; ///< below all the rest
    TextLabel *m_brand = nullptr;
    QVBoxLayout *m_buttons = nullptr;
    bool m_isNarrow = false;
};
