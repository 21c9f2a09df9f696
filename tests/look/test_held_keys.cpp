// A held key as the window system tells of it, in the two orders that the toolkit makes of it.

#include "look/HeldKeys.h"

#include <QApplication>
#include <QKeyEvent>
#include <QTest>
#include <QWidget>

#include <memory>

using namespace Qt::StringLiterals;

namespace {

/// Notes what comes: "press", "repeat", "release", and "shortcut" where one may look at the key.
/// (The toolkit asks for shortcuts once more by itself, of a key without a place.)
class Listener : public QWidget {
public:
    QStringList heard;

protected:
    bool event(QEvent *event) override
    {
        const auto *key = static_cast<QKeyEvent *>(event);
        if (event->type() == QEvent::ShortcutOverride && key->nativeScanCode() != 0)
            heard.append(u"shortcut"_s);
        else if (event->type() == QEvent::KeyPress)
            heard.append(key->isAutoRepeat() ? u"repeat "_s + key->text() : u"press"_s);
        else if (event->type() == QEvent::KeyRelease)
            heard.append(u"release"_s);
        return QWidget::event(event);
    }
};

/// One event of a key, as the window system hands it over; whether it was taken.
bool send(QWidget &widget, QEvent::Type type, quint64 time, quint32 place = 57,
          bool isRepeat = false)
{
    QKeyEvent event(type, Qt::Key_N, Qt::NoModifier, place, 0, 0, u"n"_s, isRepeat);
    event.setTimestamp(time);
    event.ignore();
    QCoreApplication::sendEvent(&widget, &event);
    return event.isAccepted();
}

} // namespace

class TestHeldKeys : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        m_filter = std::make_unique<HeldKeys>();
        qApp->installEventFilter(m_filter.get());
    }
    void cleanup() { m_filter.reset(); }

    void aPressAtTheMomentOfTheReleaseIsARepetition()
    {
        Listener listener;
        send(listener, QEvent::KeyPress, 100);
        send(listener, QEvent::KeyRelease, 760);
        QVERIFY(send(listener, QEvent::ShortcutOverride, 760)); // taken: no shortcut sees it
        send(listener, QEvent::KeyPress, 760);
        send(listener, QEvent::KeyRelease, 900);
        QCOMPARE(listener.heard.join(u", "_s), u"press, release, repeat n, release"_s);
    }

    void aKeyThatIsPressedAgainIsPressed()
    {
        Listener listener;
        send(listener, QEvent::KeyRelease, 760);
        QVERIFY(!send(listener, QEvent::ShortcutOverride, 761));
        send(listener, QEvent::KeyPress, 761);
        QCOMPARE(listener.heard.join(u", "_s), u"release, shortcut, press"_s);
    }

    void anotherKeyAtTheSameMomentIsPressed()
    {
        Listener listener;
        send(listener, QEvent::KeyRelease, 760, 57);
        send(listener, QEvent::KeyPress, 760, 58);
        QCOMPARE(listener.heard.join(u", "_s), u"release, press"_s);
    }

    void whatTheToolkitKnowsPassesAsItIs()
    {
        Listener listener;
        send(listener, QEvent::KeyRelease, 760, 57, true);
        send(listener, QEvent::KeyPress, 760, 57, true);
        QCOMPARE(listener.heard.join(u", "_s), u"release, repeat n"_s);
    }

    void whatIsNotFromAKeyboardPassesAsItIs()
    {
        Listener listener;
        send(listener, QEvent::KeyRelease, 0);
        send(listener, QEvent::KeyPress, 0);
        send(listener, QEvent::KeyRelease, 760, 0);
        send(listener, QEvent::KeyPress, 760, 0);
        QCOMPARE(listener.heard.join(u", "_s), u"release, press, release, press"_s);
    }

private:
    std::unique_ptr<HeldKeys> m_filter;
};

QTEST_MAIN(TestHeldKeys)
#include "test_held_keys.moc"
