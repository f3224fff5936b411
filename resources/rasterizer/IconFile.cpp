#include "IconFile.h"

#include <QBuffer>
#include <QDataStream>

namespace {

constexpr int headerSize = 6;
constexpr int entrySize = 16;
constexpr int largestSide = 256;

QByteArray encodePng(const QImage& image)
{
    QByteArray bytes;
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::WriteOnly);
    if (qMax(image.width(), image.height()) > largestSide || !image.save(&buffer, "PNG"))
        return {};
    return bytes;
}

void writeEntry(QDataStream& stream, const QImage& image, int length, int offset)
{
    // One byte a side, in which 0 stands for 256.
    stream << quint8(image.width() % largestSide) << quint8(image.height() % largestSide);
    const quint8 paletteColors = 0, reserved = 0;
    const quint16 planes = 1, bitsPerPixel = 32;
    stream << paletteColors << reserved << planes << bitsPerPixel;
    stream << quint32(length) << quint32(offset);
}

} // namespace

bool writeIconFile(const QVector<QImage>& images, QIODevice& device)
{
    QVector<QByteArray> pngs;
    for (const QImage& image : images)
        pngs.append(encodePng(image));
    if (pngs.contains(QByteArray()))
        return false;

    QDataStream stream(&device);
    stream.setByteOrder(QDataStream::LittleEndian);
    const quint16 reserved = 0, typeIcon = 1;
    stream << reserved << typeIcon << quint16(images.size());
    int offset = headerSize + entrySize * images.size();
    for (int i = 0; i < images.size(); ++i) {
        writeEntry(stream, images[i], pngs[i].size(), offset);
        offset += pngs[i].size();
    }
    for (const QByteArray& png : pngs)
        stream.writeRawData(png.constData(), png.size());
    return stream.status() == QDataStream::Ok;
}
