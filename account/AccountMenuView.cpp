#include "account/AccountMenuView.h"

#include "app/ButtonStyles.h"
#include "controls/Colors.h"
#include "controls/Fonts.h"
#include "controls/TextLabel.h"

#include <QPainter>
#include <QVBoxLayout>

namespace {

constexpr int spacing = 10;

/// The line between what leaves the account remembered and what does not.
class Divider final : public QWidget {
public:
    explicit Divider(QWidget *parent)
        : QWidget(parent)
    {
        setFixedHeight(1);
    }

protected:
    void paintEvent(QPaintEvent *) override
    {
        QPainter(this).fillRect(rect(), sheetHairline(palette()));
    }
};

SecondaryButton *addButton(QVBoxLayout *column, const QString &text,
                           const std::function<void()> &action)
{
    auto *menu = column->parentWidget();
    auto *button = new SecondaryButton(text, menu);
    QObject::connect(button, &QPushButton::clicked, menu, [action] {
        if (action)
            action();
    });
    column->addWidget(button, 0, Qt::AlignLeft);
    return button;
}

} // namespace

AccountMenuView::AccountMenuView(const Properties &properties, QWidget *parent)
    : QWidget(parent)
{
    auto *column = new QVBoxLayout(this);
    column->setContentsMargins(0, 0, 0, 0);
    column->setSpacing(spacing);

    if (properties.email && !properties.email->isEmpty()) {
        auto *email =
            new TextLabel(*properties.email, appFont(12, QFont::DemiBold), secondaryText, this);
        email->setMaximumLines(1);
        column->addWidget(email);
    }
    if (properties.isSignedIn)
        addButton(column, QStringLiteral("Se déconnecter"), properties.onLogout);
    else if (properties.hasSavedCredentials)
        addButton(column, QStringLiteral("Se connecter"), properties.onConnect);
    if (properties.hasSavedCredentials) {
        column->addWidget(new Divider(this));
        addButton(column, QStringLiteral("Supprimer le compte"), properties.onRemove)
            ->setDestructive(true);
    }
}
