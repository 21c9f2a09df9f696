#include "walk/Scene.h"
#include "walk/Walk.h"

#include <QDeadlineTimer>
#include <QDesktopServices>
#include <QHashFunctions>
#include <QTest>

#include <algorithm>
#include <chrono>
#include <numeric>
#include <optional>

using namespace Qt::StringLiterals;

namespace {

constexpr int stepsAWalk = 60;
constexpr int usualSteps = 3000;
constexpr int enough = 20'000; // ms

// When a failure is shortened.
constexpr int hurry = 2000; // ms
constexpr int mostTries = 150;
constexpr std::chrono::minutes mostTime{3};

struct Failure {
    qsizetype at = 0; ///< which of the steps taken
    QString reason;
    QStringList words; ///< of the steps taken
    Pictures shown;
    Pictures fresh;
};

int number(const char *variable, int otherwise)
{
    bool isGiven = false;
    const int given = qEnvironmentVariableIntValue(variable, &isGiven);
    return isGiven ? given : otherwise;
}

QString listOf(const QList<int> &numbers)
{
    QStringList texts;
    for (const int each : numbers)
        texts.append(QString::number(each));
    return texts.join(u',');
}

} // namespace

/// Walks at random through everything that a window can come through. However it came into a state,
/// it must paint and say what a fresh window does that was put into it.
///
/// AMORVELLE_WALK_SEED: the first walk's seed; AMORVELLE_WALK_STEPS: how many steps in all;
/// AMORVELLE_WALK_KEEP: of the first walk these steps alone, counted from 0, as a failure tells.
class TestWalk : public QObject {
    Q_OBJECT

public:
    TestWalk() = default;
    ~TestWalk() override { QDesktopServices::unsetUrlHandler(u"https"_s); }
    Q_DISABLE_COPY_MOVE(TestWalk)

    Q_INVOKABLE void open(const QUrl &) { } ///< a link that was pressed

private Q_SLOTS:
    void initTestCase();
    void theRoadToAStateDoesNotShow();

private:
    std::optional<Failure> walk(const QList<Step> &steps, const QList<int> &kept, int patience);
    Failure shortened(const QList<Step> &steps, QList<int> &kept, Failure failure);
    static QString told(const Failure &failure, unsigned seed, const QList<int> &kept);

    Mirror m_mirror;
};

void TestWalk::initTestCase()
{
    Scene::quieten();
    QDesktopServices::setUrlHandler(u"https"_s, this, "open");
}

std::optional<Failure> TestWalk::walk(const QList<Step> &steps, const QList<int> &kept,
                                      int patience)
{
    Walk walk(m_mirror, patience);
    QStringList words;
    for (qsizetype i = 0; i < kept.size(); ++i) {
        const auto reason = walk.take(steps.at(kept.at(i)));
        words.append(walk.words());
        if (reason)
            return Failure{i, *reason, words, walk.shown(), walk.fresh()};
    }
    return {};
}

/// Leaves out what the failure does not need: ever smaller pieces, until no single step can go or
/// it takes too long.
Failure TestWalk::shortened(const QList<Step> &steps, QList<int> &kept, Failure failure)
{
    const QDeadlineTimer deadline(mostTime);
    int tries = 0;
    for (qsizetype piece = kept.size() / 2; piece > 0; piece /= 2) {
        for (qsizetype from = 0; from < kept.size();) {
            if (++tries > mostTries || deadline.hasExpired())
                return failure;
            QList<int> rest = kept;
            rest.remove(from, std::min(piece, rest.size() - from));
            if (auto again = walk(steps, rest, hurry)) {
                kept = rest.first(again->at + 1);
                failure = *again;
            } else {
                from += piece;
            }
        }
    }
    return failure;
}

QString TestWalk::told(const Failure &failure, unsigned seed, const QList<int> &kept)
{
    QString text = u"After\n"_s;
    for (qsizetype i = 0; i < failure.words.size(); ++i)
        text += u"  %1: %2\n"_s.arg(kept.at(i)).arg(failure.words.at(i));
    return text + u"the window "_s + failure.reason
        + u"\nPictures: walk-shown.png, walk-fresh.png. Again: AMORVELLE_WALK_SEED=%1 "
          "AMORVELLE_WALK_KEEP=%2"_s.arg(seed)
              .arg(listOf(kept));
}

void TestWalk::theRoadToAStateDoesNotShow()
{
    auto seed = unsigned(number("AMORVELLE_WALK_SEED", 1));
    int left = number("AMORVELLE_WALK_STEPS", usualSteps);
    QList<int> asked;
    const QStringList texts =
        qEnvironmentVariable("AMORVELLE_WALK_KEEP").split(u',', Qt::SkipEmptyParts);
    for (const QString &text : texts)
        asked.append(text.toInt());
    if (!asked.isEmpty())
        left = 1;

    for (; left > 0; left -= stepsAWalk, ++seed) {
        const QList<Step> steps = randomSteps(seed, stepsAWalk);
        QList<int> kept(std::min(left, stepsAWalk));
        std::iota(kept.begin(), kept.end(), 0);
        if (!asked.isEmpty())
            kept = asked;
        auto failure = walk(steps, kept, enough);
        if (!failure)
            continue;
        kept = kept.first(failure->at + 1);
        qWarning("seed %u fails at step %d: the window %s", seed, int(failure->at),
                 qPrintable(failure->reason));
        if (asked.isEmpty())
            failure = shortened(steps, kept, *failure);
        failure->shown.window.save(u"walk-shown.png"_s);
        failure->fresh.window.save(u"walk-fresh.png"_s);
        QFAIL(qPrintable(told(*failure, seed, kept)));
    }
}

int main(int argc, char *argv[])
{
    // One colour a tag in both processes, and one digest a picture.
    QHashSeed::setDeterministicGlobalSeed();
    if (argc == 2 && QByteArrayView(argv[1]) == "mirror")
        return Mirror::run(1, argv);
    // The test library ends a function after five minutes, which many walks on a busy machine take.
    if (!qEnvironmentVariableIsSet("QTEST_FUNCTION_TIMEOUT"))
        qputenv("QTEST_FUNCTION_TIMEOUT", "3600000");
    return Scene::run(argc, argv, [argc, argv] {
        TestWalk test;
        return QTest::qExec(&test, argc, argv);
    });
}

#include "test_walk.moc"
