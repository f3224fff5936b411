#pragma once

#include <QString>

namespace zostyle {

/// The text with every `@name` replaced by the colour of that name. An unknown name is told in a
/// warning and becomes transparent, so that the rest of the sheet stays readable.
QString withColours(const QString& sheet);

/// The style sheet of a file with its colours put in; empty when it cannot be read.
QString loadStyleSheet(const QString& path);

} // namespace zostyle
