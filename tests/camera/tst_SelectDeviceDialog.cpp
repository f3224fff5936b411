#include "ShownDialog.h"
#include "UdevTestbed.h"

#include "DeviceClasses.h"
#include "support/ProcessUse.h"
#include "support/fakev4l2/CameraBench.h"

#include <zolens/CWFactory.h>
#include <zolens/CWUVCFilter.h>

#include <QLabel>
#include <QtTest>

#include <sys/resource.h>

namespace {

/// Numbers of nodes.
constexpr int present = 0;
constexpr int pluggedIn = 1;
constexpr int unplugged = 2;
constexpr int pluggedInNext = 3;

constexpr int settlingTime = 1000;
/// A timer may be early by some parts of a hundred.
constexpr int settlingTimeAtLeast = 900;
constexpr int longEnough = 10000;

/// Lets the process open no further file while it lives.
class NoFreeDescriptor final
{
public:
    NoFreeDescriptor()
    {
        getrlimit(RLIMIT_NOFILE, &usual);
        const rlimit none = {0, usual.rlim_max};
        setrlimit(RLIMIT_NOFILE, &none);
    }
    ~NoFreeDescriptor() { setrlimit(RLIMIT_NOFILE, &usual); }
    Q_DISABLE_COPY_MOVE(NoFreeDescriptor)

private:
    rlimit usual = {};
};

/// The rows that decide which cameras there are while it lives.
class FilterInForce final
{
public:
    explicit FilterInForce(const std::vector<CWUVCFilterItem>& rows)
    {
        for (const CWUVCFilterItem& row : rows)
            filter.addItem(row);
        CWFactory::setUVCFilter(&filter);
    }
    ~FilterInForce() { CWFactory::setUVCFilter(nullptr); }
    Q_DISABLE_COPY_MOVE(FilterInForce)

private:
    CWUVCFilter filter;
};

} // namespace

class tst_SelectDeviceDialog final : public QObject, protected ShownDialog
{
    Q_OBJECT

private slots:
    void initTestCase()
    {
        zolens::setCaptureHost(bench.host());
        connectCamera(present, "Present camera");
    }

    void init() { makeFirstDialog(); }

    void cleanup() { dialog.reset(); }

    void theThreeKindsOfSourceHaveATabEach()
    {
        QCOMPARE(dialog->windowTitle(), QStringLiteral("Select video source"));
        QCOMPARE(tabs()->count(), 3);
        QCOMPARE(tabs()->tabText(0), QStringLiteral("USB"));
        QCOMPARE(tabs()->tabText(1), QStringLiteral("Wi-Fi"));
        QCOMPARE(tabs()->tabText(2), QStringLiteral("RTSP Stream"));
        QCOMPARE(tabs()->currentIndex(), 0);
        QCOMPARE(dialog->size(), QSize(402, 241));
    }

    void everyTabSaysWhatItIsFor()
    {
        QCOMPARE(labelOf(0),
                 QStringLiteral("Select a video device from the list below, and click \"Open\"."));
        QCOMPARE(button("pushButtonRefresh")->text(), QStringLiteral("Refresh"));
        QCOMPARE(button("pushButtonOpenCamera")->text(), QStringLiteral("Open"));
        QCOMPARE(labelOf(1), QStringLiteral("Device list"));
        QCOMPARE(edit("lineEditTarnlinkAddress")->placeholderText(), QStringLiteral("IP Address"));
        QCOMPARE(button("pushButtonTarnlinkConnect")->text(), QStringLiteral("Connect"));
        QCOMPARE(labelOf(2), QStringLiteral("Please enter a network URL:"));
        QCOMPARE(button("pushButtonRTSPConnect")->text(), QStringLiteral("Connect"));
    }

