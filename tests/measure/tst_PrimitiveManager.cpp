#include "LineCanvas.h"

#include "calibration/PrimitiveCalibrationModel.h"
#include "measure/ToolAttributeEditor.h"
#include "measure/ToolTypes.h"
#include "preferences/ToolAttributes.h"

#include <QGraphicsSceneMouseEvent>
#include <QSettings>
#include <QSignalSpy>

namespace {

class RecordingEditor final : public ToolAttributeEditor
{
public:
    void setByObject(QGraphicsObject* object) override { targets.append(object); }

    QVector<QGraphicsObject*> targets;
};

const PrimitiveCalibration micrometres(QStringLiteral("10x"), 1e-6, QString(),
                                       QStringLiteral("1_µm"));

class PressAt final : public QGraphicsSceneMouseEvent
{
public:
    PressAt(const QPointF& scenePos, Qt::MouseButton button)
        : QGraphicsSceneMouseEvent(QEvent::GraphicsSceneMousePress)
    {
        setScenePos(scenePos);
        setButton(button);
    }
};

} // namespace

/// What the manager makes, adds and selects, its scale and calibration, and its answers to the
/// scene.
class tst_PrimitiveManager final : public QObject, protected LineCanvas
{
    Q_OBJECT

private slots:
    void initTestCase()
    {
        QCoreApplication::setApplicationName(QStringLiteral("Orvo"));
        qRegisterMetaType<QGraphicsObject*>();
    }

    void init() { canvas = std::make_unique<CanvasFixture>(); }

    void cleanup()
    {
        canvas.reset();
        QSettings().clear();
    }

    // Start

    void startsWithTheMouseDraggingAndPixelsAsUnit()
    {
        const GraphicsView fresh;
        const PrimitiveManager* manager = fresh.manager();
        QCOMPARE(manager->dragMode(), PrimitiveManager::Drag);
        QVERIFY(!manager->currentTool());
        QCOMPARE(manager->dimensionModel()->rowCount(), 0);
        QCOMPARE(manager->fixedScale(), -1.0);
        QVERIFY(!manager->isCalibrating());
        QVERIFY(manager->isCalibrationValid());
        QCOMPARE(manager->calibrationName(), PrimitiveCalibrationModel::pixelRowName());
        QCOMPARE(manager->displayUnitName(), QStringLiteral("Pixel (px)"));
        QCOMPARE(manager->lengthToUnit(12.5), 12.5);
        QCOMPARE(manager->areaToUnit(12.5), 12.5);
    }

    // Making tools

    void aNumberMakesTheToolOfItsClass_data()
    {
        QTest::addColumn<int>("number");
        QTest::addColumn<int>("type");
        QTest::addColumn<QByteArray>("className");
        QTest::newRow("line") << 65637 << 65637 << QByteArray("PrimitiveToolLine");
        QTest::newRow("polyline") << 65639 << 65639 << QByteArray("PrimitiveToolPolyline");
        QTest::newRow("polygon") << 65641 << 65641 << QByteArray("PrimitiveToolPolygon");
        QTest::newRow("angle") << 65647 << 65647 << QByteArray("PrimitiveToolAngle");
        QTest::newRow("angle4") << 65648 << 65648 << QByteArray("PrimitiveToolAngle4");
        for (int number = 65537; number <= 65541; ++number)
            QTest::addRow("arrow %d", number)
                << number << 65537 << QByteArray("PrimitiveToolArrow");
    }

    void aNumberMakesTheToolOfItsClass()
    {
        QFETCH(int, number);
        const auto tool = made(number, QPointF(30, 40));
        QVERIFY(tool);
        QTEST(tool->type(), "type");
        QTEST(QByteArray(tool->metaObject()->className()), "className");
        QCOMPARE(tool->pos(), QPointF(30, 40));
        QVERIFY(!tool->isFinished());
        QVERIFY(!tool->scene());
    }

    void otherNumbersMakeNothing_data()
    {
        QTest::addColumn<int>("number");
        for (int number :
             {65642, 65646, 65737, 65536, 65543, 65636, 65657, 65735, 65739, 65837, 0, -1})
            QTest::addRow("%d", number) << number;
    }

    void otherNumbersMakeNothing()
    {
        QFETCH(int, number);
        QVERIFY(!PrimitiveManager::createTool(number, canvas->manager(), canvas->scene()));
    }

    void aToolIsMadeAtTheOriginWithoutAPosition()
    {
        std::unique_ptr<QGraphicsItem> item(
            PrimitiveManager::createTool(65637, canvas->manager(), canvas->scene()));
        QCOMPARE(item->pos(), QPointF(0, 0));
    }

