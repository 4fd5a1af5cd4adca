#include "test_support.h"

#include "store/database.h"
#include "users/login.h"
#include "users/passwords.h"
#include "users/rights.h"
#include "users/session.h"

#include <QFile>
#include <QProcess>
#include <QTest>

#include <cstdio>
#include <cstring>

#ifndef Q_OS_WIN
#include <sys/resource.h>
#include <unistd.h>
#endif

using namespace Qt::StringLiterals;

using namespace users;

namespace {

bool putUser(store::Database &db, const QString &username, const QString &password)
{
    return testing::run(db, u"INSERT INTO Sifre (Username, Password) VALUES (?, ?)"_s,
                        {username, password});
}

QString storedPassword(store::Database &db, const QString &name)
{
    const QVariant v
        = testing::scalar(db, u"SELECT Password FROM Sifre WHERE Username = ?"_s, {*Sifrele(name)});
    return v.isValid() ? v.toString() : u"<yok>"_s;
}

bool putRight(store::Database &db, const QString &user, const QString &tool, int read, int write)
{
    return testing::run(db,
                        u"INSERT INTO Haklar (Kullanici_Adi, Haklar_Okuma, Haklar_Yazma, "
                        "Haklar_Program_Adi, Kullanici_Program) VALUES (?, ?, ?, 'x', ?)"_s,
                        {*Sifrele(user), read, write, tool});
}

} // namespace

class tst_Login : public QObject
{
    Q_OBJECT

private slots:
    void init() { users::durum() = users::CalismaDurumu(); }
    void loginAnswers_data();
    void loginAnswers();
    void oldScrambledPasswordIsAcceptedOnceAndHashed_data() { testing::addEngineRows(); }
    void oldScrambledPasswordIsAcceptedOnceAndHashed();
    void rightsByTableState_data() { testing::addEngineRows(); }
    void rightsByTableState();
    void failedLoginsSlowDown();
    void aFailedHashStoresNothing();
};

void tst_Login::loginAnswers_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QString>("password");
    QTest::addColumn<int>("answer");
    // clang-format off
    QTest::addRow("dogru") << "Ayşe" << "Şifre-1" << int(GirisSonucu::Kabul);
    QTest::addRow("buyuk-harf-baska-ad") << "AYŞE" << "Şifre-1" << int(GirisSonucu::AdHatali);
    QTest::addRow("bilinmeyen-ad") << "Fatma" << "Şifre-1" << int(GirisSonucu::AdHatali);
    QTest::addRow("yanlis-sifre") << "Ayşe" << "şifre-1" << int(GirisSonucu::SifreHatali);
    QTest::addRow("bos-sifre") << "Ayşe" << "" << int(GirisSonucu::SifreHatali);
    // clang-format on
}

void tst_Login::loginAnswers()
{
    QFETCH(QString, name);
    QFETCH(QString, password);
    QFETCH(int, answer);
    testing::TestStore s(store::Engine::SQLite);
    QVERIFY(KullaniciKaydet(s.db(), u"Ayşe"_s, u"Şifre-1"_s).ok());
    const base::Result<GirisSonucu> r = SifreKontrol(s.db(), name, password);
    QVERIFY(r);
    QCOMPARE(int(*r), answer);
    // The typed name stands as the active user, even after a failed try.
    QCOMPARE(users::durum().AktifKullanici, name);
    // The password is kept as a hash, never as itself.
    QVERIFY(SifreOzetiMi(storedPassword(s.db(), u"Ayşe"_s)));
}

void tst_Login::oldScrambledPasswordIsAcceptedOnceAndHashed()
{
    VORTEL_STORE_FOR_ROW(s);
    store::Database &db = s.db();
    QVERIFY(store::DatabaseAc(db, store::Store::Global, true, false));
    // As the old program left them: both scrambled, one on each provider, one with no password.
    QVERIFY(putUser(db, *Sifrele(u"admin"_s), *Sifrele(u"1234"_s)));
    QVERIFY(putUser(db, *Sifrele(u"kasa"_s, Provider::Base), *Sifrele(u"para"_s, Provider::Base)));
    QVERIFY(putUser(db, *Sifrele(u"misafir"_s), QString()));

    QCOMPARE(*SifreKontrol(db, u"admin"_s, u"123"_s), GirisSonucu::SifreHatali);
    QCOMPARE(storedPassword(db, u"admin"_s), *Sifrele(u"1234"_s));
    QCOMPARE(*SifreKontrol(db, u"admin"_s, u"1234"_s), GirisSonucu::Kabul);
    const QString hashed = storedPassword(db, u"admin"_s);
    QVERIFY(SifreOzetiMi(hashed));
    QCOMPARE(*SifreKontrol(db, u"admin"_s, u"1234"_s), GirisSonucu::Kabul);
    QCOMPARE(storedPassword(db, u"admin"_s), hashed);

    QCOMPARE(*SifreKontrol(db, u"kasa"_s, u"para"_s), GirisSonucu::Kabul);
    // A new password keeps such a user's own row.
    QVERIFY(KullaniciKaydet(db, u"kasa"_s, u"yeni"_s).ok());
    QCOMPARE(testing::scalar(db, u"SELECT count(*) FROM Sifre"_s).toInt(), 3);
    QCOMPARE(*SifreKontrol(db, u"kasa"_s, u"yeni"_s), GirisSonucu::Kabul);
    // A user stored without a password gets in with none, never.
    QCOMPARE(*SifreKontrol(db, u"misafir"_s, QString()), GirisSonucu::SifreHatali);
    QCOMPARE(*SifreKontrol(db, u"misafir"_s, u"x"_s), GirisSonucu::SifreHatali);
}

