#include <zowidgets/ZoSideBar.h>

#include <QAction>
#include <QSignalSpy>
#include <QTest>
#include <QToolButton>

#include <memory>

class tst_ZoSideBar : public QObject
{
    Q_OBJECT

private slots:
    void init();

    void startsWithoutAPage();
    void numbersPagesAsTheyAreAdded();
    void checkingAPageTellsOnce();
    void pagesExcludeEachOther();
    void ignoresIndexesWithoutAPage();
    void clickChoosesAPage();
    void keysChooseAPage();
    void pagesStandOverActions();
    void bottomButtonsTriggerTheirActions();
    void bottomButtonsFollowTheirActions();
    void bottomActionsAreNoPages();
    void buttonsHaveNamesForAssistiveTechnology();
    void buttonsAreOfToolSize();
    void outlivesItsActions();

private:
    QToolButton* page(int index) const;

    std::unique_ptr<ZoSideBar> bar;
};

void tst_ZoSideBar::init()
{
    bar = std::make_unique<ZoSideBar>();
    QCOMPARE(bar->addTopAction(QStringLiteral("Camera"), QIcon()), 0);
    QCOMPARE(bar->addTopAction(QStringLiteral("Measure"), QIcon()), 1);
    bar->resize(40, 300);
    bar->show();
    QVERIFY(QTest::qWaitForWindowActive(bar.get()));
}

QToolButton* tst_ZoSideBar::page(int index) const
{
    return bar->findChildren<QToolButton*>().at(index);
}

void tst_ZoSideBar::startsWithoutAPage()
{
    QCOMPARE(bar->currentIndex(), -1);
    QCOMPARE(bar->currentText(), QString());
}

void tst_ZoSideBar::numbersPagesAsTheyAreAdded()
{
    QCOMPARE(bar->addTopAction(QStringLiteral("Third"), QIcon()), 2);
    bar->setCurrentIndex(2);
    QCOMPARE(bar->currentText(), QStringLiteral("Third"));
}

void tst_ZoSideBar::checkingAPageTellsOnce()
{
    QSignalSpy changed(bar.get(), &ZoSideBar::currentIndexChanged);
    // The new page is in force when the signal comes.
    QString text;
    connect(bar.get(), &ZoSideBar::currentIndexChanged, this, [&] { text = bar->currentText(); });
    bar->setCurrentIndex(0);
    bar->setCurrentIndex(0);
    QCOMPARE(changed, (QList<QVariantList>{{0}}));
    QCOMPARE(text, QStringLiteral("Camera"));
    bar->setCurrentIndex(1);
    QCOMPARE(changed, (QList<QVariantList>{{0}, {1}}));
    QCOMPARE(text, QStringLiteral("Measure"));
    page(1)->click();
    QCOMPARE(changed.count(), 2);
}

void tst_ZoSideBar::pagesExcludeEachOther()
{
    bar->setCurrentIndex(0);
    bar->setCurrentIndex(1);
    QVERIFY(!page(0)->isChecked());
    QVERIFY(page(1)->isChecked());
    QCOMPARE(bar->currentIndex(), 1);
}

void tst_ZoSideBar::ignoresIndexesWithoutAPage()
{
    bar->setCurrentIndex(1);
    QSignalSpy changed(bar.get(), &ZoSideBar::currentIndexChanged);
    for (int index : {-1, -2, 2, 1000})
        bar->setCurrentIndex(index);
    QCOMPARE(bar->currentIndex(), 1);
    QCOMPARE(changed.count(), 0);
}

void tst_ZoSideBar::clickChoosesAPage()
{
    QSignalSpy changed(bar.get(), &ZoSideBar::currentIndexChanged);
    QTest::mouseClick(page(1), Qt::LeftButton);
    QCOMPARE(bar->currentIndex(), 1);
    QTest::mouseClick(page(1), Qt::LeftButton);
    QCOMPARE(bar->currentIndex(), 1);
    QCOMPARE(changed, (QList<QVariantList>{{1}}));
}

