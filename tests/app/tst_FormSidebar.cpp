#include "app/forms/FormSidebar.h"

#include "app/forms/FormMeasure.h"
#include "camera/FormCameraControl.h"

#include <zowidgets/ZoSideBar.h>

#include <QAction>
#include <QLabel>
#include <QSplitter>
#include <QStackedWidget>
#include <QToolButton>
#include <QtTest>

class tst_FormSidebar : public QObject
{
    Q_OBJECT

private slots:
    void init() { sidebar = std::make_unique<FormSidebar>(nullptr); }
    void cleanup() { sidebar.reset(); }

    void theCameraPageShowsFirst()
    {
        QCOMPARE(bar()->currentIndex(), 0);
        QCOMPARE(caption()->text(), QStringLiteral("Camera"));
        QVERIFY(qobject_cast<FormCameraControl*>(pages()->currentWidget()));
        QCOMPARE(pages()->count(), 2);
    }

    void aPageButtonChangesPageAndCaption()
    {
        QTest::mouseClick(buttonWith(QStringLiteral("Measure")), Qt::LeftButton);
        QVERIFY(qobject_cast<FormMeasure*>(pages()->currentWidget()));
        QCOMPARE(caption()->text(), QStringLiteral("Measure"));
    }

    void theCaptionIsBoldInTenPoints()
    {
        QCOMPARE(caption()->font().pointSize(), 10);
        QCOMPARE(caption()->font().weight(), 75);
    }

    void theWindowsActionsStandAtTheBottom()
    {
        QAction snap(QStringLiteral("Snap"));
        sidebar->addBottomAction(&snap);
        QSignalSpy triggered(&snap, &QAction::triggered);
        QTest::mouseClick(buttonWith(QStringLiteral("Snap")), Qt::LeftButton);
        QCOMPARE(triggered.count(), 1);
    }

    void theColumnIsNeverNarrowerThanItsMinimum()
    {
        QCOMPARE(sidebar->sizeHint(), QSize(300, 0));
        QCOMPARE(sidebar->minimumSizeHint(), QSize(250, 0));
        QSplitter splitter;
        splitter.setChildrenCollapsible(false);
        auto* column = new FormSidebar(&splitter);
        splitter.addWidget(new QWidget);
        splitter.setStretchFactor(1, 1);
        splitter.resize(900, 600);
        splitter.show();
        QVERIFY(QTest::qWaitForWindowExposed(&splitter));
        QCOMPARE(column->width(), 300);
        splitter.setSizes({10, 890});
        QCOMPARE(column->width(), 250);
    }

private:
    ZoSideBar* bar() const { return sidebar->findChild<ZoSideBar*>(); }
    QLabel* caption() const
    {
        return sidebar->findChild<QLabel*>(QStringLiteral("sidebarCaption"));
    }
    QStackedWidget* pages() const { return sidebar->findChild<QStackedWidget*>(); }
    QToolButton* buttonWith(const QString& text) const
    {
        for (QToolButton* button : bar()->findChildren<QToolButton*>()) {
            if (button->text() == text)
                return button;
        }
        return nullptr;
    }

    std::unique_ptr<FormSidebar> sidebar;
};

QTEST_MAIN(tst_FormSidebar)
#include "tst_FormSidebar.moc"
