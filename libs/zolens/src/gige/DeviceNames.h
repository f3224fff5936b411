#pragma once

#include <QString>

namespace zolens {

/// What a device tells of itself, as plain text of one line. Empty for null too.
QString plainText(const char* text, int length);
QString plainText(const char* text);

/// Models that begin with the vendor's name are not given it twice. `kind` is for those that tell
/// neither.
QString deviceName(const QString& vendor, const QString& model, const QString& kind);

} // namespace zolens
