#include "canvas/GraphicsScene.h"
#include "canvas/GraphicsView.h"
#include "support/Settle.h"

#include <QGraphicsRectItem>
#include <QtTest>

namespace {

const QColor surround(16, 16, 16);

/// Left half red, right half blue.
QImage twoHalves(const QSize& size)
{
    QImage image(size, QImage::Format_RGB32);
    image.fill(Qt::blue);
    for (int y = 0; y < size.height(); ++y)
        for (int x = 0; x < size.width() / 2; ++x)
            image.setPixelColor(x, y, Qt::red);
    return image;
}

} // namespace

class tst_GraphicsScene : public QObject
{
    Q_OBJECT

private slots:
    void init()
    {
        view = std::make_unique<GraphicsView>();
        // The viewport is 600 x 400, which centres an even picture on whole pixels.
        view->setFrameShape(QFrame::NoFrame);
        view->resize(615, 415);
        view->show();
        QVERIFY(QTest::qWaitForWindowExposed(view.get()));
    }

    void cleanup() { view.reset(); }

    void aFrameIsSharedNotCopied()
    {
        const QImage frame = twoHalves(QSize(320, 240));
        view->setImage(frame);
        QCOMPARE(view->imageScene()->currentImage().constBits(), frame.constBits());
    }

    void sceneCoordinatesArePicturePixels()
    {
        view->setImage(twoHalves(QSize(320, 240)));
        view->zoomActualSize();
        QCOMPARE(view->imageScene()->sceneRect(), QRectF(0, 0, 320, 240));
        const QImage shown = view->viewport()->grab().toImage();
        QCOMPARE(shown.pixelColor(view->mapFromScene(QPointF(10, 10))), QColor(Qt::red));
        QCOMPARE(shown.pixelColor(view->mapFromScene(QPointF(159, 100))), QColor(Qt::red));
        QCOMPARE(shown.pixelColor(view->mapFromScene(QPointF(160, 100))), QColor(Qt::blue));
        QCOMPARE(shown.pixelColor(0, 0), surround);
    }

    void noSeamShowsAroundThePicture_data()
    {
        QTest::addColumn<double>("level");
        for (const double level : {180.0, 213.0, 237.0, 250.0, 251.0, 263.5})
            QTest::newRow(qPrintable(QString::number(level))) << level;
    }

    void noSeamShowsAroundThePicture()
    {
        QFETCH(double, level);
        view->setImage(twoHalves(QSize(320, 240)));
        view->zoom(level);
        const QImage shown = view->viewport()->grab().toImage();
        const int row = view->mapFromScene(QPointF(160, 120)).y();
        for (int x = 0; x < shown.width(); ++x) {
            const QColor colour = shown.pixelColor(x, row);
            QVERIFY2(colour == surround || colour == QColor(Qt::red) || colour == QColor(Qt::blue),
                     qPrintable(colour.name()));
        }
    }

    void withoutAFrameTheSurroundShows()
    {
        QVERIFY(view->imageScene()->currentImage().isNull());
        QCOMPARE(view->viewport()->grab().toImage().pixelColor(300, 200), surround);
    }

    void aRenderOfAViewWithMarginsIsTheWholePicture()
    {
        view->setImage(twoHalves(QSize(320, 240)));
        view->zoomActualSize();
        const QImage picture = view->imageScene()->renderVisible();
        QCOMPARE(picture.size(), QSize(320, 240));
        QCOMPARE(picture.format(), QImage::Format_RGB32);
        QCOMPARE(picture.pixelColor(0, 0), QColor(Qt::red));
        QCOMPARE(picture.pixelColor(319, 239), QColor(Qt::blue));
    }

    void aRenderAtBestFitHasPictureResolution()
    {
        view->setImage(twoHalves(QSize(3840, 2160)));
        QVERIFY(view->isBestFit());
        const QImage picture = view->imageScene()->renderVisible();
        // The fit leaves margins above and below, and none at the sides but rounding and the ruler.
        QCOMPARE(picture.height(), 2160);
        QVERIFY(qAbs(picture.width() - 3840) < 3840 / 25);
        QCOMPARE(picture.pixelColor(100, 1000), QColor(Qt::red));
        QCOMPARE(picture.pixelColor(3700, 1000), QColor(Qt::blue));
    }

