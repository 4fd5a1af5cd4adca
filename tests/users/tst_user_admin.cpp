#include "test_support.h"

#include "store/database.h"
#include "users/command_table.h"
#include "users/login.h"
#include "users/passwords.h"
#include "users/user_admin.h"

#include <QTest>

using namespace users;
using testing::scalar;

namespace {

KullaniciSatiri stored(const QString &ad)
{
    return KullaniciSatiri{ad, *Sifrele(ad), true, QString(), false};
}

// Every command with the given marks, as the rights grid hands them over.
QList<HakSatiri> rights(const QHash<QString, QPair<bool, bool>> &marks)
{
    QList<HakSatiri> list;
    for (const Komut &k : KomutTablosu()) {
        const QPair<bool, bool> m = marks.value(k.tool, {false, false});
        list.append(HakSatiri{k.tool, k.caption, m.first, m.second});
    }
    return list;
}

int rows(store::Database &db, const QString &ad, const QString &where = QStringLiteral("1 = 1"))
{
    return scalar(db,
                  QStringLiteral("SELECT count(*) FROM Haklar WHERE Kullanici_Adi = ? AND ")
                      + where,
                  {*Sifrele(ad)})
        .toInt();
}

} // namespace

class tst_UserAdmin : public QObject
{
    Q_OBJECT

private slots:
    void nobodyIsLockedOutByTheFirstRights_data() { testing::addEngineRows(); }
    void nobodyIsLockedOutByTheFirstRights();
};

void tst_UserAdmin::nobodyIsLockedOutByTheFirstRights()
{
    VORTEL_STORE_FOR_ROW(s);
    store::Database &db = s.db();
    QVERIFY(store::DatabaseAc(db, store::Store::Global, true, false));
    QVERIFY(KullaniciKaydet(db, QStringLiteral("Müdür"), QStringLiteral("1")).ok());
    QVERIFY(KullaniciKaydet(db, QStringLiteral("zerna"), QStringLiteral("2")).ok());
    const int commands = int(KomutTablosu().size());

    // The administrator only looked at his own rights (no row: no marks) and gave the new
    // secretary three read rights.
    KullaniciSatiri sekreter{QStringLiteral("Sekreter"), QString(), false, QStringLiteral("abc"),
                             true};
    const QList<KullaniciSatiri> users
        = {stored(QStringLiteral("Müdür")), stored(QStringLiteral("zerna")), sekreter};
    QHash<QString, QList<HakSatiri>> given;
    given.insert(users[0].kod, rights({}));
    given.insert(QStringLiteral("Sekreter"),
                 rights({{QStringLiteral("popOkulBilgileri"), {true, false}},
                         {QStringLiteral("popOgrenciBilgileri"), {true, false}},
                         {QStringLiteral("popYoneticiRaporu"), {true, false}}}));
    const base::Status saved = KullanicilariKaydet(db, users, given);
    QVERIFY2(saved.ok(), qPrintable(saved.error().text));

    // Those who had no rows keep everything; the secretary has what she was given.
    for (const char *ad : {"Müdür", "zerna"}) {
        QCOMPARE(rows(db, QString::fromUtf8(ad),
                      QStringLiteral("Haklar_Okuma = 1 AND Haklar_Yazma = 1")),
                 commands);
    }
    QCOMPARE(rows(db, QStringLiteral("Sekreter"), QStringLiteral("Haklar_Okuma = 1")), 3);
    QCOMPARE(rows(db, QStringLiteral("Sekreter"), QStringLiteral("Haklar_Yazma = 1")), 0);

    // Saving the secretary again changes nobody else's rows.
    given.clear();
    given.insert(users[0].kod, rights({}));
    given.insert(*Sifrele(QStringLiteral("Sekreter")),
                 rights({{QStringLiteral("popOgrenciBilgileri"), {true, true}}}));
    QList<KullaniciSatiri> again
        = {stored(QStringLiteral("Müdür")), stored(QStringLiteral("zerna")),
           stored(QStringLiteral("Sekreter"))};
    // The administrator's grid now shows no marks: that is a change, and it would leave only
    // the service user; still allowed.
    QVERIFY(KullanicilariKaydet(db, again, given).ok());
    QCOMPARE(rows(db, QStringLiteral("zerna"), QStringLiteral("Haklar_Yazma = 1")), commands);
    QCOMPARE(rows(db, QStringLiteral("Sekreter"), QStringLiteral("Haklar_Yazma = 1")), 1);

    // Taking the users screen from the last one who has it is refused, and nothing changes.
    given.clear();
    given.insert(*Sifrele(QStringLiteral("zerna")),
                 rights({{QStringLiteral("popOgrenciBilgileri"), {true, true}}}));
    const base::Status refused = KullanicilariKaydet(db, again, given);
    QVERIFY(!refused.ok() && refused.error().isRefusal());
    QCOMPARE(rows(db, QStringLiteral("zerna"), QStringLiteral("Haklar_Yazma = 1")), commands);
    // So is deleting him.
    const base::Status deleted = KullaniciSil(db, *Sifrele(QStringLiteral("zerna")));
    QVERIFY(!deleted.ok() && deleted.error().isRefusal());
    QCOMPARE(scalar(db, QStringLiteral("SELECT count(*) FROM Sifre")).toInt(), 3);
    // Deleting another user is no trouble.
    QVERIFY(KullaniciSil(db, *Sifrele(QStringLiteral("Sekreter"))).ok());
}

QTEST_GUILESS_MAIN(tst_UserAdmin)
#include "tst_user_admin.moc"
