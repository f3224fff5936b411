#include <Colours.h>

#include <QMetaType>
#include <QSet>
#include <QTest>

#include <algorithm>
#include <cmath>
#include <initializer_list>

using zostyle::Tone;
Q_DECLARE_METATYPE(zostyle::Tone)

namespace {

double linear(int channel)
{
    const double value = channel / 255.0;
    return value <= 0.04045 ? value / 12.92 : std::pow((value + 0.055) / 1.055, 2.4);
}

/// The contrast ratio of the web accessibility guidelines, from 1 to 21.
double contrast(const QColor& first, const QColor& second)
{
    const auto luminance = [](const QColor& each) {
        return 0.2126 * linear(each.red()) + 0.7152 * linear(each.green()) +
               0.0722 * linear(each.blue());
    };
    const double a = luminance(first);
    const double b = luminance(second);
    return (std::max(a, b) + 0.05) / (std::min(a, b) + 0.05);
}

} // namespace

class tst_Colours : public QObject
{
    Q_OBJECT

private slots:
    void everyToneHasItsRowAndAName();
    void measuresContrastAsTheGuidelinesDo();
    void reachesContrast_data();
    void reachesContrast();
};

void tst_Colours::everyToneHasItsRowAndAName()
{
    QSet<QString> names;
    for (std::size_t i = 0; i < zostyle::Colours.size(); ++i) {
        const zostyle::Colour& each = zostyle::Colours[i];
        QCOMPARE(static_cast<std::size_t>(each.tone), i);
        QCOMPARE(qAlpha(each.rgb), 255);
        names.insert(QString(each.name));
    }
    QCOMPARE(names.size(), int(zostyle::Colours.size()));
    QVERIFY(!names.contains(QString()));
}

void tst_Colours::measuresContrastAsTheGuidelinesDo()
{
    QVERIFY(qAbs(contrast(Qt::black, Qt::white) - 21.0) < 1e-9);
    QVERIFY(qAbs(contrast(QColor(0x76, 0x76, 0x76), Qt::white) - 4.54) < 0.005);
}

void tst_Colours::reachesContrast_data()
{
    QTest::addColumn<Tone>("front");
    QTest::addColumn<Tone>("back");
    QTest::addColumn<double>("least");
    const auto add = [](double least, Tone front, std::initializer_list<Tone> backs) {
        for (const Tone back : backs) {
            const QString name = zostyle::Colours[std::size_t(front)].name +
                                 QStringLiteral(" on ") + zostyle::Colours[std::size_t(back)].name;
            QTest::newRow(qPrintable(name)) << front << back << least;
        }
    };
    add(4.5, Tone::Text,
        {Tone::Window, Tone::Panel, Tone::Alternate, Tone::Raised, Tone::RaisedHover,
         Tone::RaisedPressed});
    add(4.5, Tone::Secondary, {Tone::Window, Tone::Panel, Tone::Alternate, Tone::Raised});
    add(4.5, Tone::SelectionText,
        {Tone::Selection, Tone::SelectionHover, Tone::SelectionPressed, Tone::Well});
    add(4.5, Tone::Link, {Tone::Window, Tone::Panel});
    // Icons and signs.
    add(3.0, Tone::Accent,
        {Tone::Window, Tone::Panel, Tone::Raised, Tone::RaisedPressed, Tone::Well,
         Tone::WellHover});
    add(3.0, Tone::Focus, {Tone::Window, Tone::Panel, Tone::Raised});
    add(3.0, Tone::Warning, {Tone::Window, Tone::Panel});
    add(3.0, Tone::Error, {Tone::Window, Tone::Panel});
    add(3.0, Tone::SelectionText, {Tone::Error, Tone::ErrorPressed});
    add(3.0, Tone::Disabled, {Tone::Window, Tone::Panel, Tone::Raised});
}

void tst_Colours::reachesContrast()
{
    QFETCH(Tone, front);
    QFETCH(Tone, back);
    QFETCH(double, least);
    const double ratio = contrast(zostyle::colour(front), zostyle::colour(back));
    QVERIFY2(ratio >= least, qPrintable(QString::number(ratio)));
}

QTEST_GUILESS_MAIN(tst_Colours)
#include "tst_Colours.moc"
