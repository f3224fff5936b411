#include <zowidgets/ZoCategoryToolBox.h>

#include <QAccessible>
#include <QComboBox>
#include <QGroupBox>
#include <QLabel>
#include <QPushButton>
#include <QScrollBar>
#include <QSlider>
#include <QTest>
#include <QVBoxLayout>
#include <QWheelEvent>

#include <memory>

namespace {

constexpr int narrow = 250;

/// Two groups, one under the other, and a slider under them.
struct Panel : QWidget
{
    Panel()
    {
        auto* column = new QVBoxLayout(this);
        for (QGroupBox* group : {upper, lower}) {
            auto* inside = new QVBoxLayout(group);
            inside->addWidget(new QLabel(QStringLiteral("Value")));
            column->addWidget(group);
        }
        column->addWidget(slider);
        column->addWidget(combo);
        combo->addItems({QStringLiteral("One"), QStringLiteral("Two")});
    }

    QGroupBox* upper = new QGroupBox(QStringLiteral("Upper"));
    QGroupBox* lower = new QGroupBox(QStringLiteral("Lower"));
    QSlider* slider = new QSlider(Qt::Horizontal);
    QComboBox* combo = new QComboBox;
};

void turnWheel(QWidget* over, int degrees)
{
    const QPoint at = over->rect().center();
    QWheelEvent event(at, over->mapToGlobal(at), QPoint(), QPoint(0, 8 * degrees), Qt::NoButton,
                      Qt::NoModifier, Qt::NoScrollPhase, false);
    QCoreApplication::sendEvent(over, &event);
}

/// Whether one comes to the widget from above, as assistive technology does.
bool leadsTo(QAccessibleInterface* from, const QWidget* widget)
{
    if (from->object() == widget)
        return true;
    for (int index = 0; index < from->childCount(); ++index) {
        QAccessibleInterface* child = from->child(index);
        if (child && leadsTo(child, widget))
            return true;
    }
    return false;
}

} // namespace

class tst_ZoCategoryToolBox : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup() { holder.reset(); }

    void theFlagTellsWhichCategoriesStartOpen();
    void aClickOnTheTitleFoldsAndUnfolds();
    void keysOnTheTitleFoldAndUnfold();
    void theTitleFollowsTheTree();
    void categoriesFoldWithoutEachOther();
    void tabGoesFromTitleToWidgetToNextTitle();
    void tabPassesOverWhatIsFolded();
    void theFocusScrollsIntoView();
    void aRowIsAsHighAsItsWidgetWants();
    void relayoutFollowsGroupsThatHideAndShow();
    void rowsFollowGroupsByThemselves();
    void wrappedTextGetsTheHeightThatTheWidthNeeds();
    void nothingIsCutOffOrScrolledSideways();
    void theScrollBarPushesNothingAside();
    void theWheelScrollsPastControls();
    void theWheelTurnsTheFocusedControl();
    void disablingReachesTitlesAndWidgets();
    void titlesAreReadOutAsShown();
    void assistiveTechnologyFindsTitlesAndWidgets();

private:
    QPushButton* title(int category) const
    {
        return static_cast<QPushButton*>(box->itemWidget(box->topLevelItem(category), 0));
    }
    int rowHeight(int category) const
    {
        return box->visualItemRect(box->topLevelItem(category)->child(0)).height();
    }

    std::unique_ptr<QWidget> holder;
    ZoCategoryToolBox* box = nullptr;
    Panel* first = nullptr;
    Panel* second = nullptr;
};

void tst_ZoCategoryToolBox::init()
{
    holder = std::make_unique<QWidget>();
    auto* layout = new QVBoxLayout(holder.get());
    layout->setContentsMargins(0, 0, 0, 0);
    box = new ZoCategoryToolBox(holder.get());
    layout->addWidget(box);
    first = new Panel;
    second = new Panel;
    box->addCategory(QStringLiteral("First"), first, true);
    box->addCategory(QStringLiteral("Light && Shade"), second, false);
    holder->resize(narrow, 600);
    holder->show();
    QVERIFY(QTest::qWaitForWindowActive(holder.get()));
}

void tst_ZoCategoryToolBox::theFlagTellsWhichCategoriesStartOpen()
{
    QVERIFY(first->isVisible());
    QVERIFY(title(0)->isChecked());
    QVERIFY(!second->isVisible());
    QVERIFY(!title(1)->isChecked());
}

