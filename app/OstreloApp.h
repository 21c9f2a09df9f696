#pragma once

#include "platform/DesktopAppearance.h"

#include <QTranslator>

#include <memory>

class QMenuBar;

/// The application: opens its windows, gives them the desktop's light or dark colours and the
/// toolkit's texts in the user's language. One in a process, made after the QApplication.
///
/// Ostrelo is what the program is called in its own code, whichever village it serves: what people
/// see is called aMorvelle.
class OstreloApp : public QObject {
    Q_OBJECT

public:
    /// Opens the first window: at once where no desktop is asked for its colours, else from the
    /// event loop.
    explicit OstreloApp(QObject *parent = nullptr);
    ~OstreloApp() override;

    /// Opens a further window, with a state of its own.
    void openWindow();

private:
    void openFirstWindow();
    void applyColors();
    void loadTranslation();
    void makeMenuBar();

    DesktopAppearance m_appearance;
    QTranslator m_translator;
    std::unique_ptr<QMenuBar> m_menuBar; ///< of the program, not of a window: on macOS only
    bool m_hasOpened = false;
    bool m_desktopIsDark = false; ///< by the palette that the toolkit came up with
};