    void camerasAreListedWithTypeAndIndex()
    {
        const auto devices = CWFactory::videoDeviceList();
        QCOMPARE(usbList()->count(), static_cast<int>(devices.size()));
        const auto& last = devices.back();
        const QListWidgetItem* item = usbList()->item(usbList()->count() - 1);
        QCOMPARE(item->text(), QString::fromStdString(last.name));
        QCOMPARE(item->data(Qt::UserRole).toString(),
                 QStringLiteral("%1#%2").arg(last.type).arg(last.index));
        QCOMPARE(usbList()->currentRow(), 0);
        QVERIFY(button("pushButtonOpenCamera")->isEnabled());
    }

    void openTellsTheSelectedCameraAndCloses()
    {
        usbList()->setCurrentRow(usbList()->count() - 1);
        QSignalSpy opened(dialog.get(), &SelectDeviceDialog::openUsbDevice);
        QTest::mouseClick(button("pushButtonOpenCamera"), Qt::LeftButton);
        QCOMPARE(opened.count(), 1);
        QCOMPARE(opened[0], QVariantList({int{CWDevice_Simulated}, 0}));
        QCOMPARE(dialog->result(), int(QDialog::Accepted));
        QVERIFY(!dialog->isVisible());
    }

    void aDoubleClickOpens()
    {
        QSignalSpy opened(dialog.get(), &SelectDeviceDialog::openUsbDevice);
        const QRect row = usbList()->visualItemRect(usbList()->item(usbList()->count() - 1));
        QTest::mouseClick(usbList()->viewport(), Qt::LeftButton, {}, row.center());
        QTest::mouseDClick(usbList()->viewport(), Qt::LeftButton, {}, row.center());
        QCOMPARE(opened.count(), 1);
        QCOMPARE(opened[0], QVariantList({int{CWDevice_Simulated}, 0}));
        QVERIFY(!dialog->isVisible());
    }

    void anOpenCameraIsGreyAndCannotBeSelected()
    {
        QList<QPair<int, int>> all;
        for (const auto& device : CWFactory::videoDeviceList())
            all << qMakePair(device.type, device.index);
        makeDialog(all);
        QVERIFY(!usbList()->item(0)->flags().testFlag(Qt::ItemIsEnabled));
        QVERIFY(!usbList()->item(0)->flags().testFlag(Qt::ItemIsSelectable));
        QCOMPARE(usbList()->currentRow(), 0);
        QVERIFY(usbList()->selectedItems().isEmpty());
    }

    void noButtonIsDisabledByAnOnlyCameraThatIsGrey()
    {
        const FilterInForce filter({{0, 0, {}, CWDevice_Simulated}});
        makeDialog({{CWDevice_Simulated, 0}});
        QCOMPARE(usbList()->count(), 1);
        QVERIFY(!usbList()->item(0)->flags().testFlag(Qt::ItemIsEnabled));
        QVERIFY(areEnabled(dialog->findChildren<QPushButton*>()));
    }

    void openClosesWithoutOpeningWhereTheOnlyCameraIsGrey()
    {
        const FilterInForce filter({{0, 0, {}, CWDevice_Simulated}});
        makeDialog({{CWDevice_Simulated, 0}});
        QCOMPARE(usbList()->count(), 1);
        QSignalSpy opened(dialog.get(), &SelectDeviceDialog::openUsbDevice);
        QTest::mouseClick(button("pushButtonOpenCamera"), Qt::LeftButton);
        QCOMPARE(opened.count(), 0);
        QCOMPARE(dialog->result(), int(QDialog::Accepted));
        QVERIFY(!dialog->isVisible());
    }

    void whatIsOpenIsAskedForBeforeEveryList()
    {
        QList<QPair<int, int>> opened;
        dialog->askForOpenedDevices([&opened] { return opened; });
        QVERIFY(isEnabled(listed("Present camera")));
        opened << qMakePair(int{CWDevice_Uvc}, present);
        QTest::mouseClick(button("pushButtonRefresh"), Qt::LeftButton);
        QVERIFY(!isEnabled(listed("Present camera")));
        opened.clear();
        QTest::mouseClick(button("pushButtonRefresh"), Qt::LeftButton);
        QVERIFY(isEnabled(listed("Present camera")));
    }

