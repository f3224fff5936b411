#pragma once

class QGraphicsObject;

/// What the tool manager needs of the attribute editor: to hear which item it is to edit.
class ToolAttributeEditor
{
public:
    /// Null when there is nothing to edit.
    virtual void setByObject(QGraphicsObject* object) = 0;

protected:
    ~ToolAttributeEditor() = default;
};
