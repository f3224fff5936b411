#include "camera/panels/PanelCamMiscellaneous.h"

#include "CustomCamera.h"

#include <QComboBox>
#include <QGroupBox>
#include <QtTest>

class tst_PanelCamMiscellaneous : public QObject
{
    Q_OBJECT

private slots:
    void init()
    {
        fake = std::make_unique<OpenFake>();
        panel = std::make_unique<PanelCamMiscellaneous>(nullptr);
        panel->show();
    }

    void cleanup()
    {
        panel.reset();
        fake.reset();
    }

    void withoutFrequenciesTheGroupIsHidden()
    {
        open();
        QVERIFY(!panel->findChild<QGroupBox*>()->isVisible());
        fake->device->frequencies = {1, 2};
        panel->updateControls();
        QVERIFY(panel->findChild<QGroupBox*>()->isVisible());
    }

    void theFrequencyInForceIsSelected()
    {
        fake->device->frequencies = {0, 2, 3};
        fake->device->frequency = 3;
        open();
        QCOMPARE(frequency()->count(), 3);
        QCOMPARE(frequency()->itemText(1), QStringLiteral("60Hz"));
        QCOMPARE(frequency()->itemData(1).toInt(), 2);
        QCOMPARE(frequency()->currentText(), QStringLiteral("Auto"));
        QCOMPARE(fake->device->written, QStringList(QStringLiteral("frequency 3")));
    }

    void theFirstFrequencyIsNotWrittenBack()
    {
        fake->device->frequencies = {1, 2};
        fake->device->frequency = 1;
        open();
        QCOMPARE(frequency()->currentIndex(), 0);
        QVERIFY(fake->device->written.isEmpty());
    }

    void aFrequencyThatIsNotListedSelectsNothingAndWritesNothing()
    {
        fake->device->frequencies = {1, 2};
        fake->device->frequency = 4;
        open();
        QCOMPARE(frequency()->currentIndex(), -1);
        QVERIFY(fake->device->written.isEmpty());
    }

    void aChoiceIsWrittenAsItsValue()
    {
        fake->device->frequencies = {1, 2, 4};
        fake->device->frequency = 1;
        open();
        frequency()->setCurrentIndex(2);
        QCOMPARE(fake->device->frequency, 4);
    }

    void withoutCameraNothingHappens()
    {
        panel->updateControls();
        QCOMPARE(frequency()->count(), 0);
    }

private:
    void open()
    {
        panel->setCamera(&fake->camera);
        panel->updateControls();
    }
    QComboBox* frequency() const { return panel->findChild<QComboBox*>(); }

    std::unique_ptr<OpenFake> fake;
    std::unique_ptr<PanelCamMiscellaneous> panel;
};

QTEST_MAIN(tst_PanelCamMiscellaneous)
#include "tst_PanelCamMiscellaneous.moc"
