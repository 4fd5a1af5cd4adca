#include "fees/store_steps.h"

#include "store/database.h"

namespace fees {

base::Error rollBack(store::Transaction &tx, const store::Query &q, const QString &label)
{
    base::Error error = q.error(label);
    tx.rollback();
    return error;
}

base::Error relabeled(base::Error error, const QString &label)
{
    error.label = label;
    return error;
}

} // namespace fees
