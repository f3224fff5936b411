#include <zostyle/ZoStyleFactory.h>

#include <QAbstractItemView>
#include <QApplication>
#include <QCheckBox>
#include <QComboBox>
#include <QDoubleSpinBox>
#include <QGroupBox>
#include <QHeaderView>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QMenu>
#include <QMessageBox>
#include <QPainter>
#include <QProgressBar>
#include <QPushButton>
#include <QRadioButton>
#include <QScrollBar>
#include <QSlider>
#include <QSplitter>
#include <QStatusBar>
#include <QTabWidget>
#include <QTableWidget>
#include <QTest>
#include <QToolButton>
#include <QTreeWidget>
#include <QVBoxLayout>

#include <functional>
#include <memory>

using MakeWidget = std::function<QWidget*()>;
Q_DECLARE_METATYPE(MakeWidget)

namespace {

QStringList warnings;

/// The images of the sheet are the program's resources, which these tests do without, and the
/// offscreen platform tells what it cannot do.
void collectWarnings(QtMsgType type, const QMessageLogContext&, const QString& message)
{
    const bool expected = message.contains(QLatin1String(":/res/style/")) ||
                          message.startsWith(QLatin1String("This plugin does not support"));
    if (!expected && (type == QtWarningMsg || type == QtCriticalMsg))
        warnings.append(message);
}

template <class Button>
MakeWidget button()
{
    return [] {
        auto* made = new Button;
        made->setText(QStringLiteral("Text"));
        made->setCheckable(true);
        return made;
    };
}

QWidget* filledTable()
{
    auto* table = new QTableWidget(3, 2);
    table->setAlternatingRowColors(true);
    for (int row = 0; row < 3; ++row)
        table->setItem(row, 0, new QTableWidgetItem(QString::number(row)));
    return table;
}

QWidget* filledTree()
{
    auto* tree = new QTreeWidget;
    new QTreeWidgetItem(new QTreeWidgetItem(tree, {QStringLiteral("a")}), {QStringLiteral("b")});
    return tree;
}

QWidget* filledList()
{
    auto* list = new QListWidget;
    list->addItems({QStringLiteral("a"), QStringLiteral("b")});
    return list;
}

QWidget* filledTabs(QTabWidget::TabPosition position)
{
    auto* tabs = new QTabWidget;
    tabs->setTabPosition(position);
    tabs->addTab(new QWidget, QStringLiteral("First"));
    tabs->addTab(new QWidget, QStringLiteral("Second"));
    return tabs;
}

QWidget* checkableGroup()
{
    auto* group = new QGroupBox(QStringLiteral("Group"));
    group->setCheckable(true);
    (new QVBoxLayout(group))->addWidget(new QLabel(QStringLiteral("Inside")));
    return group;
}

QWidget* filledCombo()
{
    auto* combo = new QComboBox;
    combo->addItems({QStringLiteral("a"), QStringLiteral("b")});
    return combo;
}

/// Buttons and fields.
void addSmallControls()
{
    QTest::newRow("push button") << button<QPushButton>();
    QTest::newRow("tool button") << button<QToolButton>();
    QTest::newRow("check box") << button<QCheckBox>();
    QTest::newRow("radio button") << button<QRadioButton>();
    QTest::newRow("combo box") << MakeWidget(filledCombo);
    QTest::newRow("line edit") << MakeWidget([] { return new QLineEdit; });
    QTest::newRow("spin box") << MakeWidget([] { return new QDoubleSpinBox; });
}

void addFocusableControls()
{
    addSmallControls();
    QTest::newRow("slider") << MakeWidget([] { return new QSlider(Qt::Horizontal); });
    QTest::newRow("group box") << MakeWidget(checkableGroup);
    QTest::newRow("list") << MakeWidget(filledList);
    QTest::newRow("table") << MakeWidget(filledTable);
    QTest::newRow("tree") << MakeWidget(filledTree);
}

/// A widget in a window, away from the focus.
class Stage
{
public:
    explicit Stage(QWidget* shown) : widget(shown)
    {
        elsewhere = new QLineEdit(&window);
        elsewhere->move(0, 260);
        widget->setParent(&window);
        widget->move(4, 4);
        widget->resize(widget->sizeHint());
        window.resize(400, 300);
        window.show();
        window.activateWindow();
        elsewhere->setFocus();
    }
    bool isActive() { return QTest::qWaitForWindowActive(&window); }
    QImage image() const { return widget->grab().toImage(); }

    QWidget window;
    QWidget* widget = nullptr;
    QWidget* elsewhere = nullptr;
};

} // namespace

