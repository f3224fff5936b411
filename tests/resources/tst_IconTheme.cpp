#include "Contrast.h"
#include "ResourceCarrier.h"

#include <QFile>
#include <QGuiApplication>
#include <QHash>
#include <QIcon>
#include <QImage>
#include <QSettings>
#include <QSvgRenderer>
#include <QtTest>

namespace {

const QVector<int> sizes{16, 24, 32, 48};

QStringList iconNames()
{
    const QString names = QStringLiteral(
        "document-save document-print file-quit edit-undo zoom-in zoom-out settings about "
        "snap record-start record-stop gallery fullscreen tableview view-camera "
        "view-measure add-new modify save scale-bar excel appearance file measurement "
        "mea-counter mea-line mea-rectange mea-polyline mea-polygon mea-linedistance "
        "mea-parallel mea-perpendicular mea-multipleperpendicular mea-crosshair mea-angle "
        "mea-angle4 mea-arc mea-circle mea-circle2 mea-circle3 mea-annulus mea-twocircles "
        "mea-twocircles2 mea-twocircles3 mea-arrow mea-arrow-red mea-arrow-blue "
        "mea-arrow-green mea-arrow-white mea-text mea-drag mea-drag-on mea-select "
        "mea-select-on mea-scalebar mea-scalebar-on mea-delete cww-camera cww-pause "
        "cww-pause-on cww-close cww-lock cww-lock-on actions/snap actions/media-record "
        "actions/media-playback-pause actions/media-playback-stop");
    return names.split(QLatin1Char(' '));
}

QString drawnPath(const QString& name, int size, int scale)
{
    const QString folder = QStringLiteral("%1x%1").arg(size);
    return iconThemeFolder() + QLatin1Char('/') + folder +
           (scale == 2 ? QStringLiteral("@2/") : QStringLiteral("/")) + name +
           QStringLiteral(".png");
}

QImage drawn(const QString& name, int size, int scale = 1)
{
    return QImage(drawnPath(name, size, scale)).convertToFormat(QImage::Format_ARGB32);
}

template <typename Test>
int countPixels(const QImage& image, Test test)
{
    int count = 0;
    for (int y = 0; y < image.height(); ++y)
        for (int x = 0; x < image.width(); ++x)
            count += test(image.pixel(x, y)) ? 1 : 0;
    return count;
}

bool isCovered(QRgb pixel)
{
    return qAlpha(pixel) > 127;
}

/// How often each fully opaque colour stands in the image.
QHash<QRgb, int> opaqueColors(const QImage& image)
{
    QHash<QRgb, int> counts;
    countPixels(image, [&](QRgb pixel) { return qAlpha(pixel) == 255 && ++counts[pixel] > 0; });
    return counts;
}

void addNameRows()
{
    QTest::addColumn<QString>("name");
    for (const QString& name : iconNames())
        QTest::newRow(qPrintable(name)) << name;
}

} // namespace

class tst_IconTheme final : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void indexNamesTheThemeAndItsFolders();
    void everySizeIsDrawn_data() { addNameRows(); }
    void everySizeIsDrawn();
    void themeGivesTheDrawingOfTheSize_data() { addNameRows(); }
    void themeGivesTheDrawingOfTheSize();
    void scalableDrawingIsSound_data() { addNameRows(); }
    void scalableDrawingIsSound();
    void colorsStandOutOnDarkAndLight_data() { addNameRows(); }
    void colorsStandOutOnDarkAndLight();
    void onAndOffDifferInShape_data();
    void onAndOffDifferInShape();
    void noTwoToolsLookAlike();
};

void tst_IconTheme::initTestCase()
{
    QVERIFY(QIcon::themeSearchPaths().contains(QStringLiteral(":/icons")));
    QIcon::setThemeName(QStringLiteral("light-blue"));
    QCoreApplication::setAttribute(Qt::AA_UseHighDpiPixmaps);
}

void tst_IconTheme::indexNamesTheThemeAndItsFolders()
{
    const QSettings index(iconThemeFolder() + QStringLiteral("/index.theme"), QSettings::IniFormat);
    const auto value = [&](const QString& key) { return index.value(key).toString(); };
    QCOMPARE(value(QStringLiteral("Icon Theme/Name")), QStringLiteral("light-blue"));
    QCOMPARE(value(QStringLiteral("Icon Theme/Inherits")), QStringLiteral("default"));
    QCOMPARE(index.value(QStringLiteral("Icon Theme/Directories")).toStringList().join(u' '),
             QStringLiteral("16x16 16x16@2 24x24 24x24@2 32x32 32x32@2 48x48 48x48@2 scalable"));
    for (const int size : sizes) {
        const QString folder = QStringLiteral("%1x%1").arg(size);
        for (const QString& path : {folder, QString(folder + QStringLiteral("@2"))}) {
            QCOMPARE(value(path + QStringLiteral("/Size")), QString::number(size));
            QCOMPARE(value(path + QStringLiteral("/Type")), QStringLiteral("Fixed"));
        }
        QCOMPARE(value(folder + QStringLiteral("@2/Scale")), QStringLiteral("2"));
    }
    QCOMPARE(value(QStringLiteral("scalable/Size")), QStringLiteral("48"));
    QCOMPARE(value(QStringLiteral("scalable/Type")), QStringLiteral("Scalable"));
}

