#pragma once

#include <span>

#include "manual/Tables.h"
#include "picture/Picture.h"

namespace manual
{
// A picture of the manual that is drawn from the instrument's own tables and parts.
struct Drawing
{
    const char* file; // in the manual's folder
    picture::Picture (*draw) (const Programs& programs);
};

std::span<const Drawing> drawings ();
}
