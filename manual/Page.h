#pragma once

#include <string>

#include "manual/Tables.h"

namespace manual
{
// The manual's text with every table made again: what stands between the lines "<!-- table: NAME -->" and
// "<!-- end -->". Throws std::runtime_error when a block is not closed or names no table, and when a table
// is missing or there twice.
std::string withTables (const std::string& page, const Programs& programs);
}
