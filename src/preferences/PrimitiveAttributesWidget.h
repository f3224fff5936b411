#pragma once

#include "measure/ToolAttributeEditor.h"
#include "preferences/ToolAttributes.h"

#include <QGraphicsObject>
#include <QPointer>
#include <QWidget>

/// Edits the look of a tool: of a selected one on the picture (object mode), or a set of attributes
/// that belongs to somebody else (hash mode). Empty and disabled while there is neither.
class PrimitiveAttributesWidget final : public QWidget, public ToolAttributeEditor
{
    Q_OBJECT

public:
    explicit PrimitiveAttributesWidget(QWidget* parent);

    QSize sizeHint() const override { return {200, 0}; }

public slots:
    /// Stores what is edited as the default look of its tool type.
    void saveHash();
    void setByObject(QGraphicsObject* target) override;
    /// `attributes` is not owned and must outlive its being edited; type 0 or below for none.
    void setByHash(int toolType, QHash<QString, QVariant>& attributes);

signals:
    void attrChanged();
    void enabled(bool enable);

private:
    void announce(bool enable);

    QPointer<QGraphicsObject> object; ///< The target of object mode, or null.
    int type = -1;                    ///< The tool type, -1 for none.
    AttributeHash* hash = nullptr;    ///< The target of hash mode, or null.
};
