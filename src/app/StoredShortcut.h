#pragma once

#include <QKeySequence>
#include <QString>

/// The shortcut stored under `key`, as a portable text or as a key sequence; the default stands in
/// only where nothing is stored. A stored empty one means no shortcut.
QKeySequence storedShortcut(const QString& key, const QString& defaultText);
