#include "LineCanvas.h"

#include "app/ModalDialog.h"
#include "measure/PrimitiveActionManager.h"
#include "measure/ToolTypes.h"

#include <QAction>
#include <QSettings>

/// What is left when tools are removed, and when the user is asked first.
class tst_PrimitiveManagerRemoving final : public QObject, protected LineCanvas
{
    Q_OBJECT

private slots:
    void initTestCase() { QCoreApplication::setApplicationName(QStringLiteral("Orvo")); }

    void init() { canvas = std::make_unique<CanvasFixture>(); }

    void cleanup()
    {
        canvas.reset();
        QSettings().clear();
    }

    void idsRowsAndLabelsStayDenseAfterARemoval()
    {
        drawnLine(50, 100);
        PrimitiveDimensionTool* second = drawnLine(80, 110);
        PrimitiveDimensionTool* third = drawnLine(110, 120);
        canvas->manager()->removeTool(second);
        QCOMPARE(ids(), (QVector<int>{0, 1}));
        QCOMPARE(canvas->table()->rowCount(), 2);
        QCOMPARE(canvas->cell(0, "length").toDouble(), 100.0);
        QCOMPARE(canvas->cell(1, "length").toDouble(), 120.0);
        QCOMPARE(canvas->cell(1, "id").toDouble(), 2.0);
        QCOMPARE(third->labelHtml(), QStringLiteral("2: <br>L=120 px"));
        QCOMPARE(third->dimensionLabel()->toPlainText().section(QLatin1Char('\n'), 0, 0),
                 QStringLiteral("2: "));
    }

    void removingAnArrowChangesNoRow()
    {
        drawnLine(50, 100);
        canvas->draw(ToolType::Arrow, {{50, 100}, {150, 100}});
        canvas->manager()->removeTool(canvas->newest());
        QCOMPARE(canvas->table()->rowCount(), 1);
        QCOMPARE(ids(), QVector<int>{0});
    }

    void removingScatteredToolsKeepsTheOthersInStep()
    {
        QVector<PrimitiveDimensionTool*> lines;
        for (int i = 0; i < 10; ++i)
            lines.append(drawnLine(20 + 40 * i, 100 + i));
        canvas->scene()->clearSelection();
        for (int i : {0, 1, 4, 6, 7, 9})
            lines[i]->setSelected(true);
        DialogAnswer<QMessageBox> yes([](auto* box) { clickButton(box, QMessageBox::Yes); });
        canvas->manager()->deleteSelectedTools();
        QCOMPARE(ids(), (QVector<int>{0, 1, 2, 3}));
        QCOMPARE(canvas->table()->rowCount(), 4);
        const QVector<double> kept{102, 103, 105, 108};
        for (int row = 0; row < kept.size(); ++row) {
            QCOMPARE(canvas->cell(row, "length").toDouble(), kept[row]);
            QCOMPARE(canvas->cell(row, "id").toDouble(), row + 1.0);
        }
    }

    void deletingAllAsksFirst()
    {
        drawnLine(50);
        canvas->draw(ToolType::Arrow, {{50, 100}, {150, 100}});
        bool described = false;
        DialogAnswer<QMessageBox> no([&](QMessageBox* box) {
            described = box->text() == QLatin1String("Are you sure to remove all items?") &&
                        box->windowTitle() == QLatin1String("Orvo") &&
                        box->standardButtons() == (QMessageBox::Yes | QMessageBox::No) &&
                        box->defaultButton() == box->button(QMessageBox::Yes) &&
                        box->parentWidget() == &canvas->view;
            clickButton(box, QMessageBox::No);
        });
        canvas->manager()->deleteAllTools(false);
        QVERIFY(no.wasAsked());
        QVERIFY(described);
        QCOMPARE(canvas->toolCount(), 2);

        DialogAnswer<QMessageBox> yes([](auto* box) { clickButton(box, QMessageBox::Yes); });
        canvas->manager()->deleteAllTools(false);
        QVERIFY(yes.wasAsked());
        QCOMPARE(canvas->toolCount(), 0);
        QCOMPARE(canvas->table()->rowCount(), 0);
    }

    void deletingAllByForceAsksNothing()
    {
        drawnLine(50);
        canvas->manager()->deleteAllTools(true);
        QCOMPARE(canvas->toolCount(), 0);
    }

    void deletingTheSelectedToolsAsksFirst()
    {
        PrimitiveDimensionTool* kept = drawnLine(50);
        drawnLine(100);
        QString text;
        DialogAnswer<QMessageBox> no([&](QMessageBox* box) {
            text = box->text();
            clickButton(box, QMessageBox::No);
        });
        canvas->manager()->deleteSelectedTools();
        QCOMPARE(text, QStringLiteral("Are you sure to remove all selected items?"));
        QCOMPARE(canvas->toolCount(), 2);

        DialogAnswer<QMessageBox> yes([](auto* box) { clickButton(box, QMessageBox::Yes); });
        canvas->manager()->deleteSelectedTools();
        QCOMPARE(canvas->toolCount(), 1);
        QCOMPARE(canvas->newest(), kept);
    }

    void withNothingToDeleteThereIsNoQuestion()
    {
        DialogAnswer<QMessageBox> answer([](auto* box) { clickButton(box, QMessageBox::Yes); });
        canvas->manager()->setScalebarVisible(true);
        canvas->manager()->deleteAllTools(false);
        canvas->manager()->deleteSelectedTools();
        PrimitiveDimensionTool* line = drawnLine(50);
        canvas->scene()->clearSelection();
        line->dimensionLabel()->setSelected(true);
        canvas->manager()->deleteSelectedTools();
        QVERIFY(!answer.wasAsked());
        QCOMPARE(canvas->toolCount(), 1);
    }

    void deletingAllLeavesNothingToBeCurrent()
    {
        canvas->draw(ToolType::Polyline, {{50, 50}, {100, 50}});
        canvas->manager()->deleteAllTools(true);
        QVERIFY(!canvas->manager()->currentTool());
        canvas->move(QPointF(200, 200));
        canvas->click(QPointF(200, 200));
        QCOMPARE(canvas->toolCount(), 1);
    }

    void whileCalibratingNothingCanBeDeleted()
    {
        drawnLine(50);
        DialogAnswer<QMessageBox> answer([](auto* box) { clickButton(box, QMessageBox::Yes); });
        canvas->manager()->setCalibrationMode(true);
        PrimitiveActionManager::instance()->setGraphicsView(&canvas->view);
        canvas->newest()->setSelected(true);
        const int before = canvas->toolCount();
        QVERIFY(before >= 1);
        PrimitiveActionManager::instance()->deleteAction()->trigger();
        PrimitiveActionManager::instance()->deleteAllAction()->trigger();
        canvas->manager()->deleteAllTools(true);
        QVERIFY(!answer.wasAsked());
        QCOMPARE(canvas->toolCount(), before);
    }

    void afterCalibratingEveryToolIsGoneWithoutAQuestion()
    {
        DialogAnswer<QMessageBox> answer([](auto* box) { clickButton(box, QMessageBox::Yes); });
        drawnLine(50);
        canvas->manager()->setCalibrationMode(true);
        canvas->manager()->setCalibrationMode(false);
        QVERIFY(!answer.wasAsked());
        QCOMPARE(canvas->toolCount(), 0);
        QCOMPARE(canvas->table()->rowCount(), 0);
        QVERIFY(!canvas->manager()->isCalibrating());
    }
};

QTEST_MAIN(tst_PrimitiveManagerRemoving)
#include "tst_PrimitiveManagerRemoving.moc"
