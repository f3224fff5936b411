#pragma once

#include <QWidget>

class FormCameraControl;
class FormMeasure;
class QAction;
class QBoxLayout;
class QLabel;
class QStackedWidget;
class ZoSideBar;

/// The left column of the main window: a banner where the build has one, the page buttons with the
/// window's actions under them, and the pages with a caption over them.
class FormSidebar final : public QWidget
{
    Q_OBJECT

public:
    explicit FormSidebar(QWidget* parent);

    QSize sizeHint() const override { return {300, 0}; }
    QSize minimumSizeHint() const override { return {250, 0}; }

    /// Adds a button at the bottom. The action is not owned.
    void addBottomAction(QAction* action);
    FormCameraControl* cameraControl() const { return cameraPage; }

public slots:
    void setCurrentStackedWidget(int index);

private:
    void addBanner(QBoxLayout* layout);
    QBoxLayout* makeCaptionRow();
    void addPages();

    ZoSideBar* sideBar = nullptr;
    QLabel* captionLabel = nullptr;
    QStackedWidget* stackedWidget = nullptr;
    FormCameraControl* cameraPage = nullptr;
    FormMeasure* measurePage = nullptr;
};
