#include "PixelMeasures.h"
#include "simulated/DriftingParticles.h"
#include "simulated/MicroscopeScene.h"

#include <QtTest>

using zolens::MicroscopeScene;
using zolens::Particle;
using namespace measures;

class tst_MicroscopeScene final : public QObject
{
    Q_OBJECT

private slots:
    void aDivisionOfTheMicrometerHasItsSize_data()
    {
        QTest::addColumn<QSize>("size");
        QTest::addColumn<double>("pitch");
        QTest::newRow("vga") << QSize(640, 480) << 10.0 / 3;
        QTest::newRow("720p") << QSize(1280, 720) << 20.0 / 3;
        QTest::newRow("1080p") << QSize(1920, 1080) << 10.0;
        QTest::newRow("5 MP") << QSize(2592, 1944) << 13.5;
        QTest::newRow("4K") << QSize(3840, 2160) << 20.0;
    }

    void aDivisionOfTheMicrometerHasItsSize()
    {
        QFETCH(QSize, size);
        QFETCH(double, pitch);
        const MicroscopeScene scene(size);
        // Here only the long lines reach, one at every tenth division.
        const std::vector<double> lines = linesInRow(scene.image(), -384);
        QCOMPARE(lines.size(), std::size_t{11});
        for (std::size_t i = 1; i < lines.size(); ++i) {
            QVERIFY2(std::abs(lines[i] - lines[i - 1] - 10 * pitch) < 0.35,
                     qPrintable(QString::number(lines[i] - lines[i - 1])));
        }
        QVERIFY(std::abs(lines.back() - lines.front() - 100 * pitch) < 0.35);
    }

    void theMicrometerHasAHundredDivisions()
    {
        const MicroscopeScene scene(QSize(1920, 1080));
        const std::vector<double> lines = linesInRow(scene.image(), -335);
        QCOMPARE(lines.size(), std::size_t{101});
        for (std::size_t i = 0; i < lines.size(); ++i) {
            const double expected = 460.0 + 10.0 * static_cast<double>(i);
            QVERIFY(std::abs(lines[i] - expected) < 0.2);
        }
    }

    void theBeadIsOneHundredMicrometresWide()
    {
        const MicroscopeScene scene(QSize(1920, 1080));
        const int row = 540 + 60;
        const auto edges = crossings(scene.image(), row, 960 + 240, 960 + 400, 130);
        QVERIFY(edges.size() >= 2);
        QVERIFY2(std::abs(edges.back() - edges.front() - 100) < 1.5,
                 qPrintable(QString::number(edges.back() - edges.front())));
    }

    void theCellIsTwoHundredByOneHundredAndTwenty()
    {
        const MicroscopeScene scene(QSize(1920, 1080));
        const auto edges = crossings(scene.image(), 540 + 258, 960 - 140, 960 + 100, 165);
        QVERIFY(edges.size() >= 2);
        QVERIFY(std::abs(edges.back() - edges.front() - 200) < 1);

        const QImage upright = scene.image().transformed(QTransform().rotate(90));
        // Turned to the right, a column from the top is a row from the right.
        const int column = 960 - 108;
        const auto ends = crossings(upright, column, 540 - 385, 540 - 235, 165);
        QVERIFY(ends.size() >= 2);
        QVERIFY(std::abs(ends.back() - ends.front() - 120) < 1);
    }

    void theFieldIsBrightAndFallsOffTowardsTheCorners()
    {
        const MicroscopeScene scene(QSize(1280, 720));
        const double middle = meanOf(scene.image(), QRect(780, 330, 30, 20)).luminance();
        const double corner = meanOf(scene.image(), QRect(1240, 4, 30, 20)).luminance();
        QVERIFY2(middle > 225, qPrintable(QString::number(middle)));
        QVERIFY(corner < middle - 8);
        QVERIFY(corner > middle - 60);
    }

    void theMeterSeesTheWholeField()
    {
        const MicroscopeScene scene(QSize(1280, 720));
        QCOMPARE(scene.meter().width(), 192);
        QVERIFY(std::abs(meanOf(scene.meter()).luminance() - meanOf(scene.image()).luminance()) <
                1);
    }

    void blocksCoverWhatTheyAreAskedFor()
    {
        const MicroscopeScene scene(QSize(1920, 1080));
        const QRect blocks = scene.blocksAround(QRectF(-955, -500, 30, 17));
        QVERIFY(blocks.contains(QRect(5, 40, 30, 17)));
        QCOMPARE(blocks.left() % 8, 0);
        QCOMPARE(blocks.top() % 8, 0);
        QCOMPARE(blocks.width() % 8, 0);
        QCOMPARE(blocks.height() % 8, 0);
        QVERIFY(scene.blocksAround(QRectF(2000, 0, 10, 10)).isEmpty());
        QVERIFY(scene.image().rect().contains(scene.blocksAround(QRectF(950, 530, 40, 40))));
    }

    void particlesDarkenAPartWhereTheyAre()
    {
        const MicroscopeScene scene(QSize(1920, 1080));
        Particle particle;
        particle.position = {230, -80};
        particle.length = 40;
        particle.width = 20;
        particle.color = Qt::darkGreen;
        const QRect pixels = scene.blocksAround(particle.bounds());
        const QImage clean = scene.part(pixels, {});
        const QImage covered = scene.part(pixels, {particle});
        QCOMPARE(clean, scene.image().copy(pixels));
        QVERIFY(meanOf(covered).luminance() < meanOf(clean).luminance() - 10);
    }

    void particlesMoveFromFrameToFrame()
    {
        const auto first = zolens::particlesAt(0);
        const auto later = zolens::particlesAt(60);
        QCOMPARE(first.size(), later.size());
        QVERIFY(first.size() > 10);
        for (std::size_t i = 0; i < first.size(); ++i) {
            QVERIFY(first[i].position != later[i].position);
            QCOMPARE(zolens::particlesAt(60)[i].position, later[i].position);
        }
    }

private:
    /// The middles of the dark lines that cross that row of the micrometer.
    static std::vector<double> linesInRow(const QImage& image, double micrometres)
    {
        const double scale = image.width() / 1920.0;
        const int y = static_cast<int>(std::floor(image.height() / 2.0 + micrometres * scale));
        const int from = static_cast<int>(image.width() / 2.0 - 508 * scale);
        const int to = static_cast<int>(image.width() / 2.0 + 508 * scale);
        const auto edges = crossings(image, y, from, to, 195);
        std::vector<double> lines;
        for (std::size_t i = 0; i + 1 < edges.size(); i += 2)
            lines.push_back((edges[i] + edges[i + 1]) / 2);
        return lines;
    }
};

QTEST_GUILESS_MAIN(tst_MicroscopeScene)
#include "tst_MicroscopeScene.moc"
