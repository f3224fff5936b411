#include "app/Application.h"
#include "app/Keys.h"
#include "app/MainWindow.h"
#include "app/ModalDialog.h"
#include "calibration/PrimitiveCalibrationModel.h"
#include "camera/SelectDeviceDialog.h"
#include "canvas/GraphicsScene.h"
#include "canvas/GraphicsView.h"
#include "measure/PrimitiveManager.h"
#include "measure/ToolTypes.h"
#include "preferences/AttributeKeys.h"

#include <zolens/MyCamera.h>

#include <QAction>
#include <QJsonDocument>
#include <QLineEdit>
#include <QSettings>
#include <QTabWidget>
#include <QtTest>

#include <functional>

namespace {

using Visit = std::function<void(MainWindow*)>;
Visit visit;

/// Waits for the first paint of the main window, visits it, and ends the program.
class Visitor final : public QObject
{
public:
    using QObject::QObject;

    bool eventFilter(QObject* watched, QEvent* event) override
    {
        auto* window = qobject_cast<MainWindow*>(watched);
        if (window && event->type() == QEvent::Paint && visit) {
            QTimer::singleShot(0, window, [window, steps = std::exchange(visit, nullptr)] {
                steps(window);
                if (window->isVisible())
                    window->close();
            });
        }
        return false;
    }
};

/// Runs the program as a whole, with the default answer to every question; 0 when it went well.
int run(Visit steps)
{
    visit = std::move(steps);
    char name[] = "orvo";
    char* arguments[] = {name, nullptr};
    int count = 1;
    return runOrvo(count, arguments);
}

QString configuration(const char* file)
{
    return qEnvironmentVariable("XDG_CONFIG_HOME") + QLatin1Char('/') + QLatin1String(file);
}

void write(const QString& path, const QByteArray& content)
{
    QDir().mkpath(QFileInfo(path).absolutePath());
    QFile file(path);
    QVERIFY(file.open(QIODevice::WriteOnly));
    QCOMPARE(file.write(content), qint64(content.size()));
}

QStringList allKeys()
{
    return {Keys::theme(),
            Keys::maximizeWhenLanuch(),
            Keys::confirmExit(),
            Keys::language(),
            Keys::captureFilePath(),
            Keys::captureFileFormat(),
            Keys::tryStillCapture(),
            Keys::disableStill(),
            Keys::rtspUrl(),
            Keys::showScalebar(),
            Keys::showCross(),
            Keys::shortcutsSnap(),
            Keys::shortcutsFullscreen(),
            Keys::shortcutsZoomIn(),
            Keys::shortcutsZoomOut(),
            Keys::attributesGeneralTool(),
            Keys::attributesRectange(),
            Keys::attributesArrow(),
            Keys::attributesText(),
            Keys::attributesCounter(),
            Keys::attributesScalebar()};
}

QVariantHash attributesOfValue(const QVariant& value)
{
    return {{AttributeKeys::lineWidth(), value},
            {AttributeKeys::lineColor(), value},
            {AttributeKeys::linePenStyle(), value},
            {AttributeKeys::fillColor(), value},
            {AttributeKeys::dimensionFont(), value},
            {AttributeKeys::dimensionTextColor(), value},
            {AttributeKeys::angularDimensionRadius(), value},
            {AttributeKeys::ctrlPointRadius(), value},
            {AttributeKeys::ctrlPointBorderWidth(), value},
            {AttributeKeys::ctrlPointColor(), value}};
}

GraphicsView* canvasOf(MainWindow* window)
{
    return window->findChild<GraphicsView*>();
}

/// Draws one tool of some families with the mouse; the number of those that are there afterwards.
int drawTools(MainWindow* window)
{
    GraphicsView* view = canvasOf(window);
    const QPoint middle = view->viewport()->rect().center();
    const QVector<QPoint> places{middle, middle + QPoint(90, 20), middle + QPoint(70, 80)};
    const auto click = [view](Qt::MouseButton button, const QPoint& at) {
        QTest::mouseMove(view->viewport(), at);
        QTest::mouseClick(view->viewport(), button, Qt::NoModifier, at);
    };
    for (const int type : {ToolType::Line, ToolType::Polygon, ToolType::Angle, ToolType::Arrow}) {
        const bool straight = type == ToolType::Line || type == ToolType::Arrow;
        view->setPrimitiveDragMode(PrimitiveManager::Draw, type);
        for (const QPoint& at : places.mid(0, straight ? 2 : 3))
            click(Qt::LeftButton, at);
        click(Qt::RightButton, places.last());
    }
    view->setPrimitiveDragMode(PrimitiveManager::Select, -1);
    return window->grab().isNull() ? 0 : view->manager()->generalTools(Qt::AscendingOrder).size();
}

/// Opens and closes the simulated camera; whether a frame came in between.
bool showsCamera(MainWindow* window)
{
    QMetaObject::invokeMethod(window, "openUsbDevice", Q_ARG(int, CWDevice_Simulated),
                              Q_ARG(int, 0));
    auto* camera = window->findChild<MyCamera*>();
    if (!camera)
        return false;
    bool shown = false;
    QObject receiver; // On this thread, other than the signal.
    QObject::connect(camera, &MyCamera::getImage, &receiver, [&shown] { shown = true; });
    const bool came = QTest::qWaitFor([&shown] { return shown; });
    QMetaObject::invokeMethod(window, "closeCamera");
    return came;
}

QAction* actionOf(MainWindow* window, const char* text)
{
    for (QAction* action : window->findChildren<QAction*>()) {
        if (action->text() == QLatin1String(text))
            return action;
    }
    return nullptr;
}

/// Types an address into the dialog as a user does, and leaves it if it stays open.
void enterUrl(SelectDeviceDialog* dialog, const QString& url)
{
    dialog->findChild<QTabWidget*>(QStringLiteral("tabWidget"))->setCurrentIndex(2);
    dialog->findChild<QLineEdit*>(QStringLiteral("lineEditRtspUrl"))->setText(url);
    QTest::mouseClick(dialog->findChild<QPushButton*>(QStringLiteral("pushButtonRTSPConnect")),
                      Qt::LeftButton);
    if (dialog->isVisible())
        dialog->reject();
}

/// The text of the message that opening the address ends with; empty for none.
QString messageForUrl(MainWindow* window, const QString& url)
{
    QString text;
    DialogAnswer<SelectDeviceDialog> dialog(
        [&url](SelectDeviceDialog* shown) { enterUrl(shown, url); });
    DialogAnswer<QMessageBox> answer([&text](QMessageBox* box) {
        text = box->text();
        clickButton(box, QMessageBox::Ok);
    });
    QMetaObject::invokeMethod(window, "openSelectDeviceDialog");
    return dialog.wasAsked() ? text : QStringLiteral("no dialog");
}

} // namespace