    void withoutCamerasOpenClosesWithoutOpening()
    {
        const FilterInForce filter({});
        makeDialog({});
        QCOMPARE(usbList()->count(), 0);
        QVERIFY(areEnabled(dialog->findChildren<QPushButton*>()));
        QSignalSpy opened(dialog.get(), &SelectDeviceDialog::openUsbDevice);
        QTest::mouseClick(button("pushButtonOpenCamera"), Qt::LeftButton);
        QCOMPARE(opened.count(), 0);
        QVERIFY(!dialog->isVisible());
    }

    void openFollowsTheSelection()
    {
        usbList()->clearSelection();
        QVERIFY(!button("pushButtonOpenCamera")->isEnabled());
        usbList()->setCurrentRow(-1);
        usbList()->setCurrentRow(0);
        QVERIFY(button("pushButtonOpenCamera")->isEnabled());
    }

    void refreshListsAnew()
    {
        const int count = usbList()->count();
        usbList()->clear();
        QTest::ignoreMessage(QtDebugMsg,
                             qPrintable(QStringLiteral("%1 devices found.").arg(count)));
        QTest::ignoreMessage(QtDebugMsg, "0 : Present camera");
        QTest::mouseClick(button("pushButtonRefresh"), Qt::LeftButton);
        QCOMPARE(usbList()->count(), count);
    }

    void aCameraThatIsPluggedInIsListedAfterASecond()
    {
        QElapsedTimer time;
        time.start();
        plugIn(pluggedIn, "New camera");
        QTRY_VERIFY_WITH_TIMEOUT(isListed("New camera"), longEnough);
        QVERIFY2(time.elapsed() >= settlingTimeAtLeast,
                 qPrintable(QString::number(time.elapsed())));
    }

    void aCameraThatIsUnpluggedLeavesTheListAtOnce()
    {
        connectCamera(unplugged, "Old camera");
        makeDialog({});
        QVERIFY(isListed("Old camera"));
        bench.unplug(unplugged);
        testbed.tell(UdevTestbed::videoNode(unplugged), "remove");
        QTRY_VERIFY_WITH_TIMEOUT(!isListed("Old camera"), settlingTimeAtLeast);
        QVERIFY(isListed("Present camera"));
    }

    void aChangeMakesTheFirstRowCurrentAgain()
    {
        QVERIFY(usbList()->count() > 1);
        usbList()->setCurrentRow(1);
        testbed.tell(UdevTestbed::videoNode(present), "remove");
        QTRY_COMPARE_WITH_TIMEOUT(usbList()->currentRow(), 0, settlingTimeAtLeast);
        QVERIFY(usbList()->item(0)->isSelected());
        QVERIFY(button("pushButtonOpenCamera")->isEnabled());
    }

    void anOpenCameraStaysGreyWhenAnotherIsPluggedIn()
    {
        makeDialog({{CWDevice_Uvc, present}});
        plugIn(pluggedInNext, "Another camera");
        QTRY_VERIFY_WITH_TIMEOUT(isListed("Another camera"), longEnough);
        QVERIFY(!listed("Present camera")->flags().testFlag(Qt::ItemIsEnabled));
        QVERIFY(listed("Another camera")->flags().testFlag(Qt::ItemIsEnabled));
    }

    void theDialogMayCloseWhileACameraSettles()
    {
        testbed.tell(UdevTestbed::videoNode(present), "add");
        QTest::qWait(100);
        dialog.reset();
        QTest::qWait(settlingTime + 200);
        makeDialog({});
        QVERIFY(isListed("Present camera"));
    }

    void dialogsLeaveNothingOpen()
    {
        const auto before = processuse::settledHoldings();
        for (int i = 0; i < 100; ++i)
            makeDialog({});
        QCOMPARE(processuse::growthSince(before), QString());
    }

