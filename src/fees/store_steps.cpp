#include "fees/store_steps.h"

#include "store/database.h"

namespace fees {

base::Error geriAl(store::Transaction &tx, const store::Query &q, const QString &etiket)
{
    base::Error hata = q.error(etiket);
    tx.rollback();
    return hata;
}

base::Error etiketle(base::Error hata, const QString &etiket)
{
    hata.label = etiket;
    return hata;
}

} // namespace fees
