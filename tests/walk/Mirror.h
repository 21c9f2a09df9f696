#pragma once

#include "walk/Portrait.h"
#include "walk/WalkState.h"

#include <QHash>
#include <QProcess>

#include <optional>

/// Fresh windows, in another process: a window that appears forgets the remembered account, for all
/// windows of its process.
class Mirror {
public:
    Mirror();
    ~Mirror();
    Q_DISABLE_COPY_MOVE(Mirror)

    /// Of a fresh window that was given this state; none when the other process did not answer.
    /// Known by heart for what was asked before.
    std::optional<Portrait> portraitOf(const WalkState &state);
    /// The same of a window made once more.
    std::optional<Portrait> portraitAnew(const WalkState &state);
    std::optional<Pictures> picturesOf(const WalkState &state);

    /// The other process: answers on its standard output what is asked on its standard input.
    static int run(int argc, char *argv[]);

private:
    template <typename Answer>
    std::optional<Answer> ask(const WalkState &state, bool isForPictures);

    QProcess m_process;
    QHash<QByteArray, Portrait> m_known;
};
