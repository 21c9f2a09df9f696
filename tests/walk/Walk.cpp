// What a walk does.

#include "walk/Walk.h"

#include "app/ButtonStyles.h"
#include "controls/TabStrip.h"
#include "controls/TextField.h"
#include "support/MembersWindow.h"
#include "walk/Finding.h"
#include "walk/Rows.h"

#include <QTextEdit>
#include <QWindow>

#include <array>

using namespace Qt::StringLiterals;

namespace {

using SheetKind = WalkState::Sheet;

constexpr qint64 day = 86'400'000; // ms

QString named(const QWidget *widget)
{
    const auto *button = qobject_cast<const QAbstractButton *>(widget);
    const QString text = button ? button->text() : QString();
    for (; widget; widget = widget->parentWidget()) {
        const QString name = text.isEmpty() ? widget->accessibleName() : text;
        if (!name.isEmpty())
            return u"“%1” (%2)"_s.arg(name, QLatin1String(widget->metaObject()->className()));
    }
    return u"nothing"_s;
}

bool isForm(SheetKind sheet)
{
    return sheet == SheetKind::Add || sheet == SheetKind::Edit || sheet == SheetKind::Login;
}

/// Whether a click on it sends the form or leaves it.
bool endsForm(const QAbstractButton *button)
{
    return button && button->isEnabled()
        && (button->text() == u"Annuler"_s || qobject_cast<const PrimaryButton *>(button));
}

} // namespace

Walk::Walk(Mirror &mirror, int patience)
    : m_mirror(mirror)
    , m_patience(patience)
{
    m_stage.server().answerWith([this](const HttpRequest &request) { return answer(request); });
    m_state.size = {760, 620};
    m_state.now = Rows::start;
    m_state.rows = Rows::none;
    startLoad();
    m_window =
        Scene::openWindow(m_state.size, m_state.dark, [this] { return Instant{m_state.now}; });
    // Two loads that are both answered at once would end in either order.
    if (!Scene::waitFor([this] { return looksAtRest(); }, m_patience))
        qWarning("the window does not start");
}

Walk::~Walk()
{
    m_window.reset();
    Scene::settle();
}

std::optional<QString> Walk::take(const Step &step)
{
    m_words = u"nothing"_s;
    act(step);
    return compare();
}

void Walk::act(const Step &step)
{
    const auto [kind, first, second] = step;
    const QSize size = m_window->size();
    const QPoint at(int(first) % size.width(), int(second) % size.height());
    switch (kind) {
    case Step::Kind::Click:
        return click(at);
    case Step::Kind::Press:
        return pressButton(first);
    case Step::Kind::Key:
        return pressKey(first);
    case Step::Kind::Type:
        return type(first, second);
    case Step::Kind::Wheel:
        return turnWheel(first, second);
    case Step::Kind::Resize:
        if (m_state.isMenuOpen)
            return;
        resize(first, second);
        return;
    case Step::Kind::Point:
        if (m_state.isMenuOpen)
            return;
        m_state.pointer = at;
        m_words = u"the pointer goes to %1,%2"_s.arg(at.x()).arg(at.y());
        Finding::point(m_window.get(), at);
        return;
    case Step::Kind::Reload:
        if (isOverlaid())
            return;
        m_words = u"F5"_s;
        startLoad();
        QTest::keyClick(m_window->windowHandle(), Qt::Key_F5);
        return;
    case Step::Kind::Script:
        return script(step);
    case Step::Kind::Release:
        if (m_held.isEmpty())
            return;
        {
            const auto which = qsizetype(first) % m_held.size();
            m_words = u"reply %1 comes"_s.arg(m_held.at(which).number);
            finishLoad(m_held.takeAt(which));
            m_stage.server().releaseOne(which);
        }
        return;
    case Step::Kind::Session:
        return changeSession(first);
    case Step::Kind::Scheme:
        m_state.dark = !m_state.dark;
        m_words = m_state.dark ? u"it becomes dark"_s : u"it becomes light"_s;
        Scene::setDark(m_state.dark);
        return;
    case Step::Kind::Midnight:
        return midnight(first);
    }
}

/// By its corner, as a mouse does.
void Walk::resize(unsigned width, unsigned height)
{
    Finding::point(m_window.get(), m_window->rect().bottomRight());
    m_state.size = QSize(520 + int(width % 4) * 80, 360 + int(height % 5) * 65);
    m_words = u"the window becomes %1 x %2"_s.arg(m_state.size.width()).arg(m_state.size.height());
    m_window->resize(m_state.size);
    m_state.pointer = m_window->rect().bottomRight();
}

