#include "test_support.h"

#include "store/database.h"
#include "users/command_table.h"
#include "users/login.h"
#include "users/passwords.h"
#include "users/user_admin.h"

#include <QTest>

using namespace Qt::StringLiterals;

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

int rows(store::Database &db, const QString &ad, const QString &where = u"1 = 1"_s)
{
    return scalar(db, u"SELECT count(*) FROM Haklar WHERE Kullanici_Adi = ? AND "_s + where,
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
    QVERIFY(KullaniciKaydet(db, u"Müdür"_s, u"1"_s).ok());
    QVERIFY(KullaniciKaydet(db, u"zerna"_s, u"2"_s).ok());
    const int commands = int(KomutTablosu().size());

    // The administrator only looked at his own rights (no row: no marks) and gave the new
    // secretary three read rights.
    KullaniciSatiri sekreter{u"Sekreter"_s, QString(), false, u"abc"_s, true};
    const QList<KullaniciSatiri> users = {stored(u"Müdür"_s), stored(u"zerna"_s), sekreter};
    QHash<QString, QList<HakSatiri>> given;
    given.insert(users[0].kod, rights({}));
    given.insert(u"Sekreter"_s, rights({{u"popOkulBilgileri"_s, {true, false}},
                                        {u"popOgrenciBilgileri"_s, {true, false}},
                                        {u"popYoneticiRaporu"_s, {true, false}}}));
    const base::Status saved = KullanicilariKaydet(db, users, given);
    QVERIFY2(saved.ok(), qPrintable(saved.error().text));

    // Those who had no rows keep everything; the secretary has what she was given.
    for (const char *ad : {"Müdür", "zerna"}) {
        QCOMPARE(rows(db, QString::fromUtf8(ad), u"Haklar_Okuma = 1 AND Haklar_Yazma = 1"_s),
                 commands);
    }
    QCOMPARE(rows(db, u"Sekreter"_s, u"Haklar_Okuma = 1"_s), 3);
    QCOMPARE(rows(db, u"Sekreter"_s, u"Haklar_Yazma = 1"_s), 0);

    // Saving the secretary again changes nobody else's rows.
    given.clear();
    given.insert(users[0].kod, rights({}));
    given.insert(*Sifrele(u"Sekreter"_s), rights({{u"popOgrenciBilgileri"_s, {true, true}}}));
    QList<KullaniciSatiri> again = {stored(u"Müdür"_s), stored(u"zerna"_s), stored(u"Sekreter"_s)};
    // The administrator's grid now shows no marks: that is a change, and it would leave only
    // the service user; still allowed.
    QVERIFY(KullanicilariKaydet(db, again, given).ok());
    QCOMPARE(rows(db, u"zerna"_s, u"Haklar_Yazma = 1"_s), commands);
    QCOMPARE(rows(db, u"Sekreter"_s, u"Haklar_Yazma = 1"_s), 1);

    // Taking the users screen from the last one who has it is refused, and nothing changes.
    given.clear();
    given.insert(*Sifrele(u"zerna"_s), rights({{u"popOgrenciBilgileri"_s, {true, true}}}));
    const base::Status refused = KullanicilariKaydet(db, again, given);
    QVERIFY(!refused.ok() && refused.error().isRefusal());
    QCOMPARE(rows(db, u"zerna"_s, u"Haklar_Yazma = 1"_s), commands);
    // So is deleting him.
    const base::Status deleted = KullaniciSil(db, *Sifrele(u"zerna"_s));
    QVERIFY(!deleted.ok() && deleted.error().isRefusal());
    QCOMPARE(scalar(db, u"SELECT count(*) FROM Sifre"_s).toInt(), 3);
    // Deleting another user is no trouble.
    QVERIFY(KullaniciSil(db, *Sifrele(u"Sekreter"_s)).ok());
}

QTEST_GUILESS_MAIN(tst_UserAdmin)
#include "tst_user_admin.moc"
