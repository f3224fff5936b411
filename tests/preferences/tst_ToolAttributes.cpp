#include "app/Keys.h"
#include "measure/ToolTypes.h"
#include "preferences/ToolAttributes.h"

#include <QColor>
#include <QFile>
#include <QFont>
#include <QPoint>
#include <QSettings>
#include <QTemporaryDir>
#include <QtTest>

namespace {

AttributeHash joined(AttributeHash a, const AttributeHash& b)
{
    for (auto it = b.begin(); it != b.end(); ++it)
        a.insert(it.key(), it.value());
    return a;
}

AttributeHash line(double width, const QColor& color)
{
    return {{QStringLiteral("lineWidth"), width},
            {QStringLiteral("lineColor"), color},
            {QStringLiteral("linePenStyle"), 1}};
}

AttributeHash fill(const QColor& color)
{
    return {{QStringLiteral("fillColor"), color}};
}

AttributeHash dimension(const QColor& text, const QColor& border, const QColor& background)
{
    return {{QStringLiteral("dimensionFont"), QFont()},
            {QStringLiteral("dimensionTextColor"), text},
            {QStringLiteral("dimensionTextBorderColor"), border},
            {QStringLiteral("dimensionTextBackgroundColor"), background}};
}

AttributeHash controlPoints()
{
    return {{QStringLiteral("ctrlPointRadius"), 5.0},
            {QStringLiteral("ctrlPointColor"), QColor(255, 255, 255)},
            {QStringLiteral("ctrlPointBorderWidth"), 2.0},
            {QStringLiteral("ctrlPointBorderColor"), QColor(160, 160, 164)}};
}

AttributeHash text(const QFont& font)
{
    return {{QStringLiteral("textFont"), font},
            {QStringLiteral("textColor"), QColor(255, 255, 255)}};
}

AttributeHash box(const QColor& border, const QColor& background)
{
    return {{QStringLiteral("borderColor"), border},
            {QStringLiteral("borderWidth"), 1},
            {QStringLiteral("borderPenStyle"), 1},
            {QStringLiteral("backgroundColor"), background}};
}

AttributeHash arrow(const QColor& lineColor, const QColor& fillColor)
{
    return joined(joined(line(2.0, lineColor), fill(fillColor)), controlPoints());
}

AttributeHash general()
{
    AttributeHash set = joined(line(1.0, QColor(0, 150, 211)), fill(QColor(0, 0, 0, 0)));
    set.insert(QStringLiteral("angularDimensionRadius"), 15.0);
    return joined(
        joined(set, controlPoints()),
        dimension(QColor(255, 255, 255), QColor(120, 120, 120, 200), QColor(0, 150, 211, 200)));
}

AttributeHash rectange()
{
    return joined(general(), {{QStringLiteral("showEllipse"), false}});
}

AttributeHash ruler()
{
    return joined(joined(line(1.0, QColor(255, 0, 0)), controlPoints()),
                  dimension(QColor(255, 0, 0), QColor(128, 0, 0), QColor(255, 255, 255)));
}

AttributeHash annotationBox()
{
    return joined(joined(line(1.0, QColor(67, 114, 157)), fill(QColor(91, 155, 213, 128))),
                  joined(controlPoints(), text(QFont(QStringLiteral("Arial"), 12))));
}

AttributeHash textItem()
{
    return joined(text(QFont(QStringLiteral("Arial"), 12)),
                  box(QColor(120, 120, 120, 200), QColor(0, 150, 211, 200)));
}

AttributeHash counter()
{
    return joined(text(QFont()), box(QColor(128, 0, 0), QColor(255, 0, 0)));
}

AttributeHash scalebar()
{
    return joined(joined(text(QFont(QStringLiteral("Arial"), 12)),
                         box(QColor(0, 0, 0, 0), QColor(0, 0, 0, 0))),
                  {{QStringLiteral("lineWidth"), 4},
                   {QStringLiteral("margins"), QPoint(5, 5)},
                   {QStringLiteral("corner"), 2}});
}

/// Colours compare by what they show, whatever the form they were made in.
bool sameValue(const QVariant& a, const QVariant& b)
{
    if (a.type() != b.type())
        return false;
    if (a.type() == QVariant::Color)
        return a.value<QColor>().rgba() == b.value<QColor>().rgba();
    return a == b;
}

void compare(const AttributeHash& actual, const AttributeHash& expected)
{
    const auto sorted = [](QStringList keys) {
        keys.sort();
        return keys;
    };
    QCOMPARE(sorted(actual.keys()), sorted(expected.keys()));
    for (auto it = expected.begin(); it != expected.end(); ++it)
        QVERIFY2(sameValue(actual.value(it.key()), it.value()), qPrintable(it.key()));
}

const AttributeHash ownSet = {{QStringLiteral("lineWidth"), 7}};

} // namespace

