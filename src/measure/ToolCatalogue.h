#pragma once

#include <array>

/// How a tool is offered to the user. Texts are to be translated in the context
/// "PrimitiveActionManager".
struct ToolCatalogueRow
{
    int type;              ///< The tool's number.
    const char* icon;      ///< Of the icon theme.
    const char* text;      ///< Source text.
    const char* statusTip; ///< Source text.
};

/// All tools that have an action, in the order of the actions.
const std::array<ToolCatalogueRow, 26>& toolCatalogue();
