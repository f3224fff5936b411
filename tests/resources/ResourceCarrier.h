#pragma once

#include <QString>

/// The folder of the icon theme in the resources, without a slash at its end. It stands in a static
/// library that carries the resources but has no reference into them.
QString iconThemeFolder();
