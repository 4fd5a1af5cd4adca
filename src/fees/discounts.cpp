#include "fees/discounts.h"

#include "fees/store_steps.h"
#include "store/database.h"
#include "users/rights.h"

namespace fees {

namespace {

const QString s_kaydetEtiketi = QStringLiteral("FrmAidatTanimlama:IskontoKaydet");
const QString s_silEtiketi = QStringLiteral("FrmAidatTanimlama:IskontoSil");
const QString s_okuEtiketi = QStringLiteral("FrmAidatTanimlama:IskontoGoster");

} // namespace

base::Result<QList<IskontoTanimi>> IskontoTanimlariOku(store::Database &db)
{
    const store::Operation op(db, store::Store::Year, s_okuEtiketi);
    if (!op) {
        return op.error();
    }
    store::Query q(db, QStringLiteral("SELECT ID, IskontoAciklama, IskontoOrani, IskontoTipi, "
                                      "IskontoKalanTutardan, IskontoSirasi FROM IskontoTanim "
                                      "ORDER BY IskontoSirasi, ID"));
    if (!q.exec()) {
        return q.error(s_okuEtiketi);
    }
    QList<IskontoTanimi> liste;
    while (q.next()) {
        IskontoTanimi t;
        t.id = q.integer(0);
        t.aciklama = q.text(1);
        const base::Result<Para> deger = q.decimal(2);
        if (!deger) {
            return deger.error().withLabel(s_okuEtiketi);
        }
        t.deger = *deger;
        t.tipi = q.integer(3) == Tutar ? Tutar : Oran;
        t.kalanTutardan = q.integer(4) == KalanTutardan ? KalanTutardan : EsasTutardan;
        t.sira = int(q.integer(5));
        liste.append(t);
    }
    return liste;
}

base::Status IskontoTanimlariKaydet(store::Database &db, QList<IskontoTanimi> &liste)
{
    if (base::Status yetki = users::YazmaYetkisiVar(); !yetki) {
        return yetki.error();
    }
    const store::Operation op(db, store::Store::Year, s_kaydetEtiketi);
    if (!op) {
        return op.error();
    }
    QList<IskontoTanimi> yazilan = liste;
    store::Transaction tx(db);
    if (!tx) {
        return relabeled(tx.error(), s_kaydetEtiketi);
    }
    int sira = 0;
    for (IskontoTanimi &t : yazilan) {
        t.aciklama = t.aciklama.trimmed().left(30);
        if (t.id == 0 && t.aciklama.isEmpty()) {
            continue;
        }
        t.sira = ++sira;
        bool varMi = false;
        if (t.id != 0) {
            store::Query bak(db, QStringLiteral("SELECT ID FROM IskontoTanim WHERE ID = ?"));
            bak.bind(t.id);
            if (!bak.exec()) {
                return rollBack(tx, bak, s_kaydetEtiketi);
            }
            varMi = bak.next();
        }
        if (varMi) {
            store::Query q(db, QStringLiteral("UPDATE IskontoTanim SET IskontoAciklama = ?, "
                                              "IskontoOrani = ?, IskontoTipi = ?, "
                                              "IskontoKalanTutardan = ?, IskontoSirasi = ? "
                                              "WHERE ID = ?"));
            q.bind(t.aciklama)
                .bindDecimal(t.deger)
                .bind(t.tipi)
                .bind(t.kalanTutardan)
                .bind(t.sira)
                .bind(t.id);
            if (!q.exec()) {
                return rollBack(tx, q, s_kaydetEtiketi);
            }
            continue;
        }
        // A row deleted meanwhile on another workstation comes back as a new one.
        store::Query q(db,
                       QStringLiteral("INSERT INTO IskontoTanim (IskontoAciklama, IskontoOrani, "
                                      "IskontoTipi, IskontoKalanTutardan, IskontoSirasi) "
                                      "VALUES (?, ?, ?, ?, ?) RETURNING ID"));
        q.bind(t.aciklama).bindDecimal(t.deger).bind(t.tipi).bind(t.kalanTutardan).bind(t.sira);
        if (!q.exec() || !q.next()) {
            return rollBack(tx, q, s_kaydetEtiketi);
        }
        t.id = q.integer(0);
    }
    if (!tx.commit()) {
        return relabeled(tx.error(), s_kaydetEtiketi);
    }
    liste = yazilan;
    return {};
}

base::Status IskontoTanimiSil(store::Database &db, qint64 id)
{
    if (base::Status yetki = users::YazmaYetkisiVar(); !yetki) {
        return yetki.error();
    }
    const store::Operation op(db, store::Store::Year, s_silEtiketi);
    if (!op) {
        return op.error();
    }
    store::Query q(db, QStringLiteral("DELETE FROM IskontoTanim WHERE ID = ?"));
    q.bind(id);
    if (!q.exec()) {
        return q.error(s_silEtiketi);
    }
    return {};
}

base::Result<Para> GenelIskontoOrani(store::Database &db)
{
    const QString etiket = QStringLiteral("FrmAidatTanimlama:TaksitPlanla");
    const store::Operation op(db, store::Store::Year, etiket);
    if (!op) {
        return op.error();
    }
    store::Query q(db, QStringLiteral("SELECT IskontoOrani, IskontoTipi FROM IskontoTanim "
                                      "ORDER BY ID LIMIT 1"));
    if (!q.exec()) {
        return q.error(etiket);
    }
    if (!q.next() || q.integer(1) == Tutar) {
        return Para();
    }
    const base::Result<Para> oran = q.decimal(0);
    if (!oran) {
        return oran.error().withLabel(etiket);
    }
    return *oran;
}

} // namespace fees
