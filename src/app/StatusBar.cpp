#include "app/StatusBar.h"

#include <QAction>
#include <QGraphicsOpacityEffect>
#include <QLabel>
#include <QPropertyAnimation>
#include <QSlider>
#include <QStatusBar>
#include <QTimer>
#include <QToolButton>

#include <memory>
#include <utility>

namespace {

constexpr QSize iconSize(16, 16);
constexpr int highestLevel = 500;
constexpr int sliderWidth = 120;
constexpr int tickInterval = 1000;
constexpr int blinkDuration = 2000;
const QLatin1String recordImage("<img src=\":/images/record_indicator.png\">");

QString percentText(double scale)
{
    return QString::number(scale * 100.0, 'f', 2) + QLatin1Char('%');
}

QString fpsText(double fps)
{
    return QString::number(fps, 'f', 2) + QLatin1String(" fps");
}

} // namespace

StatusBar::StatusBar(QStatusBar* bar, QAction* fullscreenAction, QAction* listAction)
    : QObject(bar),
      statusBar(bar)
{
    listButton = addActionButton(listAction);
    addActionButton(fullscreenAction);
    addZoomButton();
    zoomOutButton = addZoomStepButton();
    addZoomSlider();
    zoomInButton = addZoomStepButton();
    addFpsLabel();
    addRecordSpace();
    connect(bar, &QStatusBar::messageChanged, this, &StatusBar::restoreRecordNotice);
}

StatusBar::~StatusBar() = default;

void StatusBar::showMessage(const QString& text, int timeout)
{
    statusBar->showMessage(text, timeout);
}

void StatusBar::showRecordNotice(const QString& text)
{
    recordNotice = text;
    statusBar->showMessage(text);
}

void StatusBar::setZoomText(double scale)
{
    zoomButton->setText(percentText(scale));
    zoomButton->setAccessibleDescription(percentText(scale));
}

void StatusBar::setZoomLevel(int level)
{
    zoomSlider->setTracking(false);
    zoomSlider->setSliderPosition(level);
    zoomSlider->setTracking(true);
}

void StatusBar::setFps(double fps)
{
    fpsLabel->setText(fpsText(fps));
}

void StatusBar::setZoomActions(QAction* zoomIn, QAction* zoomOut)
{
    zoomInButton->setDefaultAction(zoomIn);
    zoomOutButton->setDefaultAction(zoomOut);
}

QString StatusBar::recordTimeText(qint64 milliseconds)
{
    const qint64 seconds = milliseconds / 1000;
    const auto field = [](qint64 value) {
        return QStringLiteral("%1").arg(value, 2, 10, QLatin1Char('0'));
    };
    return QStringLiteral("%1:%2:%3")
        .arg(field(seconds / 3600), field(seconds / 60 % 60), field(seconds % 60));
}

void StatusBar::showRecordIndicator(bool recording)
{
    endRecordNotice();
    if (recording && !recordLabel) {
        recordLabel = makeRecordLabel();
        recordSpace->hide();
        statusBar->addPermanentWidget(recordLabel);
        startBlinking();
        startRecordTimer();
    } else if (!recording && recordLabel) {
        statusBar->removeWidget(recordLabel);
        delete recordLabel;
        recordLabel = nullptr;
        recordSpace->show();
    }
}

QToolButton* StatusBar::addActionButton(QAction* action)
{
    auto* button = new QToolButton(statusBar);
    button->setDefaultAction(action);
    button->setIconSize(iconSize);
    button->setToolButtonStyle(Qt::ToolButtonTextBesideIcon);
    statusBar->addPermanentWidget(button);
    return button;
}

QToolButton* StatusBar::addZoomStepButton()
{
    auto* button = new QToolButton;
    button->setIconSize(iconSize);
    statusBar->addPermanentWidget(button);
    return button;
}

void StatusBar::addZoomButton()
{
    zoomButton = new QToolButton(statusBar);
    zoomButton->setAccessibleName(tr("Zoom"));
    statusBar->addPermanentWidget(zoomButton);
    zoomButton->setText(percentText(88.8888));
    zoomButton->ensurePolished();
    zoomButton->setFixedWidth(zoomButton->sizeHint().width());
    setZoomText(1.0);
}

void StatusBar::addZoomSlider()
{
    zoomSlider = new QSlider(Qt::Horizontal);
    zoomSlider->setAccessibleName(tr("Zoom level"));
    zoomSlider->setRange(0, highestLevel);
    zoomSlider->setMaximumWidth(sliderWidth);
    statusBar->addPermanentWidget(zoomSlider);
}

void StatusBar::addFpsLabel()
{
    fpsLabel = new QLabel(fpsText(888.88), statusBar);
    fpsLabel->setAlignment(Qt::AlignRight | Qt::AlignVCenter);
    statusBar->addPermanentWidget(fpsLabel);
    fpsLabel->ensurePolished();
    fpsLabel->setFixedWidth(fpsLabel->sizeHint().width());
    fpsLabel->clear();
}

void StatusBar::addRecordSpace()
{
    const std::unique_ptr<QLabel> sample(makeRecordLabel());
    sample->ensurePolished();
    recordSpace = new QWidget(statusBar);
    recordSpace->setFixedWidth(sample->sizeHint().width());
    statusBar->addPermanentWidget(recordSpace);
}

QLabel* StatusBar::makeRecordLabel() const
{
    auto* label = new QLabel(statusBar);
    label->setTextFormat(Qt::RichText);
    label->setText(recordImage + QLatin1Char(' ') + recordTimeText(0));
    return label;
}

void StatusBar::startBlinking()
{
    auto* effect = new QGraphicsOpacityEffect(recordLabel);
    recordLabel->setGraphicsEffect(effect);
    auto animation = std::make_unique<QPropertyAnimation>(effect, QByteArrayLiteral("opacity"));
    animation->setDuration(blinkDuration);
    animation->setStartValue(0.1);
    animation->setEndValue(1.0);
    animation->setEasingCurve(QEasingCurve::InOutQuart);
    animation->setLoopCount(-1);
    animation->start();
    blinking.push_back(std::move(animation));
}

void StatusBar::startRecordTimer()
{
    recordTimer = new QTimer(this);
    recordTimer->setTimerType(Qt::PreciseTimer); // Others tick early, in the second before.
    recordTime.start();
    connect(recordTimer, &QTimer::timeout, this, &StatusBar::tick);
    recordTimer->start(tickInterval);
}

// Timers of earlier recordings go on ticking, without effect while there is no indicator.
void StatusBar::tick()
{
    if (recordLabel)
        recordLabel->setText(recordImage + QLatin1String("  ") +
                             recordTimeText(recordTime.elapsed()));
}

// A hint that goes leaves no message at all.
void StatusBar::restoreRecordNotice(const QString& message)
{
    if (message.isEmpty() && !recordNotice.isEmpty())
        statusBar->showMessage(recordNotice);
}

void StatusBar::endRecordNotice()
{
    const QString ended = std::exchange(recordNotice, QString());
    if (!ended.isEmpty() && statusBar->currentMessage() == ended)
        statusBar->clearMessage();
}
