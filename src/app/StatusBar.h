#pragma once

#include <QElapsedTimer>
#include <QObject>

#include <memory>
#include <vector>

class QAction;
class QLabel;
class QPropertyAnimation;
class QSlider;
class QStatusBar;
class QTimer;
class QToolButton;

/// Fills the window's status bar: buttons of the output bar and of full screen, the zoom controls,
/// the frame rate and, while recording, a blinking indicator with the running time. Holds no state
/// of the program. Its items keep their places whatever they show. A child of the bar, which is not
/// owned.
class StatusBar final : public QObject
{
    Q_OBJECT

public:
    StatusBar(QStatusBar* bar, QAction* fullscreenAction, QAction* listAction);
    ~StatusBar() override;

    /// `timeout` in milliseconds; 0 for a text that stays.
    void showMessage(const QString& text, int timeout);
    /// A text about the recording that stays until Record is pressed again; the hints of actions
    /// cover it only while the mouse is over them.
    void showRecordNotice(const QString& text);
    /// 1.0 reads 100.00%.
    void setZoomText(double scale);
    /// Moves the slider without valueChanged, so that a change in the view does not come back.
    void setZoomLevel(int level);
    void setFps(double fps);
    void setZoomActions(QAction* zoomIn, QAction* zoomOut);

    QToolButton* zoomTextButton() const { return zoomButton; }
    /// Its value is a zoom level, 0 to 500.
    QSlider* levelSlider() const { return zoomSlider; }

    /// The indicator's running time: hours, minutes and seconds, two digits each at least.
    static QString recordTimeText(qint64 milliseconds);

public slots:
    void showRecordIndicator(bool recording);

private:
    QToolButton* addActionButton(QAction* action);
    QToolButton* addZoomStepButton();
    void addZoomButton();
    void addZoomSlider();
    void addFpsLabel();
    void addRecordSpace();
    QLabel* makeRecordLabel() const;
    void startBlinking();
    void startRecordTimer();
    void tick();
    void restoreRecordNotice(const QString& message);
    void endRecordNotice();

    QStatusBar* statusBar = nullptr;
    QToolButton* listButton = nullptr;
    QLabel* recordLabel = nullptr; ///< Null while not recording.
    QToolButton* zoomButton = nullptr;
    QSlider* zoomSlider = nullptr;
    QToolButton* zoomInButton = nullptr;
    QToolButton* zoomOutButton = nullptr;
    QLabel* fpsLabel = nullptr;
    QTimer* recordTimer = nullptr;
    QElapsedTimer recordTime;
    /// One a recording, which stops with its indicator and stays.
    std::vector<std::unique_ptr<QPropertyAnimation>> blinking;
    QWidget* recordSpace = nullptr; ///< Holds the indicator's place while there is none.
    QString recordNotice;           ///< Empty while there is nothing to tell.
};
