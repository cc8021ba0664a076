#pragma once

#include <string>
#include <vector>

#include "resources/bank/BankSource.h"

namespace manual
{
using Programs = std::vector<bank::SourceProgram>;

// The names of all tables, each of which stands in the manual once.
std::vector<std::string> tableNames ();

// A table as Markdown, made from the tables that the instrument itself works by. Throws std::runtime_error
// for a name that is none.
std::string table (const std::string& name, const Programs& programs);
}
