#pragma once

namespace KivInspect {

// The page's files, as they stand in view/page/; places to be filled in are in double braces.
extern const char* const PageHtml;
extern const char* const PageStyle;
extern const char* const PageScript;

}  // namespace KivInspect