class tst_ZoDarkBlueStyle : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void cleanupTestCase();

    void everyRuleIsUnderstood();
    void controlsAre24High_data();
    void controlsAre24High();
    void toolButtonsAre32AroundAnIconOf24();
    void smallToolButtonsAre24AroundAnIconOf16();
    void focusIsSeenAndMovesNothing_data();
    void focusIsSeenAndMovesNothing();
    void buttonStatesLookDifferent_data();
    void buttonStatesLookDifferent();
    void hoverIsSeen_data();
    void hoverIsSeen();
    void hoverOfAComboEndsWithItsList();
    void disabledIsSeen_data();
    void disabledIsSeen();
    void categoryTitleIsAFlatBoldHeading();
    void titleBarButtonsAreFlat();
    void messageIconsHaveTheirColours_data();
    void messageIconsHaveTheirColours();
    void tableRowsAlternate();
};

void tst_ZoDarkBlueStyle::initTestCase()
{
    qInstallMessageHandler(collectWarnings);
    QApplication::setStyle(
        ZoStyleFactory::newStyle(ZoStyleFactory::DarkBlueStyle, QStringLiteral(STYLE_SHEET)));
    QFont font;
    font.setPointSize(9);
    QApplication::setFont(font);
}

void tst_ZoDarkBlueStyle::cleanupTestCase()
{
    qInstallMessageHandler(nullptr);
}

void tst_ZoDarkBlueStyle::everyRuleIsUnderstood()
{
    for (QTabWidget::TabPosition position : {QTabWidget::North, QTabWidget::South})
        Stage(filledTabs(position)).image();
    for (QWidget* (*make)() : {filledTable, filledTree, filledList, filledCombo, checkableGroup})
        Stage(make()).image();
    Stage(new QProgressBar).image();
    Stage(new QScrollBar).image();
    Stage(new QSplitter).image();
    Stage(new QStatusBar).image();
    Stage(new QMessageBox).image();
    QMenu menu;
    menu.addAction(QStringLiteral("Action"))->setCheckable(true);
    menu.grab();
    QVERIFY2(warnings.isEmpty(), qPrintable(warnings.join(QLatin1Char('\n'))));

    // The same handler sees a sheet that cannot be read.
    QWidget widget;
    widget.setStyleSheet(QStringLiteral("QWidget { color: ; } } {"));
    widget.grab();
    QVERIFY(!warnings.isEmpty());
    warnings.clear();
}

void tst_ZoDarkBlueStyle::controlsAre24High_data()
{
    QTest::addColumn<MakeWidget>("make");
    QTest::newRow("push button") << button<QPushButton>();
    QTest::newRow("check box") << button<QCheckBox>();
    QTest::newRow("radio button") << button<QRadioButton>();
    QTest::newRow("combo box") << MakeWidget(filledCombo);
    QTest::newRow("editable combo box") << MakeWidget([] {
        auto* combo = new QComboBox;
        combo->setEditable(true);
        return combo;
    });
    QTest::newRow("line edit") << MakeWidget([] { return new QLineEdit; });
    QTest::newRow("spin box") << MakeWidget([] { return new QSpinBox; });
    QTest::newRow("double spin box") << MakeWidget([] { return new QDoubleSpinBox; });
    QTest::newRow("slider") << MakeWidget([] { return new QSlider(Qt::Horizontal); });
}

void tst_ZoDarkBlueStyle::controlsAre24High()
{
    QFETCH(MakeWidget, make);
    Stage stage(make());
    QCOMPARE(stage.widget->sizeHint().height(), 24);
}

void tst_ZoDarkBlueStyle::toolButtonsAre32AroundAnIconOf24()
{
    auto* tool = new QToolButton;
    tool->setIcon(qApp->style()->standardIcon(QStyle::SP_MessageBoxInformation));
    Stage stage(tool);
    QCOMPARE(tool->iconSize(), QSize(24, 24));
    QCOMPARE(tool->sizeHint(), QSize(32, 32));

    auto* popup = new QToolButton;
    popup->setIcon(tool->icon());
    popup->setMenu(new QMenu(popup));
    popup->setPopupMode(QToolButton::MenuButtonPopup);
    Stage popupStage(popup);
    QCOMPARE(popup->sizeHint().height(), 32);
    QCOMPARE(popup->sizeHint().width(), 40);
}

void tst_ZoDarkBlueStyle::smallToolButtonsAre24AroundAnIconOf16()
{
    auto* tool = new QToolButton;
    tool->setIcon(qApp->style()->standardIcon(QStyle::SP_MessageBoxInformation));
    tool->setIconSize(QSize(16, 16));
    Stage stage(tool);
    QCOMPARE(tool->sizeHint(), QSize(24, 24));
}

void tst_ZoDarkBlueStyle::focusIsSeenAndMovesNothing_data()
{
    QTest::addColumn<MakeWidget>("make");
    addFocusableControls();
}

