#include "store/error_log.h"

#include "store/dialect.h"
#include "store/schema.h"

namespace store {

namespace {

// The error store's own connection for these settings, opened once and kept.
struct ErrorConnection
{
    ConnectionSettings settings;
    std::unique_ptr<Database> db;
    bool ready = false;
};

ErrorConnection &connection()
{
    static ErrorConnection s_connection;
    return s_connection;
}

bool sameSettings(const ConnectionSettings &a, const ConnectionSettings &b)
{
    return a.engine == b.engine && a.dataFolder == b.dataFolder && a.host == b.host
           && a.port == b.port && a.database == b.database && a.user == b.user;
}

base::Result<Database *> open(const ConnectionSettings &settings)
{
    ErrorConnection &c = connection();
    if (c.db && !sameSettings(c.settings, settings)) {
        c.db.reset();
        c.ready = false;
    }
    if (!c.db) {
        ConnectionSettings own = settings;
        c.settings = settings;
        c.db = std::make_unique<Database>(own);
    }
    if (c.ready && c.db->sql().isOpen())
        return c.db.get();

    Database &db = *c.db;
    const QString label = QStringLiteral("HataKaydet");
    const base::Status opened = db.openErrorStore();
    if (!opened)
        return opened.error();
    base::Result<Catalog> catalog = db.dialect().readCatalog(db, Store::Global);
    if (!catalog)
        return catalog.error();
    const schema::Table &t = schema::errorTable();
    if (!catalog->hasTable(t.name)) {
        QList<schema::Field> fields(t.fields.begin(), t.fields.end());
        if (base::Status s
            = db.exec(db.dialect().createTable(db.table(Store::Global, t.name), fields), label);
            !s) {
            return s.error();
        }
    }
    c.ready = true;
    return &db;
}

} // namespace

base::Status writeErrorRow(const ConnectionSettings &settings, const ErrorRow &row)
{
    // A failure is written down whatever the user may change.
    const WriteGuardExemption own;
    base::Result<Database *> db = open(settings);
    if (!db)
        return db.error();
    Query q(**db, QStringLiteral("INSERT INTO %1 (MAKINEADI, KULLANICI, MODUL, OBJE, HATA_KODU, "
                                 "HATA_SATIRI, ACIKLAMA, ZAMAN) VALUES (?, ?, ?, ?, ?, ?, ?, ?)")
                      .arg((*db)->table(Store::Global, schema::errorTable().name)));
    q.bind(row.machine.left(100))
        .bind(row.user.left(100))
        .bind(row.module.left(100))
        .bind(row.object.left(100))
        .bind(row.code)
        .bind(row.line)
        .bind(row.text)
        .bind(row.time);
    if (!q.exec())
        return q.error(QStringLiteral("HataKaydet"));
    return {};
}

base::Result<QList<ErrorRow>> readErrorRows(const ConnectionSettings &settings)
{
    base::Result<Database *> db = open(settings);
    if (!db)
        return db.error();
    Query q(**db,
            QStringLiteral("SELECT MAKINEADI, KULLANICI, MODUL, OBJE, HATA_KODU, HATA_SATIRI, "
                           "ACIKLAMA, ZAMAN FROM %1 ORDER BY ZAMAN")
                .arg((*db)->table(Store::Global, schema::errorTable().name)));
    if (!q.exec())
        return q.error(QStringLiteral("HataKaydet"));
    QList<ErrorRow> rows;
    while (q.next()) {
        rows.append(ErrorRow{q.text(0), q.text(1), q.text(2), q.text(3), int(q.integer(4)),
                             int(q.integer(5)), q.text(6), q.dateTime(7)});
    }
    return rows;
}

} // namespace store