    void aNewToolWearsTheAttributesStoredForItsNumber()
    {
        AttributeHash attributes = toolAttributes(ToolType::Line);
        attributes[AttributeKeys::lineWidth()] = 7.0;
        attributes[AttributeKeys::lineColor()] = QColor(1, 2, 3);
        saveToolAttributes(ToolType::Line, attributes);
        const auto line = made(ToolType::Line);
        QCOMPARE(line->getLineWidth(), 7);
        QCOMPARE(line->getLineColor(), QColor(1, 2, 3));
    }

    void theColoursOfAnArrowComeFromItsNumber()
    {
        QCOMPARE(made(65537)->getFillColor(), QColor(91, 155, 213));
        QCOMPARE(made(65538)->getFillColor(), QColor(253, 196, 182));
        QCOMPARE(made(65539)->getFillColor(), QColor(31, 110, 212));
        QCOMPARE(made(65540)->getLineColor(), QColor(65, 146, 75));
        QCOMPARE(made(65541)->getLineColor(), QColor(162, 169, 175));
    }

    // Adding

    void addingNothingGivesNothing() { QVERIFY(!canvas->manager()->addTool(nullptr)); }

    void anAddedToolIsInTheSceneSelectedAndCurrent()
    {
        QGraphicsItem* first = add(ToolType::Line);
        QGraphicsItem* second = add(ToolType::Arrow);
        QCOMPARE(first->scene(), canvas->scene());
        QVERIFY(first->isSelected());
        QVERIFY(second->isSelected());
        QCOMPARE(canvas->manager()->currentTool(), second);
    }

    void anAddedDimensionToolGetsTheNextRow()
    {
        add(ToolType::Line);
        add(ToolType::Arrow);
        add(ToolType::Polygon);
        QCOMPARE(canvas->table()->rowCount(), 2);
        QCOMPARE(ids(), (QVector<int>{0, 1}));
        QCOMPARE(canvas->cell(0, "id").toDouble(), 1.0);
        QCOMPARE(canvas->cell(1, "id").toDouble(), 2.0);
    }

    void theListsComeInStackingOrder()
    {
        QGraphicsItem* line = add(ToolType::Line);
        QGraphicsItem* arrow = add(ToolType::Arrow);
        QGraphicsItem* angle = add(ToolType::Angle);
        const PrimitiveManager* manager = canvas->manager();
        const auto general = manager->generalTools(Qt::AscendingOrder);
        QCOMPARE(QVector<QGraphicsItem*>(general.begin(), general.end()),
                 (QVector<QGraphicsItem*>{line, arrow, angle}));
        QCOMPARE(manager->generalTools(Qt::DescendingOrder).first(), angle);
        QCOMPARE(manager->dimensionTools(Qt::DescendingOrder).first(), angle);
        QCOMPARE(manager->dimensionTools(Qt::DescendingOrder).last(), line);
        QVERIFY(manager->textTools(Qt::AscendingOrder).isEmpty());
    }

    // Selection

    void aToolIsSelectedByItsRow()
    {
        QGraphicsItem* first = add(ToolType::Line);
        QGraphicsItem* second = add(ToolType::Line);
        canvas->scene()->clearSelection();
        canvas->manager()->selectToolById(1, true);
        QVERIFY(!first->isSelected());
        QVERIFY(second->isSelected());
        canvas->manager()->selectToolById(1, false);
        QVERIFY(!second->isSelected());
        canvas->manager()->selectToolById(2, true);
        QVERIFY(canvas->scene()->selectedItems().isEmpty());
    }

    void theEditorHearsOfTheOneSelectedTool()
    {
        RecordingEditor editor;
        QGraphicsItem* first = drawnLine(50);
        QGraphicsItem* second = drawnLine(100);
        canvas->scene()->clearSelection();
        canvas->manager()->setAttributesWidget(&editor);
        first->setSelected(true);
        QCOMPARE(editor.targets.last(), first->toGraphicsObject());
        second->setSelected(true);
        QVERIFY(!editor.targets.last());
        first->setSelected(false);
        QCOMPARE(editor.targets.last(), second->toGraphicsObject());
        second->setSelected(false);
        QVERIFY(!editor.targets.last());
        canvas->manager()->setAttributesWidget(nullptr);
    }

    void aSelectedLabelIsNoTargetForTheEditor()
    {
        RecordingEditor editor;
        PrimitiveDimensionTool* line = drawnLine(50);
        canvas->scene()->clearSelection();
        canvas->manager()->setAttributesWidget(&editor);
        line->dimensionLabel()->setSelected(true);
        line->setSelected(true);
        line->setSelected(false);
        QVERIFY(!editor.targets.last());
        canvas->manager()->setAttributesWidget(nullptr);
    }

