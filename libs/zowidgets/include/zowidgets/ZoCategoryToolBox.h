#pragma once

#include <QTreeWidget>

namespace zowidgets {
class CategoryTitle;
}

/// A column of titled widgets that fold away under their titles, as tall as they need to be; it
/// scrolls when they are taller than the box, with room kept for the scroll bar, so that it pushes
/// nothing aside when it comes. Titles are reached with Tab like the widgets below
/// them; Space, or a click, folds and unfolds, Right unfolds and Left folds. The wheel turns only
/// the control that has the focus, and else scrolls.
class ZoCategoryToolBox : public QTreeWidget
{
    Q_OBJECT

public:
    explicit ZoCategoryToolBox(QWidget* parent = nullptr);
    ~ZoCategoryToolBox() override;

    /// Adds a category under those that are there and takes ownership of its widget. An ampersand
    /// of the title is written twice.
    void addCategory(const QString& title, QWidget* widget, bool open);

public slots:
    /// Brings the heights of all categories in line with their widgets.
    void relayout();

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;

private:
    void addTitle(QTreeWidgetItem* category, const QString& title);
    void watch(QWidget* widget);
    void fitHeight(QTreeWidgetItem* category);
    int contentWidth() const;
    void showTitleState(QTreeWidgetItem* category);
    void bringIntoView(const QWidget* widget);
    zowidgets::CategoryTitle* titleOf(QTreeWidgetItem* category) const;
};
