#include "app/OstreloApp.h"

#include <QApplication>

using namespace Qt::StringLiterals;

int main(int argc, char *argv[])
{
    QApplication::setApplicationName(u"aMorvelle"_s);
    QApplication::setDesktopFileName(u"amorvelle"_s);
    QApplication application(argc, argv);
    const OstreloApp ostrelo;
    return QApplication::exec();
}
