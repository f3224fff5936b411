#include <zowidgets/ZoPopupToolButton.h>

#include <QAction>
#include <QActionGroup>
#include <QMenu>
#include <QPointer>
#include <QSignalSpy>
#include <QTest>
#include <QTimer>

#include <memory>

class tst_ZoPopupToolButton : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void showsTheFirstAction();
    void ownsItsMenu();
    void takesTheMode();
    void chosenActionBecomesTheFace();
    void faceTriggersTheChosenAction();
    void choosingByKeysInTheOpenMenu();
    void actionCheckedElsewhereBecomesTheFace();
    void checkedActionIsShownFromTheStart();
    void uncheckingLeavesTheFace();
    void actionsOfOtherMenusLeaveTheFace();
    void staysOneToolAmongOthers();
    void skipsSeparators();
    void followsActionsAddedLater();
    void removedFaceGivesWayToTheFirst();
    void deletedFaceGivesWayToTheFirst();
    void anotherMenuTakesThePlace();
    void theSameMenuMayBeSetAgain();
    void mayLoseItsMenu();

private:
    QAction* add(const char* text);

    std::unique_ptr<ZoPopupToolButton> button;
    QActionGroup* group = nullptr;
    QPointer<QMenu> menu;
    QAction* circle = nullptr;
    QAction* centre = nullptr;
    QAction* threePoints = nullptr;
};

void tst_ZoPopupToolButton::init()
{
    button = std::make_unique<ZoPopupToolButton>();
    group = new QActionGroup(this);
    menu = new QMenu;
    circle = add("Circle");
    centre = add("Centre");
    threePoints = add("Three points");
    button->setPopupMenu(menu, QToolButton::MenuButtonPopup);
}

void tst_ZoPopupToolButton::cleanup()
{
    button.reset();
    delete group;
}

QAction* tst_ZoPopupToolButton::add(const char* text)
{
    auto* action = new QAction(QString::fromLatin1(text), group);
    action->setCheckable(true);
    menu->addAction(action);
    return action;
}

void tst_ZoPopupToolButton::showsTheFirstAction()
{
    QCOMPARE(button->defaultAction(), circle);
    QCOMPARE(button->text(), QStringLiteral("Circle"));
    QVERIFY(!circle->isChecked());
}

void tst_ZoPopupToolButton::ownsItsMenu()
{
    QCOMPARE(menu->parentWidget(), button.get());
    QVERIFY(menu->isWindow());
    button.reset();
    QVERIFY(!menu);
}

void tst_ZoPopupToolButton::takesTheMode()
{
    QCOMPARE(button->popupMode(), QToolButton::MenuButtonPopup);
    button->setPopupMenu(menu, QToolButton::InstantPopup);
    QCOMPARE(button->popupMode(), QToolButton::InstantPopup);
}

void tst_ZoPopupToolButton::chosenActionBecomesTheFace()
{
    QAction deleteAll(QStringLiteral("Delete All"));
    menu->addAction(&deleteAll);
    deleteAll.trigger();
    QCOMPARE(button->defaultAction(), &deleteAll);
    QCOMPARE(button->menu(), menu.data());
    // What was shown before is no action of the button any more.
    QVERIFY(!button->actions().contains(circle));
}

void tst_ZoPopupToolButton::faceTriggersTheChosenAction()
{
    centre->trigger();
    threePoints->trigger();
    circle->trigger();
    centre->trigger();
    QSignalSpy triggered(centre, &QAction::triggered);
    button->click();
    QCOMPARE(triggered.count(), 1);
    QVERIFY(button->isChecked());
}

void tst_ZoPopupToolButton::choosingByKeysInTheOpenMenu()
{
    button->show();
    QVERIFY(QTest::qWaitForWindowActive(button.get()));
    QTimer::singleShot(0, menu, [this] {
        QTest::keyClick(menu.data(), Qt::Key_Down);
        QTest::keyClick(menu.data(), Qt::Key_Down);
        QTest::keyClick(menu.data(), Qt::Key_Return);
    });
    button->showMenu();
    QCOMPARE(button->defaultAction(), centre);
    QVERIFY(centre->isChecked());
}

void tst_ZoPopupToolButton::actionCheckedElsewhereBecomesTheFace()
{
    threePoints->setChecked(true);
    QCOMPARE(button->defaultAction(), threePoints);
    QVERIFY(button->isChecked());
    QCOMPARE(button->text(), QStringLiteral("Three points"));
}

