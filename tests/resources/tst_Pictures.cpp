#include "Contrast.h"
#include "ResourceCarrier.h"

#include <QDataStream>
#include <QFile>
#include <QIcon>
#include <QImage>
#include <QRegularExpression>
#include <QSvgRenderer>
#include <QtTest>

class tst_Pictures final : public QObject
{
    Q_OBJECT

private slots:
    void pictureHasItsSize_data();
    void pictureHasItsSize();
    void pictureIsSharpOnFineScreens_data();
    void pictureIsSharpOnFineScreens();
    void titleBarMarksStandOutOnDarkAndLight_data();
    void titleBarMarksStandOutOnDarkAndLight();
    void penStylesAreToldApart();
    void moveCursorIsDarkWithAWhiteEdgeAroundItsHotSpot();
    void logoHoldsTheUsualSizes_data();
    void logoHoldsTheUsualSizes();
    void noBannerIsSupplied();
    void styleMarkCanBeDrawn_data();
    void styleMarkCanBeDrawn();
    void styleSheetNamesOnlyFilesThatExist();
};

namespace {

QImage load(const QString& path)
{
    return QImage(path).convertToFormat(QImage::Format_ARGB32);
}

void addPairRows()
{
    QTest::addColumn<QString>("path");
    QTest::addColumn<QSize>("size");
    const auto add = [](const char* path, QSize size) {
        QTest::newRow(path) << QString::fromLatin1(path) << size;
    };
    for (const char* path : {":/images/save.png", ":/images/print.png", ":/images/undo.png"})
        add(path, {24, 24});
    for (const char* path :
         {":/images/close_btn_icon.png", ":/images/penstyle_solidline.png",
          ":/images/penstyle_dashline.png", ":/images/penstyle_dotline.png",
          ":/images/penstyle_dashdotline.png", ":/images/penstyle_dashdotdotline.png",
          ":/res/images/menu_btn_icon.png", ":/res/images/min_btn_icon.png",
          ":/res/images/max_btn_icon.png", ":/res/images/restore_btn_icon.png",
          ":/res/images/close_btn_icon.png"})
        add(path, {16, 16});
    add(":/images/record_indicator.png", {12, 12});
    add(":/images/calibrate_instruction.png", {360, 200});
}

} // namespace

void tst_Pictures::pictureHasItsSize_data()
{
    addPairRows();
    QTest::newRow("cursor") << QStringLiteral(":/res/cursors/cur_moveitem.png") << QSize(24, 24);
}

void tst_Pictures::pictureHasItsSize()
{
    QFETCH(QString, path);
    QFETCH(QSize, size);
    const QImage image = load(path);
    QCOMPARE(image.size(), size);
    int opaque = 0;
    for (int y = 0; y < size.height(); ++y)
        for (int x = 0; x < size.width(); ++x)
            opaque += qAlpha(image.pixel(x, y)) == 255 ? 1 : 0;
    QVERIFY(opaque >= 8);
}

void tst_Pictures::pictureIsSharpOnFineScreens_data()
{
    addPairRows();
}

void tst_Pictures::pictureIsSharpOnFineScreens()
{
    QFETCH(QString, path);
    QFETCH(QSize, size);
    path.replace(QLatin1String(".png"), QLatin1String("@2x.png"));
    QCOMPARE(load(path).size(), size * 2);
}

void tst_Pictures::titleBarMarksStandOutOnDarkAndLight_data()
{
    QTest::addColumn<QString>("path");
    for (const char* name : {"menu", "min", "max", "restore", "close"})
        QTest::newRow(name) << QString(QStringLiteral(":/res/images/") + QLatin1String(name) +
                                       QStringLiteral("_btn_icon.png"));
}

void tst_Pictures::titleBarMarksStandOutOnDarkAndLight()
{
    QFETCH(QString, path);
    const QImage image = load(path);
    int judged = 0;
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x) {
            const QColor color = image.pixelColor(x, y);
            if (color.alpha() < 255)
                continue;
            ++judged;
            QVERIFY(contrast(color, QColor(0x17, 0x21, 0x2F)) >= 3.0);
            QVERIFY(contrast(color, Qt::white) >= 3.0);
        }
    }
    QVERIFY(judged > 0);
}

void tst_Pictures::penStylesAreToldApart()
{
    // Opaque pixels and runs of them along the row in the middle.
    const QHash<QString, QPair<int, int>> expected{{QStringLiteral("solidline"), {16, 1}},
                                                   {QStringLiteral("dashline"), {12, 2}},
                                                   {QStringLiteral("dotline"), {8, 4}},
                                                   {QStringLiteral("dashdotline"), {12, 3}},
                                                   {QStringLiteral("dashdotdotline"), {10, 3}}};
    for (auto it = expected.cbegin(); it != expected.cend(); ++it) {
        const QImage image = load(QStringLiteral(":/images/penstyle_") + it.key() + u".png");
        QPair<int, int> found{0, 0};
        bool inRun = false;
        for (int x = 0; x < image.width(); ++x) {
            const bool opaque = qAlpha(image.pixel(x, image.height() / 2)) == 255;
            found.first += opaque ? 1 : 0;
            found.second += opaque && !inRun ? 1 : 0;
            inRun = opaque;
        }
        QCOMPARE(found, it.value());
    }
}