void tst_ZoCategoryToolBox::aClickOnTheTitleFoldsAndUnfolds()
{
    QTest::mouseClick(title(1), Qt::LeftButton);
    QTRY_VERIFY(second->isVisible());
    QTest::mouseClick(title(1), Qt::LeftButton);
    QTRY_VERIFY(!second->isVisible());
}

void tst_ZoCategoryToolBox::keysOnTheTitleFoldAndUnfold()
{
    title(1)->setFocus();
    QTest::keyClick(title(1), Qt::Key_Space);
    QTRY_VERIFY(second->isVisible());
    QTest::keyClick(title(1), Qt::Key_Left);
    QTRY_VERIFY(!second->isVisible());
    QTest::keyClick(title(1), Qt::Key_Left);
    QVERIFY(!title(1)->isChecked());
    QTest::keyClick(title(1), Qt::Key_Right);
    QTRY_VERIFY(second->isVisible());
    QTest::keyClick(title(1), Qt::Key_Right);
    QVERIFY(title(1)->isChecked());
}

void tst_ZoCategoryToolBox::theTitleFollowsTheTree()
{
    box->topLevelItem(1)->setExpanded(true);
    QVERIFY(title(1)->isChecked());
    box->collapseAll();
    QVERIFY(!title(0)->isChecked());
    QVERIFY(!title(1)->isChecked());
}

void tst_ZoCategoryToolBox::categoriesFoldWithoutEachOther()
{
    QTest::mouseClick(title(1), Qt::LeftButton);
    QTRY_VERIFY(second->isVisible());
    QVERIFY(first->isVisible());
    QTest::mouseClick(title(0), Qt::LeftButton);
    QTRY_VERIFY(!first->isVisible());
    QVERIFY(second->isVisible());
}

void tst_ZoCategoryToolBox::tabGoesFromTitleToWidgetToNextTitle()
{
    title(0)->setFocus();
    QTest::keyClick(title(0), Qt::Key_Tab);
    QCOMPARE(QApplication::focusWidget(), first->slider);
    QTest::keyClick(first->slider, Qt::Key_Tab);
    QCOMPARE(QApplication::focusWidget(), first->combo);
    QTest::keyClick(first->combo, Qt::Key_Tab);
    QCOMPARE(QApplication::focusWidget(), title(1));
    QTest::keyClick(title(1), Qt::Key_Backtab);
    QCOMPARE(QApplication::focusWidget(), first->combo);
}

void tst_ZoCategoryToolBox::tabPassesOverWhatIsFolded()
{
    QTest::mouseClick(title(0), Qt::LeftButton);
    QTRY_VERIFY(!first->isVisible());
    title(0)->setFocus();
    QTest::keyClick(title(0), Qt::Key_Tab);
    QCOMPARE(QApplication::focusWidget(), title(1));
}

void tst_ZoCategoryToolBox::theFocusScrollsIntoView()
{
    title(1)->click();
    holder->resize(narrow, 100);
    QTRY_VERIFY(box->verticalScrollBar()->maximum() > 0);
    second->combo->setFocus();
    const auto shown = [this](const QWidget* widget) {
        const QRect place(widget->mapTo(box->viewport(), QPoint()), widget->size());
        return box->viewport()->rect().contains(place);
    };
    QVERIFY(shown(second->combo));
    title(0)->setFocus();
    QVERIFY(shown(title(0)));
}

void tst_ZoCategoryToolBox::aRowIsAsHighAsItsWidgetWants()
{
    QCOMPARE(rowHeight(0), first->sizeHint().height());
    QCOMPARE(first->height(), first->sizeHint().height());
    QCOMPARE(title(0)->height(), title(0)->sizeHint().height());
}

void tst_ZoCategoryToolBox::relayoutFollowsGroupsThatHideAndShow()
{
    const int whole = rowHeight(0);
    first->lower->hide();
    box->relayout();
    const int without = rowHeight(0);
    QVERIFY(without <= whole - first->upper->height());
    QCOMPARE(without, first->sizeHint().height());
    first->lower->show();
    box->relayout();
    QCOMPARE(rowHeight(0), whole);
}

