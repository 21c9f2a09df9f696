#include "app/OstreloApp.h"

#include <QApplication>

int main(int argc, char *argv[])
{
    QApplication::setApplicationName(QStringLiteral("aMorvelle"));
    QApplication::setDesktopFileName(QStringLiteral("amorvelle"));
    QApplication application(argc, argv);
    const OstreloApp ostrelo;
    return QApplication::exec();
}
