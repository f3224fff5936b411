#include "measure/TextEditing.h"

#include <QGraphicsTextItem>
#include <QTextCursor>

bool leaveEditing(QGraphicsTextItem& text)
{
    if (!text.textInteractionFlags().testFlag(Qt::TextEditorInteraction))
        return false;
    text.setTextInteractionFlags(Qt::NoTextInteraction);
    QTextCursor cursor = text.textCursor();
    cursor.clearSelection();
    text.setTextCursor(cursor);
    text.clearFocus();
    text.setSelected(false);
    return true;
}