void tst_ZoDarkBlueStyle::focusIsSeenAndMovesNothing()
{
    QFETCH(MakeWidget, make);
    Stage stage(make());
    QVERIFY(stage.isActive());
    const QSize size = stage.widget->sizeHint();
    const QImage plain = stage.image();
    stage.widget->setFocus(Qt::TabFocusReason);
    QVERIFY(stage.widget->hasFocus());
    QCOMPARE(stage.widget->sizeHint(), size);

    const QColor ring(0x5c, 0xb8, 0xf0);
    const QImage focused = stage.image();
    const auto isRing = [&](const QImage& image) {
        const QPoint middle = image.rect().center();
        for (int y = 0; y <= middle.y(); ++y)
            if (image.pixelColor(image.width() - 30, y) == ring)
                return true;
        return false;
    };
    QVERIFY(!isRing(plain));
    QVERIFY(isRing(focused));
}

void tst_ZoDarkBlueStyle::buttonStatesLookDifferent_data()
{
    QTest::addColumn<MakeWidget>("make");
    QTest::newRow("push button") << button<QPushButton>();
    QTest::newRow("tool button") << button<QToolButton>();
}

void tst_ZoDarkBlueStyle::buttonStatesLookDifferent()
{
    QFETCH(MakeWidget, make);
    Stage stage(make());
    QVERIFY(stage.isActive());
    auto* shown = qobject_cast<QAbstractButton*>(stage.widget);
    const QSize size = shown->sizeHint();
    QVector<QImage> images{stage.image()};
    shown->setDown(true);
    images.append(stage.image());
    shown->setDown(false);
    shown->setChecked(true);
    images.append(stage.image());
    shown->setDown(true);
    images.append(stage.image());
    shown->setDown(false);
    shown->setEnabled(false);
    images.append(stage.image());
    shown->setChecked(false);
    images.append(stage.image());
    QCOMPARE(shown->sizeHint(), size);
    for (int i = 0; i < images.size(); ++i)
        for (int j = i + 1; j < images.size(); ++j)
            QVERIFY2(images.at(i) != images.at(j),
                     qPrintable(QStringLiteral("%1 %2").arg(i).arg(j)));
}

void tst_ZoDarkBlueStyle::hoverIsSeen_data()
{
    QTest::addColumn<MakeWidget>("make");
    addSmallControls();
}

void tst_ZoDarkBlueStyle::hoverIsSeen()
{
    QFETCH(MakeWidget, make);
    Stage stage(make());
    QVERIFY(stage.isActive());
    // A move to where the mouse was last is none, also in another window.
    static int row = 100;
    const QPoint away(380, ++row);
    QTest::mouseMove(stage.window.windowHandle(), away);
    const QImage plain = stage.image();
    QTest::mouseMove(stage.window.windowHandle(), stage.widget->geometry().center());
    QTRY_VERIFY(stage.image() != plain);
    QTest::mouseMove(stage.window.windowHandle(), away);
    QTRY_VERIFY(stage.image() == plain);
}

void tst_ZoDarkBlueStyle::hoverOfAComboEndsWithItsList()
{
    Stage stage(filledCombo());
    QVERIFY(stage.isActive());
    auto* combo = qobject_cast<QComboBox*>(stage.widget);
    combo->resize(200, combo->height()); // Most of it is text, not arrow.
    const auto ground = [&] { return stage.image().pixelColor(combo->width() / 2, 3); };
    const QColor plain = ground();
    QTest::mouseMove(stage.window.windowHandle(), QPoint(200, 200));
    QTest::mouseMove(stage.window.windowHandle(), combo->geometry().center());
    QTRY_VERIFY(ground() != plain);
    QTest::mouseClick(stage.window.windowHandle(), Qt::LeftButton, {}, combo->geometry().center());

    QWidget* popup = combo->view()->window();
    QTRY_VERIFY(popup->isVisible());
    const QRect row = combo->view()->visualRect(combo->model()->index(1, 0));
    const QPoint item = combo->view()->viewport()->mapTo(popup, row.topLeft()) + QPoint(8, 8);
    QCursor::setPos(popup->mapToGlobal(item));
    QTest::mouseMove(popup->windowHandle(), item);
    QTest::qWait(QApplication::doubleClickInterval()); // Earlier releases do not choose.
    QTest::mouseClick(popup->windowHandle(), Qt::LeftButton, {}, item);
    QTRY_VERIFY(!popup->isVisible());
    QCOMPARE(combo->currentIndex(), 1);
    QTRY_COMPARE(ground(), plain);
}

