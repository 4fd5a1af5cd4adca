#include "users/record_lock.h"

#include "shell/failure.h"
#include "shell/settings.h"
#include "store/database.h"
#include "ui/message.h"

namespace users {

namespace {

bool s_ok = true;

// The student's holder, "" when free; nullopt when the row could not be read.
std::optional<QString> holder(store::Database &db, qint64 kayitId, const QString &label)
{
    store::Query q(db, QStringLiteral("SELECT Ogr_Islem_Yapan_Kullanici FROM Ogrenci WHERE KayitID = ?"));
    q.bind(kayitId);
    if (!q.exec()) {
        shell::HataBildir(q.error(label));
        return std::nullopt;
    }
    return q.next() ? q.text(0) : QString();
}

void tell(const QString &kullanici)
{
    ui::notify(QStringLiteral("UYARI"), KilitMesaji(kullanici), ui::Icon::Critical);
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

bool OgrenciKilitKontrol(store::Database &db, qint64 kayitId)
{
    s_ok = true;
    const std::optional<QString> h = holder(db, kayitId, QStringLiteral("Modul:OgrenciKilitKontrol"));
    if (!h)
        return s_ok;
    if (!h->isEmpty() && *h != shell::durum().AktifKullanici.left(20)) {
        s_ok = false;
        tell(*h);
    }
    return s_ok;
}

shell::Status OgrenciKilitBirak(store::Database &db, bool tumu)
{
    s_ok = true;
    const QString label = QStringLiteral("Modul:OgrenciKilitBirak");
    // The marks are the program's own bookkeeping, whatever the user may change.
    const store::WriteGuardExemption own;
    if (shell::Status open = store::ensureOpen(db, store::Store::Year, label); !open)
        return open.error();
    store::Query q(db, tumu ? QStringLiteral("UPDATE Ogrenci SET Ogr_Islem_Yapan_Kullanici = '' WHERE "
                                             "Ogr_Islem_Yapan_Kullanici <> ''")
                            : QStringLiteral("UPDATE Ogrenci SET Ogr_Islem_Yapan_Kullanici = '' WHERE "
                                             "Ogr_Islem_Yapan_Kullanici = ?"));
    if (!tumu)
        q.bind(shell::durum().AktifKullanici.left(20));
    if (!q.exec())
        return q.error(label);
    return {};
}

shell::Result<QString> KilidiAl(store::Database &db, qint64 kayitId, const QString &kullanici)
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
        store::Query release(db, QStringLiteral("UPDATE Ogrenci SET Ogr_Islem_Yapan_Kullanici = '' "
                                                "WHERE Ogr_Islem_Yapan_Kullanici = ? AND KayitID <> ?"));
        release.bind(me).bind(kayitId);
        if (!release.exec())
            return release.error(label);
        // The test and the mark in one statement.
        store::Query take(db, QStringLiteral("UPDATE Ogrenci SET Ogr_Islem_Yapan_Kullanici = ? WHERE "
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
        store::Query q(db, QStringLiteral("SELECT Ogr_Islem_Yapan_Kullanici FROM Ogrenci WHERE KayitID = ?"));
        q.bind(kayitId);
        if (!q.exec())
            return q.error(label);
        if (!q.next())
            return QString(); // no such student: nothing to mark
        const QString holder = q.text(0);
        if (!holder.isEmpty() && holder != me)
            return holder;
    }
    return shell::Error{3260,
                        QStringLiteral("Öğrenci işaretlenemedi; lütfen yeniden deneyiniz."),
                        label};
}

bool OgrenciKilitle(store::Database &db, qint64 kayitId)
{
    const shell::Result<QString> holder = KilidiAl(db, kayitId, shell::durum().AktifKullanici);
    if (!holder) {
        s_ok = false;
        shell::HataBildir(holder.error());
        return false;
    }
    s_ok = holder->isEmpty();
    if (!s_ok)
        tell(*holder);
    return s_ok;
}

} // namespace users