/// Whole runs of the program with input that nothing good wrote.
class tst_BadInput final : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase()
    {
        qAddPreRoutine([] { qApp->installEventFilter(new Visitor(qApp)); });
    }

    void init()
    {
        store().clear();
        store().setValue(Keys::confirmExit(), false);
        store().sync();
    }

    void settingsOfWrongTypesLeaveAProgramThatRuns_data()
    {
        QTest::addColumn<QVariant>("value");
        QTest::newRow("text") << QVariant(QStringLiteral("\u0001garbage, %1 Ctrl+"));
        QTest::newRow("empty text") << QVariant(QString());
        QTest::newRow("number") << QVariant(-1e300);
        QTest::newRow("list") << QVariant(QVariantList{1, QStringLiteral("x"), QVariant()});
        QTest::newRow("map") << QVariant(QVariantMap{{QStringLiteral("a"), QColor(Qt::red)}});
        QTest::newRow("bytes") << QVariant(QByteArray("\x00\xff\xfe", 3));
        QTest::newRow("set of texts") << QVariant(attributesOfValue(QStringLiteral("x")));
        QTest::newRow("set of numbers") << QVariant(attributesOfValue(-7));
        QTest::newRow("set of no numbers") << QVariant(attributesOfValue(qQNaN()));
        QTest::newRow("set of endless numbers") << QVariant(attributesOfValue(qInf()));
    }

    void settingsOfWrongTypesLeaveAProgramThatRuns()
    {
        QFETCH(QVariant, value);
        for (const QString& key : allKeys())
            store().setValue(key, value);
        store().setValue(Keys::confirmExit(), false);
        store().sync();
        verifyThatItRuns();
    }

    void damagedSettingsFilesLeaveAProgramThatRuns_data()
    {
        QTest::addColumn<QByteArray>("content");
        const QByteArray exit("[gui]\nconfirmExit=false\n");
        QTest::newRow("no settings") << QByteArray(exit + "]]]\n=\n[\n\x01\xff\xfe\n");
        QTest::newRow("set cut short")
            << QByteArray(exit + "[measurement]\nattr_generaltool=@Variant(\\0\\0\\0\\x1c)\n");
        QTest::newRow("set of endless length")
            << QByteArray(exit + "[measurement]\nattr_generaltool=@Variant(\\0\\0\\0\\x1c\\xff"
                                 "\\xff\\xff\\xff\\0\\0)\n");
        QTest::newRow("unknown type")
            << QByteArray(exit + "[measurement]\nattr_generaltool=@Variant(\\x7f\\xff\\0\\0)\n"
                                 "attr_toolarrow=@Nothing(\n");
    }

    void damagedSettingsFilesLeaveAProgramThatRuns()
    {
        QFETCH(QByteArray, content);
        write(configuration("Orvo/Orvo.conf"), content);
        store().sync();
        verifyThatItRuns();
    }

    // Only what is false as a text is; the question stays for everything else.
    void anUnreadableExitSettingAsks()
    {
        store().setValue(Keys::confirmExit(), QStringLiteral("garbage"));
        store().sync();
        bool asked = false;
        QCOMPARE(run([&asked](MainWindow* window) {
                     DialogAnswer<QMessageBox> answer(
                         [](QMessageBox* box) { clickButton(box, QMessageBox::Ok); });
                     window->close();
                     asked = answer.wasAsked();
                 }),
                 0);
        QVERIFY(asked);
        QCOMPARE(store().value(Keys::confirmExit()).toBool(), true);
    }

    void anUnreadableKeyTextIsNoKey()
    {
        store().setValue(Keys::shortcutsSnap(), QVariantList{1, 2});
        store().setValue(Keys::shortcutsZoomIn(), QStringLiteral("Strg+Garbage"));
        store().sync();
        QKeySequence snap(Qt::Key_A);
        QKeySequence zoomIn(Qt::Key_A);
        QKeySequence zoomOut;
        QCOMPARE(run([&](MainWindow* window) {
                     snap = actionOf(window, "Snap")->shortcut();
                     zoomIn = actionOf(window, "Zoom In")->shortcut();
                     zoomOut = actionOf(window, "Zoom Out")->shortcut();
                 }),
                 0);
        QVERIFY(snap.isEmpty());
        QVERIFY(zoomIn.isEmpty() || zoomIn[0] == Qt::Key_unknown);
        QCOMPARE(zoomOut, QKeySequence(QStringLiteral("Ctrl+-")));
    }

    void aDamagedCalibrationFileLeavesPixelsAndIsWrittenAnew()
    {
        const QString path = configuration("Orvo/Orvo/Measure/calibrations.json");
        write(path, "{\"calibrations\": [{\"name\": \"A\", \"va");
        int rows = 0;
        int drawn = 0;
        QCOMPARE(run([&](MainWindow* window) {
                     rows = PrimitiveCalibrationModel::instance().rowCount();
                     drawn = drawTools(window);
                 }),
                 0);
        QCOMPARE(rows, 1);
        QCOMPARE(drawn, 4);
        QFile file(path);
        QVERIFY(file.open(QIODevice::ReadOnly));
        QVERIFY(QJsonDocument::fromJson(file.readAll()).isObject());
    }

    void addressesThatAreNoneLeaveAProgramThatRuns_data()
    {
        QTest::addColumn<QString>("url");
        QTest::addColumn<bool>("reported");
        QTest::newRow("word") << QStringLiteral("garbage") << true;
        QTest::newRow("scheme alone") << QStringLiteral("rtsp://") << true;
        QTest::newRow("no bracket") << QStringLiteral("rtsp://[::1/live") << false;
        QTest::newRow("bad port") << QStringLiteral("rtsp://127.0.0.1:port/") << false;
        QTest::newRow("another protocol")
            << QStringLiteral("concat:/etc/passwd|/etc/group") << true;
        QTest::newRow("no video") << QStringLiteral("file:///etc/passwd") << true;
        QTest::newRow("nobody there") << QStringLiteral("rtsp://127.0.0.1:1/live") << true;
        QTest::newRow("long") << QString(QStringLiteral("rtsp://127.0.0.1:1/") +
                                         QString(20000, QLatin1Char('x')))
                              << true;
    }

    void addressesThatAreNoneLeaveAProgramThatRuns()
    {
        QFETCH(QString, url);
        QFETCH(bool, reported);
        QString message;
        bool enabled = true;
        bool shows = false;
        QCOMPARE(run([&](MainWindow* window) {
                     message = messageForUrl(window, url);
                     enabled = actionOf(window, "Snap")->isEnabled();
                     shows = showsCamera(window);
                 }),
                 0);
        QCOMPARE(message, reported ? QStringLiteral("Failed to open camera") : QString());
        QVERIFY(!enabled);
        QVERIFY(shows);
    }

private:
    /// The program's store, also while there is no application.
    static QSettings& store()
    {
        static QSettings settings(QStringLiteral("Orvo"), QStringLiteral("Orvo"));
        return settings;
    }

    /// Tools can be drawn and a camera can be opened, as with good settings.
    static void verifyThatItRuns()
    {
        int drawn = 0;
        bool shows = false;
        QCOMPARE(run([&](MainWindow* window) {
                     drawn = drawTools(window);
                     shows = showsCamera(window);
                 }),
                 0);
        QCOMPARE(drawn, 4);
        QVERIFY(shows);
    }
};

QTEST_APPLESS_MAIN(tst_BadInput)
#include "tst_BadInput.moc"
