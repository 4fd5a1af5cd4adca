#pragma once

#include "shell/para.h"
#include "shell/result.h"

#include <QDateTime>
#include <QSqlDatabase>
#include <QSqlQuery>
#include <QString>
#include <QVariant>

#include <functional>
#include <memory>
#include <optional>

namespace store {

enum class Engine { SQLite, PostgreSQL };

// The three logical stores, numbered as the opening procedure knows them.
enum class Store {
    Global = 1, // working years, users, rights, settings
    Year = 2,   // the data of one working year
    Log = 3,    // the change log of that year
};

// Where the data lives. With nothing else given the program keeps its files in ./data.
struct ConnectionSettings
{
    Engine engine = Engine::SQLite;
    QString dataFolder; // SQLite: the folder of Sabit.db, AidatNNN.db, LAidatNNN.db
    QString host;       // PostgreSQL: a host name or a socket folder
    int port = 5432;
    QString database;
    QString user;
    QString password;

    static ConnectionSettings sqlite(const QString &folder);
    // A libpq keyword text: "host=/tmp port=5432 dbname=okul user=vortel password=...".
    static std::optional<ConnectionSettings> fromConnInfo(const QString &conninfo);
    QString describe() const;
};

// Messages that the store itself shows (a missing data file, a failed migration). The shell
// routes them to the screen's message boxes; the default writes them to the log.
enum class MessageKind { Information, Warning, Critical };
using MessageHandler
    = std::function<void(MessageKind kind, const QString &title, const QString &text)>;
void setMessageHandler(MessageHandler handler);
void showMessage(MessageKind kind, const QString &title, const QString &text);

class Dialect;

// One session's connection. On SQLite the global file is the main database and the working
// year's two files are attached to it under the fixed names "aidat" and "laidat", so that a save
// and its change-log row commit together (the rollback journal's super-journal makes a commit
// over several files atomic). On PostgreSQL the three stores are schemas of one database:
// "sabit", "aidatNNN" and "laidatNNN". Unqualified table names reach the global store first and
// the working year next; change-log tables are always named through table(Store::Log, ...).
class Database
{
public:
    explicit Database(const ConnectionSettings &settings);
    ~Database();
    Database(const Database &) = delete;
    Database &operator=(const Database &) = delete;

    const ConnectionSettings &settings() const { return m_settings; }
    Engine engine() const { return m_settings.engine; }
    const Dialect &dialect() const { return *m_dialect; }
    QSqlDatabase sql() const { return m_sql; }

    // The working year that the working-year screen chose (0: none yet).
    void selectYear(int calismaId) { m_selectedYear = calismaId; }
    int selectedYear() const { return m_selectedYear; }
    // The working year whose stores are open on this connection (0: none).
    int openYear() const { return m_openYear; }
    // "Dosyaya Bakım Yap": compact a store before it is opened.
    void setMaintenance(bool on) { m_maintenance = on; }
    bool maintenance() const { return m_maintenance; }

    bool isOpen(Store store) const;
    // The qualifier of a store in SQL text, and a table of it, qualified.
    QString schema(Store store) const;
    QString table(Store store, const QString &name) const;
    // The file (SQLite) or schema (PostgreSQL) that holds a store of a given working year.
    QString location(Store store, int calismaId = 0) const;
    bool exists(Store store, int calismaId) const;
    // Removes a working year's two stores.
    shell::Status drop(int calismaId);

    // Connection steps used by the opening procedure.
    shell::Status openGlobal();
    // Opens this connection on the error store instead: on SQLite the file HATALAR.db of the
    // data folder, which no save ever locks; on PostgreSQL the global schema.
    shell::Status openErrorStore();
    shell::Status attachYear(int calismaId);
    void detachYear();
    void close();

    // Runs a statement whose failure is an answer, not an error: inside a transaction it is
    // fenced by a savepoint so that PostgreSQL's transaction survives the failure.
    bool tryExec(const QString &sqlText);
    shell::Status exec(const QString &sqlText, const QString &label = QString());

    // Transaction bookkeeping for store::Transaction.
    int transactionDepth() const { return m_depth; }

private:
    friend class Transaction;

    shell::Status openConnection();
    shell::Status prepareSqlite();
    shell::Status preparePostgres();
    shell::Status setSearchPath();
    shell::Status ensureStore(Store store);

    ConnectionSettings m_settings;
    std::unique_ptr<Dialect> m_dialect;
    QString m_connectionName;
    QSqlDatabase m_sql;
    int m_selectedYear = 0;
    int m_openYear = 0;
    bool m_maintenance = false;
    bool m_globalOpen = false;
    bool m_errorStore = false;
    int m_depth = 0;
    int m_generation = 0; // counts closings: a transaction of a closed connection is over
    bool m_rollbackOnly = false;
    int m_savepoint = 0;
};

// A prepared statement with values bound in order, converting money, dates and flags to the
// form the engine keeps them in, and reading them back the same way.
class Query
{
public:
    Query(Database &db, const QString &sqlText);

    Query &bind(const QVariant &value);
    Query &bind(const QString &value) { return bind(QVariant(value)); }
    Query &bind(const char *value) { return bind(QVariant(QString::fromUtf8(value))); }
    Query &bind(int value) { return bind(QVariant(value)); }
    Query &bind(qint64 value) { return bind(QVariant(value)); }
    // No floating point reaches the store: a Single or Double column takes bindDecimal.
    Query &bind(double value) = delete;
    Query &bind(float value) = delete;
    Query &bind(bool value) { return bind(QVariant(value ? 1 : 0)); }
    // A Money column: BIGINT ten-thousandths. An amount that overflowed on its way here is
    // refused: the statement does not run, and error() gives TutarTasmasi.
    Query &bind(shell::Para value);
    // A Single or Double column (rates, discount values, document numbers): the double that
    // reads back as the same decimal on both engines (18 as 18, 0,1 as 0.1, 33,3333 as
    // 33.3333). An amount that no double keeps to the last ten-thousandth (beyond some 549
    // billion) is refused alike.
    Query &bindDecimal(shell::Para value);
    Query &bind(const QDate &value);
    Query &bind(const QDateTime &value);
    Query &bindNull() { return bind(QVariant()); }

