#include "camera/Texts.h"
#include "support/ContextTranslator.h"

#include <QtTest>

class tst_Texts final : public QObject
{
    Q_OBJECT

private slots:
    void colorModes_data();
    void colorModes();
    void videoFormats_data();
    void videoFormats();
    void powerFrequencies_data();
    void powerFrequencies();
    void textsAreTranslatedInTheirContext();
};

namespace {

void row(int value, const char* text)
{
    QTest::addRow("%d", value) << value << QString::fromLatin1(text);
}

void addColumns()
{
    QTest::addColumn<int>("value");
    QTest::addColumn<QString>("text");
}

} // namespace

void tst_Texts::colorModes_data()
{
    addColumns();
    row(-1, "Unknown");
    row(0, "Colorful");
    row(1, "Monochrome");
    row(2, "Negative");
    row(3, "Unknown");
}

void tst_Texts::colorModes()
{
    QFETCH(int, value);
    QTEST(Texts::colorModeText(value), "text");
}

void tst_Texts::videoFormats_data()
{
    addColumns();
    row(-1, "Unknown");
    row(0, "RGB");
    row(1, "RGB");
    row(2, "Unknown");
    row(4, "Unknown");
    row(5, "YUV");
    row(6, "Unknown");
    row(7, "YUV");
    row(8, "Unknown");
    row(18, "Unknown");
    row(19, "MJPEG");
    row(20, "H.264");
    row(21, "Unknown");
    row(1000, "Unknown");
}

void tst_Texts::videoFormats()
{
    QFETCH(int, value);
    QTEST(Texts::videoFormatText(value), "text");
}

void tst_Texts::powerFrequencies_data()
{
    addColumns();
    row(-1, "Unknown");
    row(0, "Disabled");
    row(1, "50Hz");
    row(2, "60Hz");
    row(3, "Auto");
    row(4, "DC");
    row(5, "Unknown");
}

void tst_Texts::powerFrequencies()
{
    QFETCH(int, value);
    QTEST(Texts::powerFrequencyText(value), "text");
}

void tst_Texts::textsAreTranslatedInTheirContext()
{
    const ContextTranslator translator;
    QCOMPARE(Texts::colorModeText(0), QStringLiteral("Texts|Colorful"));
    QCOMPARE(Texts::videoFormatText(6), QStringLiteral("Texts|Unknown"));
    QCOMPARE(Texts::powerFrequencyText(4), QStringLiteral("Texts|DC"));
    QCOMPARE(QString::fromLatin1(Texts::staticMetaObject.className()), QStringLiteral("Texts"));
}

QTEST_MAIN(tst_Texts)
#include "tst_Texts.moc"
