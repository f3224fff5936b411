#include "camera/panels/PanelCamColorAdjustment.h"

#include "CustomCamera.h"

#include <QComboBox>
#include <QGroupBox>
#include <QPushButton>
#include <QSlider>
#include <QSpinBox>
#include <QtTest>

namespace {

struct Row
{
    int id;
    const char* name;
    const char* title;
};

constexpr Row rows[] = {{0, "Brightness", "Brightness"}, {1, "Contrast", "Contrast"},
                        {3, "Saturation", "Saturation"}, {2, "Hue", "Hue"},
                        {4, "Gamma", "Gamma"},           {5, "Sharpness", "Sharpness"},
                        {19, "Denoise", "De-noise"}};

} // namespace

class tst_PanelCamColorAdjustment : public QObject
{
    Q_OBJECT

private slots:
    void init()
    {
        fake = std::make_unique<OpenFake>();
        panel = std::make_unique<PanelCamColorAdjustment>(nullptr);
        panel->show();
    }

    void cleanup()
    {
        panel.reset();
        fake.reset();
    }

    void theSpinBoxesStartWide()
    {
        const auto spinBoxes = panel->findChildren<QSpinBox*>();
        QCOMPARE(spinBoxes.size(), 7);
        for (const QSpinBox* spinBox : spinBoxes) {
            QCOMPARE(spinBox->minimum(), -9999);
            QCOMPARE(spinBox->maximum(), 9999);
        }
    }

    void withoutPropertiesEveryGroupIsHidden()
    {
        open();
        const auto groups = panel->findChildren<QGroupBox*>();
        QCOMPARE(groups.size(), 8);
        for (const QGroupBox* group : groups)
            QVERIFY2(!group->isVisible(), qPrintable(group->objectName()));
        QVERIFY(fake->device->written.isEmpty());
    }

    void eachRowShowsAndWritesItsProperty_data()
    {
        QTest::addColumn<int>("id");
        QTest::addColumn<QString>("name");
        QTest::addColumn<QString>("title");
        for (const Row& row : rows)
            QTest::newRow(row.name)
                << row.id << QString::fromLatin1(row.name) << QString::fromLatin1(row.title);
    }

    void eachRowShowsAndWritesItsProperty()
    {
        QFETCH(int, id);
        QFETCH(QString, name);
        QFETCH(QString, title);
        fake->device->properties[id] = {-40.0, 60.0, 25.7, 10.0};
        open();
        QVERIFY(group(name)->isVisible());
        QCOMPARE(group(name)->title(), title);
        QCOMPARE(slider(name)->minimum(), -40);
        QCOMPARE(slider(name)->maximum(), 60);
        QCOMPARE(slider(name)->value(), 25);
        QCOMPARE(spinBox(name)->minimum(), -40);
        QCOMPARE(spinBox(name)->maximum(), 60);
        QCOMPARE(spinBox(name)->value(), 25);
        fake->device->written.clear();
        spinBox(name)->setValue(-3);
        slider(name)->setValue(7);
        QCOMPARE(spinBox(name)->value(), 7);
        QCOMPARE(fake->device->written, QStringList({QStringLiteral("%1 = -3").arg(id),
                                                     QStringLiteral("%1 = 7").arg(id)}));
    }

    void openingResetsTheColourModeToTheFirst()
    {
        offerColourModes();
        fake->device->properties[CMProperty_ColorMode].value = 2.0;
        open();
        QVERIFY(group(QStringLiteral("ColorMode"))->isVisible());
        QCOMPARE(colourMode()->count(), 3);
        QCOMPARE(colourMode()->itemText(1), QStringLiteral("Monochrome"));
        QCOMPARE(colourMode()->currentIndex(), 0);
        QCOMPARE(fake->device->properties[CMProperty_ColorMode].value, 0.0);
        colourMode()->setCurrentIndex(2);
        QCOMPARE(fake->device->properties[CMProperty_ColorMode].value, 2.0);
        panel->updateControls();
        QCOMPARE(fake->device->properties[CMProperty_ColorMode].value, 0.0);
    }

    void thePositionOfAColourModeIsItsValue()
    {
        offerColourModes();
        fake->device->colorModes = {2, 1};
        open();
        QCOMPARE(colourMode()->itemText(0), QStringLiteral("Negative"));
        colourMode()->setCurrentIndex(1);
        QCOMPARE(fake->device->written.last(), QStringLiteral("18 = 1"));
    }