void tst_ZoSideBar::keysChooseAPage()
{
    bar->setCurrentIndex(0);
    page(0)->setFocus();
    QTest::keyClick(page(0), Qt::Key_Down);
    QCOMPARE(bar->currentIndex(), 1);
    QVERIFY(page(1)->hasFocus());
    QTest::keyClick(page(1), Qt::Key_Up);
    QCOMPARE(bar->currentIndex(), 0);
}

void tst_ZoSideBar::pagesStandOverActions()
{
    QAction action(QStringLiteral("Snap"));
    QAction second(QStringLiteral("Record"));
    QToolButton* snap = bar->addBottomAction(&action);
    QToolButton* record = bar->addBottomAction(&second);
    QTRY_VERIFY(snap->y() > page(1)->y());
    QVERIFY(page(1)->y() > page(0)->y());
    QVERIFY(record->y() > snap->y());
    QVERIFY(snap->geometry().top() - page(1)->geometry().bottom() > 50);
}

void tst_ZoSideBar::bottomButtonsTriggerTheirActions()
{
    QAction action(QStringLiteral("Snap"));
    QSignalSpy triggered(&action, &QAction::triggered);
    QToolButton* button = bar->addBottomAction(&action);
    QTest::mouseClick(button, Qt::LeftButton);
    QCOMPARE(triggered.count(), 1);
    button->setFocus();
    QTest::keyClick(button, Qt::Key_Space);
    QCOMPARE(triggered.count(), 2);
}

void tst_ZoSideBar::bottomButtonsFollowTheirActions()
{
    QAction action(QStringLiteral("Record"));
    action.setCheckable(true);
    QToolButton* button = bar->addBottomAction(&action);
    action.setChecked(true);
    QVERIFY(button->isChecked());
    action.setEnabled(false);
    QVERIFY(!button->isEnabled());
}

void tst_ZoSideBar::bottomActionsAreNoPages()
{
    bar->setCurrentIndex(0);
    QAction action(QStringLiteral("Record"));
    action.setCheckable(true);
    QToolButton* button = bar->addBottomAction(&action);
    QSignalSpy changed(bar.get(), &ZoSideBar::currentIndexChanged);
    button->click();
    QVERIFY(action.isChecked());
    QCOMPARE(bar->currentIndex(), 0);
    QCOMPARE(changed.count(), 0);
}

void tst_ZoSideBar::buttonsHaveNamesForAssistiveTechnology()
{
    QCOMPARE(page(0)->accessibleName(), QStringLiteral("Camera"));
    QCOMPARE(page(0)->toolTip(), QStringLiteral("Camera"));
    QAction action(QStringLiteral("&Settings..."));
    QToolButton* button = bar->addBottomAction(&action);
    QCOMPARE(button->accessibleName(), QStringLiteral("Settings"));
    action.setText(QStringLiteral("Gallery"));
    QCOMPARE(button->accessibleName(), QStringLiteral("Gallery"));
}

void tst_ZoSideBar::buttonsAreOfToolSize()
{
    QAction action(QStringLiteral("Snap"));
    QCOMPARE(bar->addBottomAction(&action)->iconSize(), QSize(24, 24));
    QCOMPARE(page(0)->iconSize(), QSize(24, 24));
    QVERIFY(page(0)->width() >= 32);
    QVERIFY(page(0)->height() >= 32);
}

void tst_ZoSideBar::outlivesItsActions()
{
    auto action = std::make_unique<QAction>(QStringLiteral("Snap"));
    QToolButton* button = bar->addBottomAction(action.get());
    action.reset();
    QTest::mouseClick(button, Qt::LeftButton);
    QVERIFY(!button->defaultAction());
}

QTEST_MAIN(tst_ZoSideBar)
#include "tst_ZoSideBar.moc"
