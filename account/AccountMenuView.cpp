#include "account/AccountMenuView.h"

#include "app/ButtonStyles.h"
#include "controls/TextLabel.h"
#include "look/Colors.h"
#include "look/Fonts.h"

#include <QPainter>
#include <QVBoxLayout>

using namespace Qt::StringLiterals;

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
        addButton(column, u"Se déconnecter"_s, properties.onLogout);
    else if (properties.hasSavedCredentials)
        addButton(column, u"Se connecter"_s, properties.onConnect);
    if (properties.hasSavedCredentials) {
        column->addWidget(new Divider(this));
        addButton(column, u"Supprimer le compte"_s, properties.onRemove)->setDestructive(true);
    }
}
