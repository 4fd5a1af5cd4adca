#pragma once

#include "base/para.h"
#include "base/result.h"

#include <QDateTime>
#include <QHash>
#include <QList>
#include <QSqlDatabase>
#include <QSqlQuery>
#include <QString>
#include <QVariant>

#include <functional>
#include <memory>
#include <optional>
#include <utility>

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

// What DatabaseAc has to say to the operator (a missing data file, a failed migration) goes to
// this handler, which the screens install; without one it goes to the log. Nothing else in the
// store shows anything: the opening gives its notices back as values (openStore).
enum class MessageKind { Information, Warning, Critical };
using MessageHandler
    = std::function<void(MessageKind kind, const QString &title, const QString &text)>;
void setMessageHandler(MessageHandler handler);

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
    base::Status drop(int calismaId);

    // Connection steps used by the opening procedure.
    base::Status openGlobal();
    // Opens this connection on the error store instead: on SQLite the file HATALAR.db of the
    // data folder, which no save ever locks; on PostgreSQL the global schema.
    base::Status openErrorStore();
    base::Status attachYear(int calismaId);
    void detachYear();
    void close();

    // Runs a statement whose failure is an answer, not an error: inside a transaction it is
    // fenced by a savepoint so that PostgreSQL's transaction survives the failure.
    bool tryExec(const QString &sqlText);
    base::Status exec(const QString &sqlText, const QString &label = QString());

    // Transaction bookkeeping for store::Transaction.
    int transactionDepth() const { return m_depth; }

    // The shape of a store is changed by one workstation at a time. Inside a transaction this
    // holds the store against the others until the transaction ends: on PostgreSQL an advisory
    // lock on the store's schema (the same key on every workstation); on SQLite the immediate
    // transaction already holds the write lock of every file, and nothing more is taken. What
    // was read before is read again after it.
    base::Status lockSchema(Store store);
    // The advisory lock key of a store's schema on PostgreSQL: a fixed first half naming this
    // program's schema locks, and the schema's name hashed.
    std::pair<qint32, qint32> schemaLockKey(Store store) const;

    // Brings a PostgreSQL session in line with the write guard before a statement: while the
    // guard says no, autocommit statements run in read-only transactions and a transaction of
    // ours runs its statements inside a read-only savepoint, left again as soon as an
    // exemption begins. Every statement of the store passes through it; a statement run on the
    // raw connection follows the state that the last one set. Nothing to do on SQLite, whose
    // authorizer asks the guard itself.
    base::Status followWriteGuard();

private:
    friend class Transaction;
    friend class Query;

    // SQLite statements compiled earlier and idle now, by their text, with the write guard's
    // answer at compiling. A Query takes one instead of compiling its text again and gives it
    // back, reset, when it ends. Forgotten when a file is detached or the connection closes.
    struct IdleStatement
    {
        QSqlQuery query;
        bool allowing = true;
    };
    std::optional<QSqlQuery> takeStatement(const QString &sqlText, bool allowing);
    void keepStatement(const QString &sqlText, QSqlQuery query, bool allowing);
    void forgetStatements();

    base::Status openConnection();
    base::Status prepareSqlite();
    base::Status preparePostgres();
    base::Status setSearchPath();
    base::Status ensureStore(Store store);
    // Transaction control, which never waits for the guard.
    base::Status execControl(const QString &sqlText, const QString &label = QString());
    void endOfTransaction();

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
    // PostgreSQL and the write guard: the session's transactions are read-only; the read-only
    // savepoint is open in the current transaction.
    bool m_sessionReadOnly = false;
    bool m_readOnlySavepoint = false;
    QHash<QString, QList<IdleStatement>> m_idleStatements;
};

// A prepared statement with values bound in order, converting money, dates and flags to the
// form the engine keeps them in, and reading them back the same way.
class Query
{
public:
    Query(Database &db, const QString &sqlText);
    ~Query();
    Query(const Query &) = delete;
    Query &operator=(const Query &) = delete;

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
    Query &bind(base::Para value);
    // A Single or Double column (rates, discount values, document numbers): the double that
    // reads back as the same decimal on both engines (18 as 18, 0,1 as 0.1, 33,3333 as
    // 33.3333). An amount that no double keeps to the last ten-thousandth (beyond some 549
    // billion) is refused alike.
    Query &bindDecimal(base::Para value);
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
    base::Result<base::Para> decimal(const QString &field) const;
    base::Result<base::Para> decimal(int column) const;
    base::Para para(const QString &field) const;
    base::Para para(int column) const;
    // Null or unreadable as an invalid QDateTime; the zero date comes back as the zero date.
    QDateTime dateTime(const QString &field) const;
    QDateTime dateTime(int column) const;
    QDate date(const QString &field) const { return dateTime(field).date(); }

    base::Error error(const QString &label) const;
    QSqlQuery &raw() { return m_query; }

private:
    void prepare();
    // A value that the store cannot keep as given: the statement is not run, and error() says
    // why.
    Query &refuse(const base::Error &error);

