#include "app/DesktopFonts.h"
#include "app/OstreloApp.h"
#include "backend/SupabaseClient.h"
#include "platform/LargeBlocks.h"
#include "platform/Worker.h"

#include <QApplication>

#include <clocale>
#include <memory>

using namespace Qt::StringLiterals;

int main(int argc, char *argv[])
{
    keepLargeBlocksApart();
    // While there is one thread only. The toolkit sets it too, and then finds nothing to change.
    std::setlocale(LC_ALL, "");
    auto beside = std::make_unique<Worker>();
    beside->run(readDesktopFonts);
    QApplication::setApplicationName(u"aMorvelle"_s);
    QApplication::setDesktopFileName(u"amorvelle"_s);
    QApplication application(argc, argv);
    beside.reset(); // whoever measures a text from here on finds the fonts read
    const SupabaseClient::Lifetime service;
    const OstreloApp ostrelo;
    return QApplication::exec();
}
