#include "store/database.h"

#include "store/change_log.h"
#include "store/dialect.h"
#include "store/migration.h"
#include "store/sqlite_functions.h"

#include "base/platform.h"
#include "base/turkish_text.h"

#include <QAtomicInt>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QLocale>
#include <QLoggingCategory>
#include <QMutex>
#include <QSqlDriver>
#include <QSqlError>
#include <QSqlRecord>
#include <QThread>

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

// The open PostgreSQL sessions and the threads that use them, so that a new guard or an
// exemption reaches the sessions of its thread at once, not only at their next statement.
struct Session
{
    Database *db;
    QThread *thread;
};
QMutex s_sessionsMutex;
QList<Session> s_sessions;

void followWriteGuardOnThisThread()
{
    QList<Database *> mine;
    {
        const QMutexLocker lock(&s_sessionsMutex);
        for (const Session &session : std::as_const(s_sessions)) {
            if (session.thread == QThread::currentThread()) {
                mine.append(session.db);
            }
        }
    }
    // A session that cannot follow now tries again before its next statement.
    for (Database *db : std::as_const(mine)) {
        (void)db->followWriteGuard();
    }
}

void forgetSession(Database *db)
{
    const QMutexLocker lock(&s_sessionsMutex);
    s_sessions.removeIf([db](const Session &session) { return session.db == db; });
}

// Names the savepoint inside which a transaction of ours reads while the guard says no.
const QString s_readOnlySavepoint = QStringLiteral("salt_okunur");

QString uniqueConnectionName()
{
    static QAtomicInt s_counter;
    return QStringLiteral("vortel-%1").arg(s_counter.fetchAndAddRelaxed(1) + 1);
}

// A compaction killed between its two renames leaves the store only as "<file>_old" (with a
// finished or half-written "<file>_tmp" beside it): the old file is the store, whole, and is
// put back before anything opens the folder. Where the new file already took its place the
// old one is kept for the next compaction to remove, as after a run that ended well.
void recoverCompactions(const QString &folder)
{
    const QDir dir(folder);
    bool renamed = false;
    for (const QString &name : dir.entryList({QStringLiteral("*.db_old")}, QDir::Files)) {
        const QString store = dir.filePath(name.chopped(4));
        if (!QFileInfo::exists(store)) {
            qCWarning(lcStore) << "putting back" << store << "after an interrupted compaction";
            renamed = QFile::rename(dir.filePath(name), store) || renamed;
        }
    }
    for (const QString &name : dir.entryList({QStringLiteral("*.db_tmp")}, QDir::Files)) {
        if (QFileInfo::exists(dir.filePath(name.chopped(4))))
            QFile::remove(dir.filePath(name));
    }
    if (renamed)
        base::klasoruDiskeYaz(folder);
}

// The program's files are its user's alone: a store is made empty, readable and writable by its
// owner only, before SQLite opens it (its journals take the same mode); an older one is
// narrowed to that.
void ownerOnly(const QString &path)
{
    const QFileDevice::Permissions own = QFileDevice::ReadOwner | QFileDevice::WriteOwner;
    if (!QFileInfo::exists(path)) {
        QFile f(path);
        if (f.open(QIODevice::WriteOnly | QIODevice::NewOnly, own))
            return;
    }
    QFile::setPermissions(path, own);
}

// A commit over several files writes a super-journal ("Sabit.db-mj...") that the files'
// journals name; SQLite removes it when the commit or its rollback is over. A kill at the
// wrong moment can leave one behind that no journal names any more. It is removed only when
// no journal is left in the folder at all, since removing one that a journal names would
// commit half a transaction, and when it is too old to be another program's commit.
void removeStraySuperJournals(const QString &folder)
{
    const QDir dir(folder);
    if (!dir.entryList({QStringLiteral("*-journal")}, QDir::Files | QDir::Hidden).isEmpty())
        return;
    // A super-journal that another program on this machine is committing with right now is a
    // few milliseconds old; one left by a kill is older than a minute.
    const QDateTime aMinuteAgo = QDateTime::currentDateTimeUtc().addSecs(-60);
    for (const QFileInfo &f :
         dir.entryInfoList({QStringLiteral("*.db-mj*")}, QDir::Files | QDir::Hidden)) {
        if (f.lastModified().toUTC() < aMinuteAgo)
            QFile::remove(f.absoluteFilePath());
    }
}

QString yearNumber(int calismaId)
{
    return QStringLiteral("%1").arg(calismaId, 3, 10, QLatin1Char('0'));
}

