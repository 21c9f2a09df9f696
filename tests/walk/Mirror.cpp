#include "walk/Mirror.h"

#include "walk/FreshWindow.h"

#include <QCoreApplication>
#include <QFile>

#include <cstdio>

using namespace Qt::StringLiterals;

namespace {

constexpr int patience = 60'000; // ms

template <typename Value>
QByteArray written(const Value &value)
{
    QByteArray bytes;
    QDataStream stream(&bytes, QIODevice::WriteOnly);
    stream << value;
    return bytes;
}

} // namespace

Mirror::Mirror()
{
    m_process.setProcessChannelMode(QProcess::ForwardedErrorChannel);
    m_process.start(QCoreApplication::applicationFilePath(), {u"mirror"_s});
    m_process.waitForStarted();
}

Mirror::~Mirror()
{
    m_process.closeWriteChannel();
    if (!m_process.waitForFinished(patience))
        m_process.kill();
}

std::optional<Portrait> Mirror::portraitOf(const WalkState &state)
{
    const auto known = m_known.constFind(written(state));
    return known == m_known.constEnd() ? portraitAnew(state) : std::optional(*known);
}

std::optional<Portrait> Mirror::portraitAnew(const WalkState &state)
{
    const auto portrait = ask<Portrait>(state, false);
    if (portrait)
        m_known.insert(written(state), *portrait);
    return portrait;
}

std::optional<Pictures> Mirror::picturesOf(const WalkState &state)
{
    return ask<Pictures>(state, true);
}

template <typename Answer>
std::optional<Answer> Mirror::ask(const WalkState &state, bool isForPictures)
{
    QDataStream stream(&m_process);
    stream << state << isForPictures;
    QByteArray bytes;
    const auto arrives = [&] {
        stream.startTransaction();
        stream >> bytes;
        return stream.commitTransaction();
    };
    if (!Scene::waitFor(arrives, patience))
        return std::nullopt;
    Answer answer;
    QDataStream read(bytes);
    read >> answer;
    return answer;
}

int Mirror::run(int argc, char *argv[])
{
    return Scene::run(argc, argv, [] {
        Scene::quieten();
        QFile in;
        QFile out;
        if (!in.open(stdin, QIODevice::ReadOnly | QIODevice::Unbuffered)
            || !out.open(stdout, QIODevice::WriteOnly))
            return 1;
        QDataStream asked(&in);
        QDataStream answered(&out);
        Scene::Stage stage;
        for (;;) {
            WalkState state;
            bool isForPictures = false;
            asked >> state >> isForPictures;
            if (asked.status() != QDataStream::Ok)
                return 0;
            const FreshWindow fresh(stage.server(), state);
            const Pictures pictures = ::picturesOf(fresh.window());
            answered << (isForPictures ? written(pictures)
                                       : written(::portraitOf(fresh.window(), pictures)));
            out.flush();
        }
    });
}
