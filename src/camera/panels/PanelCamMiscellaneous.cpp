#include "camera/panels/PanelCamMiscellaneous.h"

#include "camera/Texts.h"
#include "ui_PanelCamMiscellaneous.h"

#include <zolens/CWCamera.h>

#include <QSignalBlocker>

PanelCamMiscellaneous::PanelCamMiscellaneous(QWidget* parent)
    : PanelCamCtrl(parent),
      ui(std::make_unique<Ui::PanelCamMiscellaneous>())
{
    ui->setupUi(this);
    finishForm();
}

PanelCamMiscellaneous::~PanelCamMiscellaneous() = default;

// A frequency in force that is the first of the list is already selected and is not written back.
void PanelCamMiscellaneous::updateControls()
{
    if (!device())
        return;
    setEnabled(true);
    std::vector<int> frequencies;
    device()->powerFrequencies(&frequencies);
    ui->groupPowerFrequency->setVisible(!frequencies.empty());
    if (frequencies.empty())
        return;
    replaceItems(frequencies);
    QComboBox* combo = ui->comboBoxPowerFrequency;
    combo->setCurrentIndex(combo->findData(device()->powerFrequency()));
}

void PanelCamMiscellaneous::on_comboBoxPowerFrequency_currentIndexChanged(int index)
{
    if (device() && index >= 0)
        device()->setPowerFrequency(ui->comboBoxPowerFrequency->itemData(index).toInt());
}

void PanelCamMiscellaneous::replaceItems(const std::vector<int>& frequencies)
{
    const QSignalBlocker blocker(ui->comboBoxPowerFrequency);
    ui->comboBoxPowerFrequency->clear();
    for (const int frequency : frequencies)
        ui->comboBoxPowerFrequency->addItem(
            QStringLiteral("%1").arg(Texts::powerFrequencyText(frequency)), frequency);
}