    void withoutNotificationsTheDialogWorksOn()
    {
        dialog.reset();
        QTest::ignoreMessage(QtDebugMsg, "Failed to register device notification");
        {
            const NoFreeDescriptor limit;
            dialog = std::make_unique<SelectDeviceDialog>(QList<QPair<int, int>>(), nullptr);
        }
        QCOMPARE(usbList()->count(), 1);
        dialog->show();
        QTest::mouseClick(button("pushButtonRefresh"), Qt::LeftButton);
        QVERIFY(isListed("Present camera"));
    }

    void onlyACompleteAddressCanBeConnected_data()
    {
        QTest::addColumn<QString>("address");
        QTest::addColumn<bool>("possible");
        QTest::newRow("complete") << QStringLiteral("192.168.0.17") << true;
        QTest::newRow("octet too large") << QStringLiteral("192.168.0.256") << false;
        QTest::newRow("words") << QStringLiteral("microscope") << false;
        QTest::newRow("IPv6") << QStringLiteral("::1") << false;
    }

    void onlyACompleteAddressCanBeConnected()
    {
        QFETCH(QString, address);
        QFETCH(bool, possible);
        tabs()->setCurrentIndex(1);
        QTest::keyClicks(edit("lineEditTarnlinkAddress"), address);
        QCOMPARE(button("pushButtonTarnlinkConnect")->isEnabled(), possible);
        QSignalSpy opened(dialog.get(), &SelectDeviceDialog::openNetworkDevice);
        QTest::keyClick(edit("lineEditTarnlinkAddress"), Qt::Key_Return);
        QCOMPARE(opened.count(), possible ? 1 : 0);
        if (possible)
            QCOMPARE(opened[0], QVariantList({7, address}));
        QCOMPARE(dialog->isVisible(), !possible);
    }

    void connectStartsEnabledAndIgnoresAnEmptyField()
    {
        tabs()->setCurrentIndex(1);
        QVERIFY(button("pushButtonTarnlinkConnect")->isEnabled());
        QSignalSpy opened(dialog.get(), &SelectDeviceDialog::openNetworkDevice);
        QTest::mouseClick(button("pushButtonTarnlinkConnect"), Qt::LeftButton);
        QCOMPARE(opened.count(), 0);
        QVERIFY(dialog->isVisible());
    }

    void aBoxInTheListFillsTheAddress()
    {
        tabs()->setCurrentIndex(1);
        boxList()->setCurrentItem(addBox(QStringLiteral("10.0.0.9")));
        QCOMPARE(edit("lineEditTarnlinkAddress")->text(), QStringLiteral("10.0.0.9"));
    }

    void aDoubleClickOnABoxConnectsOnlyToAnAddress_data()
    {
        QTest::addColumn<QString>("address");
        QTest::addColumn<bool>("possible");
        QTest::newRow("valid") << QStringLiteral("10.0.0.9") << true;
        QTest::newRow("invalid") << QStringLiteral("10.0.0.999") << false;
    }

    void aDoubleClickOnABoxConnectsOnlyToAnAddress()
    {
        QFETCH(QString, address);
        QFETCH(bool, possible);
        tabs()->setCurrentIndex(1);
        const QListWidgetItem* item = addBox(address);
        QSignalSpy opened(dialog.get(), &SelectDeviceDialog::openNetworkDevice);
        const QPoint place = boxList()->visualItemRect(item).center();
        QTest::mouseClick(boxList()->viewport(), Qt::LeftButton, {}, place);
        QTest::mouseDClick(boxList()->viewport(), Qt::LeftButton, {}, place);
        QCOMPARE(opened.count(), possible ? 1 : 0);
        QCOMPARE(dialog->isVisible(), !possible);
    }

    void boxesAreLookedForOnlyWhileTheirTabShows_data()
    {
        QTest::addColumn<int>("otherTab");
        QTest::newRow("USB") << 0;
        QTest::newRow("RTSP stream") << 2;
    }