    void aRenderOfAZoomedInViewIsTheVisiblePart()
    {
        view->setImage(twoHalves(QSize(4000, 3000)));
        view->zoomByScale(2.0);
        view->centerOn(2000, 1500);
        const QSizeF expected = view->mapToScene(view->rect()).boundingRect().size();
        const QImage picture = view->imageScene()->renderVisible();
        QCOMPARE(picture.size(), expected.toSize());
        QVERIFY(picture.width() < 400);
        QCOMPARE(picture.pixelColor(5, 50), QColor(Qt::red));
        QCOMPARE(picture.pixelColor(picture.width() - 20, 50), QColor(Qt::blue));
    }

    void aRenderFreezesTheScaleAndTellsItTwice()
    {
        view->setImage(twoHalves(QSize(320, 240)));
        view->zoomByScale(0.5);
        QSignalSpy resized(view.get(), &GraphicsView::resized);
        QVector<double> scales;
        connect(view.get(), &GraphicsView::resized, this,
                [&] { scales << view->manager()->fixedScale(); });
        view->imageScene()->renderVisible();
        QCOMPARE(resized.count(), 2);
        QCOMPARE(scales, QVector<double>({0.5, -1.0}));
    }

    void aRenderShowsTheToolsAndTheCrosshair()
    {
        view->setImage(twoHalves(QSize(320, 240)));
        view->zoomActualSize();
        view->imageScene()->addRect(20, 20, 30, 30, Qt::NoPen, Qt::yellow);
        view->showCross(true);
        view->setPrimitiveDragMode(PrimitiveManager::Draw, 65637);
        QTest::mouseMove(view->viewport(), view->mapFromScene(QPointF(200, 100)));
        QTRY_VERIFY(hasCrossAt(200));
        QCOMPARE(view->imageScene()->renderVisible().pixelColor(30, 30), QColor(Qt::yellow));
    }

    void theCrosshairShowsOnlyWhileDrawing()
    {
        view->setImage(twoHalves(QSize(320, 240)));
        view->zoomActualSize();
        view->showCross(true);
        QVERIFY(!hasCross());
        view->setPrimitiveDragMode(PrimitiveManager::Draw, 65637);
        QTest::mouseMove(view->viewport(), view->mapFromScene(QPointF(90, 100)));
        QTRY_VERIFY(hasCrossAt(90));

        view->setPrimitiveDragMode(PrimitiveManager::Select, -1);
        QVERIFY(!hasCross());
        QTest::mouseMove(view->viewport(), view->mapFromScene(QPointF(250, 100)));
        settle();

        // The stored position stays until the next move in a drawing mode.
        view->setPrimitiveDragMode(PrimitiveManager::Draw, 65637);
        QVERIFY(hasCrossAt(90));
    }

    void withoutTheOptionThereIsNoCrosshair()
    {
        view->setImage(twoHalves(QSize(320, 240)));
        view->zoomActualSize();
        view->setPrimitiveDragMode(PrimitiveManager::Draw, 65637);
        QTest::mouseMove(view->viewport(), view->mapFromScene(QPointF(90, 100)));
        settle();
        QVERIFY(!hasCross());
    }

    void whileTheCanvasIsDraggedItemsTakeNoInput()
    {
        view->setImage(twoHalves(QSize(320, 240)));
        view->zoomActualSize();
        auto* item = view->imageScene()->addRect(20, 20, 30, 30);
        item->setFlag(QGraphicsItem::ItemIsSelectable);
        const QPoint on = view->mapFromScene(QPointF(30, 30));
        view->setPrimitiveDragMode(PrimitiveManager::Drag, -1);
        QTest::mouseClick(view->viewport(), Qt::LeftButton, {}, on);
        QVERIFY(!item->isSelected());
        view->setPrimitiveDragMode(PrimitiveManager::Select, -1);
        QTest::mouseClick(view->viewport(), Qt::LeftButton, {}, on);
        QVERIFY(item->isSelected());
    }

private:
    /// The columns of the crosshair's vertical line, read in a row that is blank otherwise.
    QVector<int> crossColumns() const
    {
        const QImage picture = view->imageScene()->renderVisible();
        QVector<int> columns;
        for (int x = 0; x < picture.width(); ++x)
            if (picture.pixelColor(x, 5).green() > 30)
                columns << x;
        return columns;
    }

    bool hasCross() const { return !crossColumns().isEmpty(); }

    /// A line of one pixel whose middle is at most half a pixel off.
    bool hasCrossAt(int x) const
    {
        const QVector<int> columns = crossColumns();
        return columns.size() == 1 && qAbs(columns.first() + 0.5 - x) <= 0.5;
    }

    std::unique_ptr<GraphicsView> view;
};

QTEST_MAIN(tst_GraphicsScene)
#include "tst_GraphicsScene.moc"
