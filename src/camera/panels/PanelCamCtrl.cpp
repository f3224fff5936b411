#include "camera/panels/PanelCamCtrl.h"

#include "camera/Texts.h"

#include <zolens/MyCamera.h>

#include <QAbstractButton>
#include <QComboBox>
#include <QGroupBox>
#include <QKeyEvent>
#include <QLabel>
#include <QLayout>
#include <QSignalBlocker>
#include <QSlider>
#include <QSpinBox>
#include <QStyledItemDelegate>

#include <cmath>
#include <limits>

namespace {

constexpr int formMargin = 4;
const QLatin1String widestValue("88.88 ms");

/// Cuts a value to an integer; what no integer can hold is held at the ends of their range.
int cut(double value)
{
    if (std::isnan(value))
        return 0;
    constexpr auto lowest = double(std::numeric_limits<int>::min());
    constexpr auto highest = double(std::numeric_limits<int>::max());
    return static_cast<int>(qBound(lowest, value, highest));
}

/// Takes the room of the widest text that properties have, so that no slider moves when the text
/// changes.
void fixWidth(QLabel* label)
{
    label->ensurePolished();
    label->setMinimumWidth(label->fontMetrics().horizontalAdvance(widestValue));
}

/// Whether the event asks a widget to take Return for itself, before it is a shortcut.
bool asksForReturn(const QEvent* event)
{
    if (event->type() != QEvent::ShortcutOverride)
        return false;
    const int key = static_cast<const QKeyEvent*>(event)->key();
    return key == Qt::Key_Return || key == Qt::Key_Enter;
}

struct Range
{
    int lowest;
    int highest;
};

Range rangeOf(CWCamera* device, tagCMProperty id)
{
    double lowest = 0.0;
    double highest = 0.0;
    double unused = 0.0;
    device->propertyRange(id, &lowest, &highest, &unused);
    return {cut(lowest), cut(highest)};
}

} // namespace

bool PanelCamCtrl::eventFilter(QObject* watched, QEvent* event)
{
    if (qobject_cast<QSpinBox*>(watched) && asksForReturn(event)) {
        event->accept();
        return true;
    }
    return QWidget::eventFilter(watched, event);
}

void PanelCamCtrl::finishForm()
{
    layout()->setContentsMargins(formMargin, formMargin, formMargin, formMargin);
    for (QComboBox* combo : findChildren<QComboBox*>())
        combo->setItemDelegate(new QStyledItemDelegate(combo));
    for (QSpinBox* spinBox : findChildren<QSpinBox*>())
        spinBox->installEventFilter(this);
}

void PanelCamCtrl::checkAnew(QAbstractButton* button)
{
    {
        const QSignalBlocker blocker(button);
        button->setChecked(false);
    }
    button->setChecked(true);
}

CWCamera* PanelCamCtrl::device() const
{
    return camera ? camera->camera.get() : nullptr;
}

bool PanelCamCtrl::readProperty(tagCMProperty id, int* value) const
{
    double exact = 0.0;
    if (!device() || device()->getProperty(id, &exact) != 0)
        return false;
    *value = cut(exact);
    return true;
}

void PanelCamCtrl::writeProperty(tagCMProperty id, int value)
{
    if (device())
        device()->setProperty(id, value);
}

void PanelCamCtrl::showPolled(tagCMProperty id, QSlider* slider)
{
    int value = 0;
    if (!readProperty(id, &value))
        return;
    const QSignalBlocker blocker(slider);
    slider->setValue(value);
}

std::optional<int> PanelCamCtrl::resetProperty(tagCMProperty id)
{
    if (!device()->isPropertySupported(id))
        return std::nullopt;
    return cut(device()->resetProperty(id));
}

void PanelCamCtrl::resetProperty(tagCMProperty id, QSlider* slider)
{
    if (const auto standard = resetProperty(id))
        slider->setValue(*standard);
}

void PanelCamCtrl::fillCombo(tagCMProperty id, QGroupBox* group, QComboBox* combo)
{
    if (!device() || !showGroup(id, group))
        return;
    std::vector<int> values;
    device()->propertyValues(&values, id);
    combo->clear();
    if (id != CMProperty_ColorMode)
        return;
    for (const int value : values)
        combo->addItem(QStringLiteral("%1").arg(Texts::colorModeText(value)));
}

void PanelCamCtrl::fillLabelledSlider(tagCMProperty id, QWidget* group, QSlider* slider,
                                      QLabel* label, bool formatted)
{
    if (!device() || !showGroup(id, group))
        return;
    const Range range = rangeOf(device(), id);
    double value = slider->value();
    device()->getProperty(id, &value);
    slider->setRange(range.lowest, range.highest);
    slider->setTickInterval(1);
    slider->setValue(cut(value));
    slider->setPageStep(1);
    fixWidth(label);
    if (formatted)
        label->setText(camera->getFormatedProperty(id, false));
    else
        label->setNum(value);
}

void PanelCamCtrl::fillSpinBoxSlider(tagCMProperty id, QWidget* group, QSlider* slider,
                                     QSpinBox* spinBox)
{
    if (!device() || !showGroup(id, group))
        return;
    const Range range = rangeOf(device(), id);
    int value = slider->value();
    readProperty(id, &value);
    spinBox->setRange(range.lowest, range.highest);
    slider->setRange(range.lowest, range.highest);
    slider->setTickInterval(1);
    slider->setValue(value);
}

bool PanelCamCtrl::showGroup(tagCMProperty id, QWidget* group)
{
    const bool supported = device()->isPropertySupported(id);
    if (group)
        group->setVisible(supported);
    return supported;
}