    [[nodiscard]] bool exec();
    bool next() { return m_query.next(); }
    bool first() { return m_query.first(); }
    int rowsAffected() const { return m_query.numRowsAffected(); }
    void finish() { m_query.finish(); }

    QVariant value(int column) const { return m_query.value(column); }
    QVariant value(const QString &field) const { return m_query.value(field); }
    bool isNull(const QString &field) const { return m_query.isNull(field); }
    // Null as "", trimmed.
    QString text(const QString &field) const;
    QString text(int column) const;
    qint64 integer(const QString &field) const;
    qint64 integer(int column) const;
    // A Single or Double column, read as the decimal that the engine's double stands for:
    // 18 -> 18, 0.1 -> 0,1, 7.5 -> 7,5. Null reads as 0. A value with more than four decimals,
    // or beyond the range, or no number at all, is an error: nothing is rounded or cut to fit.
    shell::Result<shell::Para> decimal(const QString &field) const;
    shell::Result<shell::Para> decimal(int column) const;
    shell::Para para(const QString &field) const;
    shell::Para para(int column) const;
    // Null or unreadable as an invalid QDateTime; the zero date comes back as the zero date.
    QDateTime dateTime(const QString &field) const;
    QDateTime dateTime(int column) const;
    QDate date(const QString &field) const { return dateTime(field).date(); }

    shell::Error error(const QString &label) const;
    QSqlQuery &raw() { return m_query; }

private:
    // A value that the store cannot keep as given: the statement is not run, and error() says
    // why.
    Query &refuse(const shell::Error &error);

    Database &m_db;
    QSqlQuery m_query;
    QString m_sql;
    bool m_prepared = false;
    bool m_refused = false;
    std::optional<shell::Error> m_bindError;
};

// RAII and nesting: an inner transaction joins the outer one; the outermost commits. A
// transaction that is not committed rolls back when it leaves scope, and an inner one that
// rolled back makes the outer commit fail, so that nothing is ever written half.
class Transaction
{
public:
    // Immediate: on SQLite the write lock is taken at the start, so two workstations never
    // deadlock on upgrading a read to a write; the price is a synced commit even when nothing
    // changed. Deferred: locks only what is written; for runs of steps that mostly change
    // nothing, such as the migration of an up-to-date year.
    enum class Mode { Immediate, Deferred };

    explicit Transaction(Database &db, Mode mode = Mode::Immediate);
    ~Transaction();
    Transaction(const Transaction &) = delete;
    Transaction &operator=(const Transaction &) = delete;

    explicit operator bool() const { return m_active; }
    const shell::Error &error() const { return m_error; }
    [[nodiscard]] bool commit();
    void rollback();

private:
    // False when the connection was closed under the transaction: it is over, rolled back.
    bool stillOpen();

    Database &m_db;
    int m_generation = 0;
    bool m_active = false;
    bool m_done = false;
    shell::Error m_error;
};

// The engine's error turned into the reporter's form: a number the failure table knows where
// one fits (3260 for a record held by another user, 3075 for a malformed statement, 61 for a
// full disk...), the engine's own text and the label.
shell::Error toError(const QSqlError &error, const QString &label, Engine engine);

// Values as the engines keep them.
QVariant toStoredDate(Engine engine, const QDateTime &value);
QDateTime fromStoredDate(const QVariant &value);

// ---- the write guard ----------------------------------------------------------------------

// Rights are checked where the data is written, not only in the screens: with a guard set, a
// statement that writes (INSERT, UPDATE, DELETE) is refused while the guard says no, so that no
// screen can forget the test. The program's own bookkeeping (the migration, the marks on a
// student, the login, settings) runs under a WriteGuardExemption.
void setWriteGuard(std::function<bool()> mayWrite);
class WriteGuardExemption
{
public:
    WriteGuardExemption();
    ~WriteGuardExemption();
    WriteGuardExemption(const WriteGuardExemption &) = delete;
    WriteGuardExemption &operator=(const WriteGuardExemption &) = delete;
};
// The error number and text of a refused write.
inline constexpr int YazmaYetkisiYokHatasi = 3111;

// ---- the opening procedure ---------------------------------------------------------------

// The one way to a store: opens (or creates at the model shape) the store of the given kind on
// the connection, and with `guncelle` brings a working year to the current schema. Kind 2 needs
// a chosen working year; kind 3 is the change log of that year. Messages are shown unless
// `sessiz`. True when the store is usable.
bool DatabaseAc(Database &db, Store tur, bool sessiz, bool guncelle);
// DatabaseAc at the head of an operation, quietly: the store is open, or the error that says
// it could not be, under the operation's label.
shell::Status ensureOpen(Database &db, Store tur, const QString &label);
// Closes every store of the connection; the next DatabaseAc opens afresh.
void DatabaseKapat(Database &db);
// True while the connection answers and the store of that kind is open on it.
bool DatabaseAcikMi(Database &db, Store tur);
// Compacts one SQLite file: VACUUM INTO yol_tmp, then yol -> yol_old and yol_tmp -> yol; a
// leftover _tmp or _old of an earlier failed run is removed first.
shell::Status DatabaseSikistir(const QString &yol);

// The process-wide connection of the running program.
void setDefaultDatabase(Database *db);
Database &defaultDatabase();
bool hasDefaultDatabase();

} // namespace store
