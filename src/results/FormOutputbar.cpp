#include "results/FormOutputbar.h"

#include "measure/PrimitiveDimensionTool.h"
#include "measure/PrimitiveManager.h"
#include "measure/ToolTypes.h"
#include "results/PrimitiveDimensionModel.h"
#include "ui_FormOutputbar.h"

#include <QDebug>
#include <QGraphicsObject>
#include <QHeaderView>
#include <QItemSelection>
#include <QStyledItemDelegate>

namespace {

constexpr int idColumn = 0;
constexpr int anyColumn = 2;
constexpr int rowHeight = 24;

/// The standard texts, right-aligned so that the places of numbers stand under each other.
class NumberDelegate final : public QStyledItemDelegate
{
public:
    using QStyledItemDelegate::QStyledItemDelegate;

protected:
    void initStyleOption(QStyleOptionViewItem* option, const QModelIndex& index) const override
    {
        QStyledItemDelegate::initStyleOption(option, index);
        option->displayAlignment = Qt::AlignRight | Qt::AlignVCenter;
    }
};

} // namespace

FormOutputbar::FormOutputbar(QWidget* parent)
    : QWidget(parent),
      ui(std::make_unique<Ui::FormOutputbar>())
{
    ui->setupUi(this);
    layout()->setContentsMargins(0, 0, 0, 0);
    setUpTable();
}

FormOutputbar::~FormOutputbar() = default;

void FormOutputbar::setManager(PrimitiveManager* newManager)
{
    if (manager)
        manager->disconnect(this);
    manager = newManager;
    if (!manager) {
        ui->tableView->setModel(nullptr);
        return;
    }
    ui->tableView->setModel(manager->dimensionModel());
    ui->tableView->setColumnHidden(idColumn, true);
    connect(ui->tableView->selectionModel(), &QItemSelectionModel::selectionChanged, this,
            &FormOutputbar::selectionChanged);
    connect(manager, &PrimitiveManager::toolSelected, this, &FormOutputbar::toolSelected);
}

void FormOutputbar::selectionChanged(const QItemSelection& selected,
                                     const QItemSelection& deselected)
{
    if (!manager)
        return;
    selectTools(selected, true);
    selectTools(deselected, false);
}

void FormOutputbar::toolSelected(QGraphicsObject* object, bool selected)
{
    const QAbstractItemModel* model = ui->tableView->model();
    if (!object || !model || !ToolType::isDimensionTool(object->type()))
        return;
    const int row = static_cast<PrimitiveDimensionTool*>(object)->id();
    qDebug() << "id" << row << selected;
    const QItemSelectionModel::SelectionFlags how =
        selected ? QItemSelectionModel::Select : QItemSelectionModel::Deselect;
    ui->tableView->selectionModel()->select(model->index(row, anyColumn),
                                            how | QItemSelectionModel::Rows);
    ui->tableView->setFocus(Qt::OtherFocusReason);
}

void FormOutputbar::setUpTable()
{
    QTableView* table = ui->tableView;
    table->horizontalHeader()->setStretchLastSection(true);
    // Headings of selected cells would turn bold, and the columns jump with them.
    table->horizontalHeader()->setHighlightSections(false);
    table->horizontalHeader()->setSectionResizeMode(QHeaderView::ResizeToContents);
    table->verticalHeader()->setSectionResizeMode(QHeaderView::Fixed);
    table->verticalHeader()->setMinimumSectionSize(rowHeight);
    table->verticalHeader()->setDefaultSectionSize(rowHeight);
    table->setSelectionBehavior(QAbstractItemView::SelectRows);
    table->setSelectionMode(QAbstractItemView::ExtendedSelection);
    table->setAlternatingRowColors(true);
    table->setHorizontalScrollMode(QAbstractItemView::ScrollPerPixel);
    table->setVerticalScrollMode(QAbstractItemView::ScrollPerPixel);
    table->setItemDelegate(new NumberDelegate(table));
}

void FormOutputbar::selectTools(const QItemSelection& rows, bool selected)
{
    for (const QItemSelectionRange& range : rows) {
        for (int row = range.top(); row <= range.bottom(); ++row)
            manager->selectToolById(row, selected);
    }
}
