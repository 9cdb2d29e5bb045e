#pragma once

#include "storage/Database.h"

#include <string>
#include <vector>

namespace wicker {

/// The account screen's contents: every account in name order and the default one.
struct AccountSetup {
    std::vector<std::string> accounts;
    std::string defaultAccount; ///< empty when no account is the default
};

/// Reads tblAccount ("SELECT * FROM tblAccount ORDER BY strAcct"); the row whose
/// lngDefault is 1 gives the default. DbError when the table cannot be read.
AccountSetup LoadAccountSetup(Database& db);

/// Replaces tblAccount by `accounts` in list order, none of them default, then makes
/// `defaultAccount` the default (no row when it is empty or not in the list). All or
/// nothing: on a DbError (an apostrophe in a name, say) the table is left as it was.
void SaveAccountSetup(Database& db, const std::vector<std::string>& accounts,
                      const std::string& defaultAccount);

} // namespace wicker