bool Walk::isOverlaid() const
{
    return m_state.isMenuOpen || m_state.sheet != SheetKind::None;
}

void Walk::click(QPoint at)
{
    QWidget *target = m_window->childAt(at);
    if (m_state.isMenuOpen)
        return; // the menu takes the mouse
    const auto *button = qobject_cast<QAbstractButton *>(target);
    // Pickers open menus and calendars of their own, which are another matter.
    if (isForm(m_state.sheet) && !endsForm(button))
        return;
    if (m_state.sheet == SheetKind::Detail && !button)
        return; // what is selected in a text is not in the state
    if (m_hasFailed && !isOverlaid() && target && qobject_cast<QTextEdit *>(target->parentWidget()))
        return; // where the cursor stands in the error is not in the state
    m_state.pointer = at;
    m_words = u"a click at %1,%2 on %3"_s.arg(at.x()).arg(at.y()).arg(named(target));
    Finding::point(m_window.get(), at);
    effect(target);
    QTest::mouseClick(m_window->windowHandle(), Qt::LeftButton, {}, at);
}

QList<QPoint> Walk::targets() const
{
    QList<QPoint> points;
    const auto add = [&](const QWidget *widget, QPoint at) {
        const QPoint point = widget->mapTo(m_window.get(), at);
        const QWidget *seen = m_window->childAt(point);
        if (seen && (seen == widget || widget->isAncestorOf(seen)))
            points.append(point);
    };
    const auto buttons = m_window->findChildren<QAbstractButton *>();
    for (const auto *button : buttons) {
        if (button->isVisible() && button->isEnabled()
            && (!isForm(m_state.sheet) || endsForm(button)))
            add(button, button->rect().center());
    }
    const auto rows = m_window->findChildren<SectionListRow *>();
    for (const auto *row : rows) {
        if (row->isVisible())
            add(row, {30, 14});
    }
    return points;
}

void Walk::pressButton(unsigned which)
{
    if (m_state.isMenuOpen) {
        Popover *menu = MembersWindow::accountMenu(m_window.get());
        const auto buttons =
            menu ? menu->findChildren<QAbstractButton *>() : QList<QAbstractButton *>();
        if (buttons.isEmpty())
            return;
        auto *button = buttons.at(qsizetype(which) % buttons.size());
        m_words = u"a click on "_s + named(button);
        effectInMenu(button->text());
        QTest::mouseClick(button, Qt::LeftButton);
        return;
    }
    const auto points = targets();
    if (!points.isEmpty())
        click(points.at(qsizetype(which) % points.size()));
}

void Walk::pressKey(unsigned which)
{
    constexpr std::array keys = {
        Qt::Key_Tab,   Qt::Key_Tab,   Qt::Key_Backtab, Qt::Key_Up,       Qt::Key_Down,
        Qt::Key_Down,  Qt::Key_Down,  Qt::Key_PageUp,  Qt::Key_PageDown, Qt::Key_PageDown,
        Qt::Key_Home,  Qt::Key_End,   Qt::Key_Left,    Qt::Key_Right,    Qt::Key_Return,
        Qt::Key_Space, Qt::Key_Escape};
    const Qt::Key key = keys.at(which % keys.size());
    const QString words = u"the key "_s + QKeySequence(key).toString();
    if (m_state.isMenuOpen) {
        if (key == Qt::Key_Escape) {
            m_state.isMenuOpen = false;
            m_words = words;
            QTest::keyClick(MembersWindow::accountMenu(m_window.get()), key);
        }
        return;
    }
    if (isForm(m_state.sheet) || (m_state.sheet == SheetKind::Detail && key != Qt::Key_Escape))
        return; // what is selected in a field or a text is not in the state
    QWidget *focus = m_window->focusWidget();
    const bool isTabKey = key == Qt::Key_Tab || key == Qt::Key_Backtab;
    if (qobject_cast<QTextEdit *>(focus) && !isTabKey)
        return; // where the cursor stands in the error is not in the state
    m_words = words;
    const bool presses = key == Qt::Key_Space || key == Qt::Key_Return;
    const bool isTab =
        qobject_cast<QAbstractButton *>(focus) && qobject_cast<TabStrip *>(focus->parentWidget());
    if (key == Qt::Key_Escape && m_state.sheet != SheetKind::None)
        closeSheet();
    else if (isTab && (key == Qt::Key_Left || key == Qt::Key_Home))
        m_state.tab = 0;
    else if (isTab && (key == Qt::Key_Right || key == Qt::Key_End))
        m_state.tab = 1;
    else if (presses)
        effect(focus);
    QTest::keyClick(m_window->windowHandle(), key);
}

