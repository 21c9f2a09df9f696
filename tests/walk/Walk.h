#pragma once

#include "walk/Mirror.h"
#include "walk/Scene.h"
#include "walk/Steps.h"
#include "walk/WalkState.h"

#include <memory>
#include <optional>

class ContentView;

/// A window on its walk, and what it ought to show by now.
class Walk {
public:
    /// `patience` in milliseconds, for what is on its way.
    Walk(Mirror &mirror, int patience);
    ~Walk();
    Q_DISABLE_COPY_MOVE(Walk)

    /// What is wrong after the step; none when all is well.
    std::optional<QString> take(const Step &step);
    /// What the last step came to, in words.
    const QString &words() const { return m_words; }
    /// Of what was wrong.
    const Pictures &shown() const { return m_shown; }
    const Pictures &fresh() const { return m_fresh; }

private:
    struct Load {
        QByteArray rows;
        int status = 0; ///< 0: a success
        int number = 0;
        int form = 0; ///< which of all forms was sent; 0: it is no form
    };
    struct Expected {
        QByteArray request;
        std::optional<HttpAnswer> answer; ///< without: to whoever signs in
    };

    void act(const Step &step);
    void click(QPoint at);
    void pressButton(unsigned which);
    void pressKey(unsigned which);
    void type(unsigned which, unsigned what);
    void turnWheel(unsigned way, unsigned where);
    void resize(unsigned width, unsigned height);
    void script(const Step &step);
    void changeSession(unsigned which);
    void midnight(unsigned days);

    void effect(QWidget *target);
    void effectInSheet(QWidget *target);
    void effectInMenu(const QString &name);
    void openSheet(WalkState::Sheet sheet, const QString &row);
    void closeSheet();
    void confirmDeletion();
    void submitEvent();
    void submitAccount();
    void refuseForm(int status, int number);
    void startLoad();
    QByteArray nextRows();
    void finishLoad(const Load &load);
    void finishForm(const Load &sent);
    void expect(const QByteArray &request, const std::optional<HttpAnswer> &answer);
    HttpAnswer answer(const HttpRequest &request);

    bool isOverlaid() const; ///< a sheet or the menu is open
    QList<QPoint> targets() const; ///< where something can be pressed
    bool looksAtRest() const;
    QString inWords() const;
    std::optional<QString> compare();
    std::optional<QString> differing(const Portrait &shown, const Portrait &fresh);
    std::optional<QString> judge() const;

    Mirror &m_mirror;
    const int m_patience;
    Scene::Stage m_stage;
    WalkState m_state;
    QString m_words;
    bool m_isLoading = false;
    bool m_hasFailed = false;
    QList<Load> m_held;
    int m_form = 0; ///< which of all that were open
    QList<Expected> m_expected; ///< requests that have yet to come
    QStringList m_unexplained;
    bool m_nextIsHeld = false;
    int m_nextStatus = 0;
    unsigned m_nextRows = 1;
    int m_loads = 0;
    Pictures m_shown;
    Pictures m_fresh;
    std::unique_ptr<ContentView> m_window;
};
