#include "canvas/ToolLayer.h"

#include <QGraphicsRectItem>
#include <QGraphicsScene>
#include <QGraphicsView>
#include <QPainter>
#include <QStyleOptionGraphicsItem>
#include <QtTest>

namespace {

/// A filled square that counts how often it is painted.
class Square : public QGraphicsRectItem
{
public:
    Square(const QPointF& at, const QColor& colour) : QGraphicsRectItem(0, 0, 20, 20)
    {
        setPos(at);
        setBrush(colour);
        setPen(Qt::NoPen);
        setFlag(ItemIsSelectable);
    }

    void paint(QPainter* painter, const QStyleOptionGraphicsItem* option, QWidget*) override
    {
        ++painted;
        painter->fillRect(rect(),
                          option->state & QStyle::State_Selected ? QBrush(Qt::white) : brush());
    }

    int painted = 0;
};

} // namespace

class tst_ToolLayer : public QObject
{
    Q_OBJECT

private slots:
    void init()
    {
        scene = std::make_unique<QGraphicsScene>(0, 0, 400, 300);
        view = std::make_unique<QGraphicsView>(scene.get());
        view->setFrameShape(QFrame::NoFrame);
        view->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
        view->setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
        view->resize(400, 300);
        view->show();
        layer = std::make_unique<ToolLayer>(*view);
        red = new Square(QPointF(40, 40), Qt::red);
        blue = new Square(QPointF(200, 200), Qt::blue);
        scene->addItem(red);
        scene->addItem(blue);
    }

    void cleanup()
    {
        layer.reset();
        view.reset();
        scene.reset();
    }

    void showsTheItemsOverWhatIsThere()
    {
        const QImage shown = paint();
        QCOMPARE(shown.pixelColor(50, 50), QColor(Qt::red));
        QCOMPARE(shown.pixelColor(210, 210), QColor(Qt::blue));
        QCOMPARE(shown.pixelColor(100, 100), QColor(Qt::green));
    }

    void paintsNoItemAgainForTheNextFrame()
    {
        paint();
        paint();
        paint();
        QCOMPARE(red->painted, 1);
        QCOMPARE(blue->painted, 1);
    }

    void redrawsOnlyWhatWasInvalidated()
    {
        paint();
        red->setBrush(Qt::yellow);
        layer->invalidate(QRect(40, 40, 20, 20));
        const QImage shown = paint();
        QCOMPARE(shown.pixelColor(50, 50), QColor(Qt::yellow));
        QCOMPARE(shown.pixelColor(210, 210), QColor(Qt::blue));
        QCOMPARE(blue->painted, 1);
    }

    void leavesNoTrailOfAnItemThatMoved()
    {
        paint();
        red->setPos(100, 100);
        layer->invalidate(QRect(40, 40, 20, 20));
        layer->invalidate(QRect(100, 100, 20, 20));
        const QImage shown = paint();
        QCOMPARE(shown.pixelColor(50, 50), QColor(Qt::green));
        QCOMPARE(shown.pixelColor(110, 110), QColor(Qt::red));
    }

    void findsWhereTheChildrenOfAMovedItemWere()
    {
        auto* child = new Square(QPointF(100, 0), Qt::yellow);
        child->setParentItem(red);
        paint();
        red->setPos(40, 100);
        layer->invalidate(QRect(40, 40, 20, 20));
        const QRegion moved = layer->followItems();
        for (const QPoint& at :
             {QPoint(50, 50), QPoint(50, 110), QPoint(150, 50), QPoint(150, 110)})
            QVERIFY(moved.contains(at));
        QVERIFY(!moved.contains(QPoint(210, 210)));
        const QImage shown = paint();
        QCOMPARE(shown.pixelColor(50, 50), QColor(Qt::green));
        QCOMPARE(shown.pixelColor(150, 50), QColor(Qt::green));
        QCOMPARE(shown.pixelColor(50, 110), QColor(Qt::red));
        QCOMPARE(shown.pixelColor(150, 110), QColor(Qt::yellow));
        QVERIFY(layer->followItems().isEmpty());
    }

    void findsWhatHasGoneByItself()
    {
        paint();
        delete red;
        QVERIFY(layer->followItems().contains(QPoint(50, 50)));
        QCOMPARE(paint().pixelColor(50, 50), QColor(Qt::green));
    }

    void hidesAndShowsInPlace()
    {
        blue->setPos(50, 50);
        paint();
        red->setVisible(false);
        layer->invalidate(QRect(40, 40, 20, 20));
        QCOMPARE(paint().pixelColor(45, 45), QColor(Qt::green));
        red->setVisible(true);
        layer->invalidate(QRect(40, 40, 20, 20));
        const QImage shown = paint();
        QCOMPARE(shown.pixelColor(45, 45), QColor(Qt::red));
        QCOMPARE(shown.pixelColor(55, 55), QColor(Qt::blue));
    }

    void isDrawnAnewAfterAZoom()
    {
        paint();
        view->setTransformationAnchor(QGraphicsView::NoAnchor);
        view->setTransform(QTransform::fromScale(2, 2));
        const QPoint at = view->mapFromScene(QPointF(50, 50));
        QCOMPARE(paint().pixelColor(at), QColor(Qt::red));
        QCOMPARE(red->painted, 2);
    }

    void isDrawnAnewInAnotherSize()
    {
        paint();
        view->resize(500, 400);
        const QPoint at = view->mapFromScene(QPointF(50, 50));
        QCOMPARE(paint().pixelColor(at), QColor(Qt::red));
        QCOMPARE(red->painted, 2);
    }

    void passesTheSelectionOn()
    {
        red->setSelected(true);
        QCOMPARE(paint().pixelColor(50, 50), QColor(Qt::white));
    }

    void leavesOutHiddenItems()
    {
        red->setVisible(false);
        paint();
        QCOMPARE(red->painted, 0);
    }

    void keepsTheStackingOrder()
    {
        blue->setPos(50, 50);
        QCOMPARE(paint().pixelColor(55, 55), QColor(Qt::blue));
        red->setZValue(1.0);
        layer->invalidateAll();
        QCOMPARE(paint().pixelColor(55, 55), QColor(Qt::red));
    }

    void forgetsItemsThatAreGone()
    {
        paint();
        scene->clear();
        layer->invalidate(QRect(0, 0, 400, 300));
        const QImage shown = paint();
        QCOMPARE(shown.pixelColor(50, 50), QColor(Qt::green));
        QCOMPARE(shown.pixelColor(210, 210), QColor(Qt::green));
    }

    void drawsNothingOutsideOfWhatIsExposed()
    {
        QImage target(400, 300, QImage::Format_RGB32);
        target.fill(Qt::green);
        QPainter painter(&target);
        layer->paint(&painter, QRect(0, 0, 45, 300));
        painter.end();
        QCOMPARE(target.pixelColor(42, 50), QColor(Qt::red));
        QCOMPARE(target.pixelColor(50, 50), QColor(Qt::green));
    }

private:
    /// A green picture with the layer over it.
    QImage paint()
    {
        QImage target(view->viewport()->size(), QImage::Format_RGB32);
        target.fill(Qt::green);
        QPainter painter(&target);
        layer->paint(&painter, target.rect());
        return target;
    }

    std::unique_ptr<QGraphicsScene> scene;
    std::unique_ptr<QGraphicsView> view;
    std::unique_ptr<ToolLayer> layer;
    Square* red = nullptr;
    Square* blue = nullptr;
};

QTEST_MAIN(tst_ToolLayer)
#include "tst_ToolLayer.moc"
