#pragma once

#include "store/database.h"

namespace bench {

// Fills the open working year with students, each with two fees of ten monthly installments
// from September and five payments. False when a statement failed.
bool generate(store::Database &db, int students);

} // namespace bench