    void boxesAreLookedForOnlyWhileTheirTabShows()
    {
        QFETCH(int, otherTab);
        const auto* timer = scanTimer();
        QVERIFY(!timer->isActive());
        tabs()->setCurrentIndex(1);
        QVERIFY(timer->isActive());
        QCOMPARE(timer->interval(), 1000);
        QTest::ignoreMessage(QtDebugMsg, "0 tarnlink devices found.");
        QTest::qWait(1200);
        QTRY_COMPARE(processuse::threadsNamed("zolens-scan"), 1);
        tabs()->setCurrentIndex(otherTab);
        QVERIFY(!timer->isActive());
        QCOMPARE(processuse::threadsNamed("zolens-scan"), 0);
    }

    void aChoiceIsToldBeforeTheDialogEnds_data()
    {
        QTest::addColumn<int>("tab");
        QTest::addColumn<bool>("byDoubleClick");
        QTest::newRow("camera, Open") << 0 << false;
        QTest::newRow("camera, double click") << 0 << true;
        QTest::newRow("box, Connect") << 1 << false;
        QTest::newRow("box, double click") << 1 << true;
    }

    void aChoiceIsToldBeforeTheDialogEnds()
    {
        QFETCH(int, tab);
        QFETCH(bool, byDoubleClick);
        tabs()->setCurrentIndex(tab);
        if (tab == 1)
            addBox(QStringLiteral("10.0.0.9"));
        QStringList told;
        const auto tellOpening = [&told] { told << QStringLiteral("opening"); };
        connect(dialog.get(), &SelectDeviceDialog::openUsbDevice, this, tellOpening);
        connect(dialog.get(), &SelectDeviceDialog::openNetworkDevice, this, tellOpening);
        connect(dialog.get(), &QDialog::accepted, this, [&told] { told << QStringLiteral("end"); });
        const QListWidget* list = tab == 0 ? usbList() : boxList();
        const QPoint place = list->visualItemRect(list->item(0)).center();
        QTest::mouseClick(list->viewport(), Qt::LeftButton, {}, place);
        if (byDoubleClick)
            QTest::mouseDClick(list->viewport(), Qt::LeftButton, {}, place);
        else
            QTest::mouseClick(
                button(tab == 0 ? "pushButtonOpenCamera" : "pushButtonTarnlinkConnect"),
                Qt::LeftButton);
        QCOMPARE(told, QStringList({QStringLiteral("opening"), QStringLiteral("end")}));
    }

private:
    QListWidgetItem* addBox(const QString& address)
    {
        auto* item = new QListWidgetItem(QStringLiteral("Box"), boxList());
        item->setData(Qt::UserRole, address);
        return item;
    }
    /// Nobody is told.
    void connectCamera(int number, const char* name)
    {
        const auto camera = CameraBench::webcam();
        camera->name = name;
        bench.plug(number, camera, "1234", "5678");
        testbed.addCamera(number);
    }
    void plugIn(int number, const char* name)
    {
        connectCamera(number, name);
        testbed.tell(UdevTestbed::usbDevice(number), "add");
        testbed.tell(UdevTestbed::videoNode(number), "add");
    }
    /// Null when the list lacks it.
    QListWidgetItem* listed(const char* name) const
    {
        return usbList()->findItems(QString::fromLatin1(name), Qt::MatchExactly).value(0);
    }
    bool isListed(const char* name) const { return listed(name); }
    static bool areEnabled(const QList<QPushButton*>& buttons)
    {
        return std::all_of(buttons.begin(), buttons.end(),
                           [](const QPushButton* each) { return each->isEnabled(); });
    }
    QString labelOf(int tab) const { return tabs()->widget(tab)->findChild<QLabel*>()->text(); }

    CameraBench bench;
    UdevTestbed testbed;
};

QTEST_MAIN(tst_SelectDeviceDialog)
#include "tst_SelectDeviceDialog.moc"
