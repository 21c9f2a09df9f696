#pragma once

#include "walk/Portrait.h"
#include "walk/Scene.h"
#include "walk/WalkState.h"

#include <functional>
#include <memory>

/// Makes one window and brings it into a state, by what a person does.
class FreshWindow {
public:
    FreshWindow(HttpServer &server, const WalkState &state);
    ~FreshWindow();
    Q_DISABLE_COPY_MOVE(FreshWindow)

    ContentView *window() const { return m_window.get(); }

private:
    void planLoads();
    HttpAnswer lastLoad() const;
    void awaitFirstLoad();
    void failToDelete();
    void chooseTab();
    void takeSession();
    bool crosses() const;
    void crossLoads();
    void openSheet();
    void openSheetOverRow();
    void fillForm();
    void waitForMark(const QByteArray &rows);
    void waitForFailure();

    void wait(const char *what, const std::function<bool()> &condition);
    QWidget *named(const QString &name) const;
    void click(QWidget *widget, QPoint at = {});
    void press(const QString &name);

    HttpServer &m_server;
    const WalkState &m_state;
    std::unique_ptr<ContentView> m_window;
    int m_loads = 0;
    bool m_isLost = false; ///< it will never come into its state
    bool m_refusesForm = false;
    bool m_holdsForm = false;
};
