#pragma once

#include "test_support.h"

#include "store/database.h"
#include "store/migration.h"

namespace testing {

// A working year as the program has it after its start: migrated, with the fields that the
// main window adds at every start.
inline bool openFeeYear(TestStore &s)
{
    if (!s.openYear()) {
        return false;
    }
    store::SonAlanlariEkle(s.db());
    return true;
}

} // namespace testing
