#pragma once

#include <QIcon>
#include <QString>
#include <QWidget>

class QAction;
class QButtonGroup;
class QToolButton;
class QVBoxLayout;

/// A narrow column of buttons: exclusive page buttons at the top and, apart from them, plain
/// actions at the bottom.
class ZoSideBar : public QWidget
{
    Q_OBJECT

public:
    explicit ZoSideBar(QWidget* parent = nullptr);

    /// Adds a page button under the ones that are there; gives its index. The text is the tool tip
    /// and the name for assistive technology.
    int addTopAction(const QString& text, const QIcon& icon);
    /// Adds a button for the action under the ones at the bottom. The action is not owned.
    QToolButton* addBottomAction(QAction* action);

    /// The checked page, -1 while there is none.
    int currentIndex() const;
    /// The text of the checked page.
    QString currentText() const;

public slots:
    /// Checks a page; an index outside of the pages is ignored.
    void setCurrentIndex(int index);

signals:
    /// Only when another page is checked than before.
    void currentIndexChanged(int index);

private:
    QToolButton* makeButton();
    void pageToggled(int index, bool checked);

    QVBoxLayout* topLayout = nullptr;
    QVBoxLayout* bottomLayout = nullptr;
    QButtonGroup* pages = nullptr;
    int current = -1;
};