class tst_ToolAttributes final : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void init();

    void freshStoreGivesTheBuiltInSet_data();
    void freshStoreGivesTheBuiltInSet();
    void setsHaveTheirOwnAccessors();
    void savedSetIsStoredUnderItsKey_data();
    void savedSetIsStoredUnderItsKey();
    void storedSetReplacesTheDefaultsAsAWhole();
    void colouredArrowsSaveForTheGeneralTools();
    void otherNumbersHaveNoSet_data();
    void otherNumbersHaveNoSet();
    void valueOfAnotherTypeReadsAsAnEmptySet();
    void everyTypeOfValueSurvivesTheFile();

private:
    QTemporaryDir directory;
};

void tst_ToolAttributes::initTestCase()
{
    QCoreApplication::setApplicationName(QStringLiteral("Orvo"));
    QCoreApplication::setOrganizationName(QStringLiteral("Orvo"));
    QVERIFY(directory.isValid());
}

void tst_ToolAttributes::init()
{
    QSettings().clear();
}

void tst_ToolAttributes::freshStoreGivesTheBuiltInSet_data()
{
    QTest::addColumn<int>("type");
    QTest::addColumn<AttributeHash>("expected");
    QTest::newRow("line") << 65637 << general();
    QTest::newRow("first general number without a tool") << 65543 << general();
    QTest::newRow("last general number") << 65735 << general();
    QTest::newRow("rectange") << 65640 << rectange();
    QTest::newRow("calibration ruler") << 65638 << ruler();
    QTest::newRow("arrow") << 65537 << arrow(QColor(67, 114, 157), QColor(91, 155, 213));
    QTest::newRow("red arrow") << 65538 << arrow(QColor(234, 112, 112), QColor(253, 196, 182));
    QTest::newRow("blue arrow") << 65539 << arrow(QColor(0, 0, 161), QColor(31, 110, 212));
    QTest::newRow("green arrow") << 65540 << arrow(QColor(65, 146, 75), QColor(135, 226, 147));
    QTest::newRow("white arrow") << 65541 << arrow(QColor(162, 169, 175), QColor(235, 237, 236));
    QTest::newRow("text annotation") << 65542 << annotationBox();
    QTest::newRow("text item") << 65737 << textItem();
    QTest::newRow("counter") << 65738 << counter();
    QTest::newRow("scale bar") << 65838 << scalebar();
}

void tst_ToolAttributes::freshStoreGivesTheBuiltInSet()
{
    QFETCH(int, type);
    QFETCH(AttributeHash, expected);
    compare(toolAttributes(type), expected);
    compare(defaultAttributes(type), expected);
}

void tst_ToolAttributes::setsHaveTheirOwnAccessors()
{
    compare(DefaultAttributes::generalTool(), general());
    compare(DefaultAttributes::rectange(), rectange());
    compare(DefaultAttributes::calibrationRuler(), ruler());
    compare(DefaultAttributes::textAnnotation(), annotationBox());
    compare(DefaultAttributes::text(), textItem());
    compare(DefaultAttributes::counter(), counter());
    compare(DefaultAttributes::scalebar(), scalebar());
}

