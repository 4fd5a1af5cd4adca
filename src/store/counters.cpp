#include "store/counters.h"

#include <algorithm>
#include <optional>

namespace store {

namespace {

QString fieldOf(Sayac sayac)
{
    switch (sayac) {
    case Sayac::SonFaturaNo:
        return QStringLiteral("SonFaturaNo");
    case Sayac::SonFisNo:
        return QStringLiteral("SonFisNo");
    case Sayac::SonSenetNo:
        return QStringLiteral("SonSenetNo");
    case Sayac::KasaID:
        break;
    }
    return QStringLiteral("KasaID");
}

// The row in force: the greatest school year, a row without one counting as the least. Rows
// that share the school year are one row to the program (the school screen writes them
// alike), and they count together.
QString rowInForce(const QString &sabit)
{
    return QStringLiteral("COALESCE(OgretimYili, '') = "
                          "(SELECT MAX(COALESCE(OgretimYili, '')) FROM %1)")
        .arg(sabit);
}

base::Status insideTransaction(Database &db, const QString &label)
{
    if (db.transactionDepth() > 0) {
        return {};
    }
    // A number drawn on its own would be handed out again when the save that uses it fails.
    return base::Error{3146, QStringLiteral("Numara yalnız kaydın kendi işlemi içinde alınabilir."),
                       label};
}

base::Result<qint64> nextKasaId(Database &db, const QString &label)
{
    const QString kasa = db.table(Store::Year, QStringLiteral("KASA"));
    // The lock that keeps the greatest number ours until the caller's transaction ends. On
    // PostgreSQL the table is locked against every other writer (and against a second
    // drawer) but not against readers. On SQLite an immediate transaction has the write lock
    // already; in a deferred one, a statement that writes nothing takes it.
    const QString lock = db.engine() == Engine::PostgreSQL
                             ? QStringLiteral("LOCK TABLE %1 IN SHARE ROW EXCLUSIVE MODE")
                             : QStringLiteral("UPDATE %1 SET KasaID = KasaID WHERE 0 = 1");
    if (base::Status s = db.exec(lock.arg(kasa), label); !s) {
        return s.error();
    }
    Query q(db, QStringLiteral("SELECT COALESCE(MAX(KasaID), 0) + 1 FROM %1").arg(kasa));
    if (!q.exec() || !q.next()) {
        return q.error(label);
    }
    return q.integer(0);
}

} // namespace

base::Result<qint64> SonrakiNumara(Database &db, Sayac sayac)
{
    const QString label = QStringLiteral("SonrakiNumara:") + fieldOf(sayac);
    if (base::Status s = insideTransaction(db, label); !s) {
        return s.error();
    }
    if (sayac == Sayac::KasaID) {
        return nextKasaId(db, label);
    }
    // One statement adds and reads: PostgreSQL keeps the row locked from here until the
    // caller's transaction ends, so a second workstation's UPDATE waits and then adds to our
    // number; SQLite's transaction holds the write lock of the file.
    const QString sabit = db.table(Store::Year, QStringLiteral("Sabit"));
    const QString field = fieldOf(sayac);
    Query q(db, QStringLiteral("UPDATE %1 SET %2 = COALESCE(%2, 0) + 1 WHERE %3 RETURNING %2")
                    .arg(sabit, field, rowInForce(sabit)));
    if (!q.exec()) {
        return q.error(label);
    }
    std::optional<qint64> drawn;
    while (q.next()) {
        drawn = std::max(drawn.value_or(0), q.integer(0));
    }
    q.finish();
    if (!drawn) {
        return base::Error{3021, QStringLiteral("Okul bilgileri girilmemiş; numara verilemedi."),
                           label};
    }
    return *drawn;
}

base::Status raiseCounter(Database &db, Sayac sayac, qint64 atLeast)
{
    // One statement on its own, so no transaction is needed: it cannot lower a counter that
    // another workstation raised meanwhile.
    const QString label = QStringLiteral("raiseCounter:") + fieldOf(sayac);
    if (sayac == Sayac::KasaID) {
        return {};
    }
    const QString sabit = db.table(Store::Year, QStringLiteral("Sabit"));
    const QString field = fieldOf(sayac);
    Query q(db, QStringLiteral("UPDATE %1 SET %2 = ? WHERE %3 AND COALESCE(%2, 0) < ?")
                    .arg(sabit, field, rowInForce(sabit)));
    q.bind(atLeast).bind(atLeast);
    if (!q.exec()) {
        return q.error(label);
    }
    return {};
}

} // namespace store
