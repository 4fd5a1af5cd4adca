#include "users/login.h"

#include "store/database.h"
#include "store/settings.h"
#include "users/passwords.h"
#include "users/session.h"

#include <QDateTime>

namespace users {

namespace {

const QString s_label = QStringLiteral("FrmSifre:SifreKontrol");

struct StoredUser
{
    QString username;
    QString password;
};

base::Result<std::optional<StoredUser>> findUser(store::Database &db, const QString &ad)
{
    // Names scrambled on either provider of the old program are found.
    const QString enhanced = Sifrele(ad, Provider::Enhanced).value_or(QString());
    const QString base = Sifrele(ad, Provider::Base).value_or(QString());
    store::Query q(db, QStringLiteral("SELECT Username, Password FROM Sifre WHERE Username = ? OR "
                                      "Username = ? OR Username = ? OR Username = ?"));
    q.bind(enhanced).bind(enhanced.toLower()).bind(base).bind(base.toLower());
    if (!q.exec())
        return q.error(s_label);
    if (!q.next())
        return std::optional<StoredUser>();
    return std::optional<StoredUser>(StoredUser{q.value(0).toString(), q.value(1).toString()});
}

bool oldFormMatches(const QString &stored, const QString &sifre)
{
    // An empty stored value is no password at all: it never lets anybody in.
    if (stored.trimmed().isEmpty())
        return false;
    for (Provider p : {Provider::Enhanced, Provider::Base}) {
        const base::Result<QString> scrambled = Sifrele(sifre, p);
        if (scrambled && scrambled->compare(stored.trimmed(), Qt::CaseInsensitive) == 0)
            return true;
    }
    return false;
}

QString throttleKey(const QString &ad)
{
    return Sifrele(ad).value_or(QString()) + QStringLiteral("_");
}

} // namespace

base::Result<GirisSonucu> SifreKontrol(store::Database &db, const QString &ad, const QString &sifre)
{
    durum().AktifKullanici = ad;
    durum().AktifKullaniciKodu.clear();
    const store::Operation op(db, store::Store::Global, s_label);
    if (!op)
        return op.error();
    base::Result<std::optional<StoredUser>> user = findUser(db, ad);
    if (!user)
        return user.error();
    if (!user->has_value())
        return GirisSonucu::AdHatali;
    const StoredUser &u = **user;
    if (SifreOzetiMi(u.password)) {
        if (!SifreOzetiDogrula(u.password, sifre))
            return GirisSonucu::SifreHatali;
    } else {
        if (!oldFormMatches(u.password, sifre))
            return GirisSonucu::SifreHatali;
        // The old scrambled password is accepted this once and kept as a hash from now on.
        const base::Result<QString> ozet = SifreOzeti(sifre);
        if (!ozet)
            return ozet.error().withLabel(s_label);
        const store::WriteGuardExemption own;
        store::Query rewrite(db,
                             QStringLiteral("UPDATE Sifre SET Password = ? WHERE Username = ?"));
        rewrite.bind(*ozet).bind(u.username);
        if (!rewrite.exec())
            return op.failed(rewrite);
    }
    durum().AktifKullaniciKodu = u.username;
    return GirisSonucu::Kabul;
}

base::Result<bool> KullaniciVarMi(store::Database &db)
{
    const store::Operation op(db, store::Store::Global, s_label);
    if (!op)
        return op.error();
    store::Query q(db, QStringLiteral("SELECT count(*) FROM Sifre"));
    if (!q.exec() || !q.next())
        return op.failed(q);
    return q.integer(0) > 0;
}

base::Status KullaniciKaydet(store::Database &db, const QString &ad, const QString &sifre)
{
    const QString label = QStringLiteral("FrmProgramaGirisSifresiDegistirme:CmdKaydet_Click");
    const base::Result<QString> kod = Sifrele(ad);
    if (!kod || kod->isEmpty())
        return base::Error{6, QStringLiteral("Geçerli Bir Kullanıcı Tanımlamalısınız!"), label};
    const store::Operation op(db, store::Store::Global, label);
    if (!op)
        return op.error();
    // A user the old program scrambled on either provider keeps his row.
    base::Result<std::optional<StoredUser>> existing = findUser(db, ad);
    if (!existing)
        return existing.error().withLabel(label);
    const base::Result<QString> ozet = SifreOzeti(sifre);
    if (!ozet)
        return ozet.error().withLabel(label);
    store::Transaction tx(db);
    if (!tx)
        return tx.error();
    if (existing->has_value()) {
        store::Query update(db, QStringLiteral("UPDATE Sifre SET Password = ? WHERE Username = ?"));
        update.bind(*ozet).bind((*existing)->username);
        if (!update.exec())
            return op.failed(update);
    } else {
        store::Query insert(db,
                            QStringLiteral("INSERT INTO Sifre (Username, Password) VALUES (?, ?)"));
        insert.bind(*kod).bind(*ozet);
        if (!insert.exec())
            return op.failed(insert);
    }
    if (!tx.commit())
        return tx.error();
    return {};
}

int GirisBeklemesi(store::Database &db, const QString &ad)
{
    const QStringList parts = store::INIAyar(db, QStringLiteral("GET"), QStringLiteral("Giris"),
                                             QStringLiteral("Hatalar"), throttleKey(ad))
                                  .split(QLatin1Char('|'));
    if (parts.size() != 2)
        return 0;
    const int failures = parts[0].toInt();
    if (failures < 3)
        return 0;
    const qint64 wait = qMin<qint64>(60, qint64(1) << qMin(failures - 2, 6));
    const qint64 since = QDateTime::currentSecsSinceEpoch() - parts[1].toLongLong();
    return int(qMax<qint64>(0, wait - since));
}

void GirisSonucuKaydet(store::Database &db, const QString &ad, bool basarili)
{
    const QString key = throttleKey(ad);
    if (basarili) {
        store::INIAyar(db, QStringLiteral("WRITE"), QStringLiteral("Giris"),
                       QStringLiteral("Hatalar"), key, QStringLiteral(""));
        return;
    }
    const QStringList parts = store::INIAyar(db, QStringLiteral("GET"), QStringLiteral("Giris"),
                                             QStringLiteral("Hatalar"), key)
                                  .split(QLatin1Char('|'));
    const int failures = (parts.size() == 2 ? parts[0].toInt() : 0) + 1;
    store::INIAyar(db, QStringLiteral("WRITE"), QStringLiteral("Giris"), QStringLiteral("Hatalar"),
                   key,
                   QStringLiteral("%1|%2").arg(failures).arg(QDateTime::currentSecsSinceEpoch()));
}

} // namespace users