    Database &m_db;
    int m_generation = 0; // the connection's, when the statement was compiled
    QSqlQuery m_query;
    QString m_sql;
    bool m_prepared = false;
    // What the write guard allowed when the statement was compiled: on SQLite the guard is
    // asked at compile time, so a statement run under another answer is compiled again.
    bool m_preparedAllowing = true;
    std::optional<base::Error> m_fault; // a failure that the engine's last error does not tell
    std::optional<base::Error> m_bindError;
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
    const base::Error &error() const { return m_error; }
    [[nodiscard]] bool commit();
    void rollback();

private:
    // False when the connection was closed under the transaction: it is over, rolled back.
    bool stillOpen();

    Database &m_db;
    int m_generation = 0;
    bool m_active = false;
    bool m_done = false;
    base::Error m_error;
};

// The engine's error turned into the reporter's form: a number the failure table knows where
// one fits (3260 for a record held by another user, 3075 for a malformed statement, 61 for a
// full disk...), the engine's own text and the label.
base::Error toError(const QSqlError &error, const QString &label, Engine engine);

// Values as the engines keep them.
QVariant toStoredDate(Engine engine, const QDateTime &value);
QDateTime fromStoredDate(const QVariant &value);

// ---- the write guard ----------------------------------------------------------------------

// Rights are checked where the data is written, not only in the screens: with a guard set, the
// engine refuses every statement that would change a store (INSERT, UPDATE, DELETE, and any
// CREATE, DROP or ALTER), however it is written and whichever way it is run, while the guard
// says no. SQLite asks the guard through the connection's authorizer when it compiles a
// statement; PostgreSQL runs the session's work read-only (see Database::followWriteGuard).
// Temporary tables may be written on SQLite; PostgreSQL lets a read-only transaction fill a
// temporary table but not create one. The program's own bookkeeping (the migration, the marks
// on a student, the login, settings) runs under a WriteGuardExemption, which holds for the
// thread that opened it.
void setWriteGuard(std::function<bool()> mayWrite);
class WriteGuardExemption
{
public:
    WriteGuardExemption();
    ~WriteGuardExemption();
    WriteGuardExemption(const WriteGuardExemption &) = delete;
    WriteGuardExemption &operator=(const WriteGuardExemption &) = delete;
};
// True when this thread may change a store now: no guard, the guard says yes, or an exemption
// is open.
bool writeGuardAllows();
// The error number and text of a refused write.
inline constexpr int YazmaYetkisiYokHatasi = 3111;
base::Error writeRefusal(const QString &label);

// ---- the opening procedure ---------------------------------------------------------------

// The one way to a store: opens (or creates at the model shape) the store of the given kind on
// the connection, and with `guncelle` brings a working year to the current schema. Kind 2 needs
// a chosen working year; kind 3 is the change log of that year. Shows nothing: a store that is
// not usable is an error 3044 ("Veri dosyası açılamadı.", "Çalışma dosyası açılamadı." for a
// year) whose notice tells the operator so ("Programın Veri Dosyası Bulunamadı. (<file>)" under
// "Dikkat!"). A failed migration leaves the year usable at the steps done so far; its error,
// with the notice "Database güncellemede hata!" under "HATA", comes back in `guncelleme`.
struct Acilis
{
    std::optional<base::Error> guncelleme;
};
base::Result<Acilis> openStore(Database &db, Store tur, bool guncelle);

// The opening procedure as the screens call it: openStore, with its notices handed to the
// message handler (unless `sessiz`; a failed migration's always). True when the store is usable.
bool DatabaseAc(Database &db, Store tur, bool sessiz, bool guncelle);

// The head of every operation on the data: the store it needs is opened, and what fails is told
// under the operation's "Form:Procedure" label. A data function reads
//
//     const store::Operation op(db, store::Store::Year, QStringLiteral("FrmX:Procedure"));
//     if (!op)
//         return op.error();
//     store::Query q(db, ...);
//     if (!q.exec())
//         return op.failed(q);
//
// An operation that could not open its store fails with error 3044 under its own label,
// carrying the opening's notice for the operator unless it runs Quiet (the background's
// figures, which the main window has already said everything about).
class Operation
{
public:
    enum class Notice { Told, Quiet };

    Operation(Database &db, Store tur, QString label, Notice notice = Notice::Told);

    explicit operator bool() const { return !m_error.has_value(); }
    const QString &label() const { return m_label; }
    // Why the store is not open.
    base::Error error() const;
    // A statement's failure under the operation's label.
    base::Error failed(const Query &q) const;

private:
    QString m_label;
    std::optional<base::Error> m_error;
};

// Closes every store of the connection; the next DatabaseAc opens afresh.
void DatabaseKapat(Database &db);
// True while the connection answers and the store of that kind is open on it.
bool DatabaseAcikMi(Database &db, Store tur);
// Compacts one SQLite file: VACUUM INTO yol_tmp, then yol -> yol_old and yol_tmp -> yol; a
// leftover _tmp or _old of an earlier failed run is removed first.
base::Status DatabaseSikistir(const QString &yol);

// The process-wide connection of the running program.
void setDefaultDatabase(Database *db);
Database &defaultDatabase();
bool hasDefaultDatabase();

} // namespace store
