#include "app/ModalDialog.h"
#include "measure/PrimitiveActionManager.h"
#include "support/CanvasFixture.h"

#include <QAction>
#include <QActionGroup>

namespace {

struct Row
{
    int type;
    const char* text;
    const char* statusTip;
};

/// The tools in the order in which they are offered.
const Row catalogue[] = {
    {65738, "Counter", "Counter."},
    {65637, "Line", "Draw line."},
    {65640, "Rectange", "Rectange"},
    {65639, "Polyline", "Polyline"},
    {65641, "Polygon", "Polygon"},
    {65642, "Line Distance", "Line Distance"},
    {65643, "Parallel", "Parallel"},
    {65644, "Perpendicular", "Perpendicular"},
    {65645, "Multiple Perpendicular", "Multiple Perpendicular"},
    {65646, "Crosshair", "Crosshair"},
    {65647, "Angle", "Angle"},
    {65648, "Angle by 4 Points", "Determine a angle by 4 points"},
    {65649, "Arc", "Arc"},
    {65650, "Circle", "Draw circle."},
    {65651, "Two Points", "Draw circle by two points."},
    {65652, "Three Points", "Draw circle by three points."},
    {65653, "Annulus", "Draw annulus by two radius and one center."},
    {65654, "Two Circles", "Draw two circles."},
    {65655, "Two Points", "Draw two circles by two points."},
    {65656, "Three Points", "Draw two circles by three points."},
    {65537, "Arrow", "Arrow"},
    {65538, "Red Arrow", "Red Arrow"},
    {65539, "Blue Arrow", "Blue Arrow"},
    {65540, "Green Arrow", "Green Arrow"},
    {65541, "White Arrow", "White Arrow"},
    {65542, "Text", "Text Annotation"},
};

} // namespace

