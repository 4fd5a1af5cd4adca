#include "maintenance/working_years.h"

#include "store/database.h"
#include "store/settings.h"
#include "users/session.h"

#include <QFileInfo>

namespace maintenance {

base::Result<QList<Calisma>> CalismaDoldur(store::Database &db)
{
    const store::Operation op(db, store::Store::Global,
                              QStringLiteral("FrmCalismaAc:CalismaDoldur"));
    if (!op)
        return op.error();
    store::Query q(
        db, QStringLiteral("SELECT CalismaID, CalismaAdi FROM Calisma ORDER BY CalismaID DESC"));
    if (!q.exec())
        return op.failed(q);
    QList<Calisma> list;
    while (q.next()) {
        const int id = int(q.integer(0));
        // A year whose store is gone is not listed.
        if (db.exists(store::Store::Year, id))
            list.append(Calisma{id, q.text(1)});
    }
    return list;
}

base::Result<bool> CalismaAdiVar(store::Database &db, const QString &ad, int haricId)
{
    const store::Operation op(db, store::Store::Global,
                              QStringLiteral("FrmYeniCalisma:CalismaKaydet"));
    if (!op)
        return op.error();
    store::Query q(
        db,
        QStringLiteral("SELECT CalismaID FROM Calisma WHERE CalismaAdi = ? AND CalismaID <> ?"));
    q.bind(ad.trimmed()).bind(haricId);
    if (!q.exec())
        return op.failed(q);
    // A year whose store never came to be (its first opening failed) is not listed, and does not
    // keep its name from a new one.
    while (q.next()) {
        if (db.exists(store::Store::Year, int(q.integer(0))))
            return true;
    }
    return false;
}

base::Result<int> CalismaKaydet(store::Database &db, const QString &ad)
{
    const store::Operation op(db, store::Store::Global,
                              QStringLiteral("FrmYeniCalisma:CalismaKaydet"));
    if (!op)
        return op.error();
    store::Transaction tx(db);
    if (!tx)
        return tx.error();
    store::Query insert(
        db, QStringLiteral("INSERT INTO Calisma (CalismaAdi) VALUES (?) RETURNING CalismaID"));
    insert.bind(ad.trimmed().left(50));
    if (!insert.exec() || !insert.next())
        return op.failed(insert);
    const int id = int(insert.integer(0));
    insert.finish();
    store::Query file(db, QStringLiteral("UPDATE Calisma SET DataFile = ? WHERE CalismaID = ?"));
    file.bind(QFileInfo(db.location(store::Store::Year, id)).fileName()).bind(id);
    if (!file.exec())
        return op.failed(file);
    if (!tx.commit())
        return tx.error();
    return id;
}

base::Status CalismaSil(store::Database &db, int id)
{
    // The year in use stays: its screens and the title still name it.
    if (id == db.openYear() || id == users::durum().AktifCalismaID) {
        return base::Error::refusal(
            QStringLiteral("UYARI"),
            QStringLiteral("Şu anda açık olan çalışma silinemez. Önce başka "
                           "bir çalışma açınız."));
    }
    const store::Operation op(db, store::Store::Global,
                              QStringLiteral("FrmCalismaAc:cmdSil_Click"));
    if (!op)
        return op.error();
    // The row goes first: a year whose files outlive it is only untidy, while a row whose files
    // are gone would open as an empty year.
    store::Query q(db, QStringLiteral("DELETE FROM Calisma WHERE CalismaID = ?"));
    q.bind(id);
    if (!q.exec())
        return op.failed(q);
    q.finish();
    return db.drop(id);
}

base::Status CalismaAdiDegistir(store::Database &db, int id, const QString &ad)
{
    const store::Operation op(db, store::Store::Global,
                              QStringLiteral("FrmCalismaAc:MnuDegistir_Click"));
    if (!op)
        return op.error();
    store::Query q(db, QStringLiteral("UPDATE Calisma SET CalismaAdi = ? WHERE CalismaID = ?"));
    q.bind(ad.trimmed().left(50)).bind(id);
    if (!q.exec())
        return op.failed(q);
    return {};
}

void CalismaSecimiYap(store::Database &db, const Calisma &calisma, int listeSirasi)
{
    users::CalismaDurumu &d = users::durum();
    d.AktifCalismaID = calisma.id;
    d.AktifCalismaAdi = calisma.adi;
    db.selectYear(calisma.id);
    store::INIAyar(db, QStringLiteral("WRITE"), QStringLiteral("Aidat.ini"),
                   QStringLiteral("AktifCalisma"), QStringLiteral("ID"),
                   QString::number(listeSirasi));
}

int KayitliCalismaSirasi(store::Database &db, int listeBoyu)
{
    bool ok = false;
    const int index = store::INIAyar(db, QStringLiteral("GET"), QStringLiteral("Aidat.ini"),
                                     QStringLiteral("AktifCalisma"), QStringLiteral("ID"))
                          .toInt(&ok);
    return ok && index >= 0 && index < listeBoyu ? index : 0;
}

} // namespace maintenance
