#include "store/database.h"

#include "store/change_log.h"
#include "store/dialect.h"
#include "store/migration.h"
#include "store/sqlite_functions.h"

#include "shell/turkish_text.h"

#include <QAtomicInt>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QLocale>
#include <QLoggingCategory>
#include <QSqlDriver>
#include <QSqlError>
#include <QSqlRecord>

#include <cmath>

namespace store {

Q_LOGGING_CATEGORY(lcStore, "vortel.store")

namespace {

MessageHandler &messageHandler()
{
    static MessageHandler s_handler;
    return s_handler;
}

Database *s_default = nullptr;

std::function<bool()> &writeGuard()
{
    static std::function<bool()> s_guard;
    return s_guard;
}
// Exemptions are scopes of the thread that opened them.
thread_local int s_exemptions = 0;

bool isWriteStatement(const QString &sqlText)
{
    const QString head = sqlText.trimmed().left(7).toUpper();
    return head.startsWith(QLatin1String("INSERT")) || head.startsWith(QLatin1String("UPDATE"))
           || head.startsWith(QLatin1String("DELETE"));
}

QString uniqueConnectionName()
{
    static QAtomicInt s_counter;
    return QStringLiteral("vortel-%1").arg(s_counter.fetchAndAddRelaxed(1) + 1);
}

QString yearNumber(int calismaId)
{
    return QStringLiteral("%1").arg(calismaId, 3, 10, QLatin1Char('0'));
}

// A value of a Single or Double column that is no decimal of four places: VB's "Type
// mismatch", with the value in the text as the screens write numbers ("0,12345").
shell::Error notADecimal(const QString &field, const QVariant &value)
{
    const QString shown = shell::NullStr(value);
    const QString text
        = field.isEmpty()
              ? QStringLiteral("%1 değeri dört ondalık basamaklı bir sayı değil.").arg(shown)
              : QStringLiteral("%1 alanındaki %2 değeri dört ondalık basamaklı bir sayı değil.")
                    .arg(field, shown);
    return shell::Error{13, text, QString()};
}

// What a Single or Double column holds, as the decimal its double stands for. SQLite hands
// a REAL over as a double and an integer kept in one as an integer; PostgreSQL's float8 comes
// as its shortest text, which the driver reads into the same double.
shell::Result<shell::Para> storedDecimal(const QString &field, const QVariant &value)
{
    if (value.isNull() || !value.isValid())
        return shell::Para();
    switch (value.metaType().id()) {
    case QMetaType::Int:
    case QMetaType::UInt:
    case QMetaType::LongLong:
    case QMetaType::Short:
    case QMetaType::UShort:
        if (const std::optional<shell::Para> whole
            = shell::Para::fromWholeUnits(value.toLongLong()))
            return *whole;
        return shell::TutarTasmasi();
    case QMetaType::ULongLong:
        return shell::TutarTasmasi();
    default:
        break;
    }
    bool isNumber = false;
    const double number = value.metaType().id() == QMetaType::Double
                              ? value.toDouble(&isNumber)
                              : QLocale::c().toDouble(value.toString().trimmed(), &isNumber);
    if (!isNumber || !std::isfinite(number))
        return notADecimal(field, value);
    if (const std::optional<shell::Para> exact = shell::Para::fromDouble(number))
        return *exact;
    // Either more decimals than four, or beyond the range.
    if (!shell::Para::roundedFromDouble(number, shell::RoundingMode::TowardZero))
        return shell::TutarTasmasi();
    return notADecimal(field, value);
}

} // namespace

// ---- settings and messages -----------------------------------------------------------------

ConnectionSettings ConnectionSettings::sqlite(const QString &folder)
{
    ConnectionSettings s;
    s.engine = Engine::SQLite;
    s.dataFolder = folder;
    return s;
}

std::optional<ConnectionSettings> ConnectionSettings::fromConnInfo(const QString &conninfo)
{
    ConnectionSettings s;
    s.engine = Engine::PostgreSQL;
    const QStringList parts = conninfo.split(QLatin1Char(' '), Qt::SkipEmptyParts);
    if (parts.isEmpty())
        return std::nullopt;
    for (const QString &part : parts) {
        const int eq = part.indexOf(QLatin1Char('='));
        if (eq <= 0)
            return std::nullopt;
        const QString key = part.left(eq).trimmed().toLower();
        const QString value = part.mid(eq + 1).trimmed();
        if (key == QLatin1String("host"))
            s.host = value;
        else if (key == QLatin1String("port"))
            s.port = value.toInt();
        else if (key == QLatin1String("dbname"))
            s.database = value;
        else if (key == QLatin1String("user"))
            s.user = value;
        else if (key == QLatin1String("password"))
            s.password = value;
        else
            return std::nullopt;
    }
    if (s.database.isEmpty())
        return std::nullopt;
    return s;
}

QString ConnectionSettings::describe() const
{
    if (engine == Engine::SQLite)
        return QDir::toNativeSeparators(dataFolder);
    return QStringLiteral("PostgreSQL %1:%2/%3").arg(host).arg(port).arg(database);
}

void setMessageHandler(MessageHandler handler)
{
    messageHandler() = std::move(handler);
}

void showMessage(MessageKind kind, const QString &title, const QString &text)
{
    if (messageHandler()) {
        messageHandler()(kind, title, text);
        return;
    }
    qCWarning(lcStore).noquote() << title << ':' << text;
}

// ---- errors and values ---------------------------------------------------------------------

shell::Error toError(const QSqlError &error, const QString &label, Engine engine)
{
    const QString native = error.nativeErrorCode();
    QString text = error.databaseText().trimmed();
    if (text.isEmpty())
        text = error.driverText().trimmed();
    if (text.isEmpty())
        text = QStringLiteral("Bilinmeyen veritabanı hatası");

    bool isNumber = false;
    const int sqliteCode = native.toInt(&isNumber) & 0xff;
    isNumber = isNumber && engine == Engine::SQLite;
    int number = 3146; // a failure of the engine that has no row of its own
    if (isNumber) {
        switch (sqliteCode) {
        case 5:  // SQLITE_BUSY
        case 6:  // SQLITE_LOCKED
            number = 3260;
            break;
        case 7:  // SQLITE_NOMEM
            number = 7;
            break;
        case 13: // SQLITE_FULL
            number = 61;
            break;
        case 14: // SQLITE_CANTOPEN
            number = 3044;
            break;
        case 11: // SQLITE_CORRUPT
        case 26: // SQLITE_NOTADB
            number = 3061;
            break;
        case 1:  // SQLITE_ERROR: a statement the store cannot run
            number = text.contains(QLatin1String("no such"))
                             || text.contains(QLatin1String("has no column"))
                         ? 3061
                         : 3075;
            break;
        default:
            number = 3000 + sqliteCode;
            break;
        }
    } else if (native == QLatin1String("55P03") || native == QLatin1String("40P01")
               || native == QLatin1String("40001")) {
        number = 3260;
    } else if (native == QLatin1String("53100")) {
        number = 61;
    } else if (native == QLatin1String("53200")) {
        number = 7;
    } else if (native == QLatin1String("42P01") || native == QLatin1String("42703")
               || native == QLatin1String("3F000")) {
        number = 3061;
    } else if (native.startsWith(QLatin1String("42"))) {
        number = 3075;
    } else if (native.startsWith(QLatin1String("08"))) {
        number = 3044;
    }
    if (number == 3260) {
        // The engine does not say which person holds the row: the text says so, and names
        // nobody.
        text = QStringLiteral("Kayıt başka bir iş istasyonunda kullanılıyor (%1)").arg(text);
    }
    if (!native.isEmpty())
        text += QStringLiteral(" [%1]").arg(native);
    return shell::Error{number, text, label, 0};
}

QVariant toStoredDate(Engine engine, const QDateTime &value)
{
    if (!value.isValid())
        return QVariant();
    if (engine == Engine::SQLite)
        return value.toString(QStringLiteral("yyyy-MM-dd HH:mm:ss"));
    // Bound as UTC with the session in UTC, so that the wall-clock time is stored unchanged.
    return QDateTime(value.date(), QTime(value.time().hour(), value.time().minute(), value.time().second()), Qt::UTC);
}

QDateTime fromStoredDate(const QVariant &value)
{
    if (value.isNull() || !value.isValid())
        return QDateTime();
    if (value.metaType().id() == QMetaType::QDateTime) {
        const QDateTime dt = value.toDateTime();
        return QDateTime(dt.date(), dt.time());
    }
    if (value.metaType().id() == QMetaType::QDate)
        return QDateTime(value.toDate(), QTime(0, 0));
    const QString text = value.toString().trimmed();
    if (text.size() >= 19) {
        const QDate d = QDate::fromString(text.left(10), QStringLiteral("yyyy-MM-dd"));
        const QTime t = QTime::fromString(text.mid(11, 8), QStringLiteral("HH:mm:ss"));
        if (d.isValid() && t.isValid())
            return QDateTime(d, t);
    }
    const QDate d = QDate::fromString(text.left(10), QStringLiteral("yyyy-MM-dd"));
    return d.isValid() ? QDateTime(d, QTime(0, 0)) : QDateTime();
}

// ---- Database ------------------------------------------------------------------------------

Database::Database(const ConnectionSettings &settings)
    : m_settings(settings)
    , m_dialect(std::make_unique<Dialect>(settings.engine))
    , m_connectionName(uniqueConnectionName())
{}

Database::~Database()
{
    close();
    m_sql = QSqlDatabase();
    if (QSqlDatabase::contains(m_connectionName))
        QSqlDatabase::removeDatabase(m_connectionName);
    if (s_default == this)
        s_default = nullptr;
}

bool Database::isOpen(Store store) const
{
    if (!m_sql.isOpen() || !m_globalOpen)
        return false;
    if (store == Store::Global)
        return true;
    return m_openYear != 0;
}

QString Database::schema(Store store) const
{
    if (engine() == Engine::SQLite) {
        switch (store) {
        case Store::Global:
            return QStringLiteral("main");
        case Store::Year:
            return QStringLiteral("aidat");
        case Store::Log:
            return QStringLiteral("laidat");
        }
    }
    return location(store, m_openYear);
}

QString Database::table(Store store, const QString &name) const
{
    return schema(store) + QLatin1Char('.') + name;
}

QString Database::location(Store store, int calismaId) const
{
    if (engine() == Engine::SQLite) {
        const QString folder = QDir(m_settings.dataFolder).absolutePath() + QLatin1Char('/');
        switch (store) {
        case Store::Global:
            return folder + (m_errorStore ? QStringLiteral("HATALAR.db") : QStringLiteral("Sabit.db"));
        case Store::Year:
            return folder + QStringLiteral("Aidat") + yearNumber(calismaId) + QStringLiteral(".db");
        case Store::Log:
            return folder + QStringLiteral("LAidat") + yearNumber(calismaId) + QStringLiteral(".db");
        }
    }
    switch (store) {
    case Store::Global:
        return QStringLiteral("sabit");
    case Store::Year:
        return QStringLiteral("aidat") + yearNumber(calismaId);
    case Store::Log:
        return QStringLiteral("laidat") + yearNumber(calismaId);
    }
    return QString();
}

bool Database::exists(Store store, int calismaId) const
{
    if (engine() == Engine::SQLite)
        return QFileInfo::exists(location(store, calismaId));
    if (!m_sql.isOpen())
        return false;
    QSqlQuery q(m_sql);
    q.prepare(QStringLiteral("SELECT 1 FROM pg_catalog.pg_namespace WHERE nspname = ?"));
    q.addBindValue(location(store, calismaId));
    return q.exec() && q.next();
}

shell::Status Database::drop(int calismaId)
{
    if (m_openYear == calismaId)
        detachYear();
    if (engine() == Engine::SQLite) {
        for (Store s : {Store::Year, Store::Log}) {
            const QString path = location(s, calismaId);
            QFile::remove(path + QStringLiteral("-journal"));
            if (QFileInfo::exists(path) && !QFile::remove(path)) {
                return shell::Error{70,
                                    QStringLiteral("Dosya silinemedi: ")
                                        + QDir::toNativeSeparators(path),
                                    QStringLiteral("Database:drop")};
            }
        }
        return {};
    }
    for (Store s : {Store::Year, Store::Log}) {
        if (shell::Status st = exec(QStringLiteral("DROP SCHEMA IF EXISTS %1 CASCADE")
                                        .arg(location(s, calismaId)),
                                    QStringLiteral("Database:drop"));
            !st) {
            return st;
        }
    }
    return {};
}

shell::Status Database::openConnection()
{
    if (m_sql.isOpen())
        return {};
    if (!QSqlDatabase::contains(m_connectionName)) {
        m_sql = QSqlDatabase::addDatabase(engine() == Engine::SQLite ? QStringLiteral("QSQLITE")
                                                                     : QStringLiteral("QPSQL"),
                                          m_connectionName);
    } else {
        m_sql = QSqlDatabase::database(m_connectionName, false);
    }
    if (engine() == Engine::SQLite) {
        if (!QDir().mkpath(m_settings.dataFolder)) {
            return shell::Error{76,
                                QStringLiteral("Veri klasörü oluşturulamadı: ")
                                    + QDir::toNativeSeparators(m_settings.dataFolder),
                                QStringLiteral("DatabaseAc")};
        }
        m_sql.setDatabaseName(location(Store::Global));
        // A busy file is waited for instead of failing at once.
        m_sql.setConnectOptions(QStringLiteral("QSQLITE_BUSY_TIMEOUT=15000"));
    } else {
        m_sql.setHostName(m_settings.host);
        m_sql.setPort(m_settings.port);
        m_sql.setDatabaseName(m_settings.database);
        m_sql.setUserName(m_settings.user);
        m_sql.setPassword(m_settings.password);
        m_sql.setConnectOptions(QStringLiteral("connect_timeout=10"));
    }
    if (!m_sql.open())
        return toError(m_sql.lastError(), QStringLiteral("DatabaseAc"), engine());
    return engine() == Engine::SQLite ? prepareSqlite() : preparePostgres();
}

shell::Status Database::prepareSqlite()
{
    if (!registerSqliteFunctions(m_sql)) {
        return shell::Error{3146,
                            QStringLiteral("SQLite bağlantısına Türkçe sıralama eklenemedi."),
                            QStringLiteral("DatabaseAc")};
    }
    // The rollback journal, not WAL: its super-journal makes one commit over the global file,
    // the year and its change log atomic, so a crash never keeps a save without its log row.
    // Money files are written with full syncs.
    for (const char *pragma : {"PRAGMA main.journal_mode = DELETE",
                               "PRAGMA main.synchronous = FULL",
                               "PRAGMA foreign_keys = OFF"}) {
        if (shell::Status s = exec(QString::fromLatin1(pragma), QStringLiteral("DatabaseAc")); !s)
            return s;
    }
    return {};
}

shell::Status Database::preparePostgres()
{
    const QString label = QStringLiteral("DatabaseAc");
    if (shell::Status s = exec(QStringLiteral("SET TIME ZONE 'UTC'"), label); !s)
        return s;
    if (shell::Status s = exec(QStringLiteral("SET client_min_messages = WARNING"), label); !s)
        return s;
    if (!exists(Store::Global, 0)) {
        if (shell::Status s = exec(QStringLiteral("CREATE SCHEMA IF NOT EXISTS sabit"), label); !s)
            return s;
    }
    // The date functions that SQLite gets from the program, as SQL functions.
    QSqlQuery q(m_sql);
    q.exec(QStringLiteral("SELECT count(*) FROM pg_catalog.pg_proc p "
                          "JOIN pg_catalog.pg_namespace n ON n.oid = p.pronamespace "
                          "WHERE n.nspname = 'sabit' "
                          "AND p.proname IN ('year', 'month', 'day', 'datevalue')"));
    const bool present = q.next() && q.value(0).toInt() == 4;
    q.finish();
    if (!present) {
        const QStringList functions = {
            QStringLiteral("CREATE OR REPLACE FUNCTION sabit.year(timestamp) RETURNS integer "
                           "LANGUAGE sql IMMUTABLE AS $$SELECT CAST(extract(year FROM $1) AS "
                           "integer)$$"),
            QStringLiteral("CREATE OR REPLACE FUNCTION sabit.month(timestamp) RETURNS integer "
                           "LANGUAGE sql IMMUTABLE AS $$SELECT CAST(extract(month FROM $1) AS "
                           "integer)$$"),
            QStringLiteral("CREATE OR REPLACE FUNCTION sabit.day(timestamp) RETURNS integer "
                           "LANGUAGE sql IMMUTABLE AS $$SELECT CAST(extract(day FROM $1) AS "
                           "integer)$$"),
            QStringLiteral("CREATE OR REPLACE FUNCTION sabit.datevalue(timestamp) RETURNS "
                           "timestamp LANGUAGE sql IMMUTABLE AS $$SELECT date_trunc('day', $1)$$"),
        };
        for (const QString &f : functions) {
            if (shell::Status s = exec(f, label); !s)
                return s;
        }
    }
    return setSearchPath();
}

shell::Status Database::setSearchPath()
{
    if (engine() != Engine::PostgreSQL)
        return {};
    QString path = QStringLiteral("sabit");
    if (m_openYear != 0)
        path += QStringLiteral(", ") + location(Store::Year, m_openYear);
    return exec(QStringLiteral("SET search_path TO ") + path, QStringLiteral("DatabaseAc"));
}

shell::Status Database::openGlobal()
{
    if (shell::Status s = openConnection(); !s)
        return s;
    if (m_globalOpen)
        return {};
    if (shell::Status s = createGlobalTables(*this); !s)
        return s;
    if (shell::Status s = HaklarTabloEkle(*this, Store::Global); !s)
        return s;
    m_globalOpen = true;
    return {};
}

shell::Status Database::openErrorStore()
{
    m_errorStore = true;
    return openConnection();
}

shell::Status Database::ensureStore(Store store)
{
    shell::Result<Catalog> catalog = m_dialect->readCatalog(*this, store);
    if (!catalog)
        return catalog.error();
    if (!catalog->tableNames().isEmpty())
        return {};
    return store == Store::Log ? YeniTabloEkle(*this) : createModel(*this);
}

shell::Status Database::attachYear(int calismaId)
{
    const QString label = QStringLiteral("DatabaseAc");
    if (m_openYear == calismaId && isOpen(Store::Year))
        return {};
    if (m_openYear != 0)
        detachYear();
    if (shell::Status s = openGlobal(); !s)
        return s;

    if (engine() == Engine::SQLite) {
        if (m_maintenance) {
            for (Store s : {Store::Year, Store::Log}) {
                const QString path = location(s, calismaId);
                if (QFileInfo::exists(path)) {
                    if (shell::Status st = DatabaseSikistir(path); !st)
                        return st;
                }
            }
        }
        const struct
        {
            Store store;
            const char *alias;
        } files[] = {{Store::Year, "aidat"}, {Store::Log, "laidat"}};
        for (const auto &file : files) {
            QSqlQuery q(m_sql);
            q.prepare(QStringLiteral("ATTACH DATABASE ? AS %1").arg(QLatin1String(file.alias)));
            q.addBindValue(location(file.store, calismaId));
            if (!q.exec()) {
                const shell::Error e = toError(q.lastError(), label, engine());
                q.finish();
                detachYear();
                return e;
            }
            for (const QString &pragma :
                 {QStringLiteral("PRAGMA %1.journal_mode = DELETE"),
                  QStringLiteral("PRAGMA %1.synchronous = FULL")}) {
                if (shell::Status st = exec(pragma.arg(QLatin1String(file.alias)), label); !st) {
                    detachYear();
                    return st;
                }
            }
        }
        m_openYear = calismaId;
    } else {
        for (Store s : {Store::Year, Store::Log}) {
            if (!exists(s, calismaId)) {
                if (shell::Status st = exec(QStringLiteral("CREATE SCHEMA IF NOT EXISTS ")
                                                + location(s, calismaId),
                                            label);
                    !st) {
                    return st;
                }
            }
        }
        m_openYear = calismaId;
        if (shell::Status s = setSearchPath(); !s) {
            m_openYear = 0;
            return s;
        }
    }
    for (Store s : {Store::Year, Store::Log}) {
        if (shell::Status st = ensureStore(s); !st) {
            detachYear();
            return st;
        }
    }
    return {};
}

void Database::detachYear()
{
    if (m_openYear == 0 && engine() == Engine::PostgreSQL)
        return;
    if (m_sql.isOpen()) {
        if (engine() == Engine::SQLite) {
            for (const char *alias : {"aidat", "laidat"}) {
                QSqlQuery q(m_sql);
                q.exec(QStringLiteral("DETACH DATABASE %1").arg(QLatin1String(alias)));
            }
        }
    }
    m_openYear = 0;
    if (m_sql.isOpen() && engine() == Engine::PostgreSQL)
        (void) setSearchPath();
}

void Database::close()
{
    if (m_depth > 0) {
        QSqlQuery q(m_sql);
        q.exec(QStringLiteral("ROLLBACK"));
        m_depth = 0;
    }
    ++m_generation;
    detachYear();
    if (m_sql.isOpen())
        m_sql.close();
    m_globalOpen = false;
}

bool Database::tryExec(const QString &sqlText)
{
    if (m_depth == 0) {
        QSqlQuery q(m_sql);
        return q.exec(sqlText);
    }
    const QString name = QStringLiteral("deneme%1").arg(++m_savepoint);
    QSqlQuery q(m_sql);
    if (!q.exec(QStringLiteral("SAVEPOINT ") + name))
        return false;
    const bool ok = q.exec(sqlText);
    q.finish();
    if (!ok)
        q.exec(QStringLiteral("ROLLBACK TO SAVEPOINT ") + name);
    q.exec(QStringLiteral("RELEASE SAVEPOINT ") + name);
    return ok;
}

shell::Status Database::exec(const QString &sqlText, const QString &label)
{
    QSqlQuery q(m_sql);
    if (!q.exec(sqlText))
        return toError(q.lastError(), label, engine());
    return {};
}

// ---- Query ---------------------------------------------------------------------------------

Query::Query(Database &db, const QString &sqlText)
    : m_db(db)
    , m_query(db.sql())
    , m_sql(sqlText)
{
    // On PostgreSQL a forward-only result streams row by row, and a second statement run while
    // it is read would cut it short; results are fetched whole there, so that a screen may look
    // something up while it walks a list.
    m_query.setForwardOnly(db.engine() == Engine::SQLite);
    m_prepared = m_query.prepare(sqlText);
}

Query &Query::bind(const QVariant &value)
{
    switch (value.metaType().id()) {
    case QMetaType::QDateTime:
        return bind(value.toDateTime());
    case QMetaType::QDate:
        return bind(value.toDate());
    case QMetaType::Bool:
        m_query.addBindValue(value.toBool() ? 1 : 0);
        return *this;
    case QMetaType::Double:
    case QMetaType::Float:
        // Only as the decimal it stands for, and only one that the store can keep exactly.
        if (const std::optional<shell::Para> decimal = shell::Para::fromDouble(value.toDouble()))
            return bindDecimal(*decimal);
        return refuse(notADecimal(QString(), value));
    default:
        m_query.addBindValue(value);
        return *this;
    }
}

Query &Query::bind(shell::Para value)
{
    if (value.overflowed())
        return refuse(shell::TutarTasmasi());
    m_query.addBindValue(value.raw());
    return *this;
}

Query &Query::bindDecimal(shell::Para value)
{
    // On SQLite the double itself is stored; PostgreSQL gets it as its shortest text, which
    // float8 reads back as the same double.
    const std::optional<double> stored = value.toDouble();
    if (!stored)
        return refuse(shell::TutarTasmasi());
    m_query.addBindValue(*stored);
    return *this;
}

Query &Query::refuse(const shell::Error &error)
{
    if (!m_bindError)
        m_bindError = error;
    m_prepared = false;
    m_query.addBindValue(QVariant());
    return *this;
}

Query &Query::bind(const QDate &value)
{
    m_query.addBindValue(
        toStoredDate(m_db.engine(), value.isValid() ? QDateTime(value, QTime(0, 0)) : QDateTime()));
    return *this;
}

Query &Query::bind(const QDateTime &value)
{
    m_query.addBindValue(toStoredDate(m_db.engine(), value));
    return *this;
}

bool Query::exec()
{
    m_refused = false;
    if (!m_prepared)
        return false;
    if (s_exemptions == 0 && writeGuard() && isWriteStatement(m_sql) && !writeGuard()()) {
        m_refused = true;
        return false;
    }
    return m_query.exec();
}

QString Query::text(const QString &field) const
{
    const QVariant v = m_query.value(field);
    return v.isNull() ? QString() : v.toString().trimmed();
}

QString Query::text(int column) const
{
    const QVariant v = m_query.value(column);
    return v.isNull() ? QString() : v.toString().trimmed();
}

qint64 Query::integer(const QString &field) const
{
    return m_query.value(field).toLongLong();
}

qint64 Query::integer(int column) const
{
    return m_query.value(column).toLongLong();
}

shell::Result<shell::Para> Query::decimal(const QString &field) const
{
    return storedDecimal(field, m_query.value(field));
}

shell::Result<shell::Para> Query::decimal(int column) const
{
    const QVariant value = m_query.value(column);
    const shell::Result<shell::Para> decimal = storedDecimal(QString(), value);
    if (decimal || decimal.error().number == shell::TasmaHatasi)
        return decimal;
    // Named only on the way out: the record of a PostgreSQL result may cost a query.
    return notADecimal(m_query.record().fieldName(column), value);
}

shell::Para Query::para(const QString &field) const
{
    return shell::Para::fromRaw(m_query.value(field).toLongLong());
}

shell::Para Query::para(int column) const
{
    return shell::Para::fromRaw(m_query.value(column).toLongLong());
}

QDateTime Query::dateTime(const QString &field) const
{
    return fromStoredDate(m_query.value(field));
}

QDateTime Query::dateTime(int column) const
{
    return fromStoredDate(m_query.value(column));
}

shell::Error Query::error(const QString &label) const
{
    if (m_bindError)
        return m_bindError->withLabel(label);
    if (m_refused) {
        return shell::Error{YazmaYetkisiYokHatasi,
                            QStringLiteral("Değişiklik yapma yetkiniz yok. Lütfen sistem yetkilisi "
                                           "ile görüşünüz"),
                            label};
    }
    shell::Error e = toError(m_query.lastError(), label, m_db.engine());
    if (!m_prepared && e.text.startsWith(QLatin1String("Bilinmeyen")))
        e.text = QStringLiteral("Sorgu hazırlanamadı: ") + m_sql;
    return e;
}

// ---- the write guard -------------------------------------------------------------------------

void setWriteGuard(std::function<bool()> mayWrite)
{
    writeGuard() = std::move(mayWrite);
}

WriteGuardExemption::WriteGuardExemption()
{
    ++s_exemptions;
}

WriteGuardExemption::~WriteGuardExemption()
{
    --s_exemptions;
}

// ---- Transaction ---------------------------------------------------------------------------

Transaction::Transaction(Database &db, Mode mode)
    : m_db(db)
{
    if (m_db.m_depth == 0) {
        const QString begin = m_db.engine() == Engine::SQLite && mode == Mode::Immediate
                                  ? QStringLiteral("BEGIN IMMEDIATE")
                                  : QStringLiteral("BEGIN");
        if (shell::Status s = m_db.exec(begin, QStringLiteral("Transaction")); !s) {
            m_error = s.error();
            return;
        }
        m_db.m_rollbackOnly = false;
    }
    ++m_db.m_depth;
    m_generation = m_db.m_generation;
    m_active = true;
}

bool Transaction::stillOpen()
{
    if (m_generation == m_db.m_generation)
        return true;
    m_done = true;
    m_error = shell::Error{3146,
                           QStringLiteral("Bağlantı kapandığı için işlem geri alındı."),
                           QStringLiteral("Transaction")};
    return false;
}

Transaction::~Transaction()
{
    rollback();
}

bool Transaction::commit()
{
    if (!m_active || m_done || !stillOpen())
        return false;
    m_done = true;
    --m_db.m_depth;
    if (m_db.m_depth > 0)
        return !m_db.m_rollbackOnly;
    if (m_db.m_rollbackOnly) {
        (void) m_db.exec(QStringLiteral("ROLLBACK"));
        m_error = shell::Error{3146,
                               QStringLiteral("İşlemin bir adımı başarısız olduğu için hiçbir "
                                              "değişiklik kaydedilmedi."),
                               QStringLiteral("Transaction")};
        return false;
    }
    if (shell::Status s = m_db.exec(QStringLiteral("COMMIT"), QStringLiteral("Transaction")); !s) {
        m_error = s.error();
        (void) m_db.exec(QStringLiteral("ROLLBACK"));
        return false;
    }
    return true;
}

void Transaction::rollback()
{
    if (!m_active || m_done || !stillOpen())
        return;
    m_done = true;
    --m_db.m_depth;
    if (m_db.m_depth > 0) {
        m_db.m_rollbackOnly = true;
        return;
    }
    (void) m_db.exec(QStringLiteral("ROLLBACK"));
}

// ---- the opening procedure ---------------------------------------------------------------

bool DatabaseAc(Database &db, Store tur, bool sessiz, bool guncelle)
{
    // Making and bringing forward the stores is the program's own work, whoever is logged in.
    const WriteGuardExemption own;
    const QString title = QStringLiteral("Dikkat!");
    if (tur == Store::Global) {
        if (shell::Status s = db.openGlobal(); !s) {
            qCWarning(lcStore).noquote() << s.error().text;
            if (!sessiz) {
                showMessage(MessageKind::Warning,
                            title,
                            QStringLiteral("Programın Veri Dosyası Bulunamadı. (%1)")
                                .arg(db.location(Store::Global)));
            }
            return false;
        }
        return true;
    }

    const int year = db.selectedYear();
    if (year == 0) {
        if (!sessiz)
            showMessage(MessageKind::Warning, title, QStringLiteral("Programın Veri Dosyası Bulunamadı. ()"));
        return false;
    }
    // A different working year ends every connection of the old one.
    if (db.openYear() != 0 && db.openYear() != year)
        DatabaseKapat(db);
    if (shell::Status s = db.attachYear(year); !s) {
        qCWarning(lcStore).noquote() << s.error().text;
        if (!sessiz) {
            const QString message = tur == Store::Log
                                        ? QStringLiteral("Programın Log Veri Dosyası Bulunamadı. (%1)")
                                        : QStringLiteral("Programın Veri Dosyası Bulunamadı. (%1)");
            showMessage(MessageKind::Warning, title, message.arg(db.location(tur, year)));
        }
        return false;
    }
    if (tur == Store::Year && guncelle)
        (void) DatabaseGuncelle(db);
    return true;
}

shell::Status ensureOpen(Database &db, Store tur, const QString &label)
{
    if (DatabaseAc(db, tur, false, false))
        return {};
    return shell::Error{3044,
                        tur == Store::Global ? QStringLiteral("Veri dosyası açılamadı.")
                                             : QStringLiteral("Çalışma dosyası açılamadı."),
                        label};
}

void DatabaseKapat(Database &db)
{
    db.close();
}

bool DatabaseAcikMi(Database &db, Store tur)
{
    if (!db.isOpen(tur))
        return false;
    QSqlQuery q(db.sql());
    return q.exec(QStringLiteral("SELECT 1")) && q.next();
}

shell::Status DatabaseSikistir(const QString &yol)
{
    const QString label = QStringLiteral("DatabaseSikistir");
    const QString tmp = yol + QStringLiteral("_tmp");
    const QString old = yol + QStringLiteral("_old");
    QFile::remove(tmp);
    QFile::remove(old);
    const QString name = uniqueConnectionName();
    shell::Status result;
    {
        QSqlDatabase c = QSqlDatabase::addDatabase(QStringLiteral("QSQLITE"), name);
        c.setDatabaseName(yol);
        c.setConnectOptions(QStringLiteral("QSQLITE_BUSY_TIMEOUT=15000"));
        if (!c.open()) {
            result = toError(c.lastError(), label, Engine::SQLite);
        } else {
            // Rebuilding the indexes needs the collation they were made with.
            registerSqliteFunctions(c);
            QSqlQuery q(c);
            q.prepare(QStringLiteral("VACUUM INTO ?"));
            q.addBindValue(tmp);
            if (!q.exec())
                result = toError(q.lastError(), label, Engine::SQLite);
            q.finish();
            c.close();
        }
    }
    QSqlDatabase::removeDatabase(name);
    if (!result)
        return result;
    if (!QFile::rename(yol, old)) {
        QFile::remove(tmp);
        return shell::Error{70, QStringLiteral("Dosya yeniden adlandırılamadı: ") + yol, label};
    }
    if (!QFile::rename(tmp, yol)) {
        QFile::rename(old, yol);
        return shell::Error{70, QStringLiteral("Dosya yeniden adlandırılamadı: ") + tmp, label};
    }
    return {};
}

void setDefaultDatabase(Database *db)
{
    s_default = db;
}

Database &defaultDatabase()
{
    Q_ASSERT(s_default);
    return *s_default;
}

bool hasDefaultDatabase()
{
    return s_default != nullptr;
}

} // namespace store
