#pragma once

#include <QString>

/// What this build of the program says about itself.
namespace BuildInfo {

/// Four numbers with points between them.
QString version();
/// Date and time at which the program was built.
QString time();

} // namespace BuildInfo
