#pragma once

#include "manual/Tables.h"
#include "picture/Picture.h"

namespace manual
{
// The panel at 200 %, set to the first program, with a number on every section.
picture::Picture drawPanel (const Programs& programs);
}
