#include "app/OstreloApp.h"
#include "backend/SupabaseClient.h"
#include "platform/LargeBlocks.h"

#include <QApplication>

using namespace Qt::StringLiterals;

int main(int argc, char *argv[])
{
    keepLargeBlocksApart();
    QApplication::setApplicationName(u"aMorvelle"_s);
    QApplication::setDesktopFileName(u"amorvelle"_s);
    QApplication application(argc, argv);
    const SupabaseClient::Lifetime service;
    const OstreloApp ostrelo;
    return QApplication::exec();
}
