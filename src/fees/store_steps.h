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
base::Error rollBack(store::Transaction &tx, const store::Query &q, const QString &label);

// An error of the transaction machinery, told under the operation's own label in place of the
// transaction's (base::Error::withLabel only fills a label that is missing).
base::Error relabeled(base::Error error, const QString &label);

} // namespace fees
