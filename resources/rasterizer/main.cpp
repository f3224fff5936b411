// Draws SVG files into PNG files and Windows icons while the program is built. The plan is a text
// file of one output a line, its fields apart by bars: output|width|height|SVG for a PNG,
// and output.ico|SVG of the small entries|SVG of the large ones for an icon.

#include "IconFile.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QImage>
#include <QPainter>
#include <QSvgRenderer>
#include <QTextStream>

#include <cstdio>

namespace {

constexpr int smallIconEntries[] = {16, 24};
constexpr int largeIconEntries[] = {32, 48, 64, 128, 256};

QImage drawSvg(const QString& path, QSize size)
{
    QSvgRenderer renderer(path);
    if (!renderer.isValid() || size.isEmpty())
        return {};
    QImage image(size, QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    QPainter painter(&image);
    renderer.render(&painter, QRectF(QPointF(0, 0), size));
    return image;
}

bool writePng(const QStringList& fields)
{
    const QImage image = drawSvg(fields[3], {fields[1].toInt(), fields[2].toInt()});
    constexpr int smallestFile = 0;
    return !image.isNull() && image.save(fields[0], "PNG", smallestFile);
}

bool writeIcon(const QStringList& fields)
{
    QVector<QImage> images;
    for (const int size : smallIconEntries)
        images.append(drawSvg(fields[1], {size, size}));
    for (const int size : largeIconEntries)
        images.append(drawSvg(fields[2], {size, size}));
    QFile file(fields[0]);
    return file.open(QIODevice::WriteOnly) && writeIconFile(images, file);
}

bool writeOutput(const QStringList& fields)
{
    const bool isIcon = fields[0].endsWith(QLatin1String(".ico"));
    if (fields.size() != (isIcon ? 3 : 4))
        return false;
    QDir().mkpath(QFileInfo(fields[0]).path());
    return isIcon ? writeIcon(fields) : writePng(fields);
}

bool carryOut(const QString& planPath)
{
    QFile plan(planPath);
    if (!plan.open(QIODevice::ReadOnly | QIODevice::Text)) {
        std::fprintf(stderr, "cannot read the plan %s\n", qPrintable(planPath));
        return false;
    }
    QTextStream lines(&plan);
    for (QString line; lines.readLineInto(&line);) {
        if (!line.isEmpty() && !writeOutput(line.split(QLatin1Char('|')))) {
            std::fprintf(stderr, "cannot draw %s\n", qPrintable(line));
            return false;
        }
    }
    return true;
}

} // namespace

int main(int argc, char** argv)
{
    const QCoreApplication application(argc, argv);
    const QStringList arguments = QCoreApplication::arguments();
    if (arguments.size() != 2) {
        std::fprintf(stderr, "usage: orvo_rasterizer <plan>\n");
        return 2;
    }
    return carryOut(arguments[1]) ? 0 : 1;
}
