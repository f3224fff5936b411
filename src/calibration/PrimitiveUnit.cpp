#include "calibration/PrimitiveUnit.h"

namespace {

struct UnitTable
{
    QMap<QString, QString> names;
    QMap<QString, QString> symbols;
    QMap<QString, double> factors;

    void add(const QString& key, const QString& name, const QString& symbol, double factor)
    {
        names.insert(key, name);
        symbols.insert(key, symbol);
        factors.insert(key, factor);
    }
};

UnitTable makeTable()
{
    const auto text = [](const char* utf8) { return QString::fromUtf8(utf8); };
    UnitTable table;
    table.add(text("0_nm"), PrimitiveUnit::tr("Nanometer (nm)"), text("nm"), 1e-9);
    table.add(text("1_µm"), PrimitiveUnit::tr("Micrometer (µm)"), text("µm"), 1e-6);
    table.add(text("2_mm"), PrimitiveUnit::tr("Millimeter (mm)"), text("mm"), 0.001);
    table.add(text("3_cm"), PrimitiveUnit::tr("Centimeter (cm)"), text("cm"), 0.01);
    table.add(text("4_m"), PrimitiveUnit::tr("Meter (m)"), text("m"), 1.0);
    table.add(text("5_in"), PrimitiveUnit::tr("Inch (in)"), text("in"), 0.0254);
    table.add(text("6_mil"), PrimitiveUnit::tr("thou (mil)"), text("mil"), 2.54e-5);
    return table;
}

const UnitTable& table()
{
    static const UnitTable units = makeTable();
    return units;
}

} // namespace

QString PrimitiveUnit::pixelKey()
{
    return QStringLiteral("px_key");
}

QString PrimitiveUnit::pixelSymbol()
{
    return QStringLiteral("px");
}

QString PrimitiveUnit::fullName(const QString& key)
{
    return key == pixelKey() ? tr("Pixel (px)") : table().names.value(key);
}

QString PrimitiveUnit::symbol(const QString& key)
{
    return key == pixelKey() ? pixelSymbol() : table().symbols.value(key);
}

double PrimitiveUnit::factor(const QString& key)
{
    return table().factors.value(key, 1.0);
}

QMap<QString, QString> PrimitiveUnit::fullNameList()
{
    return table().names;
}

QMap<QString, double> PrimitiveUnit::factorList()
{
    return table().factors;
}
