#include "FakeBox.h"
#include "ShownDialog.h"

#include "support/ProcessUse.h"

#include <zolens/CWFactory.h>
#include <zolens/MyCamera.h>

#include <QtTest>

namespace {

constexpr int longEnough = 10000;

/// Network boxes of the same name.
struct TwoBoxes
{
    bool start() { return first.start() && second.start(); }

    FakeBox first;
    FakeBox second{{QStringLiteral("10.0.0.3"), QStringLiteral("ORVO2"), {}, 0}};
};

} // namespace

/// The choice of a source with network boxes that answer.
class tst_SelectDeviceDialogBoxes final : public QObject, protected ShownDialog
{
    Q_OBJECT

private slots:
    void init() { makeFirstDialog(); }

    void cleanup() { dialog.reset(); }

    void aSelectedBoxIsLostWhenTheListIsMadeAnew()
    {
        TwoBoxes boxes;
        QVERIFY(boxes.start());
        QVERIFY(listsBoth());
        scanTimer()->stop();
        boxList()->setCurrentRow(1);
        QCOMPARE(edit("lineEditTarnlinkAddress")->text(), boxes.second.address());
        scanTimer()->start();
        QTRY_COMPARE_WITH_TIMEOUT(boxList()->currentRow(), 0, longEnough);
        QVERIFY(boxList()->item(0)->isSelected());
        QCOMPARE(edit("lineEditTarnlinkAddress")->text(), boxes.first.address());
    }

    void anAddressCanBeTypedWhileBoxesAreListed()
    {
        FakeBox box;
        QVERIFY(box.start());
        QLineEdit* address = edit("lineEditTarnlinkAddress");
        tabs()->setCurrentIndex(1);
        QTest::mouseClick(address, Qt::LeftButton);
        QTRY_COMPARE_WITH_TIMEOUT(boxList()->count(), 1, 20000);
        QVERIFY(address->text().isEmpty());
        QTest::keyClicks(address, QStringLiteral("10.0."));
        waitForRefresh();
        QTest::keyClicks(address, QStringLiteral("0.9"));
        button("pushButtonTarnlinkConnect")->setFocus();
        waitForRefresh();
        QCOMPARE(address->text(), QStringLiteral("10.0.0.9"));
        QVERIFY(boxList()->selectedItems().isEmpty());
        scanTimer()->stop();
        const QPoint place = boxList()->visualItemRect(boxList()->item(0)).center();
        QTest::mouseClick(boxList()->viewport(), Qt::LeftButton, {}, place);
        QCOMPARE(address->text(), box.address());
    }

    void aBoxOpensByItsAddressAsItWasTyped()
    {
        FakeBox box;
        QVERIFY(box.start());
        for (const char* typed : {" 10.0.0.2\n", "10.2", "10.000.000.002"}) {
            makeDialog({});
            edit("lineEditTarnlinkAddress")->setText(QString::fromLatin1(typed));
            tabs()->setCurrentIndex(1);
            QSignalSpy opened(dialog.get(), &SelectDeviceDialog::openNetworkDevice);
            QTest::mouseClick(button("pushButtonTarnlinkConnect"), Qt::LeftButton);
            QCOMPARE(opened.count(), 1);
            MyCamera camera;
            QVERIFY2(camera.open(CWDevice_NetworkBox, opened[0][1].toString()), typed);
        }
    }

    void aBoxOfTheNetworkIsListedAndChosen_data()
    {
        QTest::addColumn<bool>("byDoubleClick");
        QTest::newRow("double click") << true;
        QTest::newRow("connect") << false;
    }

    void aBoxOfTheNetworkIsListedAndChosen()
    {
        QFETCH(bool, byDoubleClick);
        FakeBox box;
        QVERIFY(box.start());
        tabs()->setCurrentIndex(1);
        QTRY_COMPARE_WITH_TIMEOUT(boxList()->count(), 1, 20000);
        QListWidgetItem* item = boxList()->item(0);
        QCOMPARE(item->text(), QStringLiteral("Aravis Fake 10.0.0.2"));
        QVERIFY(item->flags().testFlag(Qt::ItemIsEnabled));
        QCOMPARE(edit("lineEditTarnlinkAddress")->text(), box.address());
        // Or else the list is made anew between the clicks.
        scanTimer()->stop();
        QSignalSpy opened(dialog.get(), &SelectDeviceDialog::openNetworkDevice);
        const QPoint place = boxList()->visualItemRect(item).center();
        QTest::mouseClick(boxList()->viewport(), Qt::LeftButton, {}, place);
        if (byDoubleClick)
            QTest::mouseDClick(boxList()->viewport(), Qt::LeftButton, {}, place);
        else
            QTest::mouseClick(button("pushButtonTarnlinkConnect"), Qt::LeftButton);
        QCOMPARE(opened.count(), 1);
        QCOMPARE(opened[0], QVariantList({7, box.address()}));
        QVERIFY(!dialog->isVisible());
    }

    void anOpenBoxIsGreyAndCannotBeSelected()
    {
        TwoBoxes boxes;
        QVERIFY(boxes.start());
        makeDialog({{CWDevice_NetworkBox, 0}});
        QVERIFY(listsBoth());
        const QListWidgetItem* open = boxList()->item(0);
        QVERIFY(!isEnabled(open));
        QVERIFY(!open->flags().testFlag(Qt::ItemIsSelectable));
        QVERIFY(isEnabled(boxList()->item(1)));
        QCOMPARE(boxList()->currentRow(), 0);
        QVERIFY(boxList()->selectedItems().isEmpty());
        QCOMPARE(edit("lineEditTarnlinkAddress")->text(), QString());
    }

    void boxesAreLoggedWithTheirPlacesAndNames()
    {
        TwoBoxes boxes;
        QVERIFY(boxes.start());
        QTest::ignoreMessage(QtDebugMsg, "2 tarnlink devices found.");
        QTest::ignoreMessage(QtDebugMsg, "0 : Aravis Fake (ORVO1)");
        QTest::ignoreMessage(QtDebugMsg, "1 : Aravis Fake (ORVO2)");
        QVERIFY(listsBoth());
        QCOMPARE(boxList()->item(0)->text(), QStringLiteral("Aravis Fake (ORVO1) 10.0.0.2"));
        QCOMPARE(boxList()->item(1)->text(), QStringLiteral("Aravis Fake (ORVO2) 10.0.0.3"));
    }

    void leavingTheTabOrTheDialogEndsTheScan()
    {
        FakeBox box;
        QVERIFY(box.start());
        for (const bool byClosing : {false, true}) {
            tabs()->setCurrentIndex(1);
            QTRY_COMPARE_WITH_TIMEOUT(CWFactory::tarnlinkDeviceList().size(), std::size_t(1),
                                      20000);
            if (byClosing)
                dialog.reset();
            else
                tabs()->setCurrentIndex(0);
            QVERIFY(CWFactory::tarnlinkDeviceList().empty());
            QTRY_COMPARE(processuse::threadsNamed("zolens-scan"), 0);
        }
    }

private:
    /// Whether the tab of the boxes comes to list two.
    bool listsBoth()
    {
        tabs()->setCurrentIndex(1);
        return QTest::qWaitFor([this] { return boxList()->count() == 2; }, 20000);
    }
    /// Until the list of boxes has been made anew.
    void waitForRefresh() const
    {
        QSignalSpy refreshed(scanTimer(), &QTimer::timeout);
        QVERIFY(refreshed.wait(longEnough));
    }
};

QTEST_MAIN(tst_SelectDeviceDialogBoxes)
#include "tst_SelectDeviceDialogBoxes.moc"
