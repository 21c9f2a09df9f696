// Measures, type and colours of the window that the design gives as numbers.

#include "app/ButtonStyles.h"
#include "browse/AccountButton.h"
#include "browse/DeleteConfirmation.h"
#include "browse/EventMeta.h"
#include "browse/EventRow.h"
#include "browse/Header.h"
#include "browse/TagChips.h"
#include "browse/TagPalette.h"
#include "controls/Pane.h"
#include "controls/SymbolLabel.h"
#include "controls/TextLabel.h"
#include "look/Colors.h"
#include "look/Fonts.h"
#include "support/MembersWindow.h"
#include "support/Picture.h"

#include <algorithm>
#include <memory>
#include <utility>

using namespace Qt::StringLiterals;
using namespace WindowTest;
using namespace MembersWindow;

namespace {

QRect placeIn(const QWidget *window, const QWidget *widget)
{
    return {widget->mapTo(window, QPoint()), widget->size()};
}

/// The visible label with this text, or null.
TextLabel *label(const QWidget *within, const QString &text)
{
    const auto labels = within->findChildren<TextLabel *>();
    for (TextLabel *candidate : labels) {
        if (candidate->isVisible() && candidate->text() == text)
            return candidate;
    }
    return nullptr;
}

constexpr qreal magnified = 8;

/// The colour of a button's letters.
QColor letters(QAbstractButton *button)
{
    const QImage image = picture(*button, magnified);
    const QRect inner = button->rect().adjusted(10, 6, -10, -6);
    return inkOf(image, QRect(inner.topLeft() * int(magnified), inner.size() * int(magnified)),
                 image.pixelColor(inner.topLeft() * int(magnified)));
}

} // namespace

class TestWindowLooks : public QObject {
    Q_OBJECT

    HttpServer &m_server;
    Service m_service;

    std::unique_ptr<ContentView> window() const
    {
        auto window = shownWindow();
        return window && QTest::qWaitFor([&] { return named(window.get(), u"fête"_s) != nullptr; })
            ? std::move(window)
            : nullptr;
    }

public:
    explicit TestWindowLooks(HttpServer &server)
        : m_server(server)
    {
    }

private Q_SLOTS:
    void init()
    {
        QApplication::setPalette(applicationPalette(ColorScheme::Light));
        SupabaseClient::signOut();
        SupabaseClient::clearSavedCredentials();
        m_service = {};
        m_service.rows = {row(u"fête"_s, 3,
                              {{u"tags"_s, QJsonArray{u"Repas"_s}},
                               {u"date_texte"_s, u"samedi"_s},
                               {u"heure_texte"_s, u"14:30"_s},
                               {u"lieu"_s, u"Salle Vaudrelle"_s},
                               {u"user_id"_s, u"moi"_s}})};
        m_server.answerWith(
            [this](const HttpRequest &request) { return m_service.answer(request); });
    }

    void theContentKeepsItsMarginsAndTheBodyItsDistance_data()
    {
        QTest::addColumn<QSize>("size");
        QTest::newRow("as it opens") << QSize(760, 620);
        QTest::newRow("as small as it gets") << QSize(520, 360);
    }

    void theContentKeepsItsMarginsAndTheBodyItsDistance()
    {
        QFETCH(QSize, size);
        const auto window = this->window();
        QVERIFY(window);
        window->resize(size);
        QTRY_COMPARE(window->size(), size);
        const QRect brand = placeIn(window.get(), label(window.get(), u"amorvelle.fr"_s));
        const QRect account = placeIn(window.get(), button(window.get(), u"Compte"_s));
        const QRect lowest = placeIn(window.get(), button(window.get(), u"Ajouter un compte"_s));
        const QRect pane = placeIn(window.get(), window->findChild<Pane *>());
        QCOMPARE(brand.topLeft(), QPoint(16, 16));
        QCOMPARE(account.top(), 16);
        QCOMPARE(size.width() - (account.right() + 1), 16);
        QCOMPARE(pane.left(), 16);
        QCOMPARE(size.width() - (pane.right() + 1), 16);
        QCOMPARE(size.height() - (pane.bottom() + 1), 16);
        QCOMPARE(pane.top() - (lowest.bottom() + 1), 12);
    }

    void theTitlesOfTheHeaderStandAsDrawn()
    {
        const auto window = this->window();
        QVERIFY(window);
        const auto *brand = label(window.get(), u"amorvelle.fr"_s);
        const auto *tagline = label(window.get(), u"Les événements à Morvelle et ses environs"_s);
        QCOMPARE(brand->font(), appFont(24, QFont::DemiBold));
        QCOMPARE(tagline->font(), appFont(13));
        QCOMPARE(tagline->y() - (brand->y() + brand->height()), 2);
        const auto *add = button(window.get(), u"Ajouter un compte"_s);
        QCOMPARE(placeIn(window.get(), add).top() - 10,
                 placeIn(window.get(), tagline).bottom() + 1);
    }

