#pragma once

#include "preferences/AttributeKeys.h"
#include "preferences/DefaultAttributes.h"

/// The user's set of a tool type, or else the built-in one. A stored set counts as a whole: what it
/// lacks is not filled in. The coloured arrows always have their built-in sets.
AttributeHash toolAttributes(int type);

/// Stores the user's set of a tool type. The coloured arrows share the key of the general tools;
/// a number that is no tool stores nothing.
void saveToolAttributes(int type, const AttributeHash& attributes);