void Walk::type(unsigned which, unsigned what)
{
    if (isOverlaid() && !isForm(m_state.sheet))
        return;
    if (!isOverlaid()) {
        // A form to type into, then.
        for (const QString &opener : {u"Ajouter un événement"_s, u"Ajouter un compte"_s}) {
            if (const auto *button = WindowTest::button(m_window.get(), opener))
                return click(button->mapTo(m_window.get(), button->rect().center()));
        }
        return;
    }
    QList<TextField *> fields = MembersWindow::sheet(m_window.get())->findChildren<TextField *>();
    fields.removeIf([](const TextField *field) { return !field->isVisible(); });
    if (fields.isEmpty())
        return;
    TextField *field = fields.at(qsizetype(which) % fields.size());
    const QString name = field->accessibleName();
    const QStringList texts = name.startsWith(u"Email"_s)
        ? QStringList{u"u1@exemple.fr"_s, u"u2@exemple.fr"_s, QString()}
        : QStringList{u"Bal"_s, u"la salle"_s, QString()};
    const QString &text = texts.at(qsizetype(what) % texts.size());
    m_words = u"“%1” is typed into “%2”"_s.arg(text, name);
    m_state.typed.insert(name, text);
    Finding::type(m_window.get(), name, text);
}

void Walk::turnWheel(unsigned way, unsigned where)
{
    if (m_state.isMenuOpen || isForm(m_state.sheet))
        return; // a form's text scrolls by itself, too
    const QPoint at(100, m_window->height() - 40 - int(where % 200));
    constexpr std::array ways = {-1200, -600, -240, -120, 120, 240, 600, 1200, -30, 45};
    m_words =
        u"the wheel turns by %1 at %2,%3"_s.arg(ways.at(way % ways.size())).arg(at.x()).arg(at.y());
    QWheelEvent event(at, m_window->mapToGlobal(QPointF(at)), {}, {0, ways.at(way % ways.size())},
                      Qt::NoButton, Qt::NoModifier, Qt::NoScrollPhase, false);
    QSpontaneKeyEvent::setSpontaneous(&event);
    QCoreApplication::sendEvent(m_window->windowHandle(), &event);
}

void Walk::script(const Step &step)
{
    constexpr std::array statuses = {0, 0, 0, 500, 404};
    m_nextIsHeld = step.first % 2 == 0;
    m_nextStatus = statuses.at(step.second % statuses.size());
    m_nextRows = step.second % 1000;
    m_words = u"the next load is to be %1, with %2"_s
                  .arg(m_nextIsHeld ? u"held back"_s : u"answered at once"_s)
                  .arg(m_nextStatus == 0 ? u"rows of kind %1"_s.arg(m_nextRows)
                                         : u"status %1"_s.arg(m_nextStatus));
}

void Walk::changeSession(unsigned which)
{
    if (m_state.isMenuOpen
        || (m_state.sheet != SheetKind::None && m_state.sheet != SheetKind::Login))
        return;
    constexpr unsigned ways = 4;
    if (which % ways < 2) {
        m_state.user = which % ways == 0 ? u"u1"_s : u"u2"_s;
        m_state.isSignedIn = m_state.isSaved = true;
        m_words = m_state.user + u" signs in elsewhere"_s;
        expect("POST /auth/v1/token", {});
        Scene::signIn(m_state.user);
        return;
    }
    m_words = which % ways == 3 ? u"the account is removed elsewhere"_s : u"signed out elsewhere"_s;
    m_state.isSignedIn = false;
    SupabaseClient::signOut();
    if (which % ways == 3) {
        m_state.isSaved = false;
        SupabaseClient::clearSavedCredentials();
    }
}

void Walk::midnight(unsigned days)
{
    if (isOverlaid())
        return;
    m_state.now += qint64(days % 40) * day + day / 7;
    m_words = u"somebody comes back after %1 days"_s.arg(days % 40);
    QWidget other;
    other.show();
    other.activateWindow();
    if (!Scene::waitFor([&other] { return other.isActiveWindow(); }, m_patience))
        qWarning("the other window does not come to the front");
    m_window->activateWindow();
    if (!Scene::waitFor([this] { return m_window->isActiveWindow(); }, m_patience))
        qWarning("the window does not come back");
}
