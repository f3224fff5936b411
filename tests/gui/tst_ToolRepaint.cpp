#include "measure/ToolTypes.h"
#include "support/CanvasFixture.h"
#include "support/Settle.h"

#include <QPainter>
#include <QScreen>
#include <QScrollBar>
#include <QWindow>

namespace {

/// Text and thin lines come out a little differently when they are drawn onto a transparent layer
/// first; a trail is a line or a disc where there should be none.
constexpr int tolerance = 60;

int difference(QRgb a, QRgb b)
{
    return std::max({std::abs(qRed(a) - qRed(b)), std::abs(qGreen(a) - qGreen(b)),
                     std::abs(qBlue(a) - qBlue(b))});
}

} // namespace

/// What the user sees of the tools: the window's own pixels against a fresh drawing of the scene.
class tst_ToolRepaint : public QObject
{
    Q_OBJECT

private slots:
    void init()
    {
        canvas = std::make_unique<CanvasFixture>();
        QVERIFY(QTest::qWaitForWindowExposed(&canvas->view));
        QVERIFY(showsTheScene());
    }

    void cleanup() { canvas.reset(); }

    void drawingLeavesNoTrail_data()
    {
        QTest::addColumn<int>("type");
        QTest::addColumn<double>("scale");
        for (int type : {65637, 65639, 65641, 65647, 65648, 65537})
            for (double scale : {0.25, 1.0, 4.0})
                QTest::addRow("%d at %g", type, scale) << type << scale;
    }

    void drawingLeavesNoTrail()
    {
        QFETCH(int, type);
        QFETCH(double, scale);
        canvas->view.zoomByScale(scale);
        canvas->startDrawing(type);
        const QVector<QPointF> path{{260, 200}, {400, 216}, {380, 260}, {252, 288}, {320, 200}};
        for (const QPointF& corner : path) {
            canvas->move(corner + QPointF(-20, 12));
            QVERIFY(showsTheScene());
            canvas->click(corner);
            QVERIFY(showsTheScene());
        }
        canvas->rightClick(QPointF(300, 240));
        QVERIFY(showsTheScene());
    }

    void movingAPointLeavesNoTrail_data() { tools(); }

    void movingAPointLeavesNoTrail()
    {
        auto* tool = drawn();
        canvas->startSelecting();
        for (int i = 0; i < tool->controlPoints().size(); ++i) {
            const QPointF from = CanvasFixture::pointOf(tool, i);
            for (const QPointF& by : {QPointF(30, -44), QPointF(-72, 80), QPointF(24, 8)}) {
                tool->moveControlPoint(i, from + by);
                QVERIFY(showsTheScene());
            }
        }
    }

    void draggingLeavesNoTrail_data() { tools(); }

    void draggingLeavesNoTrail()
    {
        auto* tool = drawn();
        canvas->startSelecting();
        const QPointF grip = CanvasFixture::pointOf(tool, 0);
        canvas->press(grip);
        for (const QPointF& by : {QPointF(4, 4), QPointF(36, -20), QPointF(-16, 48)}) {
            canvas->move(grip + by);
            QVERIFY(showsTheScene());
        }
        canvas->release(grip);
        tool->moveBy(12, 16);
        QVERIFY(showsTheScene());
    }

    void draggingALabelLeavesNoTrail()
    {
        auto* line = canvas->drawMeasuring(ToolType::Line, {{100, 100}, {300, 100}});
        canvas->startSelecting();
        canvas->press(QPointF(210, 110));
        for (const QPointF& to : {QPointF(214, 130), QPointF(300, 200), QPointF(120, 300)}) {
            canvas->move(to);
            QVERIFY(showsTheScene());
        }
        canvas->release(QPointF(120, 300));
        QVERIFY(line->dimensionLabel()->isSelected());
        QVERIFY(showsTheScene());
    }

    void deletingLeavesNothing_data() { tools(); }

    void deletingLeavesNothing()
    {
        const QImage empty = seen();
        drawn();
        QVERIFY(seen() != empty);
        canvas->manager()->deleteAllTools(true);
        canvas->view.zoom(250.0);
        QCOMPARE(seen(), empty);
    }

    void deletingOneShowsTheOthersWithTheirNewNumbers()
    {
        QVector<PrimitiveGeneralTool*> lines;
        for (int i = 0; i < 11; ++i)
            lines.append(canvas->draw(ToolType::Line, {{40, 20.0 + 40 * i}, {240, 24.0 + 40 * i}}));
        QVERIFY(showsTheScene());
        canvas->manager()->removeTool(lines[3]);
        QVERIFY(showsTheScene());
        canvas->manager()->removeTool(lines[0]);
        QVERIFY(showsTheScene());
    }

