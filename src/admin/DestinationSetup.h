#pragma once

#include "storage/Database.h"

#include <string>
#include <vector>

namespace wicker {

/// Every destination in name order ("SELECT * FROM tblDest ORDER BY strDest"), enabled
/// or not. DbError when the table cannot be read.
std::vector<std::string> LoadDestinationSetup(Database& db);

/// Replaces tblDest by `destinations` in list order, each enabled. All or nothing: on a
/// DbError the table is left as it was.
void SaveDestinationSetup(Database& db, const std::vector<std::string>& destinations);

} // namespace wicker
