#pragma once

#include "measure/PrimitiveGeneralTool.h"

#include <QFont>
#include <QStringList>

class PrimitiveDimensionLabel;

/// The base of the tools that measure: it keeps the measured values, shows them in a label beside
/// the figure and writes them into the tool's table row. A concrete tool computes them in
/// updateDimensions().
class PrimitiveDimensionTool : public PrimitiveGeneralTool
{
    Q_OBJECT
    Q_PROPERTY(QFont dimensionFont READ dimensionFont WRITE setDimensionFont)
    Q_PROPERTY(QColor dimensionTextColor READ dimensionTextColor WRITE setDimensionTextColor)
    Q_PROPERTY(QColor dimensionTextBorderColor READ dimensionTextBorderColor WRITE
                   setDimensionTextBorderColor)
    Q_PROPERTY(QColor dimensionTextBackgroundColor READ dimensionTextBackgroundColor WRITE
                   setDimensionTextBackgroundColor)

public:
    PrimitiveDimensionTool(PrimitiveManager* manager, GraphicsScene* scene, const QPointF& pos);
    PrimitiveDimensionTool(PrimitiveManager* manager, GraphicsScene* scene);
    ~PrimitiveDimensionTool() override;

    /// Gives the tool its row, which its label shows counted from 1.
    void setToolId(int id);
    PrimitiveDimensionLabel* dimensionLabel() const { return label; }
    const QHash<QString, double>& dimensionValues() const { return dimensions; }
    /// In display units or degrees; 0.0 when the tool has no such value.
    double dimensionValue(const QString& key) const { return dimensions.value(key, 0.0); }
    void refreshLabelText();

    QFont dimensionFont() const;
    void setDimensionFont(const QFont& font);
    QColor dimensionTextColor() const;
    void setDimensionTextColor(const QColor& color);
    QColor dimensionTextBorderColor() const;
    void setDimensionTextBorderColor(const QColor& color);
    QColor dimensionTextBackgroundColor() const;
    void setDimensionTextBackgroundColor(const QColor& color);

    void setAttributes(const QHash<QString, QVariant>& attributes) override;
    QHash<QString, QVariant> attributes() const override;
    void placePoint(const QPointF& scenePos, bool commit) override;
    void moveControlPoint(int index, const QPointF& scenePos) override;

    /// Computes the values once there are enough points and, in all cases, publishes them.
    virtual void updateDimensions() = 0;
    /// The number of the row and the values of `shownKeys` that are not zero, with their unit.
    virtual QString labelHtml() const;
    /// Where the label stands while the figure is being built; item coordinates.
    virtual QPointF labelAnchor() const = 0;

protected:
    void setDimension(const QString& key, double value) { dimensions.insert(key, value); }
    /// Writes all values into the table row.
    void publishDimensions();

    PrimitiveDimensionLabel* label = nullptr;
    QHash<QString, double> dimensions;
    QStringList shownKeys; ///< What the label shows, in order.
};
