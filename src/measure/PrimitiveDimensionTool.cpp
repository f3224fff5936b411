#include "measure/PrimitiveDimensionTool.h"

#include "calibration/PrimitiveUnit.h"
#include "measure/DimensionKeys.h"
#include "measure/PrimitiveDimensionLabel.h"
#include "measure/PrimitiveManager.h"
#include "preferences/AttributeKeys.h"

namespace {

/// What stands behind a value of that key, as HTML.
QString unitHtml(const QString& key, const QString& symbol)
{
    if (key.compare(DimensionKey::area(), Qt::CaseInsensitive) == 0)
        return symbol + QLatin1String("&sup2;");
    if (key.compare(DimensionKey::ratio(), Qt::CaseInsensitive) == 0)
        return QString();
    if (key.compare(DimensionKey::angle(), Qt::CaseInsensitive) == 0)
        return QStringLiteral("&#xB0;");
    return symbol;
}

} // namespace

PrimitiveDimensionTool::PrimitiveDimensionTool(PrimitiveManager* toolManager, GraphicsScene* scene,
                                               const QPointF& pos)
    : PrimitiveGeneralTool(toolManager, scene, pos),
      label(new PrimitiveDimensionLabel(toolManager, scene))
{
    label->setParentItem(this);
    label->setPos(pos);
}

PrimitiveDimensionTool::PrimitiveDimensionTool(PrimitiveManager* toolManager, GraphicsScene* scene)
    : PrimitiveGeneralTool(toolManager, scene, QPointF(0, 0), true),
      label(new PrimitiveDimensionLabel(toolManager, scene))
{
    label->setParentItem(this);
    label->setPos(0, 0);
}

PrimitiveDimensionTool::~PrimitiveDimensionTool()
{
    delete label;
}

void PrimitiveDimensionTool::setToolId(int id)
{
    setData(0, id);
    setDimension(DimensionKey::id(), id);
    if (manager)
        manager->writeDimensionRow(this, id, dimensions);
    refreshLabelText();
}

void PrimitiveDimensionTool::publishDimensions()
{
    if (manager)
        manager->writeDimensionRow(this, id(), dimensions);
}

void PrimitiveDimensionTool::refreshLabelText()
{
    label->showHtml(labelHtml());
}

QString PrimitiveDimensionTool::labelHtml() const
{
    if (!manager)
        return QString();
    const QString symbol = PrimitiveUnit::symbol(manager->displayUnitKey());
    QString html = QStringLiteral("%1: <br>").arg(id() + 1);
    for (const QString& key : shownKeys) {
        const double value = dimensionValue(key);
        if (qFuzzyCompare(value, 0.0))
            continue;
        html += key.at(0).toUpper() + QLatin1Char('=') +
                QStringLiteral("%1").arg(value, 0, 'g', -1) + QLatin1Char(' ') +
                unitHtml(key, symbol);
        if (key != shownKeys.last())
            html += QLatin1String("<br>");
    }
    return html;
}

void PrimitiveDimensionTool::moveControlPoint(int index, const QPointF& scenePos)
{
    movePoint(index, scenePos);
    updateDimensions();
    refreshLabelText();
}

void PrimitiveDimensionTool::placePoint(const QPointF& scenePos, bool commit)
{
    PrimitiveGeneralTool::placePoint(scenePos, commit);
    label->setPos(labelAnchor());
}

QFont PrimitiveDimensionTool::dimensionFont() const
{
    return label->font();
}

void PrimitiveDimensionTool::setDimensionFont(const QFont& font)
{
    label->setFont(font);
    update();
}

QColor PrimitiveDimensionTool::dimensionTextColor() const
{
    return label->defaultTextColor();
}

void PrimitiveDimensionTool::setDimensionTextColor(const QColor& color)
{
    label->setDefaultTextColor(color);
    update();
}

QColor PrimitiveDimensionTool::dimensionTextBorderColor() const
{
    return label->border();
}

void PrimitiveDimensionTool::setDimensionTextBorderColor(const QColor& color)
{
    label->setBorder(color);
    update();
}

QColor PrimitiveDimensionTool::dimensionTextBackgroundColor() const
{
    return label->background();
}

void PrimitiveDimensionTool::setDimensionTextBackgroundColor(const QColor& color)
{
    label->setBackground(color);
    update();
}

QHash<QString, QVariant> PrimitiveDimensionTool::attributes() const
{
    QHash<QString, QVariant> hash = PrimitiveGeneralTool::attributes();
    hash.insert(AttributeKeys::dimensionFont(), dimensionFont());
    hash.insert(AttributeKeys::dimensionTextColor(), dimensionTextColor());
    hash.insert(AttributeKeys::dimensionTextBorderColor(), dimensionTextBorderColor());
    hash.insert(AttributeKeys::dimensionTextBackgroundColor(), dimensionTextBackgroundColor());
    return hash;
}

void PrimitiveDimensionTool::setAttributes(const QHash<QString, QVariant>& attributes)
{
    const auto color = [&](const QString& key) { return attributes.value(key).value<QColor>(); };
    setDimensionFont(attributes.value(AttributeKeys::dimensionFont()).value<QFont>());
    setDimensionTextColor(color(AttributeKeys::dimensionTextColor()));
    setDimensionTextBorderColor(color(AttributeKeys::dimensionTextBorderColor()));
    setDimensionTextBackgroundColor(color(AttributeKeys::dimensionTextBackgroundColor()));
    PrimitiveGeneralTool::setAttributes(attributes);
}