// A value of a Single or Double column that is no decimal of four places: VB's "Type
// mismatch", with the value in the text as the screens write numbers ("0,12345").
base::Error notADecimal(const QString &field, const QVariant &value)
{
    const QString shown = base::NullStr(value);
    const QString text
        = field.isEmpty()
              ? QStringLiteral("%1 değeri dört ondalık basamaklı bir sayı değil.").arg(shown)
              : QStringLiteral("%1 alanındaki %2 değeri dört ondalık basamaklı bir sayı değil.")
                    .arg(field, shown);
    return base::Error{13, text, QString()};
}

// What a Single or Double column holds, as the decimal its double stands for. SQLite hands
// a REAL over as a double and an integer kept in one as an integer; PostgreSQL's float8 comes
// as its shortest text, which the driver reads into the same double.
base::Result<base::Para> storedDecimal(const QString &field, const QVariant &value)
{
    if (value.isNull() || !value.isValid())
        return base::Para();
    switch (value.metaType().id()) {
    case QMetaType::Int:
    case QMetaType::UInt:
    case QMetaType::LongLong:
    case QMetaType::Short:
    case QMetaType::UShort:
        if (const std::optional<base::Para> whole = base::Para::fromWholeUnits(value.toLongLong()))
            return *whole;
        return base::TutarTasmasi();
    case QMetaType::ULongLong:
        return base::TutarTasmasi();
    default:
        break;
    }
    bool isNumber = false;
    const double number = value.metaType().id() == QMetaType::Double
                              ? value.toDouble(&isNumber)
                              : QLocale::c().toDouble(value.toString().trimmed(), &isNumber);
    if (!isNumber || !std::isfinite(number))
        return notADecimal(field, value);
    if (const std::optional<base::Para> exact = base::Para::fromDouble(number))
        return *exact;
    // Either more decimals than four, or beyond the range.
    if (!base::Para::roundedFromDouble(number, base::RoundingMode::TowardZero))
        return base::TutarTasmasi();
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

namespace {

void showMessage(const base::Bildiri &notice)
{
    const MessageKind kind = notice.icon == base::Icon::Critical  ? MessageKind::Critical
                             : notice.icon == base::Icon::Warning ? MessageKind::Warning
                                                                  : MessageKind::Information;
    if (messageHandler()) {
        messageHandler()(kind, notice.baslik, notice.metin);
        return;
    }
    qCWarning(lcStore).noquote() << notice.baslik << ':' << notice.metin;
}

} // namespace

// ---- errors and values ---------------------------------------------------------------------

namespace {

// Dates pass between SQLite and the program as "yyyy-MM-dd HH:mm:ss" on every row read and
// every value bound; Qt's formatted conversions read their format text each time, which cost
// more than the statement itself. These do the same fixed forms by hand.

// The number written in `text[from, from + count)`, or -1 when a character is no digit.
int digits(QStringView text, qsizetype from, qsizetype count)
{
    int n = 0;
    for (qsizetype i = from; i < from + count; ++i) {
        const char16_t c = text[i].unicode();
        if (c < u'0' || c > u'9')
            return -1;
        n = n * 10 + (c - u'0');
    }
    return n;
}

// "yyyy-MM-dd" at the start of the text; invalid otherwise.
QDate isoDate(QStringView text)
{
    if (text.size() < 10 || text[4] != QLatin1Char('-') || text[7] != QLatin1Char('-'))
        return QDate();
    const int y = digits(text, 0, 4);
    const int m = digits(text, 5, 2);
    const int d = digits(text, 8, 2);
    if (y < 0 || m < 0 || d < 0)
        return QDate();
    return QDate(y, m, d);
}

// "HH:mm:ss" exactly; invalid otherwise.
QTime isoTime(QStringView text)
{
    if (text.size() != 8 || text[2] != QLatin1Char(':') || text[5] != QLatin1Char(':'))
        return QTime();
    const int h = digits(text, 0, 2);
    const int m = digits(text, 3, 2);
    const int s = digits(text, 6, 2);
    if (h < 0 || m < 0 || s < 0)
        return QTime();
    return QTime(h, m, s);
}

QString isoText(const QDateTime &value)
{
    const QDate d = value.date();
    const QTime t = value.time();
    if (d.year() < 1 || d.year() > 9999)
        return value.toString(QStringLiteral("yyyy-MM-dd HH:mm:ss"));
    char text[20];
    const auto put = [&text](int at, int number, int width) {
        for (int i = width - 1; i >= 0; --i) {
            text[at + i] = char('0' + number % 10);
            number /= 10;
        }
    };
    put(0, d.year(), 4);
    text[4] = '-';
    put(5, d.month(), 2);
    text[7] = '-';
    put(8, d.day(), 2);
    text[10] = ' ';
    put(11, t.hour(), 2);
    text[13] = ':';
    put(14, t.minute(), 2);
    text[16] = ':';
    put(17, t.second(), 2);
    return QString::fromLatin1(text, 19);
}

} // namespace

base::Error toError(const QSqlError &error, const QString &label, Engine engine)
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
        case 5: // SQLITE_BUSY
        case 6: // SQLITE_LOCKED
            number = 3260;
            break;
        case 7: // SQLITE_NOMEM
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
        case 23: // SQLITE_AUTH: the write guard's authorizer refused the statement
            return writeRefusal(label);
        case 1: // SQLITE_ERROR: a statement the store cannot run
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
    } else if (native == QLatin1String("25006")) {
        // read_only_sql_transaction: the session is read-only because the write guard says no.
        return writeRefusal(label);
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
    return base::Error{number, text, label, 0};
}

