#include "browse/DeleteConfirmation.h"

#include "app/ButtonStyles.h"
#include "controls/Accessibility.h"
#include "controls/Fonts.h"
#include "controls/TextLabel.h"

#include <QVBoxLayout>

namespace {

constexpr int cardWidth = 300;
constexpr int padding = 20;

TextLabel *makeCentred(const QString &text, const QFont &font, ColorRole color, QWidget *parent)
{
    auto *label = new TextLabel(text, font, color, parent);
    label->setAlignment(Qt::AlignHCenter);
    return label;
}

} // namespace

DeleteConfirmation::DeleteConfirmation(const std::function<void()> &onConfirm, QWidget *over)
    : Sheet(cardWidth, over)
{
    const QString question = QStringLiteral("Supprimer l'événement ?");
    auto *body = new QWidget;
    auto *title = makeCentred(question, appFont(17, QFont::DemiBold), primaryText, body);
    setAccessibleRole(title, QAccessible::Heading);
    auto *message = makeCentred(QStringLiteral("Cette action est irréversible."), appFont(13),
                                secondaryText, body);
    auto *confirm = new SecondaryButton(QStringLiteral("Supprimer"), body);
    confirm->setDestructive(true);
    auto *cancel = new SecondaryButton(QStringLiteral("Annuler"), body);

    connect(confirm, &QPushButton::clicked, this, [this, onConfirm] {
        onConfirm();
        close();
    });
    connect(cancel, &QPushButton::clicked, this, &QWidget::close);

    auto *column = new QVBoxLayout(body);
    column->setContentsMargins(padding, padding, padding, padding);
    column->setSpacing(0);
    column->addWidget(title);
    column->addSpacing(6);
    column->addWidget(message);
    column->addSpacing(16);
    column->addWidget(confirm);
    column->addSpacing(8);
    column->addWidget(cancel);

    setAccessibleName(question);
    setBody(body);
    setClosesOnCancel(true);
    setInitialFocus(cancel);
}