void tst_ZoCategoryToolBox::rowsFollowGroupsByThemselves()
{
    const int whole = rowHeight(0);
    first->lower->hide();
    QTRY_VERIFY(rowHeight(0) < whole);
    QTRY_COMPARE(first->height(), first->sizeHint().height());
    first->lower->show();
    QTRY_COMPARE(rowHeight(0), whole);
}

void tst_ZoCategoryToolBox::wrappedTextGetsTheHeightThatTheWidthNeeds()
{
    auto* label = new QLabel(QStringLiteral("word ").repeated(60));
    label->setWordWrap(true);
    box->addCategory(QStringLiteral("Text"), label, true);
    QTRY_COMPARE(rowHeight(2), label->heightForWidth(label->width()));
    const int tall = rowHeight(2);
    holder->resize(2 * narrow, 600);
    QTRY_VERIFY(rowHeight(2) < tall);
    QCOMPARE(rowHeight(2), label->heightForWidth(label->width()));
}

void tst_ZoCategoryToolBox::nothingIsCutOffOrScrolledSideways()
{
    title(1)->click();
    for (const int width : {narrow, 150, 400}) {
        holder->setFixedSize(width, 120);
        QTRY_COMPARE(first->width(), box->viewport()->width());
        QCOMPARE(title(0)->width(), box->viewport()->width());
        QVERIFY(!box->horizontalScrollBar()->isVisible());
        QCOMPARE(box->horizontalScrollBar()->maximum(), 0);
    }
}

void tst_ZoCategoryToolBox::theScrollBarPushesNothingAside()
{
    title(1)->click();
    QTRY_VERIFY(second->isVisible());
    QVERIFY(!box->verticalScrollBar()->isVisible());
    const int without = first->width();
    QVERIFY(without > narrow / 2);
    holder->resize(narrow, 120);
    QTRY_VERIFY(box->verticalScrollBar()->isVisible());
    QTRY_COMPARE(first->width(), box->viewport()->width());
    QCOMPARE(first->width(), without);
    QCOMPARE(title(0)->width(), without);
}

void tst_ZoCategoryToolBox::theWheelScrollsPastControls()
{
    holder->resize(narrow, 100);
    QTRY_VERIFY(box->verticalScrollBar()->maximum() > 0);
    first->slider->setValue(50);
    turnWheel(first->slider, -15);
    QCOMPARE(first->slider->value(), 50);
    const int scrolled = box->verticalScrollBar()->value();
    QVERIFY(scrolled > 0);
    turnWheel(first->combo, 15);
    QCOMPARE(first->combo->currentIndex(), 0);
    QVERIFY(box->verticalScrollBar()->value() < scrolled);
}

void tst_ZoCategoryToolBox::theWheelTurnsTheFocusedControl()
{
    first->slider->setValue(50);
    first->slider->setFocus();
    turnWheel(first->slider, 15);
    QVERIFY(first->slider->value() > 50);
}

void tst_ZoCategoryToolBox::disablingReachesTitlesAndWidgets()
{
    box->setEnabled(false);
    QVERIFY(!title(0)->isEnabled());
    QVERIFY(!first->slider->isEnabled());
    QTest::mouseClick(title(1), Qt::LeftButton);
    QVERIFY(!title(1)->isChecked());
    box->setEnabled(true);
    QVERIFY(first->slider->isEnabled());
}

void tst_ZoCategoryToolBox::titlesAreReadOutAsShown()
{
    QAccessibleInterface* read = QAccessible::queryAccessibleInterface(title(1));
    QVERIFY(read);
    QCOMPARE(read->text(QAccessible::Name), QStringLiteral("Light & Shade"));
    QVERIFY(read->state().checkable);
    QVERIFY(!read->state().checked);
    title(1)->click();
    QVERIFY(read->state().checked);
}

void tst_ZoCategoryToolBox::assistiveTechnologyFindsTitlesAndWidgets()
{
    QAccessible::setActive(true);
    init();
    QAccessibleInterface* read = QAccessible::queryAccessibleInterface(box);
    QVERIFY(read);
    QVERIFY(leadsTo(read, title(0)));
    QVERIFY(leadsTo(read, title(1)));
    QVERIFY(leadsTo(read, first->slider));
    QVERIFY(leadsTo(read, first->combo));
    QAccessible::setActive(false);
}

QTEST_MAIN(tst_ZoCategoryToolBox)
#include "tst_ZoCategoryToolBox.moc"