QVariant toStoredDate(Engine engine, const QDateTime &value)
{
    if (!value.isValid())
        return QVariant();
    if (engine == Engine::SQLite)
        return isoText(value);
    // Bound as UTC with the session in UTC, so that the wall-clock time is stored unchanged.
    return QDateTime(value.date(),
                     QTime(value.time().hour(), value.time().minute(), value.time().second()),
                     Qt::UTC);
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
    const QDate d = isoDate(text);
    if (text.size() >= 19) {
        const QTime t = isoTime(QStringView(text).mid(11, 8));
        if (d.isValid() && t.isValid())
            return QDateTime(d, t);
    }
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
    forgetSession(this);
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
            return folder
                   + (m_errorStore ? QStringLiteral("HATALAR.db") : QStringLiteral("Sabit.db"));
        case Store::Year:
            return folder + QStringLiteral("Aidat") + yearNumber(calismaId) + QStringLiteral(".db");
        case Store::Log:
            return folder + QStringLiteral("LAidat") + yearNumber(calismaId)
                   + QStringLiteral(".db");
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

base::Status Database::drop(int calismaId)
{
    if (m_openYear == calismaId)
        detachYear();
    if (engine() == Engine::SQLite) {
        for (Store s : {Store::Year, Store::Log}) {
            const QString path = location(s, calismaId);
            QFile::remove(path + QStringLiteral("-journal"));
            if (QFileInfo::exists(path) && !QFile::remove(path)) {
                return base::Error{
                    70, QStringLiteral("Dosya silinemedi: ") + QDir::toNativeSeparators(path),
                    QStringLiteral("Database:drop")};
            }
        }
        return {};
    }
    for (Store s : {Store::Year, Store::Log}) {
        if (base::Status st
            = exec(QStringLiteral("DROP SCHEMA IF EXISTS %1 CASCADE").arg(location(s, calismaId)),
                   QStringLiteral("Database:drop"));
            !st) {
            return st;
        }
    }
    return {};
}

base::Status Database::openConnection()
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
            return base::Error{76,
                               QStringLiteral("Veri klasörü oluşturulamadı: ")
                                   + QDir::toNativeSeparators(m_settings.dataFolder),
                               QStringLiteral("DatabaseAc")};
        }
        recoverCompactions(m_settings.dataFolder);
        ownerOnly(location(Store::Global));
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
    if (engine() == Engine::SQLite) {
        return prepareSqlite();
    }
    m_sessionReadOnly = false;
    m_readOnlySavepoint = false;
    {
        const QMutexLocker lock(&s_sessionsMutex);
        s_sessions.append(Session{this, QThread::currentThread()});
    }
    return preparePostgres();
}

base::Status Database::prepareSqlite()
{
    if (!registerSqliteFunctions(m_sql)) {
        return base::Error{3146, QStringLiteral("SQLite bağlantısına Türkçe sıralama eklenemedi."),
                           QStringLiteral("DatabaseAc")};
    }
    if (!installWriteGuard(m_sql)) {
        return base::Error{3146, QStringLiteral("SQLite bağlantısına yazma denetimi eklenemedi."),
                           QStringLiteral("DatabaseAc")};
    }
    // The rollback journal, not WAL: its super-journal makes one commit over the global file,
    // the year and its change log atomic, so a crash never keeps a save without its log row.
    // Money files are written with full syncs.
    for (const char *pragma : {"PRAGMA main.journal_mode = DELETE",
                               "PRAGMA main.synchronous = FULL", "PRAGMA foreign_keys = OFF"}) {
        if (base::Status s = exec(QString::fromLatin1(pragma), QStringLiteral("DatabaseAc")); !s)
            return s;
    }
    return {};
}