class tst_PrimitiveActionManager : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase()
    {
        // Nothing is connected until there is a view.
        QVERIFY(!action(0, -1)->isChecked());
        action(2, 65637)->setChecked(true);
        action(0, -1)->setChecked(true);
    }

    void init()
    {
        canvas = std::make_unique<CanvasFixture>();
        actions()->setGraphicsView(&canvas->view);
    }

    void cleanup() { canvas.reset(); }

    void thereIsOneInstanceThatLivesAsLongAsTheApplication()
    {
        QCOMPARE(actions(), PrimitiveActionManager::instance());
        QCOMPARE(actions()->parent(), qApp);
        QCOMPARE(action(0, -1)->parent(), actions());
    }

    void theModesComeFirst()
    {
        describes(action(0, -1), "Drag", "Drag the canvas.", QSize(0, -1));
        describes(action(1, -1), "Select", "Select and adjust items.", QSize(1, -1));
        QCOMPARE(group()->actions().value(0), action(0, -1));
        QCOMPARE(group()->actions().value(1), action(1, -1));
        QCOMPARE(action(0, 65637), action(0, -1));
        QCOMPARE(action(1, 65637), action(1, -1));
    }

    void theToolsFollowInTheirOrder()
    {
        const auto all = group()->actions();
        QCOMPARE(all.size(), 28);
        QVERIFY(group()->isExclusive());
        int place = 2;
        for (const Row& row : catalogue) {
            QCOMPARE(all[place], action(2, row.type));
            describes(all[place++], row.text, row.statusTip, QSize(2, row.type));
        }
    }

    void theOtherActionsStandOutsideTheGroup()
    {
        const QAction* scalebar = actions()->showScalebarAction();
        QCOMPARE(scalebar->text(), QStringLiteral("Show Scalebar"));
        QCOMPARE(scalebar->statusTip(), QStringLiteral("Add scale bar to image."));
        QVERIFY(scalebar->isCheckable());
        QVERIFY(!scalebar->actionGroup());

        const QAction* remove = actions()->deleteAction();
        QCOMPARE(remove->text(), QStringLiteral("&Delete"));
        QCOMPARE(remove->statusTip(), QStringLiteral("Delete selected tools."));
        QCOMPARE(remove->shortcuts(), QKeySequence::keyBindings(QKeySequence::Delete));
        QVERIFY(!remove->isCheckable());

        const QAction* removeAll = actions()->deleteAllAction();
        QCOMPARE(removeAll->text(), QStringLiteral("Delete All"));
        QCOMPARE(removeAll->statusTip(), QStringLiteral("Delete all tools."));
        QVERIFY(removeAll->shortcuts().isEmpty());
    }

    void aNumberWithoutAnActionHasNone_data()
    {
        QTest::addColumn<int>("type");
        for (int type : {65638, 65737, 65837, 65838, 0, -1})
            QTest::addRow("%d", type) << type;
    }

    void aNumberWithoutAnActionHasNone()
    {
        QFETCH(int, type);
        QVERIFY(!action(2, type));
    }

    void checkingAnActionChangesTheMode()
    {
        QVERIFY(action(0, -1)->isChecked());
        action(2, 65639)->setChecked(true);
        QCOMPARE(canvas->manager()->dragMode(), PrimitiveManager::Draw);
        QCOMPARE(canvas->manager()->toolType(), 65639);
        QVERIFY(!action(0, -1)->isChecked());
        action(1, -1)->setChecked(true);
        QCOMPARE(canvas->manager()->dragMode(), PrimitiveManager::Select);
        QCOMPARE(canvas->manager()->toolType(), -1);
    }

    void eachActionStandsForItsTool()
    {
        for (const Row& row : catalogue) {
            action(2, row.type)->setChecked(true);
            QCOMPARE(canvas->manager()->dragMode(), PrimitiveManager::Draw);
            QCOMPARE(canvas->manager()->toolType(), row.type);
            QCOMPARE(group()->checkedAction(), action(2, row.type));
        }
    }

    void anUncheckedActionChangesNoMode()
    {
        action(2, 65637)->setChecked(true);
        QVector<int> modes;
        connect(action(2, 65637), &QAction::toggled, canvas->manager(), [&](bool checked) {
            if (!checked)
                modes.append(canvas->manager()->dragMode());
        });
        action(1, -1)->setChecked(true);
        QCOMPARE(modes, QVector<int>{PrimitiveManager::Draw});
        QCOMPARE(canvas->manager()->dragMode(), PrimitiveManager::Select);
    }

    void triggeringTheCheckedActionChangesNothing()
    {
        action(2, 65639)->setChecked(true);
        canvas->click(QPointF(100, 100));
        action(2, 65639)->trigger();
        QCOMPARE(canvas->toolCount(), 1);
        QVERIFY(!canvas->newest()->isFinished());
        QVERIFY(action(2, 65639)->isChecked());
    }

    void theChecksFollowTheViewsMode()
    {
        canvas->startDrawing(65647);
        QCOMPARE(group()->checkedAction(), action(2, 65647));
        canvas->startSelecting();
        QCOMPARE(group()->checkedAction(), action(1, -1));
        canvas->view.setPrimitiveDragMode(PrimitiveManager::Drag, -1);
        QCOMPARE(group()->checkedAction(), action(0, -1));
    }

    void aModeWithoutAnActionLeavesTheChecksAndSetsTheScaleBars()
    {
        action(2, 65637)->setChecked(true);
        actions()->showScalebarAction()->blockSignals(true);
        actions()->showScalebarAction()->setChecked(!canvas->manager()->isScalebarVisible());
        actions()->showScalebarAction()->blockSignals(false);
        canvas->startDrawing(65638);
        QCOMPARE(group()->checkedAction(), action(2, 65637));
        QCOMPARE(canvas->manager()->toolType(), 65638);
        QCOMPARE(actions()->showScalebarAction()->isChecked(),
                 canvas->manager()->isScalebarVisible());
    }

    void toolsThatNothingShowsDrawNothing_data()
    {
        QTest::addColumn<int>("type");
        QTest::newRow("line distance") << 65642;
        QTest::newRow("crosshair") << 65646;
    }

    void toolsThatNothingShowsDrawNothing()
    {
        QFETCH(int, type);
        action(2, type)->setChecked(true);
        QCOMPARE(canvas->manager()->dragMode(), PrimitiveManager::Draw);
        canvas->click(QPointF(100, 100));
        QCOMPARE(canvas->toolCount(), 0);
    }

    void theDeleteActionsDelete()
    {
        canvas->draw(65637, {{100, 100}, {200, 100}});
        canvas->draw(65637, {{100, 200}, {200, 200}});
        DialogAnswer<QMessageBox> yes([](auto* box) { clickButton(box, QMessageBox::Yes); });
        actions()->deleteAction()->trigger();
        QVERIFY(yes.wasAsked());
        QCOMPARE(canvas->toolCount(), 1);
        DialogAnswer<QMessageBox> again([](auto* box) { clickButton(box, QMessageBox::Yes); });
        actions()->deleteAllAction()->trigger();
        QVERIFY(again.wasAsked());
        QCOMPARE(canvas->toolCount(), 0);
    }

    void withoutAViewTheToolsAreDisabledButStayBound()
    {
        actions()->setGraphicsView(nullptr);
        QVERIFY(!group()->isEnabled());
        QVERIFY(!action(2, 65637)->isEnabled());
        QVERIFY(!actions()->showScalebarAction()->isEnabled());
        QVERIFY(actions()->deleteAction()->isEnabled());
        QVERIFY(actions()->deleteAllAction()->isEnabled());
        action(2, 65637)->setChecked(true);
        QCOMPARE(canvas->manager()->toolType(), 65637);
        actions()->setGraphicsView(&canvas->view);
        QVERIFY(action(2, 65637)->isEnabled());
    }

    void anotherViewTakesTheActionsOver()
    {
        CanvasFixture other;
        actions()->setGraphicsView(&other.view);
        action(2, 65641)->setChecked(true);
        QCOMPARE(other.manager()->toolType(), 65641);
        QCOMPARE(canvas->manager()->dragMode(), PrimitiveManager::Drag);
    }

    void bindingAgainDeliversEachChangeOnce()
    {
        actions()->setGraphicsView(&canvas->view);
        actions()->setGraphicsView(&canvas->view);
        canvas->draw(65637, {{100, 100}, {200, 100}});
        DialogAnswer<QMessageBox> no([](auto* box) { clickButton(box, QMessageBox::No); });
        DialogAnswer<QMessageBox> second([](auto* box) { clickButton(box, QMessageBox::No); });
        actions()->deleteAllAction()->trigger();
        QVERIFY(no.wasAsked() || second.wasAsked());
        QVERIFY(!no.wasAsked() || !second.wasAsked());
    }

    void bindingAViewBringsItsModeIntoTheChecks()
    {
        CanvasFixture other;
        other.view.manager()->setDragMode(PrimitiveManager::Draw, 65648);
        actions()->setGraphicsView(&other.view);
        QCOMPARE(group()->checkedAction(), action(2, 65648));
        actions()->syncCheckedAction(nullptr);
        QCOMPARE(group()->checkedAction(), action(2, 65648));
    }

private:
    static PrimitiveActionManager* actions() { return PrimitiveActionManager::instance(); }
    static QAction* action(int mode, int type) { return actions()->actionFor(mode, type); }
    static QActionGroup* group() { return action(0, -1)->actionGroup(); }

    static void describes(const QAction* action, const char* text, const char* statusTip,
                          const QSize& data)
    {
        QCOMPARE(action->text(), QLatin1String(text));
        QCOMPARE(action->statusTip(), QLatin1String(statusTip));
        QCOMPARE(action->data().toSize(), data);
        QVERIFY(action->isCheckable());
    }

    std::unique_ptr<CanvasFixture> canvas;
};

QTEST_MAIN(tst_PrimitiveActionManager)
#include "tst_PrimitiveActionManager.moc"
