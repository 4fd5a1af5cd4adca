#pragma once

#include "base/result.h"

#include <QString>

namespace store {
class Database;
class Query;
class Transaction;
} // namespace store

// Small steps that the fee subsystem's data functions share.
namespace fees {

// A failed step inside a transaction: its error is taken, then the transaction is rolled back
// at once, so that the statements still open are freed outside an aborted transaction.
base::Error geriAl(store::Transaction &tx, const store::Query &q, const QString &etiket);

// An error of the transaction machinery, told under the operation's own label.
base::Error etiketle(base::Error hata, const QString &etiket);

} // namespace fees