void tst_Login::rightsByTableState()
{
    VORTEL_STORE_FOR_ROW(s);
    store::Database &db = s.db();
    QVERIFY(store::DatabaseAc(db, store::Store::Global, true, false));
    users::CalismaDurumu &d = users::durum();
    d.AktifKullanici = u"sekreter"_s;
    auto rights = [&db, &d](const QString &tool) {
        (void)HakKontrol(db, tool);
        return qMakePair(d.HakOkuma, d.HakYazma);
    };
    // No right defined at all: everyone may do everything.
    QCOMPARE(rights(u"popKullanici"_s), qMakePair(true, true));
    // Rows whose tool names are blank count as no rights at all.
    QVERIFY(putRight(db, u"muhasebe"_s, u"  "_s, 0, 0));
    QCOMPARE(rights(u"popKullanici"_s), qMakePair(true, true));
    // Once a right exists, a command without a row is closed, for this user as for others.
    QVERIFY(putRight(db, u"sekreter"_s, u"popOkulBilgileri"_s, 1, 0));
    QCOMPARE(rights(u"popOkulBilgileri"_s), qMakePair(true, false));
    QCOMPARE(rights(u"popKullanici"_s), qMakePair(false, false));
    d.AktifKullanici = u"muhasebe"_s;
    QCOMPARE(rights(u"popOkulBilgileri"_s), qMakePair(false, false));
}

void tst_Login::failedLoginsSlowDown()
{
    testing::TestStore s(store::Engine::SQLite);
    QVERIFY(store::DatabaseAc(s.db(), store::Store::Global, true, false));
    const QString name = u"deneme"_s;
    for (int i = 0; i < 2; ++i)
        GirisSonucuKaydet(s.db(), name, false);
    QCOMPARE(GirisBeklemesi(s.db(), name), 0);
    GirisSonucuKaydet(s.db(), name, false);
    const int third = GirisBeklemesi(s.db(), name);
    QVERIFY(third > 0);
    GirisSonucuKaydet(s.db(), name, false);
    QVERIFY(GirisBeklemesi(s.db(), name) > third);
    // Another name is not slowed; a success clears the count.
    QCOMPARE(GirisBeklemesi(s.db(), u"başka"_s), 0);
    GirisSonucuKaydet(s.db(), name, true);
    QCOMPARE(GirisBeklemesi(s.db(), name), 0);
}

void tst_Login::aFailedHashStoresNothing()
{
#ifdef Q_OS_WIN
    QSKIP("the address-space limit is POSIX");
#else
    // The program itself, run again with too little memory for the hash: the save must fail
    // with a message and leave no password behind, and the empty text must not let anyone in.
    testing::TestStore s(store::Engine::SQLite);
    QVERIFY(store::DatabaseAc(s.db(), store::Store::Global, true, false));
    const QString folder = s.settings().dataFolder;
    s.db().close();
    QProcess child;
    child.start(QCoreApplication::applicationFilePath(), {u"--hash-child"_s, folder});
    QVERIFY(child.waitForFinished(60000));
    const QString said = QString::fromUtf8(child.readAllStandardOutput());
    if (!said.contains("reached"_L1))
        QSKIP(qPrintable(u"the child did not reach the save: "_s + said
                         + QString::fromUtf8(child.readAllStandardError())));
    QVERIFY2(said.contains(u"refused: Şifre saklanamadı"_s), qPrintable(said));
    store::Database db(store::ConnectionSettings::sqlite(folder));
    QVERIFY(store::DatabaseAc(db, store::Store::Global, true, false));
    QCOMPARE(testing::scalar(db, u"SELECT count(*) FROM Sifre"_s).toInt(), 0);
#endif
}

// With "--hash-child <folder>" the test program is the child of aFailedHashStoresNothing.
int main(int argc, char **argv)
{
#ifndef Q_OS_WIN
    if (argc == 3 && std::strcmp(argv[1], "--hash-child") == 0) {
        QCoreApplication app(argc, argv);
        store::Database db(store::ConnectionSettings::sqlite(QString::fromLocal8Bit(argv[2])));
        if (!store::DatabaseAc(db, store::Store::Global, true, false))
            return 2;
        // Room for 32 MB more than the child holds now: the hash wants 64.
        QFile statm(u"/proc/self/statm"_s);
        if (!statm.open(QIODevice::ReadOnly))
            return 3;
        const qint64 pages = statm.readAll().split(' ').value(0).toLongLong();
        const rlim_t limit = rlim_t(pages) * rlim_t(sysconf(_SC_PAGESIZE)) + (32u << 20);
        const rlimit room{limit, limit};
        if (setrlimit(RLIMIT_AS, &room) != 0)
            return 4;
        std::printf("reached\n");
        const base::Status saved = KullaniciKaydet(db, u"Ayşe"_s, u"x"_s);
        std::printf("%s\n", saved ? "saved" : qPrintable(u"refused: "_s + saved.error().text));
        return 0;
    }
#endif
    QCoreApplication app(argc, argv);
    tst_Login test;
    QTEST_SET_MAIN_SOURCE_PATH
    return QTest::qExec(&test, argc, argv);
}
#include "tst_login.moc"