void tst_IconTheme::everySizeIsDrawn()
{
    QFETCH(QString, name);
    for (const int size : sizes) {
        for (const int scale : {1, 2}) {
            const QImage image = drawn(name, size, scale);
            QCOMPARE(image.size(), QSize(size * scale, size * scale));
            const int covered = countPixels(image, isCovered);
            const int area = image.width() * image.height();
            QVERIFY2(covered > area / 20, qPrintable(drawnPath(name, size, scale)));
            QVERIFY2(covered < area, qPrintable(drawnPath(name, size, scale)));
        }
    }
}

void tst_IconTheme::themeGivesTheDrawingOfTheSize()
{
    QFETCH(QString, name);
    const QIcon icon = QIcon::fromTheme(name);
    QVERIFY(!icon.isNull());
    const int scale = qRound(qGuiApp->devicePixelRatio());
    for (const int size : sizes) {
        const auto premultiplied = QImage::Format_ARGB32_Premultiplied;
        QImage expected = drawn(name, size, scale).convertToFormat(premultiplied);
        expected.setDevicePixelRatio(scale);
        const QImage shown = icon.pixmap(size, size).toImage();
        QCOMPARE(shown.convertToFormat(premultiplied), expected);
    }
}

void tst_IconTheme::scalableDrawingIsSound()
{
    QFETCH(QString, name);
    const QSvgRenderer renderer(iconThemeFolder() + QStringLiteral("/scalable/") + name +
                                QStringLiteral(".svg"));
    QVERIFY(renderer.isValid());
    QCOMPARE(renderer.viewBoxF(), QRectF(0, 0, 24, 24));
}

void tst_IconTheme::colorsStandOutOnDarkAndLight()
{
    QFETCH(QString, name);
    const QColor panel(0x1E, 0x2B, 0x3D), white(Qt::white);
    const QImage image = drawn(name, 48, 2);
    const int covered = countPixels(image, isCovered);
    const QHash<QRgb, int> counts = opaqueColors(image);
    int judged = 0;
    for (auto it = counts.cbegin(); it != counts.cend(); ++it) {
        // White only fills what a coloured line encloses, and rare colours are blends at edges.
        const QColor color(it.key());
        if (color == white || it.value() < covered / 20)
            continue;
        ++judged;
        QVERIFY2(contrast(color, panel) >= 3.0, qPrintable(color.name()));
        QVERIFY2(contrast(color, white) >= 3.0, qPrintable(color.name()));
    }
    QVERIFY(judged > 0);
}

void tst_IconTheme::onAndOffDifferInShape_data()
{
    QTest::addColumn<QString>("off");
    QTest::addColumn<QString>("on");
    for (const char* name : {"mea-drag", "mea-select", "mea-scalebar", "cww-pause", "cww-lock"}) {
        const QString off = QString::fromLatin1(name);
        QTest::newRow(name) << off << QString(off + QStringLiteral("-on"));
    }
    QTest::newRow("record") << QStringLiteral("record-start") << QStringLiteral("record-stop");
}

void tst_IconTheme::onAndOffDifferInShape()
{
    QFETCH(QString, off);
    QFETCH(QString, on);
    for (const int size : sizes) {
        const int hollow = countPixels(drawn(off, size), isCovered);
        const int filled = countPixels(drawn(on, size), isCovered);
        QVERIFY2(filled - hollow > size * size / 10, qPrintable(QString::number(size)));
    }
}

void tst_IconTheme::noTwoToolsLookAlike()
{
    for (const int size : sizes) {
        QHash<QByteArray, QString> seen;
        for (const QString& name : iconNames()) {
            if (!name.startsWith(QLatin1String("mea-")))
                continue;
            const QImage image = drawn(name, size);
            const QByteArray bits(reinterpret_cast<const char*>(image.constBits()),
                                  int(image.sizeInBytes()));
            QVERIFY2(!seen.contains(bits), qPrintable(QString(name + u' ' + seen.value(bits))));
            seen.insert(bits, name);
        }
    }
}

QTEST_MAIN(tst_IconTheme)
#include "tst_IconTheme.moc"