    void theEditorLosesAToolThatIsRemoved()
    {
        RecordingEditor editor;
        canvas->manager()->setAttributesWidget(&editor);
        PrimitiveDimensionTool* line = drawnLine(50);
        QCOMPARE(editor.targets.last(), line);
        canvas->manager()->removeTool(line);
        QVERIFY(!editor.targets.last());
        canvas->manager()->setAttributesWidget(nullptr);
    }

    void selectionIsAnnouncedWithItsTool()
    {
        PrimitiveDimensionTool* line = drawnLine(50);
        QSignalSpy selected(canvas->manager(), &PrimitiveManager::toolSelected);
        line->setSelected(false);
        line->setSelected(true);
        QCOMPARE(selected.size(), 2);
        QCOMPARE(selected[0][0].value<QGraphicsObject*>(), line);
        QCOMPARE(selected[0][1].toBool(), false);
        QCOMPARE(selected[1][1].toBool(), true);
    }

    void leavingTheSceneIsAnnouncedAsNotSelected()
    {
        PrimitiveDimensionTool* line = drawnLine(50);
        canvas->scene()->clearSelection();
        QSignalSpy selected(canvas->manager(), &PrimitiveManager::toolSelected);
        canvas->manager()->removeTool(line);
        QCOMPARE(selected.size(), 1);
        QCOMPARE(selected[0][1].toBool(), false);
    }

    // Scale

    void thePenScaleIsTheInverseOfTheZoom()
    {
        const PrimitiveManager* manager = canvas->manager();
        QCOMPARE(manager->penScale(), 1.0);
        canvas->view.zoomByScale(4.0);
        QCOMPARE(manager->penScale(), 0.25);
        canvas->view.zoomByScale(0.25);
        QCOMPARE(manager->penScale(), 4.0);
        canvas->view.mirror(true);
        QCOMPARE(manager->penScale(), -4.0);
    }

    void aRenderHoldsTheScale()
    {
        QSignalSpy resized(&canvas->view, &GraphicsView::resized);
        canvas->view.zoomByScale(4.0);
        canvas->manager()->freezeScale(true);
        QCOMPARE(canvas->manager()->fixedScale(), 4.0);
        QCOMPARE(canvas->manager()->penScale(), 1.0);
        canvas->manager()->freezeScale(false);
        QCOMPARE(canvas->manager()->fixedScale(), -1.0);
        QCOMPARE(canvas->manager()->penScale(), 0.25);

        canvas->view.zoomByScale(0.5);
        resized.clear();
        canvas->manager()->freezeScale(true);
        QCOMPARE(canvas->manager()->penScale(), 2.0);
        canvas->manager()->freezeScale(false);
        QCOMPARE(resized.size(), 2);
    }

    // Calibration

    void aCalibrationChangesValuesAndLabelsButMovesNoLabel()
    {
        PrimitiveDimensionTool* line = drawnLine(50, 100);
        PrimitiveDimensionTool* other = drawnLine(100, 250);
        const QPointF place = line->dimensionLabel()->pos();
        QVERIFY(canvas->manager()->setCalibration(micrometres, QStringLiteral("2_mm")));
        QCOMPARE(line->labelHtml(), QStringLiteral("1: <br>L=0.1 mm"));
        QCOMPARE(line->dimensionLabel()->toPlainText(), QStringLiteral("1: \nL=0.1 mm"));
        QCOMPARE(other->labelHtml(), QStringLiteral("2: <br>L=0.25 mm"));
        QCOMPARE(canvas->cell(1, "length").toDouble(), 0.25);
        QCOMPARE(line->dimensionLabel()->pos(), place);
        QCOMPARE(canvas->manager()->displayUnitName(), QStringLiteral("Millimeter (mm)"));
        QCOMPARE(canvas->manager()->calibrationName(), QStringLiteral("10x"));
    }

    void areasScaleWithTheSquare()
    {
        QVERIFY(canvas->manager()->setCalibration(micrometres, QStringLiteral("2_mm")));
        QCOMPARE(canvas->manager()->areaToUnit(10000.0), 0.01);
        QCOMPARE(canvas->manager()->lengthToUnit(100.0), 0.1);
    }

