// A fee account's save killed at random moments. The test program, run again as a child with
// "--kaydeden", saves the accounts of three students over and over: payments added, changed and
// removed, installments and discounts changed, accounts opened and now and then deleted. Before
// each save it notes in a side file what the save is about to write, and once the save has
// committed, that it did. The parent kills it (SIGKILL) after a random short delay, opens the
// store again and checks that every account is whole and that the change log holds exactly the
// saves that committed. VORTEL_KILLS sets the number of kills (20 unless given).
#include "fees_support.h"

#include "fees/account.h"
#include "store/database.h"
#include "users/session.h"

#include <QCoreApplication>
#include <QFile>
#include <QMap>
#include <QProcess>
#include <QRandomGenerator>
#include <QTemporaryDir>
#include <QTest>
#include <QTextStream>

#include <cstdio>
#include <optional>

using namespace Qt::StringLiterals;

using base::Para;
using fees::HesapKaydi;
using testing::scalar;

namespace {

const char *const s_childFlag = "--kaydeden";
const int s_ogrenciSayisi = 3;
// The tables of an account's rows.
const char *const s_satirlar[] = {"OgrenciAidatDetay", "OgrenciAidatOdeme", "OgrenciIskonto"};

QString fail(const base::Error &e)
{
    return e.label + u": "_s + e.text;
}

// ---- the child -----------------------------------------------------------------------------

Para tutar(QRandomGenerator &rng)
{
    return Para::fromRaw(qint64(rng.bounded(1, 300000)) * 100); // 0,01 to 3.000,00
}

QDateTime tarih(QRandomGenerator &rng)
{
    return QDateTime(QDate(2025, 9, 1).addDays(rng.bounded(300)), QTime(0, 0));
}

fees::OdemeSatiri odeme(QRandomGenerator &rng, int sira)
{
    fees::OdemeSatiri o;
    o.elle = true;
    o.sira = sira;
    o.odemeTarihi = tarih(rng);
    o.odenen = tutar(rng);
    o.odemeSekli = rng.bounded(2) ? u"N"_s : u"K"_s;
    o.aciklama = u"Ödeme %1"_s.arg(sira);
    return o;
}

fees::DetaySatiri taksit(QRandomGenerator &rng, int sira)
{
    return fees::DetaySatiri{sira, tarih(rng), tutar(rng), u"Nakit"_s, 0, 1, true};
}

// A new set of discounts, the header's total their sum as the screen keeps it.
void indirimleriDegistir(HesapKaydi &h, QRandomGenerator &rng)
{
    h.iskontolar.clear();
    h.satir.iskontoTutari = Para();
    for (int i = 1, n = rng.bounded(3); i <= n; ++i) {
        const Para miktar = tutar(rng);
        h.iskontolar.append(fees::IskontoSatiri{i, u"İndirim %1"_s.arg(i), Para::fromUnits(5),
                                                miktar, miktar * 20, 1, 0, i});
        h.satir.iskontoTutari += miktar;
    }
}

HesapKaydi yeniHesap(QRandomGenerator &rng, qint64 ogr, int sira)
{
    HesapKaydi h;
    h.satir.ogrKayitId = ogr;
    h.satir.aidatId = sira;
    h.satir.aidatTanim = u"Aidat %1"_s.arg(sira);
    h.satir.sira = sira;
    if (rng.bounded(2)) {
        h.pesinat = tutar(rng);
        h.odenenPesinat = fees::OdenenPesinat{h.pesinat, QDate(2025, 9, 2), 1};
    }
    for (int i = 1, n = rng.bounded(1, 7); i <= n; ++i) {
        h.taksitler.append(taksit(rng, i));
    }
    for (int i = 1, n = rng.bounded(3); i <= n; ++i) {
        h.odemeler.append(odeme(rng, i));
    }
    indirimleriDegistir(h, rng);
    return h;
}

// What the operator might do to an account between two saves, one to three steps of it.
void degistir(HesapKaydi &h, QRandomGenerator &rng)
{
    for (int n = rng.bounded(1, 4); n > 0; --n) {
        switch (rng.bounded(7)) {
        case 0:
            h.odemeler.append(odeme(rng, fees::YeniSira(h.odemeler)));
            break;
        case 1:
            if (!h.odemeler.isEmpty()) {
                fees::OdemeSatiri &o = h.odemeler[rng.bounded(h.odemeler.size())];
                o.odenen = tutar(rng);
                o.elle = true;
            }
            break;
        case 2:
            if (!h.odemeler.isEmpty()) {
                h.silinenOdemeler.append(h.odemeler.takeAt(rng.bounded(h.odemeler.size())));
            }
            break;
        case 3:
            if (!h.taksitler.isEmpty()) {
                fees::DetaySatiri &t = h.taksitler[rng.bounded(h.taksitler.size())];
                t.odenecek = tutar(rng);
                t.elle = true;
            }
            break;
        case 4:
            if (h.taksitler.size() > 1 && rng.bounded(2)) {
                h.taksitler.removeAt(rng.bounded(h.taksitler.size()));
            } else {
                h.taksitler.append(taksit(rng, fees::YeniSira(h.taksitler)));
            }
            break;
        case 5:
            indirimleriDegistir(h, rng);
            break;
        default:
            h.pesinat = tutar(rng);
            h.odenenPesinat.reset();
            if (rng.bounded(2)) {
                h.odenenPesinat = fees::OdenenPesinat{tutar(rng), QDate(2025, 9, 3), 1};
            }
            break;
        }
    }
}

// "K <kayitId> <ogr> <surum> <detay> <odeme> <iskonto> <borc> <kalan> <iskontoTutari> <log>
// <logToplam>": the save about to be made (kayitId 0 for a new account), counted from the
// account as the child holds it: every row it holds is written, the down payment's row included.
QByteArray niyet(const HesapKaydi &h)
{
    const Para pesinatOdenen = h.odenenPesinat ? h.odenenPesinat->tutar : Para();
    Para borc = h.pesinat;
    for (const fees::DetaySatiri &t : h.taksitler) {
        borc += t.odenecek;
    }
    Para odenen = pesinatOdenen;
    for (const fees::OdemeSatiri &o : h.odemeler) {
        odenen += o.odenen;
    }
    const qsizetype odemeSatiri = h.odemeler.size() + (h.odenenPesinat ? 1 : 0);
    return u"K %1 %2 %3 %4 %5 %6 %7 %8 %9 %10 %11\n"_s.arg(h.satir.kayitId)
        .arg(h.satir.ogrKayitId)
        .arg(h.satir.surum + 1)
        .arg(h.taksitler.size() + 1)
        .arg(odemeSatiri)
        .arg(h.iskontolar.size())
        .arg(borc.raw())
        .arg((borc - odenen).raw())
        .arg(h.satir.iskontoTutari.raw())
        .arg(odemeSatiri + h.silinenOdemeler.size())
        .arg(odenen.raw())
        .toLatin1();
}

std::optional<store::ConnectionSettings> ayarlar(const QString &engine, const QString &where)
{
    if (engine == "postgres"_L1) {
        return store::ConnectionSettings::fromConnInfo(where);
    }
    return store::ConnectionSettings::sqlite(where);
}

int kaydeden(const QString &engine, const QString &where, const QString &yanDosya, quint32 seed)
{
    QTextStream err(stderr);
    const std::optional<store::ConnectionSettings> settings = ayarlar(engine, where);
    if (!settings) {
        return 2;
    }
    store::Database db(*settings);
    db.selectYear(1);
    if (!store::DatabaseAc(db, store::Store::Year, true, false)) {
        err << "the store did not open\n";
        return 2;
    }
    QFile yan(yanDosya);
    if (!yan.open(QIODevice::WriteOnly | QIODevice::Append | QIODevice::Unbuffered)) {
        return 2;
    }
    std::fputs("hazir\n", stdout);
    std::fflush(stdout);
    const fees::KayitBaglami baglam{u"Müdür"_s, 1, false};
    QRandomGenerator rng(seed);
    for (;;) {
        const qint64 ogr = rng.bounded(1, s_ogrenciSayisi + 1);
        const auto hesaplar = fees::OgrenciAidatTanimGoster(db, ogr);
        if (!hesaplar) {
            err << fail(hesaplar.error()) << '\n';
            return 1;
        }
        const qsizetype n = hesaplar->size();
        HesapKaydi h;
        if (n == 0 || (n < 3 && rng.bounded(8) == 0)) {
            h = yeniHesap(rng, ogr, int(n) + 1);
        } else {
            const fees::HesapSatiri satir = hesaplar->at(rng.bounded(n));
            if (rng.bounded(30) == 0) {
                yan.write(QByteArray("L ") + QByteArray::number(satir.kayitId) + '\n');
                if (const base::Status s = fees::AidatSil(db, satir, u"Müdür"_s); !s) {
                    err << fail(s.error()) << '\n';
                    return 1;
                }
                yan.write(QByteArray("T ") + QByteArray::number(satir.kayitId) + '\n');
                continue;
            }
            const base::Result<HesapKaydi> okunan = fees::HesapOku(db, satir.kayitId, false);
            if (!okunan) {
                err << fail(okunan.error()) << '\n';
                return 1;
            }
            h = *okunan;
            degistir(h, rng);
        }
        yan.write(niyet(h));
        if (const auto r = fees::HesapKaydet(db, h, baglam); !r) {
            err << fail(r.error()) << '\n';
            return 1;
        }
        yan.write(u"S %1 %2\n"_s.arg(h.satir.kayitId).arg(h.satir.surum).toLatin1());
    }
}

// ---- the parent ----------------------------------------------------------------------------

// What the saves that committed wrote to one account, as the child's side file tells them.
struct Beklenen
{
    QList<qint64> son;     // the last save's counts and sums, as in its "K" line
    QStringList basliklar; // each save's header log row: "Borc/Kalan/IskontoTutari"
    qint64 odemeLogu = 0;  // payment log rows
    qint64 odemeLogToplam = 0;
    bool silindi = false;
    qint64 surum() const { return basliklar.size(); }
};

struct Durum
{
    QMap<qint64, Beklenen> hesaplar;
    int kayitlar = 0;      // saves committed
    int yarida = 0;        // kills that came between a save's note and its commit's note
    int yaridaYazilan = 0; // of which the save had committed
};

void kaydedildi(Durum &d, qint64 kayitId, const QList<qint64> &k)
{
    Beklenen &b = d.hesaplar[kayitId];
    b.son = k.mid(3, 6);
    b.basliklar << u"%1/%2/%3"_s.arg(k[6]).arg(k[7]).arg(k[8]);
    b.odemeLogu += k[9];
    b.odemeLogToplam += k[10];
    ++d.kayitlar;
}

QList<qint64> sayilar(const QByteArray &line)
{
    QList<qint64> out;
    for (const QByteArray &w : line.split(' ').mid(1)) {
        out << w.toLongLong();
    }
    return out;
}

QStringList kayitliHesaplar(store::Database &db)
{
    QStringList ids;
    store::Query q(db, u"SELECT KayitID, OgrKayitID FROM OgrenciAidatTanim"_s);
    if (q.exec()) {
        while (q.next()) {
            ids << u"%1 %2"_s.arg(q.integer(0)).arg(q.integer(1));
        }
    }
    return ids;
}

// Reads the run's notes. A save noted but not noted as committed was cut by the kill: the store
// says whether it committed (the child was killed before its note, or not).
void notlariOku(Durum &d, const QByteArray &notlar, store::Database &db)
{
    QList<QByteArray> lines = notlar.split('\n');
    lines.removeLast(); // whole lines only: the text ends with a newline
    QByteArray acik;
    for (const QByteArray &line : std::as_const(lines)) {
        const QList<qint64> k = sayilar(line);
        if (line.startsWith('S')) {
            kaydedildi(d, k[0], sayilar(acik));
        } else if (line.startsWith('T')) {
            d.hesaplar[k[0]].silindi = true;
        }
        acik = line.startsWith('K') || line.startsWith('L') ? line : QByteArray();
    }
    if (acik.isEmpty()) {
        return;
    }
    ++d.yarida;
    const QList<qint64> k = sayilar(acik);
    if (acik.startsWith('L')) {
        if (testing::count(db, u"OgrenciAidatTanim"_s, u"KayitID = ?"_s, {k[0]}) == 0) {
            d.hesaplar[k[0]].silindi = true;
            ++d.yaridaYazilan;
        }
    } else if (k[0] > 0) {
        if (testing::field(db, u"OgrenciAidatTanim"_s, u"Surum"_s, k[0]).toLongLong() == k[2]) {
            kaydedildi(d, k[0], k);
            ++d.yaridaYazilan;
        }
    } else {
        // A new account: committed when the store holds one the notes do not know.
        for (const QString &hesap : kayitliHesaplar(db)) {
            const qint64 id = hesap.section(u' ', 0, 0).toLongLong();
            if (!d.hesaplar.contains(id) && hesap.section(u' ', 1, 1).toLongLong() == k[1]) {
                kaydedildi(d, id, k);
                ++d.yaridaYazilan;
                break;
            }
        }
    }
}

// Everything that must hold of the store after a kill; what does not, in words.
QStringList denetle(store::Database &db, const Durum &d)
{
    QStringList faults;
    const auto one
        = [&db](const QString &sql, qint64 id) { return scalar(db, sql, {id}).toLongLong(); };
    const QString log = db.table(store::Store::Log, u"OgrenciAidatTanim"_s);
    const QString odemeLog = db.table(store::Store::Log, u"OgrenciAidatOdeme"_s);
    QList<qint64> duranlar;
    for (const QString &hesap : kayitliHesaplar(db)) {
        duranlar << hesap.section(u' ', 0, 0).toLongLong();
    }
    for (auto it = d.hesaplar.cbegin(); it != d.hesaplar.cend(); ++it) {
        const qint64 id = it.key();
        const Beklenen &b = it.value();
        const QString name = u"account %1: "_s.arg(id);
        if (b.silindi) {
            if (duranlar.contains(id)) {
                faults << name + u"deleted, yet its header stands"_s;
            }
            for (const char *table : s_satirlar) {
                if (testing::count(db, QString::fromLatin1(table), u"KayitID = ?"_s, {id}) != 0) {
                    faults << name + u"deleted, yet rows of %1 stand"_s.arg(QLatin1String(table));
                }
            }
            if (one(u"SELECT COUNT(*) FROM %1 WHERE KayitID = ? AND Islem_Turu = 'Delete'"_s.arg(
                        log),
                    id)
                != 1) {
                faults << name + u"deleted without one log row of it"_s;
            }
            continue;
        }
        if (!duranlar.removeOne(id)) {
            faults << name + u"a committed save is missing"_s;
            continue;
        }
        const auto sum = [&](const QString &column, const QString &table) {
            return one(
                u"SELECT COALESCE(CAST(SUM(%1) AS BIGINT), 0) FROM %2 WHERE KayitID = ?"_s.arg(
                    column, table),
                id);
        };
        const qint64 borc = one(u"SELECT Borc FROM OgrenciAidatTanim WHERE KayitID = ?"_s, id);
        const qint64 kalan = one(u"SELECT Kalan FROM OgrenciAidatTanim WHERE KayitID = ?"_s, id);
        const qint64 iskonto
            = one(u"SELECT IskontoTutari FROM OgrenciAidatTanim WHERE KayitID = ?"_s, id);
        const qint64 surum = one(u"SELECT Surum FROM OgrenciAidatTanim WHERE KayitID = ?"_s, id);
        const QList<qint64> satirlar{
            testing::count(db, u"OgrenciAidatDetay"_s, u"KayitID = ?"_s, {id}),
            testing::count(db, u"OgrenciAidatOdeme"_s, u"KayitID = ?"_s, {id}),
            testing::count(db, u"OgrenciIskonto"_s, u"KayitID = ?"_s, {id}),
            borc,
            kalan,
            iskonto};
        // 1. The header is the sum of its rows, and all of them are the last save's.
        if (borc != sum(u"Odenecek"_s, u"OgrenciAidatDetay"_s)
            || kalan != borc - sum(u"Odenen"_s, u"OgrenciAidatOdeme"_s)
            || iskonto != sum(u"IskontoMiktari"_s, u"OgrenciIskonto"_s)) {
            faults << name + u"the header is not the sum of its rows"_s;
        }
        if (testing::count(db, u"OgrenciAidatDetay"_s, u"KayitID = ? AND Sira = 0"_s, {id}) != 1) {
            faults << name + u"without its down payment's row"_s;
        }
        if (satirlar != b.son) {
            faults << name + u"rows and header are not those of the last save"_s;
        }
        // 2. One header log row for each save that committed, and none for one that did not.
        QStringList basliklar;
        store::Query q(db, u"SELECT Borc, Kalan, IskontoTutari FROM %1 WHERE KayitID = ? "
                           "AND Islem_Turu IN ('AddNew', 'Edit')"_s.arg(log));
        q.bind(id);
        if (q.exec()) {
            while (q.next()) {
                basliklar << u"%1/%2/%3"_s.arg(q.integer(0)).arg(q.integer(1)).arg(q.integer(2));
            }
        }
        basliklar.sort();
        QStringList beklenen = b.basliklar;
        beklenen.sort();
        if (surum != b.surum() || basliklar.size() != surum || basliklar != beklenen) {
            faults << name
                          + u"Surum %1, %2 header log rows, %3 saves committed"_s.arg(surum)
                                .arg(basliklar.size())
                                .arg(b.surum());
        }
        if (one(u"SELECT COUNT(*) FROM %1 WHERE KayitID = ?"_s.arg(odemeLog), id) != b.odemeLogu
            || one(u"SELECT COALESCE(CAST(SUM(Odenen) AS BIGINT), 0) FROM %1 WHERE KayitID = ? "
                   "AND Islem_Turu = 'AddNew'"_s.arg(odemeLog),
                   id)
                   != b.odemeLogToplam) {
            faults << name + u"its payment log rows are not those of its saves"_s;
        }
    }
    for (const qint64 id : std::as_const(duranlar)) {
        faults << u"account %1 stands without a save that committed"_s.arg(id);
    }
    for (const char *table : s_satirlar) {
        if (testing::count(db, QString::fromLatin1(table),
                           u"KayitID NOT IN (SELECT KayitID FROM OgrenciAidatTanim)"_s)
            != 0) {
            faults << u"rows of %1 without their account"_s.arg(QLatin1String(table));
        }
    }
    // 3. Both files whole.
    if (db.engine() == store::Engine::SQLite) {
        for (const store::Store s : {store::Store::Year, store::Store::Log}) {
            const QString ok
                = scalar(db, u"PRAGMA %1.integrity_check"_s.arg(db.schema(s))).toString();
            if (ok != "ok"_L1) {
                faults << db.schema(s) + u": "_s + ok;
            }
        }
    }
    return faults;
}

// Where the child finds the store: the data folder, or a libpq text.
QString nerede(const store::ConnectionSettings &c)
{
    if (c.engine == store::Engine::SQLite) {
        return c.dataFolder;
    }
    QString where
        = u"host=%1 port=%2 dbname=%3 user=%4"_s.arg(c.host).arg(c.port).arg(c.database, c.user);
    if (!c.password.isEmpty()) {
        where += u" password="_s + c.password;
    }
    return where;
}

// On PostgreSQL a killed client's backend may still be finishing the commit it was sent: the
// store is read once it is gone.
bool digerleriBitti(store::Database &db)
{
    if (db.engine() != store::Engine::PostgreSQL) {
        return true;
    }
    for (int i = 0; i < 1000; ++i) {
        if (scalar(db, u"SELECT COUNT(*) FROM pg_stat_activity WHERE datname = "
                       "current_database() AND pid <> pg_backend_pid()"_s)
                .toInt()
            == 0) {
            return true;
        }
        QTest::qWait(10);
    }
    return false;
}

} // namespace

