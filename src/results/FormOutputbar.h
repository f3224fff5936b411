#pragma once

#include <QWidget>

#include <memory>

class PrimitiveManager;
class QGraphicsObject;
class QItemSelection;

namespace Ui {
class FormOutputbar;
}

/// The panel under the picture with the table of measured values. Keeps the selection of its rows
/// and the selection of the tools on the scene in step. GUI thread.
class FormOutputbar final : public QWidget
{
    Q_OBJECT

public:
    explicit FormOutputbar(QWidget* parent);
    ~FormOutputbar() override;

    /// Shows the table of a manager and follows its selection; null for none. Not owned.
    void setManager(PrimitiveManager* newManager);

    QSize sizeHint() const override { return {0, 150}; }
    QSize minimumSizeHint() const override { return {0, 100}; }

private slots:
    void selectionChanged(const QItemSelection& selected, const QItemSelection& deselected);
    void toolSelected(QGraphicsObject* object, bool selected);

private:
    void setUpTable();
    void selectTools(const QItemSelection& rows, bool selected);

    std::unique_ptr<Ui::FormOutputbar> ui;
    PrimitiveManager* manager = nullptr; ///< Null until one is set.
};
