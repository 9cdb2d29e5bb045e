#pragma once

#include "support/TestDatabase.h"

namespace wicker::test {

using AdminTestDb = TestDb;

} // namespace wicker::test
