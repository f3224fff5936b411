#include "app/TitleBar.h"

#include <zowidgets/ZoFramelessWindow.h>

#include <QLabel>
#include <QPushButton>
#include <QSignalSpy>
#include <QtTest>

class tst_TitleBar : public QObject
{
    Q_OBJECT

private slots:
    void init()
    {
        window = std::make_unique<ZoFramelessWindow>();
        QPixmap icon(16, 16);
        icon.fill(Qt::red);
        bar = new TitleBar(window.get(), QStringLiteral("Orvo"), icon);
        window->setMenuWidget(bar);
        window->resize(600, 300);
        window->show();
        QVERIFY(QTest::qWaitForWindowExposed(window.get()));
    }

    void cleanup() { window.reset(); }

    void iconAndTitleStandLeftAndTheButtonsRight()
    {
        const QList<QWidget*> order{bar->icon(),
                                    bar->title(),
                                    bar->menu(),
                                    button("minimizeButton"),
                                    button("maximizeButton"),
                                    button("closeButton")};
        for (int i = 1; i < order.size(); ++i)
            QVERIFY2(order[i - 1]->x() < order[i]->x(), qPrintable(QString::number(i)));
        QCOMPARE(bar->icon()->x(), 5);
        QCOMPARE(bar->title()->x(), 5 + bar->icon()->width() + 5);
        QCOMPARE(button("closeButton")->geometry().right(), bar->rect().right());
    }

    void iconAndTitleAreThoseGiven()
    {
        QCOMPARE(bar->objectName(), QStringLiteral("titlebar"));
        QCOMPARE(qobject_cast<QLabel*>(bar->title())->text(), QStringLiteral("Orvo"));
        QVERIFY(bar->icon()->isVisible());
    }

    void buttonsHaveNoTextButAnAccessibleName_data()
    {
        QTest::addColumn<QString>("name");
        for (const char* name : {"menuButton", "minimizeButton", "maximizeButton", "closeButton"})
            QTest::newRow(name) << QString::fromLatin1(name);
    }

    void buttonsHaveNoTextButAnAccessibleName()
    {
        QFETCH(QString, name);
        const auto* found = bar->findChild<QPushButton*>(name);
        QVERIFY(found);
        QVERIFY(found->text().isEmpty());
        QVERIFY(!found->accessibleName().isEmpty());
    }

    void maximizeTogglesTheWindow()
    {
        QTest::mouseClick(button("maximizeButton"), Qt::LeftButton);
        QTRY_VERIFY(window->isMaximized());
        QVERIFY(button("maximizeButton")->isChecked());
        QTest::mouseClick(button("maximizeButton"), Qt::LeftButton);
        QTRY_VERIFY(!window->isMaximized());
        QVERIFY(!button("maximizeButton")->isChecked());
    }

    void theButtonFollowsTheWindow()
    {
        window->showMaximized();
        QTRY_VERIFY(button("maximizeButton")->isChecked());
        window->showNormal();
        QTRY_VERIFY(!button("maximizeButton")->isChecked());
    }

    void minimizeMinimizesTheWindow()
    {
        QTest::mouseClick(button("minimizeButton"), Qt::LeftButton);
        QTRY_VERIFY(window->isMinimized());
    }

    void closeClosesTheWindow()
    {
        QTest::mouseClick(button("closeButton"), Qt::LeftButton);
        QTRY_VERIFY(!window->isVisible());
    }

private:
    QPushButton* button(const char* name) const
    {
        return bar->findChild<QPushButton*>(QString::fromLatin1(name));
    }

    std::unique_ptr<ZoFramelessWindow> window;
    TitleBar* bar = nullptr;
};

QTEST_MAIN(tst_TitleBar)
#include "tst_TitleBar.moc"
