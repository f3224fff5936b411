#include <zowidgets/ZoLinkLabel.h>

#include <QAccessible>
#include <QSignalSpy>
#include <QTest>

#include <memory>

class tst_ZoLinkLabel : public QObject
{
    Q_OBJECT

private slots:
    void init();

    void clickIsTold();
    void otherClicksAreNot();
    void releaseOutsideIsNoClick();
    void keysAreClicks_data();
    void keysAreClicks();
    void otherKeysAreNot();
    void isUnderlinedUnderTheMouse();
    void isUnderlinedWithTheFocus();
    void showsThePointingHand();
    void keepsTheRestOfItsFont();
    void disabledDoesNotAnswer();
    void isFoundByTab();
    void isALinkForAssistiveTechnology();

private:
    QWidget* window() const { return holder.get(); }

    std::unique_ptr<QWidget> holder;
    ZoLinkLabel* label = nullptr;
};

void tst_ZoLinkLabel::init()
{
    holder = std::make_unique<QWidget>();
    holder->resize(300, 200);
    label = new ZoLinkLabel(QStringLiteral("Choose a device"), holder.get());
    label->setGeometry(20, 20, 150, 24);
    holder->show();
    QVERIFY(QTest::qWaitForWindowActive(holder.get()));
    QCursor::setPos(holder->mapToGlobal(QPoint(200, 150)));
    QCoreApplication::processEvents();
}

void tst_ZoLinkLabel::clickIsTold()
{
    QSignalSpy clicked(label, &ZoLinkLabel::clicked);
    QTest::mouseClick(label, Qt::LeftButton);
    QCOMPARE(clicked.count(), 1);
}

void tst_ZoLinkLabel::otherClicksAreNot()
{
    QSignalSpy clicked(label, &ZoLinkLabel::clicked);
    QTest::mouseClick(label, Qt::RightButton);
    QTest::mouseClick(label, Qt::MiddleButton);
    QTest::mouseClick(window(), Qt::LeftButton, {}, QPoint(200, 150));
    QCOMPARE(clicked.count(), 0);
}

void tst_ZoLinkLabel::releaseOutsideIsNoClick()
{
    QSignalSpy clicked(label, &ZoLinkLabel::clicked);
    QTest::mousePress(label, Qt::LeftButton, {}, QPoint(5, 5));
    QTest::mouseRelease(label, Qt::LeftButton, {}, QPoint(5, 60));
    QCOMPARE(clicked.count(), 0);
}

void tst_ZoLinkLabel::keysAreClicks_data()
{
    QTest::addColumn<Qt::Key>("key");
    QTest::newRow("Return") << Qt::Key_Return;
    QTest::newRow("Enter") << Qt::Key_Enter;
    QTest::newRow("space") << Qt::Key_Space;
}

void tst_ZoLinkLabel::keysAreClicks()
{
    QFETCH(Qt::Key, key);
    QSignalSpy clicked(label, &ZoLinkLabel::clicked);
    label->setFocus();
    QTest::keyClick(label, key);
    QCOMPARE(clicked.count(), 1);
}

void tst_ZoLinkLabel::otherKeysAreNot()
{
    QSignalSpy clicked(label, &ZoLinkLabel::clicked);
    label->setFocus();
    QTest::keyClick(label, Qt::Key_A);
    QTest::keyClick(label, Qt::Key_Escape);
    QCOMPARE(clicked.count(), 0);
}

void tst_ZoLinkLabel::isUnderlinedUnderTheMouse()
{
    label->clearFocus();
    QVERIFY(!label->font().underline());
    QCursor::setPos(label->mapToGlobal(QPoint(20, 10)));
    QTRY_VERIFY(label->font().underline());
    QCursor::setPos(holder->mapToGlobal(QPoint(200, 150)));
    QTRY_VERIFY(!label->font().underline());
}

void tst_ZoLinkLabel::isUnderlinedWithTheFocus()
{
    label->setFocus();
    QVERIFY(label->hasFocus());
    QVERIFY(label->font().underline());
    label->clearFocus();
    QVERIFY(!label->font().underline());
}

void tst_ZoLinkLabel::showsThePointingHand()
{
    QCOMPARE(label->cursor().shape(), Qt::PointingHandCursor);
}

void tst_ZoLinkLabel::keepsTheRestOfItsFont()
{
    QFont font = label->font();
    font.setBold(true);
    font.setPointSize(13);
    label->setFont(font);
    label->setFocus();
    QVERIFY(label->font().bold());
    label->clearFocus();
    QCOMPARE(label->font().pointSize(), 13);
}

void tst_ZoLinkLabel::disabledDoesNotAnswer()
{
    label->setEnabled(false);
    QSignalSpy clicked(label, &ZoLinkLabel::clicked);
    QTest::mouseClick(label, Qt::LeftButton);
    QTest::keyClick(label, Qt::Key_Return);
    QCOMPARE(clicked.count(), 0);
}

void tst_ZoLinkLabel::isFoundByTab()
{
    auto* second = new ZoLinkLabel(holder.get());
    second->setText(QStringLiteral("Second"));
    second->show();
    label->setFocus();
    QTest::keyClick(holder.get(), Qt::Key_Tab);
    QVERIFY(second->hasFocus());
}

void tst_ZoLinkLabel::isALinkForAssistiveTechnology()
{
    QAccessibleInterface* link = QAccessible::queryAccessibleInterface(label);
    QVERIFY(link);
    QCOMPARE(link->role(), QAccessible::Link);
    QCOMPARE(link->text(QAccessible::Name), QStringLiteral("Choose a device"));
    label->setAccessibleName(QStringLiteral("Device"));
    QCOMPARE(link->text(QAccessible::Name), QStringLiteral("Device"));

    QSignalSpy clicked(label, &ZoLinkLabel::clicked);
    const QString press = QAccessibleActionInterface::pressAction();
    QVERIFY(link->actionInterface()->actionNames().contains(press));
    link->actionInterface()->doAction(press);
    QCOMPARE(clicked.count(), 1);
    link->actionInterface()->doAction(QAccessibleActionInterface::setFocusAction());
    QVERIFY(label->hasFocus());
    label->setEnabled(false);
    link->actionInterface()->doAction(press);
    QCOMPARE(clicked.count(), 1);
}

QTEST_MAIN(tst_ZoLinkLabel)
#include "tst_ZoLinkLabel.moc"
