#include "preferences/PrimitiveAttributesWidget.h"

#include "canvas/GraphicsScene.h"
#include "canvas/GraphicsView.h"
#include "measure/PrimitiveManager.h"
#include "preferences/AttributeKeys.h"

#include <QCoreApplication>
#include <QSettings>
#include <QSignalSpy>
#include <QtTest>

namespace {

constexpr int lineType = 65637;
constexpr int counterType = 65738;

} // namespace

class tst_PrimitiveAttributesWidget : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase()
    {
        QCoreApplication::setApplicationName(QStringLiteral("Orvo"));
        QCoreApplication::setOrganizationName(QStringLiteral("Orvo"));
    }

    void init() { QSettings().clear(); }

    void itStartsEmpty()
    {
        PrimitiveAttributesWidget editor(nullptr);
        QVERIFY(!editor.isEnabled());
        QCOMPARE(editor.sizeHint(), QSize(200, 0));
        editor.saveHash();
        QVERIFY(QSettings().allKeys().isEmpty());
    }

    void aSetOfAttributesIsSavedUnderItsType()
    {
        PrimitiveAttributesWidget editor(nullptr);
        QSignalSpy enabled(&editor, &PrimitiveAttributesWidget::enabled);
        AttributeHash hash = toolAttributes(counterType);
        hash[AttributeKeys::textColor()] = QColor(1, 2, 3);
        editor.setByHash(counterType, hash);
        QCOMPARE(enabled, QList<QVariantList>({{true}}));
        QVERIFY(editor.isEnabled());
        editor.saveHash();
        QCOMPARE(toolAttributes(counterType)[AttributeKeys::textColor()].value<QColor>(),
                 QColor(1, 2, 3));
    }

    void theSetIsSavedAsItIsAtThatMoment()
    {
        PrimitiveAttributesWidget editor(nullptr);
        AttributeHash hash = toolAttributes(counterType);
        editor.setByHash(counterType, hash);
        hash[AttributeKeys::textColor()] = QColor(9, 8, 7);
        editor.saveHash();
        QCOMPARE(toolAttributes(counterType)[AttributeKeys::textColor()].value<QColor>(),
                 QColor(9, 8, 7));
    }

    void noTypeEmptiesTheEditor()
    {
        PrimitiveAttributesWidget editor(nullptr);
        AttributeHash hash = toolAttributes(counterType);
        editor.setByHash(counterType, hash);
        QSignalSpy enabled(&editor, &PrimitiveAttributesWidget::enabled);
        editor.setByHash(0, hash);
        QCOMPARE(enabled, QList<QVariantList>({{false}}));
        QVERIFY(!editor.isEnabled());
        editor.saveHash();
        QVERIFY(QSettings().allKeys().isEmpty());
    }

    void aToolsLookBecomesTheDefaultOfItsType()
    {
        GraphicsView view;
        auto* tool = static_cast<QGraphicsObject*>(view.manager()->addTool(
            PrimitiveManager::createTool(lineType, view.manager(), view.imageScene())));
        PrimitiveAttributesWidget editor(nullptr);
        QSignalSpy enabled(&editor, &PrimitiveAttributesWidget::enabled);
        editor.setByObject(tool);
        QCOMPARE(enabled, QList<QVariantList>({{true}}));
        editor.saveHash();
        QVERIFY(!QSettings().allKeys().isEmpty());
        editor.setByObject(nullptr);
        QCOMPARE(enabled.last(), QVariantList({false}));
        QVERIFY(!editor.isEnabled());
    }

    void noToolTakesTheSetAway()
    {
        PrimitiveAttributesWidget editor(nullptr);
        AttributeHash hash = toolAttributes(counterType);
        editor.setByHash(counterType, hash);
        editor.setByObject(nullptr);
        editor.saveHash();
        QVERIFY(QSettings().allKeys().isEmpty());
    }

    void aToolThatIsGoneSavesNothing()
    {
        PrimitiveAttributesWidget editor(nullptr);
        {
            GraphicsView view;
            editor.setByObject(static_cast<QGraphicsObject*>(view.manager()->addTool(
                PrimitiveManager::createTool(lineType, view.manager(), view.imageScene()))));
        }
        editor.saveHash();
        QVERIFY(QSettings().allKeys().isEmpty());
    }
};

QTEST_MAIN(tst_PrimitiveAttributesWidget)
#include "tst_PrimitiveAttributesWidget.moc"
