#include "store/change_log.h"

#include "store/migration.h"
#include "store/schema.h"

namespace store {

shell::Status YeniTabloEkle(Database &db)
{
    Transaction tx(db);
    if (!tx)
        return tx.error();
    for (const schema::Table &t : schema::tables()) {
        if (t.store != Store::Log)
            continue;
        if (shell::Status s = createDeclaredTable(db, t); !s)
            return s;
    }
    if (!tx.commit())
        return tx.error();
    return {};
}

QString LogIslemAdi(const QString &islemTuru)
{
    if (islemTuru == LogYeniKayit)
        return QStringLiteral("Yeni Kayıt");
    if (islemTuru == LogDegisiklik)
        return QStringLiteral("Değişiklik");
    if (islemTuru == LogKayitSil)
        return QStringLiteral("Kayıt Sil");
    return islemTuru;
}

} // namespace store
