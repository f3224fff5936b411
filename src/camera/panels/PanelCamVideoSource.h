#pragma once

#include "camera/panels/PanelCamCtrl.h"

#include <memory>

namespace Ui {
class PanelCamVideoSource;
}

/// Names the open camera as a link to the choice of another one, with buttons to pause and to close
/// it. A name too long for the panel is elided; the tool tip has it whole.
class PanelCamVideoSource final : public PanelCamCtrl
{
    Q_OBJECT

public:
    explicit PanelCamVideoSource(QWidget* parent);
    ~PanelCamVideoSource() override;

signals:
    void nameClicked();
    void closeCamera();
    void pauseCamera(bool enable);

public slots:
    void updateControls() override;
    /// Does nothing.
    void pause(bool enable);
    void setButtonVisible(bool visible);

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private slots:
    void on_toolButtonClose_clicked();
    void on_toolButtonPause_clicked(bool checked);

private:
    void setIcons();
    void showName(const QString& text, const QString& toolTip);
    void fitName();

    std::unique_ptr<Ui::PanelCamVideoSource> ui;
    QString name;
};
