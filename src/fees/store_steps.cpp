#include "fees/store_steps.h"

#include "store/database.h"

namespace fees {

shell::Status calismaAc(store::Database &db, const QString &etiket)
{
    if (!store::DatabaseAc(db, store::Store::Year, false, false)) {
        return shell::Error{3044, QStringLiteral("Çalışma dosyası açılamadı."), etiket};
    }
    return {};
}

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