void tst_ToolAttributes::savedSetIsStoredUnderItsKey_data()
{
    QTest::addColumn<int>("type");
    QTest::addColumn<QString>("key");
    QTest::newRow("line") << 65637 << QStringLiteral("measurement/attr_generaltool");
    QTest::newRow("circle") << 65650 << QStringLiteral("measurement/attr_generaltool");
    QTest::newRow("rectange") << 65640 << QStringLiteral("measurement/attr_toolrectange");
    QTest::newRow("ruler") << 65638 << QStringLiteral("measurement/attr_toolcalibration");
    QTest::newRow("arrow") << 65537 << QStringLiteral("measurement/attr_toolarrow");
    QTest::newRow("annotation") << 65542 << QStringLiteral("measurement/attr_annotation1");
    QTest::newRow("text item") << 65737 << QStringLiteral("measurement/attr_annotation");
    QTest::newRow("counter") << 65738 << QStringLiteral("measurement/attr_counter");
    QTest::newRow("scale bar") << 65838 << QStringLiteral("measurement/attr_textscalebar");
}

void tst_ToolAttributes::savedSetIsStoredUnderItsKey()
{
    QFETCH(int, type);
    QFETCH(QString, key);
    saveToolAttributes(type, ownSet);
    QCOMPARE(QSettings().allKeys(), QStringList{key});
    QCOMPARE(QSettings().value(key).toHash(), ownSet);
    QCOMPARE(toolAttributes(type), ownSet);
}

void tst_ToolAttributes::storedSetReplacesTheDefaultsAsAWhole()
{
    saveToolAttributes(ToolType::Line, ownSet);
    QVERIFY(!toolAttributes(ToolType::Line).contains(AttributeKeys::lineColor()));
    QCOMPARE(toolAttributes(ToolType::Circle), ownSet);
    compare(toolAttributes(ToolType::Rectange), rectange());
}

void tst_ToolAttributes::colouredArrowsSaveForTheGeneralTools()
{
    for (int type = ToolType::RedArrow; type <= ToolType::WhiteArrow; ++type) {
        QSettings().clear();
        saveToolAttributes(type, ownSet);
        QCOMPARE(QSettings().allKeys(),
                 QStringList{QStringLiteral("measurement/attr_generaltool")});
        QCOMPARE(toolAttributes(ToolType::Line), ownSet);
        QCOMPARE(toolAttributes(type), defaultAttributes(type));
        QVERIFY(toolAttributes(ToolType::Arrow) != ownSet);
    }
}

void tst_ToolAttributes::otherNumbersHaveNoSet_data()
{
    QTest::addColumn<int>("type");
    for (int type : {-1, 0, 2, 65536, 65736, 65739, 65837, 65839})
        QTest::addRow("%d", type) << type;
}

void tst_ToolAttributes::otherNumbersHaveNoSet()
{
    QFETCH(int, type);
    QVERIFY(toolAttributes(type).isEmpty());
    QVERIFY(defaultAttributes(type).isEmpty());
    saveToolAttributes(type, ownSet);
    QVERIFY(QSettings().allKeys().isEmpty());
}

void tst_ToolAttributes::valueOfAnotherTypeReadsAsAnEmptySet()
{
    QSettings().setValue(Keys::attributesGeneralTool(), QStringLiteral("not a set"));
    QVERIFY(toolAttributes(ToolType::Line).isEmpty());
}

void tst_ToolAttributes::everyTypeOfValueSurvivesTheFile()
{
    AttributeHash everything = joined(rectange(), scalebar());
    QFont font(QStringLiteral("Arial"), 17);
    font.setBold(true);
    font.setItalic(true);
    everything.insert(AttributeKeys::dimensionFont(), font);
    saveToolAttributes(ToolType::Line, everything);

    // A copy is parsed anew, whereas settings of the same file share what is in memory.
    QSettings settings;
    settings.sync();
    const QString copy = directory.filePath(QStringLiteral("copy.conf"));
    QVERIFY(QFile::copy(settings.fileName(), copy));
    const QVariant read =
        QSettings(copy, QSettings::IniFormat).value(Keys::attributesGeneralTool());
    compare(read.toHash(), everything);
}

QTEST_MAIN(tst_ToolAttributes)
#include "tst_ToolAttributes.moc"
