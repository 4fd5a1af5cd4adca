#pragma once

#include "store/database.h"

namespace bench {

// Fills the open working year with students, each with two fees of ten monthly installments
// from September and, for each fee, the first `payments` installments paid on their day (at most
// ten). False when a statement failed.
bool generate(store::Database &db, int students, int payments = 5);

} // namespace bench