    void theAddressGivesWayBeforeTheBrandBreaks()
    {
        Header header({});
        header.setContent(
            {.hasSavedCredentials = true, .email = u"camille.bertrand-de-morvelle@exemple.fr"_s});
        header.show();
        const auto *brand = label(&header, u"amorvelle.fr"_s);
        const QWidget *account = header.accountButton();
        for (const int room : {300, 160, 110}) {
            header.resize(brand->naturalWidth() + 12 + room, header.height());
            QTRY_COMPARE(account->width(), std::min(180, room));
            QVERIFY(brand->width() >= brand->naturalWidth());
        }
    }

    void theButtonForANewEventIs180WideWhereverItsTextFits()
    {
        const auto window = this->window();
        QVERIFY(window);
        signInAs(u"a@b.fr"_s);
        QTRY_VERIFY(button(window.get(), u"Ajouter un événement"_s));
        auto *add = button(window.get(), u"Ajouter un événement"_s);
        constexpr int padding = 12;
        constexpr int symbolAndGap = 14 + 5;
        // Each width differs from the one before: a layout that is late is waited for.
        for (const int size : {20, 9, 16, 11, 20, 13}) {
            QFont font = add->font();
            font.setPixelSize(size);
            add->setFont(font);
            const int text =
                qCeil(QFontMetricsF(font).horizontalAdvance(u"Ajouter un événement"_s));
            const int needed = 2 * padding + symbolAndGap + text;
            QTRY_COMPARE(add->width(), std::max(180, needed));
        }
        const QRect account = placeIn(window.get(), button(window.get(), u"Compte"_s));
        QCOMPARE(account.top() - (placeIn(window.get(), add).bottom() + 1), 6);
        QCOMPARE(account.right(), placeIn(window.get(), add).right());
    }

    void theAccountButtonIsNeverWiderThan180()
    {
        AccountButton button;
        QCOMPARE(button.sizeHint().width(), 6 + 18 + 6);
        button.setEmail(u"une.adresse.vraiment.interminable@exemple.fr"_s);
        QCOMPARE(button.sizeHint().width(), 180);
        button.setEmail(u"a@b.fr"_s);
        QVERIFY(button.sizeHint().width() < 180);
        QCOMPARE(button.font(), appFont(11));
        QCOMPARE(button.sizeHint().height(), 4 + std::max(18, lineHeight(appFont(11))) + 4);
    }

    void aRowIsSetInTheTypeOfTheDesign()
    {
        const auto window = this->window();
        QVERIFY(window);
        const QWidget *row = named(window.get(), u"fête"_s);
        QCOMPARE(label(row, u"fête"_s)->font(), appFont(17, QFont::DemiBold));
        const auto parts = row->findChild<EventMeta *>()->findChildren<SymbolLabel *>();
        QCOMPARE(parts.size(), 3);
        for (const SymbolLabel *part : parts)
            QCOMPARE(part->font(), appFont(12));
        QCOMPARE(row->findChild<TagChips *>()->font(), appFont(11, QFont::Medium));
    }

    void aChipsTextIsBlackAt78PercentInBothSchemes()
    {
        TagChips chips;
        chips.setTags({u"Repas"_s});
        chips.resize(200, chips.sizeHint().height());
        const QFontMetrics metrics(chips.font());
        const int width = metrics.horizontalAdvance(u"Repas"_s) + 2 * 6;
        for (const auto scheme : {ColorScheme::Light, ColorScheme::Dark}) {
            chips.setPalette(applicationPalette(scheme));
            QColor fill = TagPalette::color(u"Repas", TagPalette::processSeed());
            fill.setAlphaF(0.68f);
            const QColor chip = blended(fill, chipPlate(chips.palette()));
            const QImage image = picture(chips, magnified);
            const QRect inner(QPoint(3, 3) * int(magnified),
                              QSize(width - 6, chips.height() - 6) * int(magnified));
            COMPARE_COLORS(image.pixelColor(inner.topLeft()), chip);
            COMPARE_COLORS(inkOf(image, inner, chip),
                           blended(QColor::fromRgbF(0, 0, 0, 0.78f), chip));
        }
    }

    void whatDeletesIsWrittenInRed()
    {
        const auto window = this->window();
        QVERIFY(window);
        for (const auto scheme : {ColorScheme::Light, ColorScheme::Dark}) {
            QApplication::setPalette(applicationPalette(scheme));
            DeleteConfirmation confirmation([] {}, window.get());
            confirmation.open();
            COMPARE_COLORS(letters(button(&confirmation, u"Supprimer"_s)),
                           red(confirmation.palette()));
            COMPARE_COLORS(letters(button(&confirmation, u"Annuler"_s)),
                           primaryText(confirmation.palette()));
        }
    }
};

int main(int argc, char *argv[])
{
    return runWithService<TestWindowLooks>(argc, argv, installSectionListAccessibility);
}

#include "test_window_looks.moc"
