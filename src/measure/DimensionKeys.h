#pragma once

#include <QString>

/// The keys of measured values: the columns of the dimension table, and "ratio", which only labels
/// show.
namespace DimensionKey {

inline QString id()
{
    return QStringLiteral("id");
}
inline QString length()
{
    return QStringLiteral("length");
}
inline QString angle()
{
    return QStringLiteral("angle");
}
inline QString perimeter()
{
    return QStringLiteral("perimeter");
}
inline QString area()
{
    return QStringLiteral("area");
}
inline QString ratio()
{
    return QStringLiteral("ratio");
}

} // namespace DimensionKey
