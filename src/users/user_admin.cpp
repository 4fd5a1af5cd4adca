#include "users/user_admin.h"

#include "base/turkish_text.h"
#include "store/database.h"
#include "users/command_table.h"
#include "users/passwords.h"
#include "users/rights.h"
#include "users/secrets.h"

#include <QCollator>
#include <QLocale>

#include <algorithm>

namespace users {

namespace {

const QString s_label = QStringLiteral("Kullanici_Sifre:KullaniciYukle");

// A stored name in clear. Names scrambled on the weaker provider of some old machines read as
// control characters through the stronger one; they are read through the weaker then.
QString readName(const QString &kod)
{
    const QString enhanced = SifreCoz(kod, Provider::Enhanced).value_or(QString());
    const bool clean = std::none_of(enhanced.begin(), enhanced.end(),
                                    [](QChar c) { return c.unicode() < 0x20; });
    if (clean)
        return enhanced;
    return SifreCoz(kod, Provider::Base).value_or(enhanced);
}

} // namespace

base::Result<QList<KullaniciSatiri>> KullanicilariOku(store::Database &db)
{
    const store::Operation op(db, store::Store::Global, s_label);
    if (!op)
        return op.error();
    store::Query q(db, QStringLiteral("SELECT Username, Password FROM Sifre"));
    if (!q.exec())
        return op.failed(q);
    QList<KullaniciSatiri> rows;
    while (q.next()) {
        KullaniciSatiri r;
        r.kod = q.value(0).toString().trimmed();
        r.ad = readName(r.kod);
        r.sifreVar = !q.value(1).toString().isEmpty();
        rows.append(r);
    }
    QCollator turkish(QLocale(QLocale::Turkish));
    std::sort(rows.begin(), rows.end(),
              [&turkish](const KullaniciSatiri &a, const KullaniciSatiri &b) {
                  return turkish.compare(a.ad, b.ad) < 0;
              });
    return rows;
}

base::Result<QList<HakSatiri>> HaklariOku(store::Database &db, const QString &kod)
{
    const QString label = QStringLiteral("Kullanici_Sifre:HakYukle");
    QHash<QString, QPair<bool, bool>> marks;
    if (!kod.isEmpty()) {
        store::Query q(db,
                       QStringLiteral("SELECT Kullanici_Program, Haklar_Okuma, Haklar_Yazma FROM "
                                      "Haklar WHERE Kullanici_Adi = ?"));
        q.bind(kod);
        if (!q.exec())
            return q.error(label);
        while (q.next())
            marks.insert(q.text(0), qMakePair(q.integer(1) != 0, q.integer(2) != 0));
    }
    QList<HakSatiri> rows;
    for (const Komut &k : KomutTablosu()) {
        if (k.tool == QLatin1String("popCikis") || k.tool == QLatin1String("btnCikis"))
            continue;
        const QPair<bool, bool> m = marks.value(k.tool);
        rows.append(HakSatiri{
            k.tool,
            k.caption.isEmpty() ? QStringLiteral("Öğrenci Bilgileri (Araç Çubuğu)") : k.caption,
            m.first, m.second});
    }
    // Not a command: who may see the guardians' card numbers in clear.
    const QPair<bool, bool> card = marks.value(KartNoGormeAraci);
    rows.append(HakSatiri{KartNoGormeAraci, QStringLiteral("Veli Kredi Kartı Numaralarını Görme"),
                          card.first, card.second});
    return rows;
}

bool SifreDogru(store::Database &db, const QString &kod, const QString &sifre)
{
    store::Query q(db, QStringLiteral("SELECT Password FROM Sifre WHERE Username = ?"));
    q.bind(kod);
    if (!q.exec())
        return false; // a reading that failed proves nothing
    if (!q.next())
        return sifre.isEmpty();
    const QString stored = q.value(0).toString();
    if (stored.isEmpty())
        return sifre.isEmpty();
    if (SifreOzetiMi(stored))
        return SifreOzetiDogrula(stored, sifre);
    for (Provider p : {Provider::Enhanced, Provider::Base}) {
        if (Sifrele(sifre, p).value_or(QString()).compare(stored.trimmed(), Qt::CaseInsensitive)
            == 0)
            return true;
    }
    return false;
}

QString KayitTus(const QList<KullaniciSatiri> &satirlar, int satir)
{
    const KullaniciSatiri &r = satirlar.at(satir);
    if (r.ad.trimmed().isEmpty())
        return QStringLiteral("Geçerli Bir Kullanıcı Tanımlamalısınız!");
    for (int i = 0; i < satirlar.size(); ++i) {
        if (i != satir && satirlar[i].ad == r.ad)
            return QStringLiteral("Bu Kullanıcı Daha Önce Tanımlanmıştı!");
    }
    if (!r.sifreVar && !(r.sifreDegisti && !r.yeniSifre.isEmpty()))
        return QStringLiteral("Geçerli Bir Kullanıcı Şifresi Tanımlanmamış!");
    return QString();
}

namespace {

// Whether the rights shown for a user are those stored (a command without a row shows no
// marks): rights that were only looked at are not written again.
base::Result<bool> haklarDegisti(store::Database &db, const QString &kod,
                                 const QList<HakSatiri> &gosterilen, const QString &label)
{
    store::Query q(db, QStringLiteral("SELECT Kullanici_Program, Haklar_Okuma, Haklar_Yazma "
                                      "FROM Haklar WHERE Kullanici_Adi = ?"));
    q.bind(kod);
    if (!q.exec())
        return q.error(label);
    QHash<QString, QPair<bool, bool>> kayitli;
    while (q.next())
        kayitli.insert(q.text(0), {q.integer(1) != 0, q.integer(2) != 0});
    for (const HakSatiri &h : gosterilen) {
        if (kayitli.value(h.tool, {false, false}) != qMakePair(h.okuma, h.yazma))
            return true;
    }
    return false;
}

// The first rights defined close every command to the users without rows of their own; they
// keep everything they had, as the first user was promised.
base::Status ilkHaklariVer(store::Database &db, const QString &label)
{
    store::Query users(
        db, QStringLiteral("SELECT Username FROM Sifre WHERE Username NOT IN "
                           "(SELECT Kullanici_Adi FROM Haklar WHERE Kullanici_Adi IS NOT NULL)"));
    if (!users.exec())
        return users.error(label);
    QStringList kodlar;
    while (users.next())
        kodlar << users.text(0);
    users.finish();
    for (const QString &kod : kodlar) {
        for (const Komut &k : KomutTablosu()) {
            store::Query add(db,
                             QStringLiteral("INSERT INTO Haklar (Kullanici_Adi, Haklar_Okuma, "
                                            "Haklar_Yazma, Haklar_Program_Adi, Kullanici_Program) "
                                            "VALUES (?, 1, 1, ?, ?)"));
            add.bind(kod).bind(k.caption.left(60)).bind(k.tool.left(60));
            if (!add.exec())
                return add.error(label);
        }
    }
    return {};
}

} // namespace

base::Status KullanicilariKaydet(store::Database &db, const QList<KullaniciSatiri> &satirlar,
                                 const QHash<QString, QList<HakSatiri>> &haklar)
{
    const QString label = QStringLiteral("Kullanici_Sifre:Kaydet");
    const store::Operation op(db, store::Store::Global, label);
    if (!op)
        return op.error();
    store::Transaction tx(db);
    if (!tx)
        return tx.error();
    const base::Result<bool> oncekiHaklar = HaklarTanimli(db, label);
    if (!oncekiHaklar)
        return oncekiHaklar.error();
    for (const KullaniciSatiri &r : satirlar) {
        const QString kod = Sifrele(r.ad).value_or(QString());
        if (kod.isEmpty())
            continue;
        // A renamed user keeps his row; his rights follow the new name.
        const QString old = r.kod.isEmpty() ? kod : r.kod;

        store::Query exists(db, QStringLiteral("SELECT count(*) FROM Sifre WHERE Username = ?"));
        exists.bind(old);
        if (!exists.exec() || !exists.next())
            return op.failed(exists);
        const bool present = exists.integer(0) > 0;
        exists.finish();
        // A password is stored only as its hash; when hashing fails nothing is saved.
        QString ozet;
        if (r.sifreDegisti || !present) {
            const base::Result<QString> o = SifreOzeti(r.yeniSifre);
            if (!o)
                return o.error().withLabel(label);
            ozet = *o;
        }
        if (present) {
            store::Query update(
                db, r.sifreDegisti
                        ? QStringLiteral(
                            "UPDATE Sifre SET Username = ?, Password = ? WHERE Username = ?")
                        : QStringLiteral("UPDATE Sifre SET Username = ? WHERE Username = ?"));
            update.bind(kod);
            if (r.sifreDegisti)
                update.bind(ozet);
            update.bind(old);
            if (!update.exec())
                return op.failed(update);
            if (old != kod) {
                store::Query rights(
                    db,
                    QStringLiteral("UPDATE Haklar SET Kullanici_Adi = ? WHERE Kullanici_Adi = ?"));
                rights.bind(kod).bind(old);
                if (!rights.exec())
                    return op.failed(rights);
            }
        } else {
            store::Query insert(
                db, QStringLiteral("INSERT INTO Sifre (Username, Password) VALUES (?, ?)"));
            insert.bind(kod).bind(ozet);
            if (!insert.exec())
                return op.failed(insert);
        }
        const auto it = haklar.constFind(r.kod.isEmpty() ? r.ad : r.kod);
        if (it == haklar.constEnd())
            continue;
        const base::Result<bool> degisti = haklarDegisti(db, kod, *it, label);
        if (!degisti)
            return degisti.error();
        if (!*degisti)
            continue;
        store::Query clear(db, QStringLiteral("DELETE FROM Haklar WHERE Kullanici_Adi = ?"));
        clear.bind(kod);
        if (!clear.exec())
            return op.failed(clear);
        for (const HakSatiri &h : *it) {
            store::Query add(db,
                             QStringLiteral("INSERT INTO Haklar (Kullanici_Adi, Haklar_Okuma, "
                                            "Haklar_Yazma, Haklar_Program_Adi, Kullanici_Program) "
                                            "VALUES (?, ?, ?, ?, ?)"));
            add.bind(kod)
                .bind(h.okuma)
                .bind(h.yazma)
                .bind(h.caption.left(60))
                .bind(h.tool.left(60));
            if (!add.exec())
                return op.failed(add);
        }
    }
    const base::Result<bool> sonrakiHaklar = HaklarTanimli(db, label);
    if (!sonrakiHaklar)
        return sonrakiHaklar.error();
    if (!*oncekiHaklar && *sonrakiHaklar) {
        if (base::Status s = ilkHaklariVer(db, label); !s)
            return s;
    }
    if (*sonrakiHaklar) {
        if (base::Status s = yoneticiKaliyor(db, label); !s)
            return s;
    }
    if (!tx.commit())
        return tx.error();
    return {};
}

base::Status yoneticiKaliyor(store::Database &db, const QString &label)
{
    store::Query q(db, QStringLiteral("SELECT COUNT(*) FROM Haklar h JOIN Sifre s ON s.Username = "
                                      "h.Kullanici_Adi WHERE h.Kullanici_Program = 'popKullanici' "
                                      "AND h.Haklar_Okuma <> 0 AND h.Haklar_Yazma <> 0"));
    if (!q.exec() || !q.next())
        return q.error(label);
    if (q.integer(0) > 0)
        return {};
    return base::Error::refusal(
        QStringLiteral("Uyarı"),
        QStringLiteral("Bu haklarla hiçbir kullanıcı \"Kullanıcı Belirleme ve Şifre\" bölümünde "
                       "değişiklik yapamaz. En az bir kullanıcının bu bölümde okuma ve yazma hakkı "
                       "olmalıdır; kayıt yapılmadı."));
}

base::Status KullaniciSil(store::Database &db, const QString &kod)
{
    const QString label = QStringLiteral("Kullanici_Sifre:Command1_Click");
    store::Transaction tx(db);
    if (!tx)
        return tx.error();
    for (const QString &sqlText : {QStringLiteral("DELETE FROM Sifre WHERE Username = ?"),
                                   QStringLiteral("DELETE FROM Haklar WHERE Kullanici_Adi = ?")}) {
        store::Query q(db, sqlText);
        q.bind(kod);
        if (!q.exec())
            return q.error(label);
    }
    const base::Result<bool> kalanHaklar = HaklarTanimli(db, label);
    if (!kalanHaklar)
        return kalanHaklar.error();
    if (*kalanHaklar) {
        if (base::Status s = yoneticiKaliyor(db, label); !s)
            return s;
    }
    if (!tx.commit())
        return tx.error();
    return {};
}

} // namespace users
