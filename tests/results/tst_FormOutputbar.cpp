#include "results/FormOutputbar.h"

#include "canvas/GraphicsScene.h"
#include "canvas/GraphicsView.h"
#include "measure/PrimitiveManager.h"
#include "results/PrimitiveDimensionModel.h"

#include <QGraphicsItem>
#include <QHeaderView>
#include <QTabWidget>
#include <QTableView>
#include <QtTest>

namespace {

constexpr int lineType = 65637;
constexpr int arrowType = 65537;

} // namespace

class tst_FormOutputbar : public QObject
{
    Q_OBJECT

private slots:
    void init()
    {
        view = std::make_unique<GraphicsView>();
        QImage image(800, 600, QImage::Format_RGB32);
        image.fill(Qt::gray);
        view->setImage(image);
        bar = std::make_unique<FormOutputbar>(nullptr);
        bar->setManager(view->manager());
        bar->resize(800, 300);
        bar->show();
        QVERIFY(QTest::qWaitForWindowActive(bar.get()));
    }

    void cleanup()
    {
        bar.reset();
        view.reset();
    }

    void theTableStandsOnAPageOfItsOwn()
    {
        const auto* tabs = bar->findChild<QTabWidget*>(QStringLiteral("tabWidget"));
        QCOMPARE(tabs->count(), 1);
        QCOMPARE(tabs->tabText(0), QStringLiteral("Measurement Table"));
        QCOMPARE(tabs->tabPosition(), QTabWidget::South);
        QCOMPARE(bar->sizeHint(), QSize(0, 150));
        QCOMPARE(bar->minimumSizeHint(), QSize(0, 100));
    }

    void theTableIsSetUpForRows()
    {
        QCOMPARE(table()->selectionBehavior(), QAbstractItemView::SelectRows);
        QCOMPARE(table()->selectionMode(), QAbstractItemView::ExtendedSelection);
        QVERIFY(table()->alternatingRowColors());
        QVERIFY(table()->isColumnHidden(0));
        QVERIFY(table()->horizontalHeader()->stretchLastSection());
        QCOMPARE(table()->verticalHeader()->defaultSectionSize(), 24);
        QCOMPARE(table()->verticalScrollMode(), QAbstractItemView::ScrollPerPixel);
    }

    void selectingAToolSelectsItsWholeRow()
    {
        QGraphicsItem* first = addTool(lineType);
        QGraphicsItem* second = addTool(lineType);
        view->imageScene()->clearSelection();
        first->setSelected(true);
        QCOMPARE(selectedRows(), QList<int>({0}));
        second->setSelected(true);
        QCOMPARE(selectedRows(), QList<int>({0, 1}));
        first->setSelected(false);
        QCOMPARE(selectedRows(), QList<int>({1}));
        QVERIFY(table()->hasFocus());
    }

    void selectingARowSelectsItsTool()
    {
        QGraphicsItem* first = addTool(lineType);
        QGraphicsItem* second = addTool(lineType);
        view->imageScene()->clearSelection();
        clickRow(0);
        QVERIFY(first->isSelected());
        QVERIFY(!second->isSelected());
        clickRow(1);
        QVERIFY(!first->isSelected());
        QVERIFY(second->isSelected());
        QCOMPARE(selectedRows(), QList<int>({1}));
    }

    void moreRowsSelectMoreTools()
    {
        for (int i = 0; i < 4; ++i)
            addTool(lineType);
        view->imageScene()->clearSelection();
        clickRow(0);
        clickRow(2, Qt::ShiftModifier);
        QCOMPARE(view->imageScene()->selectedItems().size(), 3);
        clickRow(1, Qt::ControlModifier);
        QCOMPARE(view->imageScene()->selectedItems().size(), 2);
        QCOMPARE(selectedRows(), QList<int>({0, 2}));
    }

    void aToolWithoutValuesLeavesTheTableAlone()
    {
        addTool(lineType);
        view->imageScene()->clearSelection();
        clickRow(0);
        QGraphicsItem* arrow = PrimitiveManager::createTool(arrowType, view->manager(),
                                                            view->imageScene(), QPointF(50, 50));
        view->imageScene()->addItem(arrow);
        arrow->setSelected(true);
        QCOMPARE(selectedRows(), QList<int>({0}));
        arrow->setSelected(false);
        QCOMPARE(selectedRows(), QList<int>({0}));
    }

    void withoutManagerThereIsNoTable()
    {
        bar->setManager(nullptr);
        QVERIFY(!table()->model());
        QGraphicsItem* tool = addTool(lineType);
        tool->setSelected(false);
        bar->setManager(view->manager());
        QCOMPARE(table()->model()->rowCount(), 1);
        clickRow(0);
        QVERIFY(tool->isSelected());
    }

private:
    QGraphicsItem* addTool(int type)
    {
        offset += 30;
        return view->manager()->addTool(PrimitiveManager::createTool(
            type, view->manager(), view->imageScene(), QPointF(offset, offset)));
    }
    QTableView* table() const { return bar->findChild<QTableView*>(QStringLiteral("tableView")); }
    void clickRow(int row, Qt::KeyboardModifiers modifiers = Qt::NoModifier)
    {
        const QRect cell = table()->visualRect(table()->model()->index(row, 1));
        QTest::mouseClick(table()->viewport(), Qt::LeftButton, modifiers, cell.center());
    }
    QList<int> selectedRows() const
    {
        QList<int> rows;
        for (const QModelIndex& index : table()->selectionModel()->selectedRows())
            rows << index.row();
        std::sort(rows.begin(), rows.end());
        return rows;
    }

    std::unique_ptr<GraphicsView> view;
    std::unique_ptr<FormOutputbar> bar;
    int offset = 0;
};

QTEST_MAIN(tst_FormOutputbar)
#include "tst_FormOutputbar.moc"