    void selectingShowsAndHidesTheDiscs_data() { tools(); }

    void selectingShowsAndHidesTheDiscs()
    {
        auto* tool = drawn();
        const QImage selected = seen();
        canvas->scene()->clearSelection();
        QVERIFY(showsTheScene());
        const QImage plain = seen();
        QVERIFY(plain != selected);
        tool->setSelected(true);
        QVERIFY(showsTheScene());
        QCOMPARE(seen(), selected);
    }

    void aZoomLeavesNoTrail_data() { tools(); }

    void aZoomLeavesNoTrail()
    {
        drawn();
        for (double level : {150.0, 200.0, 243.0, 250.0, 262.0, 350.0, 410.0, 300.0, 100.0}) {
            canvas->view.zoom(level);
            QVERIFY2(showsTheScene(), qPrintable(QString::number(level)));
        }
        canvas->view.zoomBestFit();
        QVERIFY(showsTheScene());
    }

    void scrollingAndResizingLeaveNoTrail()
    {
        canvas->draw(ToolType::Polygon, {{260, 200}, {400, 216}, {380, 260}});
        canvas->rightClick(QPointF(320, 300));
        canvas->view.zoomByScale(4.0);
        for (int by : {7, -120, 333}) {
            auto* bar = canvas->view.horizontalScrollBar();
            bar->setValue(bar->value() + by);
            bar = canvas->view.verticalScrollBar();
            bar->setValue(bar->value() - by);
            QVERIFY(showsTheScene());
        }
        canvas->view.resize(700, 500);
        QVERIFY(showsTheScene());
        canvas->view.zoomBestFit();
        canvas->view.resize(880, 640);
        QVERIFY(showsTheScene());
    }

    void anotherCalibrationShowsAtOnce()
    {
        canvas->draw(ToolType::Line, {{100, 100}, {300, 100}});
        canvas->draw(ToolType::Polygon, {{100, 200}, {300, 200}, {300, 300}});
        canvas->rightClick(QPointF(120, 300));
        canvas->manager()->setCalibration(PrimitiveCalibration(QStringLiteral("10x"), 1.2345e-7,
                                                               QString(), QStringLiteral("5_in")),
                                          QStringLiteral("5_in"));
        QVERIFY(showsTheScene());
        canvas->manager()->setCalibration(
            PrimitiveCalibration(QStringLiteral("1x"), 1.0, QString(), QStringLiteral("4_m")),
            QStringLiteral("4_m"));
        QVERIFY(showsTheScene());
    }

    void otherAttributesShowAtOnce()
    {
        auto* line = canvas->drawMeasuring(ToolType::Line, {{100, 100}, {300, 140}});
        line->setLineColor(Qt::red);
        QVERIFY(showsTheScene());
        line->setCtrlPointRadius(20.0);
        QVERIFY(showsTheScene());
        line->setCtrlPointRadius(3.0);
        QVERIFY(showsTheScene());
        line->setDimensionFont(QFont(QStringLiteral("Arial"), 30));
        QVERIFY(showsTheScene());
        line->setDimensionFont(QFont(QStringLiteral("Arial"), 8));
        line->setDimensionTextBackgroundColor(Qt::darkGreen);
        QVERIFY(showsTheScene());
    }

    void aWideLineLeavesNoTrail()
    {
        auto* line = canvas->draw(ToolType::Line, {{100, 100}, {300, 140}});
        line->setLineWidth(40);
        line->setLineColor(Qt::red);
        QVERIFY(showsTheScene());
        line->moveControlPoint(1, QPointF(300, 300));
        QVERIFY(showsTheScene());
        line->moveBy(60, 40);
        QVERIFY(showsTheScene());
        line->setLineColor(Qt::green);
        QVERIFY(showsTheScene());
        line->setLineWidth(2);
        QVERIFY(showsTheScene());
        line->setLineWidth(30);
        QVERIFY(showsTheScene());
        canvas->manager()->removeTool(line);
        QVERIFY(showsTheScene());
    }

    void anotherFrameOrModeKeepsTheTools()
    {
        canvas->draw(ToolType::Angle, {{100, 100}, {200, 300}, {300, 100}});
        QVERIFY(showsTheScene());
        QImage frame(640, 480, QImage::Format_RGB32);
        frame.fill(QColor(200, 190, 180));
        canvas->view.setImage(frame);
        QVERIFY(showsTheScene());
        canvas->startSelecting();
        QVERIFY(showsTheScene());
        canvas->view.showCross(true);
        canvas->startDrawing(ToolType::Line);
        canvas->move(QPointF(222, 111));
        QVERIFY(showsTheScene());
        canvas->move(QPointF(100, 333));
        QVERIFY(showsTheScene());
    }

