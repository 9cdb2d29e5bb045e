#pragma once

#include "support/TestDatabase.h"

namespace wicker::test {

using BasketTestDb = TestDb;

} // namespace wicker::test
