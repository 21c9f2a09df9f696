// Writes an SVG picture as an icon file of macOS: its pictures as PNG, from 16 to 1024 pixels, each
// under the name that its size has there. Usage: make_icon PICTURE.svg ICON.icns

#include <QBuffer>
#include <QFile>
#include <QGuiApplication>
#include <QImage>
#include <QPainter>
#include <QSvgRenderer>
#include <QtEndian>

#include <array>

namespace {

struct Size {
    const char *name;
    int pixels;
};

constexpr std::array sizes{
    Size{"icp4", 16},  Size{"icp5", 32},  Size{"ic11", 32},  Size{"ic12", 64},  Size{"ic07", 128},
    Size{"ic08", 256}, Size{"ic13", 256}, Size{"ic09", 512}, Size{"ic14", 512}, Size{"ic10", 1024},
};

QByteArray png(QSvgRenderer &drawing, int pixels)
{
    QImage image(pixels, pixels, QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    QPainter painter(&image);
    drawing.render(&painter);
    painter.end();
    QByteArray bytes;
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::WriteOnly);
    image.save(&buffer, "PNG");
    return bytes;
}

/// A name of four letters, the length of all of it, and what it holds.
QByteArray block(const char *name, const QByteArray &content)
{
    QByteArray length(4, '\0');
    qToBigEndian(static_cast<quint32>(content.size() + 8), length.data());
    return name + length + content;
}

} // namespace

int main(int argc, char *argv[])
{
    if (argc != 3)
        qFatal("usage: make_icon PICTURE.svg ICON.icns");
    qputenv("QT_QPA_PLATFORM", "offscreen");
    const QGuiApplication application(argc, argv);
    QSvgRenderer drawing(QFile::decodeName(argv[1]));
    if (!drawing.isValid())
        qFatal("cannot read %s", argv[1]);
    QByteArray pictures;
    for (const Size &size : sizes)
        pictures += block(size.name, png(drawing, size.pixels));
    QFile icon(QFile::decodeName(argv[2]));
    const QByteArray whole = block("icns", pictures);
    if (!icon.open(QIODevice::WriteOnly) || icon.write(whole) != whole.size())
        qFatal("cannot write %s", argv[2]);
    return 0;
}