    void aToolIsHitWhereItIsSeen_data()
    {
        QTest::addColumn<int>("type");
        QTest::addColumn<double>("scale");
        // Not the angle by 4 points, which is sensitive from line to line.
        for (int type : {65637, 65639, 65641, 65647, 65537})
            for (double scale : {0.25, 1.0, 4.0})
                QTest::addRow("%d at %g", type, scale) << type << scale;
    }

    void aToolIsHitWhereItIsSeen()
    {
        QFETCH(double, scale);
        auto* tool = drawn();
        tool->setFillColor(Qt::transparent);
        tool->setDimensionAngularRadius(0.0);
        for (QGraphicsItem* label : tool->childItems())
            label->setVisible(false);
        canvas->startSelecting();
        canvas->view.zoomByScale(scale);
        const QImage shown = seen();
        tool->setVisible(false);
        const QImage empty = seen();
        tool->setVisible(true);

        QRegion painted;
        for (int y = 0; y < shown.height(); ++y)
            for (int x = 0; x < shown.width(); ++x)
                if (difference(shown.pixel(x, y), empty.pixel(x, y)) > tolerance)
                    painted += QRect(x, y, 1, 1);
        QVERIFY(!painted.isEmpty());
        const QRect around = painted.boundingRect().adjusted(-10, -10, 10, 10) & shown.rect();
        for (int y = around.top(); y <= around.bottom(); y += 2)
            for (int x = around.left(); x <= around.right(); x += 2)
                if (isMissed(QPoint(x, y), painted))
                    QFAIL(qPrintable(QStringLiteral("at %1, %2").arg(x).arg(y)));
    }

private:
    static void tools()
    {
        QTest::addColumn<int>("type");
        for (int type : {65637, 65639, 65641, 65647, 65648, 65537})
            QTest::addRow("%d", type) << type;
    }

    PrimitiveGeneralTool* drawn()
    {
        const int type = *static_cast<const int*>(QTest::qData("type", qMetaTypeId<int>()));
        canvas->startDrawing(type);
        canvas->click(QPointF(260, 200));
        for (const QPointF& corner : {QPointF(356, 272), QPointF(372, 260), QPointF(256, 272)}) {
            if (canvas->newest()->isFinished())
                break;
            canvas->move(corner - QPointF(8, 8));
            canvas->click(corner);
        }
        canvas->newest()->tryFinish();
        return canvas->newest();
    }

    /// The viewport's pixels in the window. They are taken, not painted for this: a change that
    /// asks for no painting is missing in them.
    QImage seen() const
    {
        settle();
        const QWidget* viewport = canvas->view.viewport();
        const QRect part(viewport->mapTo(&canvas->view, QPoint()), viewport->size());
        return canvas->view.screen()
            ->grabWindow(canvas->view.winId(), part.x(), part.y(), part.width(), part.height())
            .toImage()
            .convertToFormat(QImage::Format_RGB32);
    }

    /// The scene drawn by the base class, without the view's own painting.
    QImage expected()
    {
        const QRect whole = canvas->view.viewport()->rect();
        QImage picture(whole.size(), QImage::Format_RGB32);
        QPainter painter(&picture);
        painter.setRenderHints(canvas->view.renderHints());
        canvas->view.render(&painter, whole, whole, Qt::IgnoreAspectRatio);
        return picture;
    }

    bool showsTheScene()
    {
        const QImage shown = seen();
        const QImage fresh = expected();
        if (shown.size() != fresh.size())
            return false;
        int wrong = 0;
        for (int y = 0; y < fresh.height(); ++y) {
            const auto* left = reinterpret_cast<const QRgb*>(shown.constScanLine(y));
            const auto* right = reinterpret_cast<const QRgb*>(fresh.constScanLine(y));
            for (int x = 0; x < fresh.width(); ++x)
                if (left[x] != right[x] && difference(left[x], right[x]) > tolerance)
                    ++wrong;
        }
        if (wrong > 0)
            qWarning() << wrong << "pixels differ";
        return wrong == 0;
    }

    /// Painted without a sensitive place near it, or sensitive far from what is painted. The border
    /// of a disc is painted around its sensitive area.
    bool isMissed(const QPoint& at, const QRegion& painted) const
    {
        constexpr int reach = 3;
        const QRect near = QRect(at, at).adjusted(-reach, -reach, reach, reach);
        if (painted.contains(at))
            return canvas->view.items(near).isEmpty();
        return canvas->view.itemAt(at) && !painted.intersects(near);
    }

    std::unique_ptr<CanvasFixture> canvas;
};

QTEST_MAIN(tst_ToolRepaint)
#include "tst_ToolRepaint.moc"
