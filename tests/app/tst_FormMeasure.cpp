#include "app/ModalDialog.h"

#include "app/forms/FormMeasure.h"
#include "app/forms/FormSidebar.h"
#include "calibration/PrimitiveCalibrationModel.h"
#include "calibration/PrimitiveUnit.h"
#include "canvas/GraphicsScene.h"
#include "canvas/GraphicsView.h"
#include "measure/PrimitiveActionManager.h"
#include "measure/PrimitiveManager.h"

#include <zowidgets/ZoPopupToolButton.h>

#include <QComboBox>
#include <QGraphicsItem>
#include <QMenu>
#include <QToolButton>
#include <QtTest>

namespace {

void addCalibration(const char* name, double value, const QString& unitKey)
{
    PrimitiveCalibrationModel::instance().appendCalibration(
        PrimitiveCalibration(QString::fromLatin1(name), value, QString(), unitKey));
}

} // namespace

class tst_FormMeasure : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase()
    {
        addCalibration("Objective 10", 1e-6, micrometre());
        addCalibration("Unknown unit", 1e-6, QStringLiteral("9_parsec"));
        addCalibration("Broken", 0.0, QStringLiteral("2_mm"));
        addCalibration("Objective 40", 2.5e-7, QStringLiteral("2_mm"));
    }

    void init()
    {
        PrimitiveCalibrationModel::instance().checkRow(0);
        view = std::make_unique<GraphicsView>();
        sidebar = std::make_unique<FormSidebar>(nullptr);
        page = sidebar->findChild<FormMeasure*>(QStringLiteral("FormMeasure"));
        QVERIFY(page);
    }

    void cleanup()
    {
        PrimitiveCalibrationModel::instance().checkRow(0);
        sidebar.reset();
        view.reset();
    }

    void withoutViewNoCalibrationIsChosen()
    {
        QCOMPARE(names()->currentIndex(), -1);
        QCOMPARE(names()->count(), 5);
        QCOMPARE(names()->itemText(0), PrimitiveCalibrationModel::pixelRowName());
        page->setView(view.get());
        QCOMPARE(names()->currentIndex(), 0);
    }

    void unitsAreListedInTheirOrderWithTheirKeys()
    {
        const QMap<QString, QString> all = PrimitiveUnit::fullNameList();
        QCOMPARE(units()->count(), 7);
        QCOMPARE(units()->itemText(0), all.first());
        QCOMPARE(units()->itemData(0).toString(), QStringLiteral("0_nm"));
        QCOMPARE(units()->itemData(6).toString(), QStringLiteral("6_mil"));
    }

    void inPixelsThereIsNoUnitToChoose()
    {
        page->setView(view.get());
        QCOMPARE(units()->currentIndex(), -1);
        QVERIFY(!units()->isEnabled());
    }

    void choosingACalibrationTakesItsOwnUnit()
    {
        page->setView(view.get());
        names()->setCurrentIndex(1);
        QCOMPARE(manager()->calibrationName(), QStringLiteral("Objective 10"));
        QCOMPARE(manager()->displayUnitName(), PrimitiveUnit::fullName(micrometre()));
        QCOMPARE(units()->currentData().toString(), micrometre());
        QVERIFY(units()->isEnabled());
        QCOMPARE(checkedRow(), 1);
    }

    void backInPixelsTheUnitIsGone()
    {
        page->setView(view.get());
        names()->setCurrentIndex(1);
        names()->setCurrentIndex(0);
        QCOMPARE(manager()->calibrationName(), PrimitiveCalibrationModel::pixelRowName());
        QCOMPARE(units()->currentIndex(), -1);
        QVERIFY(!units()->isEnabled());
    }

    void aCheckInTheListComesToThePage()
    {
        page->setView(view.get());
        PrimitiveCalibrationModel::instance().checkRow(4);
        QCOMPARE(names()->currentText(), QStringLiteral("Objective 40"));
        QCOMPARE(manager()->calibrationName(), QStringLiteral("Objective 40"));
        QCOMPARE(units()->currentData().toString(), QStringLiteral("2_mm"));
    }

    void anUnknownUnitSelectsTheFirst()
    {
        page->setView(view.get());
        names()->setCurrentIndex(2);
        QCOMPARE(units()->currentIndex(), 0);
        QCOMPARE(manager()->displayUnitName(), PrimitiveUnit::fullName(QStringLiteral("0_nm")));
    }

    void choosingAUnitKeepsTheCalibration()
    {
        page->setView(view.get());
        names()->setCurrentIndex(1);
        units()->setCurrentIndex(units()->findData(QStringLiteral("2_mm")));
        QCOMPARE(manager()->calibrationName(), QStringLiteral("Objective 10"));
        QCOMPARE(manager()->displayUnitName(), PrimitiveUnit::fullName(QStringLiteral("2_mm")));
    }

    void aRefusedCalibrationLeavesNameUnitAndCheckAsTheyWere()
    {
        page->setView(view.get());
        names()->setCurrentIndex(1);
        units()->setCurrentIndex(units()->findData(QStringLiteral("4_m")));
        QString title;
        QString text;
        DialogAnswer<QMessageBox> answer([&](QMessageBox* box) {
            title = box->windowTitle();
            text = box->text();
            clickButton(box, QMessageBox::Ok);
        });
        names()->setCurrentIndex(3);
        QVERIFY(answer.wasAsked());
        QCOMPARE(title, QStringLiteral("Error"));
        QCOMPARE(text, QStringLiteral("Unable to switch to this calibration configuration, "
                                      "re-calibration it or use other configuration."));
        QCOMPARE(names()->currentText(), QStringLiteral("Objective 10"));
        QCOMPARE(units()->currentData().toString(), QStringLiteral("4_m"));
        QVERIFY(units()->isEnabled());
        QCOMPARE(checkedRow(), 1);
        QCOMPARE(manager()->calibrationName(), QStringLiteral("Objective 10"));
        QCOMPARE(manager()->displayUnitKey(), QStringLiteral("4_m"));
    }

    void aRefusalInPixelsLeavesPixels()
    {
        page->setView(view.get());
        DialogAnswer<QMessageBox> answer(
            [](QMessageBox* box) { clickButton(box, QMessageBox::Ok); });
        names()->setCurrentIndex(3);
        QVERIFY(answer.wasAsked());
        QCOMPARE(names()->currentIndex(), 0);
        QCOMPARE(units()->currentIndex(), -1);
        QVERIFY(!units()->isEnabled());
    }

    void aCalibrationCanBeChosenByName()
    {
        page->setView(view.get());
        QTest::ignoreMessage(QtDebugMsg, " Measure by actual unit");
        page->calibrationNameChanged(QStringLiteral("Objective 40"));
        QCOMPARE(manager()->calibrationName(), QStringLiteral("Objective 40"));
        QCOMPARE(names()->currentText(), QStringLiteral("Objective 40"));
        QTest::ignoreMessage(QtDebugMsg, " Measure in pixels");
        page->calibrationNameChanged(PrimitiveCalibrationModel::pixelRowName());
        QCOMPARE(manager()->calibrationName(), PrimitiveCalibrationModel::pixelRowName());
        page->calibrationNameChanged(QString());
        QCOMPARE(manager()->calibrationName(), PrimitiveCalibrationModel::pixelRowName());
    }

    void anUnknownNameIsRefused()
    {
        page->setView(view.get());
        DialogAnswer<QMessageBox> answer(
            [](QMessageBox* box) { clickButton(box, QMessageBox::Ok); });
        page->calibrationNameChanged(QStringLiteral("nobody"));
        QVERIFY(answer.wasAsked());
        QCOMPARE(names()->currentIndex(), 0);
        QVERIFY(!units()->isEnabled());
    }

    void toolButtonsShowTheActions_data()
    {
        QTest::addColumn<QString>("button");
        QTest::addColumn<int>("type");
        QTest::addColumn<int>("last");
        const auto row = [](const char* name, int type, int last) {
            QTest::newRow(name) << QStringLiteral("toolButton") + QString::fromLatin1(name) << type
                                << last;
        };
        row("Line", 0x10065, 0);
        row("Polyline", 0x10067, 0);
        row("Rectange", 0x10068, 0);
        row("Polygon", 0x10069, 0);
        row("Parallel", 0x1006B, 0);
        row("Perpendicular", 0x1006C, 0x1006D);
        row("Angle", 0x1006F, 0x10070);
        row("Arc", 0x10071, 0);
        row("Circle", 0x10072, 0x10074);
        row("Annulus", 0x10075, 0);
        row("TwoCircle", 0x10076, 0x10078);
        row("Counter", 0x100CA, 0);
        row("Text", 0x10006, 0);
        row("Arrow", 0x10001, 0x10005);
    }

    void toolButtonsShowTheActions()
    {
        QFETCH(QString, button);
        QFETCH(int, type);
        QFETCH(int, last);
        page->setView(view.get());
        auto* shown = page->findChild<QToolButton*>(button);
        QVERIFY(shown);
        QCOMPARE(shown->defaultAction()->data().toSize(), QSize(2, type));
        QVERIFY(shown->isEnabled());
        if (!last) {
            QVERIFY(!shown->menu());
            return;
        }
        QCOMPARE(shown->popupMode(), QToolButton::MenuButtonPopup);
        const QList<QAction*> offered = shown->menu()->actions();
        QCOMPARE(offered.size(), last - type + 1);
        for (int i = 0; i < offered.size(); ++i)
            QCOMPARE(offered[i]->data().toSize(), QSize(2, type + i));
    }

    void dragSelectAndDeleteStandInTheFirstRow()
    {
        page->setView(view.get());
        QCOMPARE(button("toolButtonDrag")->defaultAction()->data().toSize(), QSize(0, -1));
        QCOMPARE(button("toolButtonSelect")->defaultAction()->data().toSize(), QSize(1, -1));
        auto* actions = PrimitiveActionManager::instance();
        QCOMPARE(button("toolButtonDelete")->defaultAction(), actions->deleteAction());
        QCOMPARE(button("toolButtonDelete")->menu()->actions(),
                 QList<QAction*>({actions->deleteAction(), actions->deleteAllAction()}));
    }

    void pressingAToolButtonChangesTheViewsMode()
    {
        page->setView(view.get());
        QTest::mouseClick(button("toolButtonPolygon"), Qt::LeftButton);
        QCOMPARE(manager()->dragMode(), PrimitiveManager::Draw);
        QCOMPARE(manager()->toolType(), 0x10069);
        QTest::mouseClick(button("toolButtonSelect"), Qt::LeftButton);
        QCOMPARE(manager()->dragMode(), PrimitiveManager::Select);
        QVERIFY(!button("toolButtonPolygon")->isChecked());
    }

    void whatIsNotThereIsDisabled()
    {
        page->setView(view.get());
        QCOMPARE(button("toolButtonScale")->isEnabled(), manager()->hasScalebar());
        QVERIFY(!button("toolButtonAddNew")->isEnabled());
        QVERIFY(!button("toolButtonList")->isEnabled());
        QVERIFY(!button("toolButtonSaveHash")->isEnabled());
    }

    void theScaleBarActionIsCheckable()
    {
        const QAction* action = button("toolButtonScale")->defaultAction();
        QCOMPARE(action->text(), QStringLiteral("Scale bar"));
        QCOMPARE(action->toolTip(), QStringLiteral("Scale bar"));
        QCOMPARE(action->statusTip(), QStringLiteral("Show scale bar"));
        QVERIFY(action->isCheckable());
    }

    void aSelectedToolCanBeSavedAsDefault()
    {
        page->setView(view.get());
        QGraphicsItem* tool = manager()->addTool(
            PrimitiveManager::createTool(0x10065, manager(), view->imageScene(), QPointF(10, 10)));
        QVERIFY(button("toolButtonSaveHash")->isEnabled());
        tool->setSelected(false);
        QVERIFY(!button("toolButtonSaveHash")->isEnabled());
    }

    void titlesCarryTheNameOfTheStyleSheet()
    {
        QCOMPARE(page->findChildren<QPushButton*>(QStringLiteral("categoryTitle")).size(), 3);
    }

private:
    static QString micrometre() { return QStringLiteral("1_\u00b5m"); }
    QComboBox* names() const
    {
        return page->findChild<QComboBox*>(QStringLiteral("comboBoxCalibrationName"));
    }
    QComboBox* units() const
    {
        return page->findChild<QComboBox*>(QStringLiteral("comboBoxCalibrationUnit"));
    }
    QToolButton* button(const char* name) const
    {
        return page->findChild<QToolButton*>(QString::fromLatin1(name));
    }
    PrimitiveManager* manager() const { return view->manager(); }
    static int checkedRow()
    {
        const auto& model = PrimitiveCalibrationModel::instance();
        for (int row = 0; row < model.rowCount(); ++row) {
            if (model.data(model.index(row, 0), Qt::CheckStateRole).toInt() == Qt::Checked)
                return row;
        }
        return -1;
    }

    std::unique_ptr<GraphicsView> view;
    std::unique_ptr<FormSidebar> sidebar;
    FormMeasure* page = nullptr;
};

QTEST_MAIN(tst_FormMeasure)
#include "tst_FormMeasure.moc"