void tst_ZoPopupToolButton::checkedActionIsShownFromTheStart()
{
    centre->setChecked(true);
    ZoPopupToolButton late;
    auto* other = new QMenu;
    other->addActions({circle, centre, threePoints});
    late.setPopupMenu(other, QToolButton::MenuButtonPopup);
    QCOMPARE(late.defaultAction(), centre);
    QVERIFY(late.isChecked());
}

void tst_ZoPopupToolButton::uncheckingLeavesTheFace()
{
    centre->setChecked(true);
    QAction* elsewhere = new QAction(group);
    elsewhere->setCheckable(true);
    elsewhere->setChecked(true);
    QVERIFY(!centre->isChecked());
    QCOMPARE(button->defaultAction(), centre);
    QVERIFY(!button->isChecked());
}

void tst_ZoPopupToolButton::actionsOfOtherMenusLeaveTheFace()
{
    QAction other(QStringLiteral("Line"));
    other.setCheckable(true);
    other.trigger();
    QCOMPARE(button->defaultAction(), circle);
}

void tst_ZoPopupToolButton::staysOneToolAmongOthers()
{
    for (QAction* tool : {circle, threePoints, centre, circle}) {
        tool->trigger();
        QCOMPARE(button->defaultAction(), tool);
        QCOMPARE(group->checkedAction(), tool);
        QCOMPARE(button->actions().count(tool), 1);
        QCOMPARE(button->actions().size(), 2);
    }
}

void tst_ZoPopupToolButton::skipsSeparators()
{
    ZoPopupToolButton other;
    auto* separated = new QMenu;
    separated->addSeparator();
    QAction* first = separated->addAction(QStringLiteral("First"));
    other.setPopupMenu(separated, QToolButton::MenuButtonPopup);
    QCOMPARE(other.defaultAction(), first);
}

void tst_ZoPopupToolButton::followsActionsAddedLater()
{
    ZoPopupToolButton other;
    auto* late = new QMenu;
    other.setPopupMenu(late, QToolButton::MenuButtonPopup);
    QVERIFY(!other.defaultAction());
    late->addSeparator();
    QAction* first = late->addAction(QStringLiteral("First"));
    QAction* second = late->addAction(QStringLiteral("Second"));
    QCOMPARE(other.defaultAction(), first);
    second->setCheckable(true);
    second->setChecked(true);
    QCOMPARE(other.defaultAction(), second);
}

void tst_ZoPopupToolButton::removedFaceGivesWayToTheFirst()
{
    centre->setChecked(true);
    menu->removeAction(centre);
    QCOMPARE(button->defaultAction(), circle);
    centre->setChecked(false);
    centre->setChecked(true);
    QCOMPARE(button->defaultAction(), circle);
}

void tst_ZoPopupToolButton::deletedFaceGivesWayToTheFirst()
{
    delete circle;
    QCOMPARE(button->defaultAction(), centre);
    QCOMPARE(button->text(), QStringLiteral("Centre"));
}

void tst_ZoPopupToolButton::anotherMenuTakesThePlace()
{
    auto* other = new QMenu;
    QAction* arrow = other->addAction(QStringLiteral("Arrow"));
    button->setPopupMenu(other, QToolButton::MenuButtonPopup);
    QVERIFY(!menu);
    QCOMPARE(button->menu(), other);
    QCOMPARE(button->defaultAction(), arrow);
    centre->setChecked(true);
    QCOMPARE(button->defaultAction(), arrow);
}

void tst_ZoPopupToolButton::theSameMenuMayBeSetAgain()
{
    centre->setChecked(true);
    button->setPopupMenu(menu, QToolButton::InstantPopup);
    QVERIFY(menu);
    QCOMPARE(button->defaultAction(), centre);
    threePoints->trigger();
    QCOMPARE(button->defaultAction(), threePoints);
}

void tst_ZoPopupToolButton::mayLoseItsMenu()
{
    button->setPopupMenu(nullptr, QToolButton::DelayedPopup);
    QVERIFY(!menu);
    QVERIFY(!button->menu());
    QVERIFY(!button->defaultAction());
    centre->setChecked(true);
    QVERIFY(!button->defaultAction());
}

QTEST_MAIN(tst_ZoPopupToolButton)
#include "tst_ZoPopupToolButton.moc"
