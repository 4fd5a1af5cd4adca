#pragma once

#include "base/result.h"
#include "store/database.h"

namespace store {

// The numbers that the working year hands out one by one.
enum class Sayac {
    SonFaturaNo, // invoices: field of the Sabit row in force
    SonFisNo,    // receipts: field of the Sabit row in force
    SonSenetNo,  // promissory notes: field of the Sabit row in force
    KasaID,      // cash-box entries: the greatest KasaID of KASA
};

// Draws the next number of a counter inside the caller's transaction, which must be open: the
// number belongs to the save that draws it, so a save that rolls back gives its number back
// and no two saves ever hold the same one. Two workstations drawing at once wait for each
// other: the counter's row (on SQLite the write lock the transaction already holds) stays
// taken until the caller's transaction ends.
//
// The Sabit counters are fields of the row in force (the greatest school year, as
// store::SabitSirasi orders it); a Null counter counts as 0. KasaID is no counter field:
// the cash box keeps the number in each row of KASA, so the next one is the greatest there
// plus one, read under a lock that holds the table until the caller's transaction ends; the
// number is taken only when the caller writes its row.
[[nodiscard]] base::Result<qint64> SonrakiNumara(Database &db, Sayac sayac);

// Raises a counter so that the next number drawn is greater than `atLeast`; never lowers it.
// Inside or outside a transaction. For KasaID there is nothing to raise: a row of KASA written with
// a number raises it itself.
[[nodiscard]] base::Status raiseCounter(Database &db, Sayac sayac, qint64 atLeast);

} // namespace store
