#include "measure/PrimitiveActionManager.h"
#include "measure/ToolTypes.h"
#include "support/CanvasFixture.h"

#include <QAction>
#include <QPointer>
#include <QSignalSpy>

/// The life of a tool as the user sees it: what presses, moves and clicks make of it.
class tst_ToolConstruction : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase() { qRegisterMetaType<PrimitiveManager::DragMode>(); }
    void init() { canvas = std::make_unique<CanvasFixture>(); }
    void cleanup() { canvas.reset(); }

    // From the first press to the last

    void aToolOfFixedSizeEndsOnItsLastPress_data()
    {
        QTest::addColumn<int>("type");
        QTest::addColumn<QVector<int>>("pointsAfterPress");
        QTest::newRow("line") << 65637 << QVector<int>{2, 2};
        QTest::newRow("angle") << 65647 << QVector<int>{2, 3, 3};
        QTest::newRow("angle by 4 points") << 65648 << QVector<int>{2, 3, 4, 4};
        QTest::newRow("arrow") << 65537 << QVector<int>{4, 4};
        QTest::newRow("white arrow") << 65541 << QVector<int>{4, 4};
    }

    void aToolOfFixedSizeEndsOnItsLastPress()
    {
        QFETCH(int, type);
        QFETCH(QVector<int>, pointsAfterPress);
        canvas->startDrawing(type);
        for (int i = 0; i < pointsAfterPress.size(); ++i) {
            canvas->click(spot(i));
            QCOMPARE(canvas->toolCount(), 1);
            QCOMPARE(canvas->newest()->controlPoints().size(), pointsAfterPress[i]);
            QCOMPARE(canvas->newest()->isFinished(), i + 1 == pointsAfterPress.size());
            QVERIFY(canvas->newest()->isSelected());
        }
        canvas->click(QPointF(400, 400));
        QCOMPARE(canvas->toolCount(), 2);
    }

    void theFirstPressPlacesTheTool()
    {
        const auto* tool = canvas->draw(ToolType::Line, {{120, 90}});
        QCOMPARE(tool->pos(), QPointF(120, 90));
        QCOMPARE(tool->controlPoints()[0].pos, QPointF(0, 0));
        QCOMPARE(tool->controlPoints()[1].pos, QPointF(0, 0));
    }

    void theLastPointFollowsTheMouse_data()
    {
        QTest::addColumn<int>("type");
        for (int type : {65537, 65637, 65639, 65641, 65647, 65648})
            QTest::addRow("%d", type) << type;
    }

    void theLastPointFollowsTheMouse()
    {
        QFETCH(int, type);
        const auto* tool = canvas->draw(type, {{100, 100}});
        for (const QPointF& at : {QPointF(150, 120), QPointF(90, 300), QPointF(400, 50)}) {
            canvas->move(at);
            const int last = tool->controlPoints().size() - 1;
            QCOMPARE(CanvasFixture::pointOf(tool, last), at);
            QCOMPARE(CanvasFixture::pointOf(tool, 0), QPointF(100, 100));
        }
    }

    void afterItsEndAToolFollowsNoMore()
    {
        const auto* tool = canvas->draw(ToolType::Line, {{100, 100}, {200, 100}});
        canvas->move(QPointF(300, 300));
        QCOMPARE(CanvasFixture::pointOf(tool, 1), QPointF(200, 100));
    }

    void aPressWithoutAMoveBeforeItCommitsWhereItIs()
    {
        canvas->startDrawing(ToolType::Line);
        canvas->press(QPointF(100, 100));
        canvas->release(QPointF(100, 100));
        canvas->press(QPointF(180, 160));
        QCOMPARE(CanvasFixture::pointOf(canvas->newest(), 1), QPointF(180, 160));
        QVERIFY(canvas->newest()->isFinished());
        QCOMPARE(canvas->cell(0, "length").toDouble(), 100.0);
    }

    void anOpenToolTakesAPointWithEachPress()
    {
        const auto* tool =
            canvas->draw(ToolType::Polyline, {{50, 50}, {100, 50}, {100, 100}, {150, 100}});
        QCOMPARE(tool->controlPoints().size(), 5);
        QVERIFY(!tool->isFinished());
        QCOMPARE(CanvasFixture::pointOf(tool, 2), QPointF(100, 100));
    }

    void anOpenToolKeepsTheFollowingPointWhenItEnds()
    {
        const auto* tool = canvas->draw(ToolType::Polyline, {{50, 50}, {100, 50}, {100, 100}});
        canvas->move(QPointF(200, 100));
        canvas->rightClick(QPointF(200, 100));
        QVERIFY(tool->isFinished());
        QCOMPARE(tool->controlPoints().size(), 4);
        QCOMPARE(CanvasFixture::pointOf(tool, 3), QPointF(200, 100));
        QCOMPARE(canvas->cell(0, "length").toDouble(), 200.0);
    }

    void anOpenToolTakesNoMoreThan1001Points()
    {
        canvas->startDrawing(ToolType::Polyline);
        for (int i = 0; i < 1005; ++i)
            canvas->press(QPointF(10 + i % 600, 10 + i / 600));
        const auto* tool = canvas->newest();
        QCOMPARE(canvas->toolCount(), 1);
        QCOMPARE(tool->controlPoints().size(), 1001);
        canvas->move(QPointF(300, 300));
        QCOMPARE(CanvasFixture::pointOf(tool, 1000), QPointF(300, 300));
        canvas->rightClick(QPointF(300, 300));
        QVERIFY(tool->isFinished());
        QCOMPARE(canvas->toolCount(), 1);
    }

    // Outside of the picture

    void aPressOutsideMakesNothing()
    {
        canvas->startDrawing(ToolType::Line);
        canvas->click(QPointF(-20, 100));
        canvas->click(QPointF(660, 100));
        canvas->click(QPointF(100, -20));
        QCOMPARE(canvas->toolCount(), 0);
    }

    void aMoveOutsideMovesNoPoint()
    {
        const auto* tool = canvas->draw(ToolType::Line, {{100, 100}});
        canvas->move(QPointF(200, 150));
        canvas->move(QPointF(-30, 150));
        QCOMPARE(CanvasFixture::pointOf(tool, 1), QPointF(200, 150));
    }

    void aPressOutsideRemovesAToolWithTooFewPoints()
    {
        canvas->draw(ToolType::Line, {{100, 100}});
        canvas->click(QPointF(-20, 100));
        QCOMPARE(canvas->toolCount(), 0);
        QCOMPARE(canvas->table()->rowCount(), 0);
        QVERIFY(!canvas->manager()->currentTool());
    }

    void aPressOutsideFinishesAToolWithEnoughPoints()
    {
        const auto* tool = canvas->draw(ToolType::Polygon, {{50, 50}, {100, 50}, {100, 100}});
        canvas->click(QPointF(-20, 100));
        QVERIFY(tool->isFinished());
        QVERIFY(!tool->isSelected());
        canvas->click(QPointF(300, 300));
        QCOMPARE(canvas->toolCount(), 2);
    }

    // Right clicks

    void aRightClickRemovesAToolWithTooFewPoints_data()
    {
        QTest::addColumn<int>("type");
        QTest::addColumn<int>("presses");
        QTest::newRow("line") << 65637 << 1;
        QTest::newRow("arrow") << 65537 << 1;
        QTest::newRow("angle, one point") << 65647 << 1;
        QTest::newRow("angle, two points") << 65647 << 2;
        QTest::newRow("angle by 4 points, three points") << 65648 << 3;
        QTest::newRow("polyline, one point") << 65639 << 1;
        QTest::newRow("polyline, two points") << 65639 << 2;
        QTest::newRow("polygon, two points") << 65641 << 2;
    }

    void aRightClickRemovesAToolWithTooFewPoints()
    {
        QFETCH(int, type);
        QFETCH(int, presses);
        canvas->draw(ToolType::Line, {{300, 300}, {400, 300}});
        canvas->startDrawing(type);
        for (int i = 0; i < presses; ++i)
            canvas->click(spot(i));
        QCOMPARE(canvas->toolCount(), 2);
        QPointer<PrimitiveGeneralTool> dropped = canvas->newest();
        canvas->rightClick();
        QVERIFY(!dropped);
        QCOMPARE(canvas->toolCount(), 1);
        QCOMPARE(canvas->table()->rowCount(), 1);
        QCOMPARE(canvas->newest()->id(), 0);
        QCOMPARE(canvas->manager()->dragMode(), PrimitiveManager::Draw);
    }

    void theIdsOfTheOtherRowsStayDense()
    {
        canvas->draw(ToolType::Line, {{50, 50}, {100, 50}});
        canvas->draw(ToolType::Line, {{50, 80}, {150, 80}});
        canvas->draw(ToolType::Polyline, {{50, 110}, {100, 110}});
        QCOMPARE(canvas->table()->rowCount(), 3);
        canvas->rightClick();
        canvas->draw(ToolType::Line, {{50, 140}, {250, 140}});
        QCOMPARE(canvas->table()->rowCount(), 3);
        for (int row = 0; row < 3; ++row)
            QCOMPARE(canvas->cell(row, "id").toDouble(), row + 1.0);
        QCOMPARE(canvas->cell(2, "length").toDouble(), 200.0);
    }

    void twoRightClicksAfterAToolLeadBackToSelecting()
    {
        PrimitiveActionManager::instance()->setGraphicsView(&canvas->view);
        QSignalSpy changed(canvas->manager(), &PrimitiveManager::changeDragMode);
        const auto* tool = canvas->draw(ToolType::Line, {{50, 50}, {100, 50}});
        canvas->rightClick();
        QVERIFY(!tool->isSelected());
        QCOMPARE(canvas->manager()->dragMode(), PrimitiveManager::Draw);
        canvas->rightClick();
        QCOMPARE(canvas->manager()->dragMode(), PrimitiveManager::Select);
        QCOMPARE(changed.size(), 1);
        QCOMPARE(changed[0][0].value<PrimitiveManager::DragMode>(), PrimitiveManager::Select);
        QCOMPARE(changed[0][1].toInt(), -1);
        QVERIFY(PrimitiveActionManager::instance()->actionFor(1, -1)->isChecked());
        QCOMPARE(canvas->toolCount(), 1);
    }

    void finishingAnOpenToolByARightClickClearsItsSelection()
    {
        const auto* tool = canvas->draw(ToolType::Polyline, {{50, 50}, {100, 50}, {100, 100}});
        canvas->rightClick();
        QVERIFY(tool->isFinished());
        QVERIFY(!tool->isSelected());
        QCOMPARE(canvas->manager()->dragMode(), PrimitiveManager::Draw);
        canvas->rightClick();
        QCOMPARE(canvas->manager()->dragMode(), PrimitiveManager::Select);
    }

    void aRightClickOutsideOfThePictureWorksTheSame()
    {
        canvas->draw(ToolType::Line, {{100, 100}});
        canvas->rightClick(QPointF(-20, -20));
        QCOMPARE(canvas->toolCount(), 0);
    }

    void aRightClickWhileSelectingKeepsTheMode()
    {
        canvas->draw(ToolType::Line, {{50, 50}, {100, 50}});
        canvas->startSelecting();
        canvas->rightClick(QPointF(300, 300));
        QCOMPARE(canvas->manager()->dragMode(), PrimitiveManager::Select);
        QCOMPARE(canvas->toolCount(), 1);
    }

    // Other modes, other tools

    void anotherModeFinishesOrRemovesTheTool_data()
    {
        QTest::addColumn<int>("mode");
        QTest::addColumn<int>("type");
        QTest::newRow("drag") << 0 << -1;
        QTest::newRow("select") << 1 << -1;
        QTest::newRow("another tool") << 2 << 65637;
        QTest::newRow("the same tool") << 2 << 65639;
    }

    void anotherModeFinishesOrRemovesTheTool()
    {
        QFETCH(int, mode);
        QFETCH(int, type);
        const auto dragMode = static_cast<PrimitiveManager::DragMode>(mode);
        const auto* tool = canvas->draw(ToolType::Polyline, {{50, 50}, {100, 50}, {100, 100}});
        canvas->view.setPrimitiveDragMode(dragMode, type);
        QVERIFY(tool->isFinished());
        QVERIFY(tool->isSelected());

        canvas->draw(ToolType::Polyline, {{200, 50}, {250, 50}});
        QCOMPARE(canvas->toolCount(), 2);
        canvas->view.setPrimitiveDragMode(dragMode, type);
        QCOMPARE(canvas->toolCount(), 1);
        QCOMPARE(canvas->table()->rowCount(), 1);
    }

    void aFinishedToolSurvivesAnotherMode()
    {
        const auto* tool = canvas->draw(ToolType::Line, {{50, 50}, {100, 50}});
        canvas->startSelecting();
        QVERIFY(tool->isSelected());
        QCOMPARE(canvas->toolCount(), 1);
    }

    void aToolUnderConstructionIsTheFirstSelectedOne()
    {
        auto* finished = canvas->draw(ToolType::Line, {{50, 50}, {100, 50}});
        const auto* drawn = canvas->draw(ToolType::Polyline, {{200, 50}, {250, 50}, {250, 100}});
        finished->setSelected(true);
        QCOMPARE(canvas->manager()->currentTool(), drawn);
        canvas->click(QPointF(300, 100));
        QCOMPARE(drawn->controlPoints().size(), 5);
        canvas->rightClick();
        QVERIFY(drawn->isFinished());
        QVERIFY(!finished->isSelected());
    }

    // Lost selection

    void aToolThatIsDeselectedIsNeverLeftBehind_data()
    {
        QTest::addColumn<int>("presses");
        QTest::addColumn<bool>("kept");
        QTest::newRow("too few points") << 2 << false;
        QTest::newRow("enough points") << 3 << true;
    }

    void aToolThatIsDeselectedIsNeverLeftBehind()
    {
        QFETCH(int, presses);
        QFETCH(bool, kept);
        canvas->startDrawing(ToolType::Polygon);
        for (int i = 0; i < presses; ++i)
            canvas->click(spot(i));
        QPointer<PrimitiveGeneralTool> tool = canvas->newest();
        canvas->manager()->selectToolById(tool->id(), false);
        QCoreApplication::processEvents();
        QCOMPARE(!tool.isNull(), kept);
        QCOMPARE(canvas->table()->rowCount(), kept ? 1 : 0);
        QVERIFY(!kept || tool->isFinished());
        canvas->move(QPointF(400, 400));
        canvas->click(QPointF(400, 400));
        QCOMPARE(canvas->toolCount(), kept ? 2 : 1);
    }

    void clearingTheSelectionEndsTheTool()
    {
        canvas->draw(ToolType::Line, {{100, 100}});
        canvas->scene()->clearSelection();
        QCoreApplication::processEvents();
        QCOMPARE(canvas->toolCount(), 0);
    }

    void aPressRightAfterTheDeselectionStartsAnew()
    {
        QPointer<PrimitiveGeneralTool> lost = canvas->draw(ToolType::Line, {{100, 100}});
        canvas->scene()->clearSelection();
        canvas->press(QPointF(200, 200));
        QVERIFY(!lost);
        QCOMPARE(canvas->toolCount(), 1);
        QCOMPARE(canvas->newest()->pos(), QPointF(200, 200));
        QVERIFY(!canvas->newest()->isFinished());
    }

    void addingAToolEndsTheOneThatWasDeselected()
    {
        canvas->draw(ToolType::Line, {QPointF(100, 100)})->setSelected(false);
        QGraphicsItem* next =
            PrimitiveManager::createTool(ToolType::Polyline, canvas->manager(), canvas->scene());
        canvas->manager()->addTool(next);
        QCOMPARE(canvas->toolCount(), 1);
        QCOMPARE(canvas->newest(), next);
        QCOMPARE(canvas->table()->rowCount(), 1);
    }

    void selectingAnotherRowOfTheTableEndsTheTool()
    {
        auto* line = canvas->draw(ToolType::Line, {{50, 300}, {100, 300}});
        canvas->draw(ToolType::Line, {{100, 100}});
        canvas->scene()->clearSelection();
        canvas->manager()->selectToolById(0, true);
        QCoreApplication::processEvents();
        QCOMPARE(canvas->toolCount(), 1);
        QCOMPARE(canvas->newest(), line);
        QVERIFY(line->isSelected());
    }

    void aToolThatIsSelectedAgainAtOnceGoesOn()
    {
        auto* tool = canvas->draw(ToolType::Line, {{100, 100}});
        tool->setSelected(false);
        tool->setSelected(true);
        QCoreApplication::processEvents();
        QCOMPARE(canvas->toolCount(), 1);
        canvas->click(QPointF(200, 100));
        QVERIFY(tool->isFinished());
    }

    void removingTheToolUnderConstructionEndsTheDrawing()
    {
        auto* tool = canvas->draw(ToolType::Polyline, {{100, 100}, {150, 100}});
        canvas->manager()->removeTool(tool);
        QVERIFY(!canvas->manager()->currentTool());
        canvas->move(QPointF(200, 200));
        canvas->rightClick();
        QCOMPARE(canvas->manager()->dragMode(), PrimitiveManager::Select);
    }

    // Other buttons and clicks

    void aDoubleClickHasNoMeaningOfItsOwn()
    {
        canvas->startDrawing(ToolType::Polyline);
        canvas->click(QPointF(100, 100));
        canvas->click(QPointF(200, 100));
        canvas->doubleClick(QPointF(200, 200));
        const auto* tool = canvas->newest();
        QCOMPARE(canvas->toolCount(), 1);
        QVERIFY(!tool->isFinished());
        QCOMPARE(tool->controlPoints().size(), 4);
        QVERIFY(tool->isSelected());
    }

    void theMiddleButtonDrawsNothing()
    {
        canvas->startDrawing(ToolType::Line);
        canvas->click(QPointF(100, 100), Qt::MiddleButton);
        QCOMPARE(canvas->toolCount(), 0);
    }

    void aNumberWithoutAToolDrawsNothing()
    {
        canvas->startDrawing(ToolType::LineDistance);
        canvas->click(QPointF(100, 100));
        canvas->click(QPointF(200, 100));
        QCOMPARE(canvas->toolCount(), 0);
        QCOMPARE(canvas->manager()->dragMode(), PrimitiveManager::Draw);
    }

    void drawingOverAToolStartsANewOne()
    {
        auto* line = canvas->draw(ToolType::Line, {{100, 100}, {200, 100}});
        canvas->click(QPointF(150, 100));
        QCOMPARE(canvas->toolCount(), 2);
        QVERIFY(!line->isSelected());
        QCOMPARE(canvas->newest()->pos(), QPointF(150, 100));
    }

    void toolsAreDrawnWhereTheMouseIsAtEveryZoom_data()
    {
        QTest::addColumn<double>("scale");
        QTest::newRow("25 %") << 0.25;
        QTest::newRow("100 %") << 1.0;
        QTest::newRow("400 %") << 4.0;
    }

    void toolsAreDrawnWhereTheMouseIsAtEveryZoom()
    {
        QFETCH(double, scale);
        canvas->view.zoomByScale(scale);
        const auto* tool = canvas->draw(ToolType::Line, {{300, 200}, {348, 236}});
        QVERIFY(tool->isFinished());
        QCOMPARE(CanvasFixture::pointOf(tool, 0), QPointF(300, 200));
        QCOMPARE(canvas->cell(0, "length").toDouble(), 60.0);
    }

private:
    /// Places that form no straight line.
    static QPointF spot(int index)
    {
        static const QVector<QPointF> spots{{100, 100}, {200, 110}, {220, 200}, {110, 210}};
        return spots[index];
    }

    std::unique_ptr<CanvasFixture> canvas;
};

QTEST_MAIN(tst_ToolConstruction)
#include "tst_ToolConstruction.moc"
