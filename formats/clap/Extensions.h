#pragma once

namespace clap
{
// The table of functions that CLAP knows under this name; null for one that the plug-in does not have. Any
// thread.
const void* extension (const char* id, bool hasGui);
}
