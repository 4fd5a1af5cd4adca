#include "users/record_lock.h"

#include "store/database.h"
#include "users/session.h"

namespace users {

namespace {

bool s_ok = true;

// The student's holder, "" when free.
base::Result<QString> holder(store::Database &db, qint64 kayitId, const QString &label)
{
    store::Query q(
        db, QStringLiteral("SELECT Ogr_Islem_Yapan_Kullanici FROM Ogrenci WHERE KayitID = ?"));
    q.bind(kayitId);
    if (!q.exec())
        return q.error(label);
    return q.next() ? q.text(0) : QString();
}

base::Error held(const QString &kullanici)
{
    return base::Error::refusal(QStringLiteral("UYARI"), KilitMesaji(kullanici),
                                base::Icon::Critical);
}

} // namespace

QString KilitMesaji(const QString &kullanici)
{
    return kullanici + QStringLiteral(" İSİMLİ KULLANICI\n\nBU ÖĞRENCİDE İŞLEM YAPMAKTADIR.");
}

bool OgrenciKilitOK()
{
    return s_ok;
}

base::Status OgrenciKilitKontrol(store::Database &db, qint64 kayitId)
{
    s_ok = true;
    const base::Result<QString> h
        = holder(db, kayitId, QStringLiteral("Modul:OgrenciKilitKontrol"));
    if (!h)
        return h.error();
    if (!h->isEmpty() && *h != durum().AktifKullanici.left(20)) {
        s_ok = false;
        return held(*h);
    }
    return {};
}

base::Status OgrenciKilitBirak(store::Database &db, bool tumu)
{
    s_ok = true;
    // The marks are the program's own bookkeeping, whatever the user may change.
    const store::WriteGuardExemption own;
    const store::Operation op(db, store::Store::Year, QStringLiteral("Modul:OgrenciKilitBirak"));
    if (!op)
        return op.error();
    store::Query q(db,
                   tumu ? QStringLiteral("UPDATE Ogrenci SET Ogr_Islem_Yapan_Kullanici = '' WHERE "
                                         "Ogr_Islem_Yapan_Kullanici <> ''")
                        : QStringLiteral("UPDATE Ogrenci SET Ogr_Islem_Yapan_Kullanici = '' WHERE "
                                         "Ogr_Islem_Yapan_Kullanici = ?"));
    if (!tumu)
        q.bind(durum().AktifKullanici.left(20));
    if (!q.exec())
        return op.failed(q);
    return {};
}

base::Result<QString> KilidiAl(store::Database &db, qint64 kayitId, const QString &kullanici)
{
    const QString label = QStringLiteral("Modul:OgrenciKilitle");
    const store::WriteGuardExemption own;
    const QString me = kullanici.left(20);
    // Already ours, and no other student marked by us: nothing to write.
    {
        store::Query mine(db, QStringLiteral("SELECT KayitID FROM Ogrenci WHERE "
                                             "Ogr_Islem_Yapan_Kullanici = ?"));
        mine.bind(me);
        if (!mine.exec())
            return mine.error(label);
        if (mine.next() && mine.integer(0) == kayitId && !mine.next())
            return QString();
    }
    // A mark let go between the test and the reading of its holder is simply tried again.
    for (int attempt = 0; attempt < 3; ++attempt) {
        store::Transaction tx(db);
        if (!tx)
            return tx.error();
        // One mark a user: the others are let go.
        store::Query release(
            db, QStringLiteral("UPDATE Ogrenci SET Ogr_Islem_Yapan_Kullanici = '' "
                               "WHERE Ogr_Islem_Yapan_Kullanici = ? AND KayitID <> ?"));
        release.bind(me).bind(kayitId);
        if (!release.exec())
            return release.error(label);
        // The test and the mark in one statement.
        store::Query take(db,
                          QStringLiteral("UPDATE Ogrenci SET Ogr_Islem_Yapan_Kullanici = ? WHERE "
                                         "KayitID = ? AND (Ogr_Islem_Yapan_Kullanici IS NULL OR "
                                         "Ogr_Islem_Yapan_Kullanici = '' OR "
                                         "Ogr_Islem_Yapan_Kullanici = ?)"));
        take.bind(me).bind(kayitId).bind(me);
        if (!take.exec())
            return take.error(label);
        const bool taken = take.rowsAffected() > 0;
        take.finish();
        if (!tx.commit())
            return tx.error();
        if (taken)
            return QString();
        store::Query q(
            db, QStringLiteral("SELECT Ogr_Islem_Yapan_Kullanici FROM Ogrenci WHERE KayitID = ?"));
        q.bind(kayitId);
        if (!q.exec())
            return q.error(label);
        if (!q.next())
            return QString(); // no such student: nothing to mark
        const QString holder = q.text(0);
        if (!holder.isEmpty() && holder != me)
            return holder;
    }
    return base::Error{3260, QStringLiteral("Öğrenci işaretlenemedi; lütfen yeniden deneyiniz."),
                       label};
}

base::Status OgrenciKilitle(store::Database &db, qint64 kayitId)
{
    const base::Result<QString> holder = KilidiAl(db, kayitId, durum().AktifKullanici);
    if (!holder) {
        s_ok = false;
        return holder.error();
    }
    s_ok = holder->isEmpty();
    if (!s_ok)
        return held(*holder);
    return {};
}

} // namespace users
