// Started by bench_start: the program as its own main() starts it, watched. With an argument it is
// watched until events are painted, else until anything is.

#include "FirstPaint.h"
#include "app/OstreloApp.h"
#include "backend/SupabaseClient.h"
#include "browse/EventRow.h"

#include <QApplication>

using namespace Qt::StringLiterals;

int main(int argc, char *argv[])
{
    QApplication::setApplicationName(u"aMorvelle"_s);
    QApplication::setDesktopFileName(u"amorvelle"_s);
    const QApplication application(argc, argv);
    const SupabaseClient::Lifetime client;
    const bool awaitsEvents = argc > 1;
    const FirstPaint watch([awaitsEvents](QObject *object) {
        return awaitsEvents ? dynamic_cast<EventRow *>(object) != nullptr : object->isWidgetType();
    });
    const OstreloApp ostrelo;
    return QApplication::exec();
}
