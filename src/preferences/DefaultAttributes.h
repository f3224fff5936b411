#pragma once

#include <QHash>
#include <QString>
#include <QVariant>

/// The look of a tool: values under the keys of AttributeKeys.
using AttributeHash = QHash<QString, QVariant>;

/// The built-in sets. They need the application object, whose font some of them hold.
namespace DefaultAttributes {

AttributeHash generalTool();
AttributeHash rectange();
AttributeHash calibrationRuler();
AttributeHash arrow();
AttributeHash redArrow();
AttributeHash blueArrow();
AttributeHash greenArrow();
AttributeHash whiteArrow();
AttributeHash textAnnotation();
AttributeHash text();
AttributeHash counter();
AttributeHash scalebar();

} // namespace DefaultAttributes

/// The built-in set of a tool type, empty for a number that is no tool.
AttributeHash defaultAttributes(int type);