void tst_Pictures::moveCursorIsDarkWithAWhiteEdgeAroundItsHotSpot()
{
    const QImage cursor = load(QStringLiteral(":/res/cursors/cur_moveitem.png"));
    const QPoint hotSpot(12, 12);
    QVERIFY(contrast(cursor.pixelColor(hotSpot), Qt::white) > 10.0);
    const QVector<QPoint> directions{{1, 0}, {0, 1}, {-1, 0}, {0, -1}};
    for (const QPoint& direction : directions) {
        const QPoint beside(direction.y(), direction.x());
        const QPoint shaft = hotSpot + direction * 4;
        QCOMPARE(qAlpha(cursor.pixel(shaft)), 255);
        QVERIFY(contrast(cursor.pixelColor(shaft), Qt::white) > 3.0);
        int white = 0;
        for (int step = -3; step <= 3; ++step)
            white += cursor.pixelColor(shaft + beside * step) == QColor(Qt::white) ? 1 : 0;
        QVERIFY(white >= 2);
    }
}

void tst_Pictures::logoHoldsTheUsualSizes_data()
{
    QTest::addColumn<QString>("path");
    QTest::newRow("program") << QStringLiteral(":/res/logo.ico");
    QTest::newRow("about box") << QStringLiteral(":/oem/logo.ico");
}

void tst_Pictures::logoHoldsTheUsualSizes()
{
    QFETCH(QString, path);
    const QVector<int> sides{16, 24, 32, 48, 64, 128, 256};

    QFile file(path);
    QVERIFY(file.open(QIODevice::ReadOnly));
    QDataStream stream(&file);
    stream.setByteOrder(QDataStream::LittleEndian);
    quint16 reserved = 1, type = 0, count = 0;
    stream >> reserved >> type >> count;
    QCOMPARE(reserved, quint16(0));
    QCOMPARE(type, quint16(1));
    QCOMPARE(int(count), sides.size());

    const QIcon icon(path);
    for (const int side : sides) {
        QVERIFY(icon.availableSizes().contains(QSize(side, side)));
        const QImage image = icon.pixmap(side, side).toImage();
        QCOMPARE(image.size(), QSize(side, side));
        QCOMPARE(qAlpha(image.pixel(0, 0)), 0);
        QCOMPARE(image.pixelColor(side / 8, side / 2), QColor(0x2B, 0x87, 0xCC));
    }
}

void tst_Pictures::noBannerIsSupplied()
{
    QVERIFY(!QFile::exists(QStringLiteral(":/oem/banner.png")));
}

void tst_Pictures::styleMarkCanBeDrawn_data()
{
    QTest::addColumn<QString>("name");
    for (const char* name :
         {"arrow-down", "arrow-up", "arrow-right", "branch-open", "branch-closed", "close"}) {
        for (const char* state : {"", "-disabled", "-active"})
            QTest::addRow("%s%s", name, state)
                << QString(QLatin1String(name) + QLatin1String(state));
    }
    for (const char* name :
         {"checkbox-checked", "checkbox-unchecked", "checkbox-indeterminate", "checkbox-disabled",
          "checkbox-checked-disabled", "checkbox-indeterminate-disabled", "radio-on", "radio-off",
          "radio-on-disabled", "radio-off-disabled", "size-grip"})
        QTest::newRow(name) << QString::fromLatin1(name);
}

void tst_Pictures::styleMarkCanBeDrawn()
{
    QFETCH(QString, name);
    const QSvgRenderer renderer(QStringLiteral(":/res/style/") + name + QStringLiteral(".svg"));
    QVERIFY(renderer.isValid());
    const bool isBox =
        name.startsWith(QLatin1String("checkbox")) || name.startsWith(QLatin1String("radio"));
    QCOMPARE(renderer.defaultSize(), isBox ? QSize(16, 16) : QSize(12, 12));
}

void tst_Pictures::styleSheetNamesOnlyFilesThatExist()
{
    QFile sheet(QStringLiteral(":/res/style/style.qss"));
    QVERIFY(sheet.open(QIODevice::ReadOnly));
    const QRegularExpression url(QStringLiteral("url\\(([^)]*)\\)"));
    auto matches = url.globalMatch(QString::fromUtf8(sheet.readAll()));
    while (matches.hasNext()) {
        const QString path = matches.next().captured(1);
        QVERIFY2(QFile::exists(path), qPrintable(path));
    }
}

QTEST_MAIN(tst_Pictures)
#include "tst_Pictures.moc"