base::Status Database::preparePostgres()
{
    const QString label = QStringLiteral("DatabaseAc");
    if (base::Status s = exec(QStringLiteral("SET TIME ZONE 'UTC'"), label); !s)
        return s;
    if (base::Status s = exec(QStringLiteral("SET client_min_messages = WARNING"), label); !s)
        return s;
    // The global schema and the date functions that SQLite gets from the program, as SQL
    // functions. The first workstation to find them missing makes them; one that raced it
    // waits for the lock and then finds them made.
    const auto functionsPresent = [this]() {
        QSqlQuery q(m_sql);
        q.exec(QStringLiteral("SELECT count(*) FROM pg_catalog.pg_proc p "
                              "JOIN pg_catalog.pg_namespace n ON n.oid = p.pronamespace "
                              "WHERE n.nspname = 'sabit' "
                              "AND p.proname IN ('year', 'month', 'day', 'datevalue')"));
        return q.next() && q.value(0).toInt() == 4;
    };
    if (!functionsPresent()) {
        Transaction tx(*this);
        if (!tx) {
            return tx.error();
        }
        if (base::Status s = lockSchema(Store::Global); !s) {
            return s;
        }
        // Asked again of the catalogue's tables, which show what another workstation committed
        // while we waited.
        if (!exists(Store::Global, 0)) {
            if (base::Status s = exec(QStringLiteral("CREATE SCHEMA sabit"), label); !s) {
                return s;
            }
        }
        if (!functionsPresent()) {
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
                               "timestamp LANGUAGE sql IMMUTABLE AS $$SELECT date_trunc('day', "
                               "$1)$$"),
            };
            for (const QString &f : functions) {
                if (base::Status s = exec(f, label); !s) {
                    return s;
                }
            }
        }
        if (!tx.commit()) {
            return tx.error();
        }
    }
    return setSearchPath();
}

base::Status Database::setSearchPath()
{
    if (engine() != Engine::PostgreSQL)
        return {};
    QString path = QStringLiteral("sabit");
    if (m_openYear != 0)
        path += QStringLiteral(", ") + location(Store::Year, m_openYear);
    return exec(QStringLiteral("SET search_path TO ") + path, QStringLiteral("DatabaseAc"));
}

base::Status Database::openGlobal()
{
    if (base::Status s = openConnection(); !s)
        return s;
    if (m_globalOpen)
        return {};
    if (base::Status s = prepareGlobalStore(*this); !s)
        return s;
    m_globalOpen = true;
    return {};
}

base::Status Database::openErrorStore()
{
    m_errorStore = true;
    return openConnection();
}

base::Status Database::ensureStore(Store store)
{
    // A store with tables is left as it is, found without taking any lock.
    base::Result<bool> made = m_dialect->hasTables(*this, store);
    if (!made)
        return made.error();
    if (*made)
        return {};
    // A new store is made by one workstation; another one that found it missing at the same
    // time waits for the lock and then finds it made.
    Transaction tx(*this);
    if (!tx) {
        return tx.error();
    }
    if (base::Status s = lockSchema(store); !s) {
        return s;
    }
    // Read from the catalogue's tables, which show what the other workstation committed while
    // we waited (PostgreSQL's own name lookups may not have heard of it yet).
    made = m_dialect->hasTables(*this, store);
    if (!made) {
        return made.error();
    }
    if (!*made) {
        if (engine() == Engine::PostgreSQL && !exists(store, m_openYear)) {
            if (base::Status s
                = exec(QStringLiteral("CREATE SCHEMA ") + location(store, m_openYear),
                       QStringLiteral("DatabaseAc"));
                !s) {
                return s;
            }
        }
        if (base::Status s = store == Store::Log ? YeniTabloEkle(*this) : createModel(*this); !s) {
            return s;
        }
    }
    if (!tx.commit()) {
        return tx.error();
    }
    return {};
}

base::Status Database::lockSchema(Store store)
{
    const QString label = QStringLiteral("Database:lockSchema");
    if (m_depth == 0) {
        return base::Error{
            3146, QStringLiteral("Veri yapısı kilidi yalnız bir işlemin içinde alınır."), label};
    }
    if (engine() == Engine::SQLite) {
        return {};
    }
    const std::pair<qint32, qint32> key = schemaLockKey(store);
    QSqlQuery q(m_sql);
    q.prepare(
        QStringLiteral("SELECT pg_advisory_xact_lock(CAST(? AS integer), CAST(? AS integer))"));
    q.addBindValue(key.first);
    q.addBindValue(key.second);
    if (!q.exec()) {
        return toError(q.lastError(), label, engine());
    }
    return {};
}

