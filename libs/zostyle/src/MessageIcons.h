#pragma once

#include <QIcon>
#include <QStyle>

namespace zostyle {

/// The icon of a kind of message box, drawn in the colours of the style; null for anything else.
QIcon messageIcon(QStyle::StandardPixmap kind);

} // namespace zostyle