void tst_ZoDarkBlueStyle::disabledIsSeen_data()
{
    QTest::addColumn<MakeWidget>("make");
    addFocusableControls();
    QTest::newRow("south tabs") << MakeWidget([] { return filledTabs(QTabWidget::South); });
    QTest::newRow("progress bar") << MakeWidget([] {
        auto* bar = new QProgressBar;
        bar->setValue(40);
        return bar;
    });
}

void tst_ZoDarkBlueStyle::disabledIsSeen()
{
    QFETCH(MakeWidget, make);
    Stage stage(make());
    QVERIFY(stage.isActive());
    const QSize size = stage.widget->sizeHint();
    const QImage enabled = stage.image();
    stage.widget->setEnabled(false);
    QVERIFY(stage.image() != enabled);
    QCOMPARE(stage.widget->sizeHint(), size);
}

void tst_ZoDarkBlueStyle::categoryTitleIsAFlatBoldHeading()
{
    auto* title = new QPushButton(QStringLiteral("Measure Tools"));
    Stage stage(title);
    title->setObjectName(QStringLiteral("categoryTitle"));
    title->style()->unpolish(title);
    title->style()->polish(title);
    QVERIFY(title->font().bold());
    QCOMPARE(title->font().pointSize(), 10);
    title->resize(300, title->sizeHint().height());
    const QImage image = stage.window.grab(title->geometry()).toImage();
    QCOMPARE(image.pixelColor(2, 2), QColor(0x17, 0x21, 0x2f));
    // The text stands at the left: the right half is bare ground.
    const QRect right(200, 0, 100, image.height());
    QImage bare(right.size(), image.format());
    bare.fill(QColor(0x17, 0x21, 0x2f));
    QCOMPARE(image.copy(right), bare);
}

void tst_ZoDarkBlueStyle::titleBarButtonsAreFlat()
{
    auto* bar = new QFrame;
    bar->setObjectName(QStringLiteral("titlebar"));
    auto* close = new QPushButton(bar);
    close->setObjectName(QStringLiteral("closeButton"));
    Stage stage(bar);
    QVERIFY(stage.isActive());
    bar->resize(200, 40);
    close->resize(40, 32);
    QCOMPARE(close->sizeHint(), QSize(40, 32));
    const auto ground = [&] { return stage.window.grab().toImage().pixelColor(24, 20); };
    QCOMPARE(ground(), QColor(0x17, 0x21, 0x2f));
    QTest::mouseMove(stage.window.windowHandle(), QPoint(390, 290));
    QTest::mouseMove(stage.window.windowHandle(), QPoint(24, 20));
    QTRY_COMPARE(ground(), QColor(0xd9, 0x53, 0x4f));
}

void tst_ZoDarkBlueStyle::messageIconsHaveTheirColours_data()
{
    QTest::addColumn<QStyle::StandardPixmap>("kind");
    QTest::addColumn<QColor>("colour");
    QTest::newRow("question") << QStyle::SP_MessageBoxQuestion << QColor(0x2b, 0x87, 0xcc);
    QTest::newRow("information") << QStyle::SP_MessageBoxInformation << QColor(0x2b, 0x87, 0xcc);
    QTest::newRow("warning") << QStyle::SP_MessageBoxWarning << QColor(0xd9, 0x83, 0x24);
    QTest::newRow("critical") << QStyle::SP_MessageBoxCritical << QColor(0xd9, 0x53, 0x4f);
}

void tst_ZoDarkBlueStyle::messageIconsHaveTheirColours()
{
    QFETCH(QStyle::StandardPixmap, kind);
    QFETCH(QColor, colour);
    const QImage image = QApplication::style()->standardIcon(kind).pixmap(48).toImage();
    QCOMPARE(image.size(), QSize(48, 48));
    int painted = 0;
    for (int y = 0; y < 48; ++y)
        for (int x = 0; x < 48; ++x)
            painted += image.pixelColor(x, y) == colour ? 1 : 0;
    QVERIFY(painted > 200);
}

void tst_ZoDarkBlueStyle::tableRowsAlternate()
{
    Stage stage(filledTable());
    auto* table = qobject_cast<QTableWidget*>(stage.widget);
    QCOMPARE(table->rowHeight(0), 24);
    const QImage image = table->viewport()->grab().toImage();
    const auto ground = [&](int row) {
        const QRect cell = table->visualItemRect(table->item(row, 0));
        return image.pixelColor(cell.right() - 4, cell.top() + 4);
    };
    QCOMPARE(ground(0), QColor(0x1e, 0x2b, 0x3d));
    QCOMPARE(ground(1), QColor(0x22, 0x31, 0x45));
    QCOMPARE(ground(2), ground(0));
}

QTEST_MAIN(tst_ZoDarkBlueStyle)
#include "tst_ZoDarkBlueStyle.moc"
