#include "browse/DeleteConfirmation.h"

#include "app/ButtonStyles.h"
#include "controls/TextLabel.h"
#include "look/Accessibility.h"
#include "look/Fonts.h"

#include <QVBoxLayout>

using namespace Qt::StringLiterals;

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
    const QString question = u"Supprimer l'événement ?"_s;
    auto *body = new QWidget;
    auto *title = makeCentred(question, appFont(17, QFont::DemiBold), primaryText, body);
    setAccessibleRole(title, QAccessible::Heading);
    auto *message =
        makeCentred(u"Cette action est irréversible."_s, appFont(13), secondaryText, body);
    auto *confirm = new SecondaryButton(u"Supprimer"_s, body);
    confirm->setDestructive(true);
    auto *cancel = new SecondaryButton(u"Annuler"_s, body);

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
    setInitialFocus(cancel);
}
