#include "pixels/PictureLook.h"

#include <QImage>
#include <QtTest>

using zolens::PictureLook;
using zolens::smooth;

namespace {

QImage plain(QRgb color)
{
    QImage image(33, 17, QImage::Format_RGB32);
    image.fill(color);
    return image;
}

} // namespace

class tst_PictureLook final : public QObject
{
    Q_OBJECT

private slots:
    void leavesAPictureAlone()
    {
        const QImage before = plain(qRgb(10, 200, 90));
        QImage image = before;
        PictureLook().apply(&image);
        QCOMPARE(image, before);
    }

    void removesColors()
    {
        PictureLook look;
        look.colorMode = PictureLook::Monochrome;
        QImage image = plain(qRgb(200, 100, 50));
        look.apply(&image);
        // 0.299 * 200 + 0.587 * 100 + 0.114 * 50
        const QColor color = image.pixelColor(20, 10);
        QCOMPARE(color.red(), color.green());
        QCOMPARE(color.green(), color.blue());
        QVERIFY(std::abs(color.red() - 124) <= 2);
        QCOMPARE(image.pixelColor(0, 16), color);
    }

    void turnsColorsAround()
    {
        PictureLook look;
        look.colorMode = PictureLook::Negative;
        QImage image = plain(qRgb(200, 100, 0));
        look.apply(&image);
        QCOMPARE(image, plain(qRgb(55, 155, 255)));
    }

    void smoothsSmallDifferences()
    {
        QImage image = plain(qRgb(100, 100, 100));
        image.setPixel(10, 8, qRgb(108, 100, 92));
        smooth(&image, 32);
        // Half of the difference stays in each direction.
        QCOMPARE(image.pixel(10, 8), qRgb(102, 100, 98));
        QCOMPARE(image.pixel(0, 0), qRgb(100, 100, 100));
    }

    void keepsEdges()
    {
        QImage image = plain(qRgb(0, 0, 0));
        for (int y = 0; y < image.height(); ++y) {
            for (int x = 16; x < image.width(); ++x)
                image.setPixel(x, y, qRgb(255, 255, 255));
        }
        smooth(&image, 5);
        QCOMPARE(image.pixel(15, 8), qRgb(5, 5, 5));
        QCOMPARE(image.pixel(16, 8), qRgb(250, 250, 250));
        QCOMPARE(image.pixel(14, 8), qRgb(0, 0, 0));
    }

    void smoothsTheSmallestPictures_data()
    {
        QTest::addColumn<QSize>("size");
        QTest::newRow("one pixel") << QSize(1, 1);
        QTest::newRow("one row") << QSize(5, 1);
        QTest::newRow("one column") << QSize(1, 5);
        QTest::newRow("two by two") << QSize(2, 2);
    }

    void smoothsTheSmallestPictures()
    {
        QFETCH(QSize, size);
        QImage image(size, QImage::Format_RGB32);
        image.fill(qRgb(1, 2, 3));
        smooth(&image, 10);
        QCOMPARE(image.pixel(0, 0), qRgb(1, 2, 3));
    }

    void denoiseWorksByItsStrength()
    {
        PictureLook look;
        QImage image = plain(qRgb(100, 100, 100));
        image.setPixel(10, 8, qRgb(200, 200, 200));
        QImage strong = image;
        look.denoise = 10;
        look.apply(&image);
        look.denoise = PictureLook::strongestDenoise;
        look.apply(&strong);
        QVERIFY(qRed(image.pixel(10, 8)) < 200);
        QVERIFY(qRed(strong.pixel(10, 8)) < qRed(image.pixel(10, 8)));
    }
};

QTEST_GUILESS_MAIN(tst_PictureLook)
#include "tst_PictureLook.moc"