std::pair<qint32, qint32> Database::schemaLockKey(Store store) const
{
    // FNV-1a over the schema's name: the same number on every workstation and every run.
    quint32 hash = 2166136261u;
    for (const char c : location(store, m_openYear).toLower().toUtf8()) {
        hash = (hash ^ quint8(c)) * 16777619u;
    }
    return {qint32(0x5A564C4B), qint32(hash)}; // "ZVLK": the schema locks of this program
}

base::Status Database::attachYear(int calismaId)
{
    const QString label = QStringLiteral("DatabaseAc");
    if (m_openYear == calismaId && isOpen(Store::Year))
        return {};
    if (m_openYear != 0)
        detachYear();
    if (base::Status s = openGlobal(); !s)
        return s;

    if (engine() == Engine::SQLite) {
        if (m_maintenance) {
            for (Store s : {Store::Year, Store::Log}) {
                const QString path = location(s, calismaId);
                if (QFileInfo::exists(path)) {
                    if (base::Status st = DatabaseSikistir(path); !st)
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
            ownerOnly(location(file.store, calismaId));
            q.prepare(QStringLiteral("ATTACH DATABASE ? AS %1").arg(QLatin1String(file.alias)));
            q.addBindValue(location(file.store, calismaId));
            if (!q.exec()) {
                const base::Error e = toError(q.lastError(), label, engine());
                q.finish();
                detachYear();
                return e;
            }
            for (const QString &pragma : {QStringLiteral("PRAGMA %1.journal_mode = DELETE"),
                                          QStringLiteral("PRAGMA %1.synchronous = FULL")}) {
                if (base::Status st = exec(pragma.arg(QLatin1String(file.alias)), label); !st) {
                    detachYear();
                    return st;
                }
            }
        }
        m_openYear = calismaId;
    } else {
        // The schemas of a new year are made with their tables, in ensureStore.
        m_openYear = calismaId;
        if (base::Status s = setSearchPath(); !s) {
            m_openYear = 0;
            return s;
        }
    }
    for (Store s : {Store::Year, Store::Log}) {
        if (base::Status st = ensureStore(s); !st) {
            detachYear();
            return st;
        }
    }
    // Reading each file's catalogue has rolled back whatever a kill left half-committed.
    if (engine() == Engine::SQLite)
        removeStraySuperJournals(m_settings.dataFolder);
    return {};
}

void Database::detachYear()
{
    forgetStatements();
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
        (void)setSearchPath();
}

void Database::close()
{
    if (m_depth > 0) {
        QSqlQuery q(m_sql);
        q.exec(QStringLiteral("ROLLBACK"));
        m_depth = 0;
        endOfTransaction();
    }
    ++m_generation;
    detachYear();
    forgetStatements();
    if (m_sql.isOpen())
        m_sql.close();
    m_globalOpen = false;
    forgetSession(this);
}

std::optional<QSqlQuery> Database::takeStatement(const QString &sqlText, bool allowing)
{
    const auto found = m_idleStatements.find(sqlText);
    if (found == m_idleStatements.end()) {
        return std::nullopt;
    }
    QList<IdleStatement> &idle = found.value();
    for (qsizetype i = idle.size() - 1; i >= 0; --i) {
        if (idle[i].allowing == allowing) {
            QSqlQuery query = std::move(idle[i].query);
            idle.removeAt(i);
            return query;
        }
    }
    return std::nullopt;
}

void Database::keepStatement(const QString &sqlText, QSqlQuery query, bool allowing)
{
    // PostgreSQL's prepared statements stay with the server; only SQLite's are kept here.
    if (engine() != Engine::SQLite || !m_sql.isOpen()) {
        return;
    }
    // Reset, so that it holds no read of any file while it waits.
    query.finish();
    // A program names its statements in its code: a few hundred texts at most. A text made
    // with values in it would grow the list without end, which a limit stops.
    if (m_idleStatements.size() >= 512) {
        m_idleStatements.clear();
    }
    QList<IdleStatement> &idle = m_idleStatements[sqlText];
    if (idle.size() < 4) {
        idle.append(IdleStatement{std::move(query), allowing});
    }
}

void Database::forgetStatements()
{
    m_idleStatements.clear();
}

void Database::endOfTransaction()
{
    m_readOnlySavepoint = false;
}

base::Status Database::followWriteGuard()
{
    if (engine() != Engine::PostgreSQL || !m_sql.isOpen()) {
        return {};
    }
    const QString label = QStringLiteral("Database:followWriteGuard");
    const bool readOnly = !writeGuardAllows();
    if (m_depth == 0) {
        if (readOnly == m_sessionReadOnly) {
            return {};
        }
        if (base::Status s = execControl(readOnly ? QStringLiteral("SET SESSION CHARACTERISTICS "
                                                                   "AS TRANSACTION READ ONLY")
                                                  : QStringLiteral("SET SESSION CHARACTERISTICS "
                                                                   "AS TRANSACTION READ WRITE"),
                                         label);
            !s) {
            return s;
        }
        m_sessionReadOnly = readOnly;
        return {};
    }
    // A transaction cannot go back from read-only to read-write, but a savepoint can be made
    // read-only, and releasing it gives the transaction back its own mode. Our transactions
    // begin read-write, so that an exemption inside them can still write.
    if (readOnly == m_readOnlySavepoint) {
        return {};
    }
    if (readOnly) {
        if (base::Status s = execControl(QStringLiteral("SAVEPOINT ") + s_readOnlySavepoint, label);
            !s) {
            return s;
        }
        if (base::Status s = execControl(QStringLiteral("SET TRANSACTION READ ONLY"), label); !s) {
            (void)execControl(QStringLiteral("RELEASE SAVEPOINT ") + s_readOnlySavepoint);
            return s;
        }
    } else if (base::Status s
               = execControl(QStringLiteral("RELEASE SAVEPOINT ") + s_readOnlySavepoint, label);
               !s) {
        return s;
    }
    m_readOnlySavepoint = readOnly;
    return {};
}

bool Database::tryExec(const QString &sqlText)
{
    if (!followWriteGuard()) {
        return false;
    }
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

base::Status Database::exec(const QString &sqlText, const QString &label)
{
    if (base::Status s = followWriteGuard(); !s) {
        return s.error().withLabel(label);
    }
    return execControl(sqlText, label);
}

base::Status Database::execControl(const QString &sqlText, const QString &label)
{
    QSqlQuery q(m_sql);
    if (!q.exec(sqlText))
        return toError(q.lastError(), label, engine());
    return {};
}

// ---- Query ---------------------------------------------------------------------------------

Query::Query(Database &db, const QString &sqlText)
    : m_db(db)
    , m_generation(db.m_generation)
    , m_query(db.sql())
    , m_sql(sqlText)
{
    // Compiling a statement costs about as much as running a small one: an idle one of the
    // same text is taken instead.
    if (std::optional<QSqlQuery> idle = db.takeStatement(m_sql, writeGuardAllows())) {
        m_query = std::move(*idle);
        m_preparedAllowing = writeGuardAllows();
        m_prepared = true;
        return;
    }
    // On PostgreSQL a forward-only result streams row by row, and a second statement run while
    // it is read would cut it short; results are fetched whole there, so that a screen may look
    // something up while it walks a list.
    m_query.setForwardOnly(db.engine() == Engine::SQLite);
    prepare();
}

Query::~Query()
{
    if (m_prepared && !m_bindError && m_generation == m_db.m_generation) {
        m_db.keepStatement(m_sql, std::move(m_query), m_preparedAllowing);
    }
}

void Query::prepare()
{
    m_fault.reset();
    m_preparedAllowing = writeGuardAllows();
    m_prepared = m_query.prepare(m_sql);
    if (m_prepared || m_db.engine() != Engine::SQLite
        || toError(m_query.lastError(), QString(), Engine::SQLite).number
               != YazmaYetkisiYokHatasi) {
        return;
    }
    // Refused by the guard. A statement that the store could not run at all reports that
    // instead, as on PostgreSQL, which asks whether it may write only when it runs a statement
    // it understood. The statement is compiled once more unguarded to find out, and never run.
    QSqlQuery probe(m_db.sql());
    ++s_exemptions;
    const bool understood = probe.prepare(m_sql);
    --s_exemptions;
    if (!understood) {
        m_fault = toError(probe.lastError(), QString(), Engine::SQLite);
    }
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
        if (const std::optional<base::Para> decimal = base::Para::fromDouble(value.toDouble()))
            return bindDecimal(*decimal);
        return refuse(notADecimal(QString(), value));
    default:
        m_query.addBindValue(value);
        return *this;
    }
}

Query &Query::bind(base::Para value)
{
    if (value.overflowed())
        return refuse(base::TutarTasmasi());
    m_query.addBindValue(value.raw());
    return *this;
}

Query &Query::bindDecimal(base::Para value)
{
    // On SQLite the double itself is stored; PostgreSQL gets it as its shortest text, which
    // float8 reads back as the same double.
    const std::optional<double> stored = value.toDouble();
    if (!stored)
        return refuse(base::TutarTasmasi());
    m_query.addBindValue(*stored);
    return *this;
}

Query &Query::refuse(const base::Error &error)
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
    if (m_db.engine() == Engine::SQLite && writeGuardAllows() != m_preparedAllowing) {
        // SQLite's authorizer judged the statement when it was compiled: under another answer
        // of the guard it is compiled again, keeping its values.
        const QVariantList values = m_query.boundValues();
        const bool forwardOnly = m_query.isForwardOnly();
        m_query = QSqlQuery(m_db.sql());
        m_query.setForwardOnly(forwardOnly);
        prepare();
        for (const QVariant &value : values) {
            m_query.addBindValue(value);
        }
    }
    if (!m_prepared)
        return false;
    m_fault.reset();
    if (base::Status s = m_db.followWriteGuard(); !s) {
        m_fault = s.error();
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

base::Result<base::Para> Query::decimal(const QString &field) const
{
    return storedDecimal(field, m_query.value(field));
}

base::Result<base::Para> Query::decimal(int column) const
{
    const QVariant value = m_query.value(column);
    const base::Result<base::Para> decimal = storedDecimal(QString(), value);
    if (decimal || decimal.error().number == base::TasmaHatasi)
        return decimal;
    // Named only on the way out: the record of a PostgreSQL result may cost a query.
    return notADecimal(m_query.record().fieldName(column), value);
}

base::Para Query::para(const QString &field) const
{
    return base::Para::fromRaw(m_query.value(field).toLongLong());
}

base::Para Query::para(int column) const
{
    return base::Para::fromRaw(m_query.value(column).toLongLong());
}

QDateTime Query::dateTime(const QString &field) const
{
    return fromStoredDate(m_query.value(field));
}

QDateTime Query::dateTime(int column) const
{
    return fromStoredDate(m_query.value(column));
}

base::Error Query::error(const QString &label) const
{
    if (m_bindError)
        return m_bindError->withLabel(label);
    if (m_fault) {
        base::Error e = *m_fault;
        e.label = label;
        return e;
    }
    base::Error e = toError(m_query.lastError(), label, m_db.engine());
    if (!m_prepared && e.text.startsWith(QLatin1String("Bilinmeyen")))
        e.text = QStringLiteral("Sorgu hazırlanamadı: ") + m_sql;
    return e;
}

// ---- the write guard -------------------------------------------------------------------------

void setWriteGuard(std::function<bool()> mayWrite)
{
    writeGuard() = std::move(mayWrite);
    followWriteGuardOnThisThread();
}

WriteGuardExemption::WriteGuardExemption()
{
    if (++s_exemptions == 1) {
        followWriteGuardOnThisThread();
    }
}

WriteGuardExemption::~WriteGuardExemption()
{
    if (--s_exemptions == 0) {
        followWriteGuardOnThisThread();
    }
}

bool writeGuardAllows()
{
    return s_exemptions > 0 || !writeGuard() || writeGuard()();
}

base::Error writeRefusal(const QString &label)
{
    return base::Error{YazmaYetkisiYokHatasi,
                       QStringLiteral("Değişiklik yapma yetkiniz yok. Lütfen sistem yetkilisi ile "
                                      "görüşünüz"),
                       label};
}

// ---- Transaction ---------------------------------------------------------------------------

Transaction::Transaction(Database &db, Mode mode)
    : m_db(db)
{
    const bool outermost = m_db.m_depth == 0;
    if (outermost) {
        // PostgreSQL: read-write whatever the session's default, so that an exemption inside
        // the transaction can write; the write guard makes it read-only where it says no.
        const QString begin = m_db.engine() == Engine::PostgreSQL
                                  ? QStringLiteral("BEGIN READ WRITE")
                              : mode == Mode::Immediate ? QStringLiteral("BEGIN IMMEDIATE")
                                                        : QStringLiteral("BEGIN");
        if (base::Status s = m_db.execControl(begin, QStringLiteral("Transaction")); !s) {
            m_error = s.error();
            return;
        }
        m_db.m_rollbackOnly = false;
        m_db.endOfTransaction();
    }
    ++m_db.m_depth;
    m_generation = m_db.m_generation;
    m_active = true;
    if (outermost) {
        if (base::Status s = m_db.followWriteGuard(); !s) {
            m_error = s.error();
            rollback();
            m_active = false;
        }
    }
}

bool Transaction::stillOpen()
{
    if (m_generation == m_db.m_generation)
        return true;
    m_done = true;
    m_error = base::Error{3146, QStringLiteral("Bağlantı kapandığı için işlem geri alındı."),
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
        (void)m_db.execControl(QStringLiteral("ROLLBACK"));
        m_db.endOfTransaction();
        m_error = base::Error{3146,
                              QStringLiteral("İşlemin bir adımı başarısız olduğu için hiçbir "
                                             "değişiklik kaydedilmedi."),
                              QStringLiteral("Transaction")};
        return false;
    }
    const base::Status committed
        = m_db.execControl(QStringLiteral("COMMIT"), QStringLiteral("Transaction"));
    if (!committed) {
        m_error = committed.error();
        (void)m_db.execControl(QStringLiteral("ROLLBACK"));
    }
    m_db.endOfTransaction();
    return committed.ok();
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
    (void)m_db.execControl(QStringLiteral("ROLLBACK"));
    m_db.endOfTransaction();
}

// ---- the opening procedure ---------------------------------------------------------------

namespace {

// A store that could not be opened: the reporter's failure, with the words the operator reads.
base::Error notOpened(Store tur, const QString &file)
{
    const QString notice = tur == Store::Log
                               ? QStringLiteral("Programın Log Veri Dosyası Bulunamadı. (%1)")
                               : QStringLiteral("Programın Veri Dosyası Bulunamadı. (%1)");
    base::Error e{3044,
                  tur == Store::Global ? QStringLiteral("Veri dosyası açılamadı.")
                                       : QStringLiteral("Çalışma dosyası açılamadı."),
                  QStringLiteral("DatabaseAc")};
    e.bildiri = base::Bildiri{QStringLiteral("Dikkat!"), notice.arg(file), base::Icon::Warning};
    return e;
}

} // namespace

base::Result<Acilis> openStore(Database &db, Store tur, bool guncelle)
{
    // Making and bringing forward the stores is the program's own work, whoever is logged in.
    const WriteGuardExemption own;
    if (tur == Store::Global) {
        if (base::Status s = db.openGlobal(); !s) {
            qCWarning(lcStore).noquote() << s.error().text;
            return notOpened(Store::Global, db.location(Store::Global));
        }
        return Acilis{};
    }

    const int year = db.selectedYear();
    if (year == 0) {
        // No working year chosen: the file has no name yet.
        return notOpened(Store::Year, QString());
    }
    // A different working year ends every connection of the old one.
    if (db.openYear() != 0 && db.openYear() != year)
        DatabaseKapat(db);
    if (base::Status s = db.attachYear(year); !s) {
        qCWarning(lcStore).noquote() << s.error().text;
        return notOpened(tur, db.location(tur, year));
    }
    Acilis acilis;
    if (tur == Store::Year && guncelle) {
        if (base::Status s = DatabaseGuncelle(db); !s)
            acilis.guncelleme = s.error();
    }
    return acilis;
}

bool DatabaseAc(Database &db, Store tur, bool sessiz, bool guncelle)
{
    const base::Result<Acilis> acilis = openStore(db, tur, guncelle);
    if (!acilis) {
        if (!sessiz && acilis.error().bildiri)
            showMessage(*acilis.error().bildiri);
        return false;
    }
    if (acilis->guncelleme && acilis->guncelleme->bildiri)
        showMessage(*acilis->guncelleme->bildiri);
    return true;
}

Operation::Operation(Database &db, Store tur, QString label, Notice notice)
    : m_label(std::move(label))
{
    base::Result<Acilis> acilis = openStore(db, tur, false);
    if (acilis)
        return;
    base::Error e = acilis.error();
    e.label = m_label;
    if (notice == Notice::Quiet)
        e.bildiri.reset();
    m_error = std::move(e);
}

base::Error Operation::error() const
{
    return m_error.value_or(base::Error{});
}

base::Error Operation::failed(const Query &q) const
{
    return q.error(m_label);
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

base::Status DatabaseSikistir(const QString &yol)
{
    const QString label = QStringLiteral("DatabaseSikistir");
    const QString tmp = yol + QStringLiteral("_tmp");
    const QString old = yol + QStringLiteral("_old");
    // What an interrupted run left is put right first: the old file may be the only copy.
    recoverCompactions(QFileInfo(yol).absolutePath());
    QFile::remove(tmp);
    QFile::remove(old);
    const QString name = uniqueConnectionName();
    base::Status result;
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
    // The copy stands on the disk before it takes the store's name, and the names stand on the
    // disk before the year is opened again.
    ownerOnly(tmp);
    if (!base::diskeYaz(tmp)) {
        QFile::remove(tmp);
        return base::Error{61, QStringLiteral("Dosya diske yazılamadı: ") + tmp, label};
    }
    if (!QFile::rename(yol, old)) {
        QFile::remove(tmp);
        return base::Error{70, QStringLiteral("Dosya yeniden adlandırılamadı: ") + yol, label};
    }
    if (!QFile::rename(tmp, yol)) {
        QFile::rename(old, yol);
        return base::Error{70, QStringLiteral("Dosya yeniden adlandırılamadı: ") + tmp, label};
    }
    base::klasoruDiskeYaz(QFileInfo(yol).absolutePath());
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