class tst_AccountKill : public QObject
{
    Q_OBJECT

private slots:
    void init() { users::durum() = users::CalismaDurumu(); }
    void aKilledSaveLeavesEveryAccountWhole_data() { testing::addEngineRows(); }
    void aKilledSaveLeavesEveryAccountWhole();
};

void tst_AccountKill::aKilledSaveLeavesEveryAccountWhole()
{
    VORTEL_STORE_FOR_ROW(s);
    store::Database &db = s.db();
    QVERIFY(testing::openFeeYear(s));
    for (int ogr = 1; ogr <= s_ogrenciSayisi; ++ogr) {
        QVERIFY(testing::run(db, u"INSERT INTO Ogrenci (KayitID, Ogr_Numarasi) VALUES (?, ?)"_s,
                             {ogr, ogr}));
    }
    store::DatabaseKapat(db);
    QTemporaryDir dir;
    const QString yanDosya = dir.filePath(u"kayitlar.txt"_s);
    const int kills = qEnvironmentVariableIsSet("VORTEL_KILLS")
                          ? qEnvironmentVariableIntValue("VORTEL_KILLS")
                          : 20;
    const quint32 seed = QRandomGenerator::global()->generate();
    QRandomGenerator rng(seed);
    Durum d;
    qint64 okunan = 0;
    for (int round = 0; round < kills; ++round) {
        const QString tag = u"seed %1, kill %2: "_s.arg(seed).arg(round);
        QProcess child;
        child.start(QCoreApplication::applicationFilePath(),
                    {QString::fromLatin1(s_childFlag),
                     QString::fromLatin1(testing::engineName(s.settings().engine)),
                     nerede(s.settings()), yanDosya, QString::number(rng.generate())});
        QVERIFY(child.waitForStarted());
        while (!child.canReadLine() && child.state() == QProcess::Running) {
            child.waitForReadyRead(30000);
        }
        QCOMPARE(child.readLine().trimmed(), QByteArray("hazir"));
        QTest::qWait(int(rng.bounded(1, 250)));
        QVERIFY2(child.state() == QProcess::Running,
                 qPrintable(tag + QString::fromUtf8(child.readAllStandardError())));
        child.kill();
        QVERIFY(child.waitForFinished());

        db.selectYear(1);
        QVERIFY2(store::DatabaseAc(db, store::Store::Year, true, false), qPrintable(tag));
        QVERIFY2(digerleriBitti(db), qPrintable(tag + u"the killed session stays"_s));
        // A note cut in its writing is dropped, so that the next child writes on a line's start.
        QFile yan(yanDosya);
        QVERIFY(yan.open(QIODevice::ReadWrite));
        const QByteArray notlar = yan.readAll();
        const qint64 tam = notlar.lastIndexOf('\n') + 1;
        QVERIFY(yan.resize(tam));
        notlariOku(d, notlar.mid(okunan, tam - okunan), db);
        okunan = tam;
        const QStringList faults = denetle(db, d);
        QVERIFY2(faults.isEmpty(), qPrintable(tag + faults.join(u"; "_s)));
        store::DatabaseKapat(db);
    }
    qInfo("%d kills, %d saves committed, %d kills within a save (%d after its commit)", kills,
          d.kayitlar, d.yarida, d.yaridaYazilan);
    QVERIFY(kills == 0 || d.kayitlar > 0);
}

// With "--kaydeden <engine> <store> <side file> <seed>" the program is the child that saves.
int main(int argc, char **argv)
{
    QCoreApplication app(argc, argv);
    if (argc == 6 && qstrcmp(argv[1], s_childFlag) == 0) {
        return kaydeden(QString::fromLocal8Bit(argv[2]), QString::fromLocal8Bit(argv[3]),
                        QString::fromLocal8Bit(argv[4]), quint32(QByteArray(argv[5]).toUInt()));
    }
    tst_AccountKill t;
    QTEST_SET_MAIN_SOURCE_PATH
    return QTest::qExec(&t, argc, argv);
}

#include "tst_account_kill.moc"
