#include "fees/store_steps.h"

#include "store/database.h"

namespace fees {

shell::Error geriAl(store::Transaction &tx, const store::Query &q, const QString &etiket)
{
    shell::Error hata = q.error(etiket);
    tx.rollback();
    return hata;
}

shell::Error etiketle(shell::Error hata, const QString &etiket)
{
    hata.label = etiket;
    return hata;
}

} // namespace fees
