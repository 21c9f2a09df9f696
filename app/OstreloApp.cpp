#include "app/OstreloApp.h"

#include "browse/ContentView.h"
#include "look/Accessibility.h"
#include "look/Colors.h"
#include "look/Fonts.h"
#include "look/HeldKeys.h"
#include "sectionlist/SectionListAccessible.h"

#include <QAction>
#include <QApplication>
#include <QFontMetrics>
#include <QIcon>
#include <QKeySequence>
#include <QLibraryInfo>
#include <QLocale>
#include <QMenuBar>
#include <QTimer>

#include <algorithm>
#include <chrono>

using namespace Qt::StringLiterals;

namespace {

/// How long the first window waits to learn whether it is to be dark: a moment that nobody notices,
/// and enough for a portal that is running.
constexpr std::chrono::milliseconds longestWait{100};

#ifdef Q_OS_LINUX
/// When the window's icon is looked for: to read the desktop's icon themes takes as long as to
/// paint the first events, which are waited for more.
constexpr std::chrono::milliseconds endOfStart{500};
#endif

void addShortcut(ContentView *window, const QKeySequence &keys, auto act)
{
    auto *action = new QAction(window);
    action->setShortcut(keys);
    action->setAutoRepeat(false); // a key that is held acts once
    QObject::connect(action, &QAction::triggered, window, act);
    window->addAction(action);
}

#ifdef Q_OS_MACOS
/// Not any widget: the menu bar has no parent either, and a closed window is freed a moment later.
bool hasWindow()
{
    const auto widgets = QApplication::topLevelWidgets();
    return std::any_of(widgets.begin(), widgets.end(), [](const QWidget *widget) {
        return qobject_cast<const ContentView *>(widget) && widget->isVisible();
    });
}
#else
/// How long what was begun may still run once the last window is closed.
constexpr std::chrono::seconds longestFarewell{5};

/// Closing the windows, not quitting, lets each of them finish what it has begun; one that stays,
/// for what would be lost in it, keeps no other.
void closeWindows()
{
    const auto widgets = QApplication::topLevelWidgets();
    for (QWidget *widget : widgets) {
        if (auto *window = qobject_cast<ContentView *>(widget))
            window->close();
    }
}
#endif

} // namespace

OstreloApp::OstreloApp(QObject *parent)
    : QObject(parent)
    , m_desktopIsDark(schemeOf(QApplication::palette()) == ColorScheme::Dark)
{
    installAccessibility();
    installSectionListAccessibility();
    if (QGuiApplication::platformName() == u"xcb")
        qApp->installEventFilter(new HeldKeys(this));
    QApplication::setFont(appFont(13));
    loadTranslation();
    makeMenuBar();
    // While the desktop is asked: the first text that is measured has its fonts looked through.
    QFontMetrics(QApplication::font()).height();
    connect(&m_appearance, &DesktopAppearance::changed, this, &OstreloApp::applyColors);
#ifndef Q_OS_MACOS // there the program stays without windows
    // With the last window the program ends, unless a write is on its way; and then, too, in the
    // end.
    connect(qApp, &QGuiApplication::lastWindowClosed, this, [this] {
        QTimer::singleShot(longestFarewell, this, [] { QCoreApplication::exit(0); });
    });
#endif
    if (m_appearance.isSettled()) {
        openFirstWindow();
        return;
    }
    connect(&m_appearance, &DesktopAppearance::settled, this, &OstreloApp::openFirstWindow);
    QTimer::singleShot(longestWait, this, &OstreloApp::openFirstWindow);
}

OstreloApp::~OstreloApp() = default;

void OstreloApp::openFirstWindow()
{
    if (m_hasOpened)
        return;
    m_hasOpened = true;
    applyColors();
    openWindow();
#ifdef Q_OS_LINUX
    // The one that the package brings. Wayland's desktops find it by the name of the desktop file.
    QTimer::singleShot(endOfStart, this,
                       [] { QApplication::setWindowIcon(QIcon::fromTheme(u"amorvelle"_s)); });
#endif
}

void OstreloApp::openWindow()
{
    auto *window = new ContentView;
    window->setAttribute(Qt::WA_DeleteOnClose);
#ifndef Q_OS_MACOS // there the menu bar has them
    // By their keys: what the toolkit calls the standard ones differs from desktop to desktop.
    addShortcut(window, Qt::CTRL | Qt::Key_N, [this] { openWindow(); });
    addShortcut(window, Qt::CTRL | Qt::Key_W, [window] { window->close(); });
    addShortcut(window, Qt::CTRL | Qt::Key_Q, closeWindows);
#endif
    window->show();
}

void OstreloApp::applyColors()
{
#ifndef Q_OS_MACOS // there the platform's palette follows the desktop by itself
    const bool isDark = m_appearance.prefersDark().value_or(m_desktopIsDark);
    QApplication::setPalette(
        applicationPalette(isDark ? ColorScheme::Dark : ColorScheme::Light,
                           m_appearance.wantsContrast() ? Contrast::More : Contrast::Usual));
#endif
}

void OstreloApp::loadTranslation()
{
    if (m_translator.load(QLocale::system(), u"qtbase"_s, u"_"_s,
                          QLibraryInfo::path(QLibraryInfo::TranslationsPath)))
        QCoreApplication::installTranslator(&m_translator);
    // The window's own texts are French: a toolkit that speaks Arabic must not turn it round.
    QApplication::setLayoutDirection(Qt::LeftToRight);
}

void OstreloApp::makeMenuBar()
{
#ifdef Q_OS_MACOS
    // A menu bar without a window stays when the last window has gone, and with it the way to open
    // another one; the program stays too.
    QApplication::setQuitOnLastWindowClosed(false);
    // And so the end of a write, which holds the program elsewhere, must not end it.
    QApplication::setQuitLockEnabled(false);
    m_menuBar = std::make_unique<QMenuBar>();
    auto *windows = m_menuBar->addMenu(tr("Fenêtre"));
    windows->addAction(tr("Nouvelle fenêtre"), QKeySequence::New, this, &OstreloApp::openWindow);
    windows->addAction(tr("Fermer"), QKeySequence::Close, this, [] {
        if (QWidget *window = QApplication::activeWindow())
            window->close();
    });
    connect(qApp, &QApplication::applicationStateChanged, this, [this](Qt::ApplicationState state) {
        if (state == Qt::ApplicationActive && m_hasOpened && !hasWindow())
            openWindow();
    });
#endif
}
