#pragma once

#include <QByteArray>
#include <QFile>
#include <QTemporaryDir>

/// A desktop whose type is of 18 pt. For the beginning of main(); to be kept until its end.
class LargeType {
public:
    LargeType()
    {
        // The platform without a display has a font of 9 pt; on this screen it is as large as one
        // of 18 pt is on another.
        QFile screen(m_folder.filePath(QLatin1StringView("screen.json")));
        if (!screen.open(QIODevice::WriteOnly))
            qFatal("no large type");
        screen.write(R"({"screens":[{"name":"a","x":0,"y":0,"width":1600,"height":1000,)"
                     R"("logicalDpi":192,"logicalBaseDpi":192,"dpr":1}]})");
        screen.close();
        qputenv("QT_QPA_PLATFORM", "offscreen:configfile=" + QFile::encodeName(screen.fileName()));
    }

private:
    QTemporaryDir m_folder;
};