    void defaultResetsFromTheTopDownAndWritesOnceMore()
    {
        offerColourModes();
        for (const Row& row : rows)
            fake->device->properties[row.id] = {0.0, 100.0, 20.0, 30.6};
        open();
        colourMode()->setCurrentIndex(2);
        fake->device->written.clear();
        standard()->click();
        QStringList resets{QStringLiteral("reset 18")};
        for (const Row& row : rows)
            resets << QStringLiteral("reset %1").arg(row.id);
        QCOMPARE(fake->device->written.filter(QStringLiteral("reset")), resets);
        QCOMPARE(colourMode()->currentIndex(), 0);
        QCOMPARE(slider(QStringLiteral("Hue"))->value(), 30);
        QCOMPARE(spinBox(QStringLiteral("Hue"))->value(), 30);
        QVERIFY(fake->device->written.contains(QStringLiteral("2 = 30")));
    }

    void openingFillsFromTheTopDown()
    {
        offerColourModes();
        QStringList ids{QStringLiteral("18")};
        for (const Row& row : rows) {
            fake->device->properties[row.id] = {10.0, 100.0, 20.0, 30.0};
            ids << QString::number(row.id);
        }
        open();
        QCOMPARE(fake->device->writtenOnceEach(), ids);
    }

    void defaultLeavesWhatADeviceHasNoLongerAlone()
    {
        offerColourModes();
        fake->device->properties[CMProperty_Hue] = {-40.0, 60.0, 25.0, 10.0};
        open();
        colourMode()->setCurrentIndex(2);
        fake->device->properties.clear();
        standard()->click();
        QCOMPARE(colourMode()->currentIndex(), 2);
        QCOMPARE(slider(QStringLiteral("Hue"))->value(), 25);
        QCOMPARE(spinBox(QStringLiteral("Hue"))->value(), 25);
    }

    void withoutCameraNothingHappens()
    {
        panel->updateControls();
        slider(QStringLiteral("Gamma"))->setValue(9);
        standard()->click();
        QCOMPARE(slider(QStringLiteral("Gamma"))->value(), 9);
        QVERIFY(group(QStringLiteral("Gamma"))->isVisible());
    }

    void theSimulatedMicroscopeHasEveryRow()
    {
        MyCamera microscope;
        QVERIFY(microscope.open(CWDevice_Simulated, 0, true));
        panel->setCamera(&microscope);
        panel->updateControls();
        for (const QGroupBox* each : panel->findChildren<QGroupBox*>())
            QVERIFY2(each->isVisible(), qPrintable(each->objectName()));
        slider(QStringLiteral("Contrast"))->setValue(150);
        double contrast = 0.0;
        QCOMPARE(microscope.camera->getProperty(CMProperty_Contrast, &contrast), 0);
        QCOMPARE(contrast, 150.0);
        standard()->click();
        QCOMPARE(slider(QStringLiteral("Contrast"))->value(), 100);
    }

private:
    void open()
    {
        panel->setCamera(&fake->camera);
        panel->updateControls();
    }
    void offerColourModes()
    {
        fake->device->properties[CMProperty_ColorMode] = {0.0, 2.0, 0.0, 0.0};
        fake->device->colorModes = {0, 1, 2};
    }
    QGroupBox* group(const QString& name) const
    {
        return panel->findChild<QGroupBox*>(QString(QStringLiteral("group") + name));
    }
    QSlider* slider(const QString& name) const
    {
        return panel->findChild<QSlider*>(QString(QStringLiteral("slider") + name));
    }
    QSpinBox* spinBox(const QString& name) const
    {
        return panel->findChild<QSpinBox*>(QString(QStringLiteral("spinBox") + name));
    }
    QComboBox* colourMode() const { return panel->findChild<QComboBox*>(); }
    QPushButton* standard() const { return panel->findChild<QPushButton*>(); }

    std::unique_ptr<OpenFake> fake;
    std::unique_ptr<PanelCamColorAdjustment> panel;
};

QTEST_MAIN(tst_PanelCamColorAdjustment)
#include "tst_PanelCamColorAdjustment.moc"
