#pragma once

#include "common/MessageBox.h"
#include "storage/BasketDatabase.h"
#include "storage/Database.h"

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace wicker {

/// Stores the main screen's loaded lines as a new basket (not on a button). Both names
/// are needed and neither may be in use by another basket (information messages).
/// The basket and its lines are written all or nothing; a line the database refuses
/// throws (DbError). Returns the new basket's number, which becomes the loaded basket's.
std::optional<int16_t> SaveBasketAs(Database& db, MessageBoxes& boxes, const std::string& name,
                                    const std::string& button,
                                    const std::vector<BasketLine>& lines);

} // namespace wicker
