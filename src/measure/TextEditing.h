#pragma once

class QGraphicsTextItem;

/// Ends the editing of a text; false when it was not being edited.
bool leaveEditing(QGraphicsTextItem& text);