    void aRecordThatIsNotValidOrAnEmptyUnitChangesNothing()
    {
        PrimitiveManager* manager = canvas->manager();
        QVERIFY(manager->setCalibration(micrometres, QStringLiteral("1_µm")));
        QVERIFY(!manager->setCalibration(micrometres, QString()));
        QVERIFY(!manager->setCalibration(PrimitiveCalibration(), QStringLiteral("2_mm")));
        QVERIFY(!manager->setCalibration(QStringLiteral("unknown"), QStringLiteral("2_mm")));
        manager->setCalibration(QStringLiteral("unknown"));
        QCOMPARE(manager->calibrationName(), QStringLiteral("10x"));
        QCOMPARE(manager->displayUnitKey(), QStringLiteral("1_µm"));
    }

    void aCalibrationIsTakenByItsName()
    {
        PrimitiveManager* manager = canvas->manager();
        PrimitiveCalibrationModel::instance().appendCalibration(
            PrimitiveCalibration(QStringLiteral("20x"), 5e-7, QString(), QStringLiteral("0_nm")));
        manager->setCalibration(QStringLiteral("20x"));
        QCOMPARE(manager->displayUnitKey(), QStringLiteral("0_nm"));
        QCOMPARE(manager->lengthToUnit(3.0), 1500.0);
        QVERIFY(manager->setCalibration(QStringLiteral("20x"), QStringLiteral("1_µm")));
        QCOMPARE(manager->lengthToUnit(3.0), 1.5);
    }

    // Table

    void aKeyThatTheTableLacksSpoilsNoCell()
    {
        PrimitiveDimensionTool* line = drawnLine(50, 100);
        canvas->manager()->writeDimensionRow(
            line, 0, {{QStringLiteral("ratio"), 77.0}, {QStringLiteral("radius"), 5.0}});
        QCOMPARE(canvas->cell(0, "id").toDouble(), 1.0);
        QCOMPARE(canvas->cell(0, "radius").toDouble(), 5.0);
        QCOMPARE(canvas->cell(0, "length").toDouble(), 100.0);
    }

    void onlyTheRulerFeedsTheCalibrationDialog()
    {
        QSignalSpy pixels(canvas->manager(), &PrimitiveManager::calibrationPixelChanged);
        drawnLine(50, 100);
        QCOMPARE(pixels.size(), 0);
    }

    // Answers to the scene

    void eventsAreConsumedOnlyWhereTheyDraw()
    {
        PrimitiveManager* manager = canvas->manager();
        PressAt inside(QPointF(10, 10), Qt::LeftButton);
        PressAt outside(QPointF(-1, 10), Qt::LeftButton);
        PressAt middle(QPointF(10, 10), Qt::MiddleButton);
        PressAt right(QPointF(10, 10), Qt::RightButton);
        canvas->startSelecting();
        QVERIFY(!manager->handleMousePress(&inside));
        QVERIFY(!manager->handleMousePress(&right));
        QVERIFY(!manager->handleMouseMove(&inside));

        canvas->startDrawing(ToolType::Polyline);
        QVERIFY(!manager->handleMouseMove(&inside));
        QVERIFY(!manager->handleMousePress(&outside));
        QVERIFY(!manager->handleMousePress(&middle));
        QVERIFY(manager->handleMousePress(&inside));
        QVERIFY(manager->handleMouseMove(&inside));
        QVERIFY(!manager->handleMouseMove(&outside));
        QVERIFY(!manager->handleMouseRelease(&inside));
        QVERIFY(!manager->handleMouseDoubleClick(&inside));
        QVERIFY(manager->handleMousePress(&right));
    }

    void aNumberThatMakesNothingDeclinesThePress()
    {
        canvas->startDrawing(ToolType::Crosshair);
        PressAt press(QPointF(10, 10), Qt::LeftButton);
        QVERIFY(!canvas->manager()->handleMousePress(&press));
        QCOMPARE(canvas->toolCount(), 0);
    }

    void aListenerThatEndsTheDrawingModeStopsThePress()
    {
        drawnLine(50);
        canvas->startDrawing(ToolType::Line);
        connect(canvas->manager(), &PrimitiveManager::toolSelected, this,
                [this] { canvas->startSelecting(); });
        PressAt press(QPointF(300, 300), Qt::LeftButton);
        QVERIFY(!canvas->manager()->handleMousePress(&press));
        QCOMPARE(canvas->toolCount(), 1);
    }

private:
    std::unique_ptr<PrimitiveGeneralTool> made(int number, const QPointF& at = QPointF())
    {
        return std::unique_ptr<PrimitiveGeneralTool>(static_cast<PrimitiveGeneralTool*>(
            PrimitiveManager::createTool(number, canvas->manager(), canvas->scene(), at)));
    }

    QGraphicsItem* add(int number)
    {
        return canvas->manager()->addTool(made(number, QPointF(20, 20)).release());
    }
};

QTEST_MAIN(tst_PrimitiveManager)
#include "tst_PrimitiveManager.moc"
