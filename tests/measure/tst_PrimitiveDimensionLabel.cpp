#include "app/ModalDialog.h"
#include "measure/ToolTypes.h"
#include "support/CanvasFixture.h"

#include <QPainter>
#include <QStyleOptionGraphicsItem>

class tst_PrimitiveDimensionLabel : public QObject
{
    Q_OBJECT

private slots:
    void init()
    {
        canvas = std::make_unique<CanvasFixture>();
        line = canvas->drawMeasuring(ToolType::Line, {{100, 100}, {300, 100}});
        label = line->dimensionLabel();
        canvas->startSelecting();
    }

    void cleanup() { canvas.reset(); }

    void isSetUpAsAMovableText()
    {
        PrimitiveDimensionLabel fresh(canvas->manager(), canvas->scene());
        QCOMPARE(fresh.type(), 65837);
        QCOMPARE(static_cast<int>(fresh.flags()), 3);
        QCOMPARE(fresh.border(), QColor(120, 120, 120, 128));
        QCOMPARE(fresh.background(), QColor(0, 150, 211, 128));
        QVERIFY(!fresh.parentItem());
        QVERIFY(!fresh.scene());
    }

    void keepsItsSizeOnScreen_data()
    {
        QTest::addColumn<double>("zoom");
        QTest::newRow("25 %") << 0.25;
        QTest::newRow("100 %") << 1.0;
        QTest::newRow("400 %") << 4.0;
    }

    void keepsItsSizeOnScreen()
    {
        QFETCH(double, zoom);
        const QSizeF size = label->boundingRect().size();
        canvas->view.zoomByScale(zoom);
        QCOMPARE(label->scale(), 1.0 / zoom);
        const QRectF shown =
            label->deviceTransform(canvas->view.viewportTransform()).mapRect(label->boundingRect());
        QCOMPARE(shown.size(), size);
        const PrimitiveDimensionLabel fresh(canvas->manager(), canvas->scene());
        QCOMPARE(fresh.scale(), 1.0 / zoom);
    }

    void followsTheBestFit()
    {
        canvas->view.zoomBestFit();
        QCOMPARE(label->scale(), 1.0 / canvas->view.transform().m11());
    }

    void anEmptyTextHidesIt()
    {
        label->showHtml(QString());
        QVERIFY(!label->isVisible());
        label->showHtml(QStringLiteral("1: <br>"));
        QVERIFY(label->isVisible());
        QCOMPARE(label->toPlainText(), QStringLiteral("1: \n"));
    }

    void isDraggedByItselfWithoutLimit()
    {
        QCOMPARE(label->pos(), QPointF(100, 0));
        canvas->drag(QPointF(210, 110), QPointF(-30, -20));
        QCOMPARE(label->pos(), QPointF(-140, -130));
        QCOMPARE(line->pos(), QPointF(100, 100));
        QVERIFY(label->isSelected());
        QVERIFY(!line->isSelected());
    }

    void aPressOnItDoesNotReachTheTool()
    {
        // The label covers the right half of the line.
        const QPointF covered(205, 101);
        QCOMPARE(canvas->view.itemAt(canvas->view.mapFromScene(covered)), label);
        canvas->drag(covered, covered + QPointF(20, 30));
        QCOMPARE(label->pos(), QPointF(120, 30));
        QCOMPARE(line->pos(), QPointF(100, 100));
    }

    void travelsWithItsTool()
    {
        const QPointF before = label->scenePos();
        canvas->drag(QPointF(130, 100), QPointF(150, 140));
        QCOMPARE(label->scenePos(), before + QPointF(20, 40));
    }

    void staysWhereItIsWhenAPointMoves()
    {
        const QPointF before = label->scenePos();
        canvas->drag(QPointF(300, 100), QPointF(400, 300));
        QCOMPARE(label->scenePos(), before);
        QCOMPARE(label->toPlainText(), QStringLiteral("1: \nL=360.555 px"));
    }

    void deletingDoesNothingToALabelAlone()
    {
        canvas->scene()->clearSelection();
        label->setSelected(true);
        DialogAnswer<QMessageBox> answer([](auto* box) { clickButton(box, QMessageBox::Yes); });
        canvas->manager()->deleteSelectedTools();
        QVERIFY(!answer.wasAsked());
        QVERIFY(canvas->manager()->selectedGeneralTools().isEmpty());
        QCOMPARE(canvas->toolCount(), 1);
    }

    void isHitWhereItIsSeenAfterAZoom_data() { keepsItsSizeOnScreen_data(); }

    void isHitWhereItIsSeenAfterAZoom()
    {
        QFETCH(double, zoom);
        const QSize size = label->boundingRect().size().toSize();
        canvas->view.zoomByScale(zoom);
        const QPoint corner = canvas->view.mapFromScene(QPointF(200, 100));
        const QRect place(corner, size);
        QCOMPARE(canvas->view.itemAt(place.center()), label);
        QCOMPARE(canvas->view.itemAt(place.bottomRight() - QPoint(3, 3)), label);
        QVERIFY(!canvas->view.itemAt(place.bottomRight() + QPoint(3, 3)));
    }

    void paintsFrameAndText()
    {
        label->setBorder(Qt::red);
        label->setBackground(QColor(0, 0, 200));
        label->setDefaultTextColor(Qt::white);
        QImage picture(120, 80, QImage::Format_ARGB32_Premultiplied);
        picture.fill(Qt::transparent);
        QPainter painter(&picture);
        painter.setRenderHint(QPainter::Antialiasing);
        const QStyleOptionGraphicsItem option;
        label->paint(&painter, &option, nullptr);
        painter.end();
        const QSize size = label->boundingRect().size().toSize();
        // The frame lies half on the first row of pixels.
        QVERIFY(picture.pixelColor(size.width() / 2, 0).red() > 100);
        QVERIFY(picture.pixelColor(0, size.height() / 2).red() > 100);
        QCOMPARE(picture.pixelColor(2, 2), QColor(0, 0, 200));
        QCOMPARE(picture.pixelColor(size.width() + 3, 2).alpha(), 0);
        bool white = false;
        for (int y = 0; y < size.height(); ++y)
            for (int x = 0; x < size.width(); ++x)
                white = white || picture.pixelColor(x, y) == QColor(Qt::white);
        QVERIFY(white);
    }

private:
    std::unique_ptr<CanvasFixture> canvas;
    PrimitiveDimensionTool* line = nullptr;
    PrimitiveDimensionLabel* label = nullptr;
};

QTEST_MAIN(tst_PrimitiveDimensionLabel)
#include "tst_PrimitiveDimensionLabel.moc"
