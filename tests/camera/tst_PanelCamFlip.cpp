#include "camera/panels/PanelCamFlip.h"

#include "CustomCamera.h"

#include <QPushButton>
#include <QtTest>

class tst_PanelCamFlip : public QObject
{
    Q_OBJECT

private slots:
    void theButtonsShowHowThePictureIsTurned()
    {
        OpenFake fake;
        fake.device->mirrored = true;
        PanelCamFlip panel(nullptr);
        panel.setCamera(&fake.camera);
        panel.updateControls();
        QVERIFY(button(panel, "pushButtonMirror")->isChecked());
        QVERIFY(!button(panel, "pushButtonFlip")->isChecked());
    }

    void clicksTurnThePicture()
    {
        OpenFake fake;
        PanelCamFlip panel(nullptr);
        panel.setCamera(&fake.camera);
        panel.updateControls();
        button(panel, "pushButtonMirror")->click();
        QVERIFY(fake.device->mirrored);
        QVERIFY(!fake.device->upsideDown);
        button(panel, "pushButtonFlip")->click();
        QVERIFY(fake.device->upsideDown);
        button(panel, "pushButtonMirror")->click();
        QVERIFY(!fake.device->mirrored);
    }

    void withoutCameraNothingHappens()
    {
        PanelCamFlip panel(nullptr);
        panel.updateControls();
        button(panel, "pushButtonFlip")->click();
        QVERIFY(button(panel, "pushButtonFlip")->isChecked());
    }

private:
    static QPushButton* button(const PanelCamFlip& panel, const char* name)
    {
        return panel.findChild<QPushButton*>(QString::fromLatin1(name));
    }
};

QTEST_MAIN(tst_PanelCamFlip)
#include "tst_PanelCamFlip.moc"
