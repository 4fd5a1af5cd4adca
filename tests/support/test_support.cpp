#include "test_support.h"

#include "store/migration.h"

#include <QCoreApplication>
#include <QFile>
#include <QSqlDatabase>
#include <QSqlError>
#include <QSqlQuery>
#include <QTest>
#include <QUuid>

#include <atomic>
#include <thread>

using namespace Qt::StringLiterals;

namespace testing {

std::optional<QString> postgresConnInfo()
{
    const QString direct = qEnvironmentVariable("VORTEL_TEST_PG");
    if (!direct.trimmed().isEmpty())
        return direct.trimmed();
    const QString file = qEnvironmentVariable("VORTEL_TEST_PG_FILE");
    if (file.isEmpty())
        return std::nullopt;
    QFile f(file);
    if (!f.open(QIODevice::ReadOnly))
        return std::nullopt;
    const QString text = QString::fromUtf8(f.readAll()).trimmed();
    if (text.isEmpty())
        return std::nullopt;
    return text;
}

namespace {

bool runAdmin(const QString &conninfo, const QString &statement, QString *error)
{
    const std::optional<store::ConnectionSettings> s
        = store::ConnectionSettings::fromConnInfo(conninfo);
    if (!s) {
        *error = u"VORTEL_TEST_PG okunamadı: "_s + conninfo;
        return false;
    }
    const QString name = u"admin-"_s + QUuid::createUuid().toString(QUuid::Id128);
    bool ok = false;
    {
        QSqlDatabase db = QSqlDatabase::addDatabase(u"QPSQL"_s, name);
        db.setHostName(s->host);
        db.setPort(s->port);
        db.setDatabaseName(s->database);
        db.setUserName(s->user);
        db.setPassword(s->password);
        if (!db.open()) {
            *error = db.lastError().text();
        } else {
            QSqlQuery q(db);
            ok = q.exec(statement);
            if (!ok)
                *error = q.lastError().text();
        }
        db.close();
    }
    QSqlDatabase::removeDatabase(name);
    return ok;
}

} // namespace

TestStore::TestStore(store::Engine engine)
    : m_engine(engine)
{
    if (engine == store::Engine::SQLite) {
        m_folder = std::make_unique<QTemporaryDir>();
        m_settings = store::ConnectionSettings::sqlite(m_folder->path() + u"/data"_s);
        m_db = std::make_unique<store::Database>(m_settings);
        m_valid = true;
        return;
    }
    const std::optional<QString> conninfo = postgresConnInfo();
    if (!conninfo) {
        m_skipReason = u"PostgreSQL sunucusu verilmedi (VORTEL_TEST_PG)"_s;
        return;
    }
    m_adminConnInfo = *conninfo;
    m_pgDatabase = u"vortel_t_"_s + QUuid::createUuid().toString(QUuid::Id128).left(16);
    QString error;
    if (!runAdmin(m_adminConnInfo, u"CREATE DATABASE "_s + m_pgDatabase, &error)) {
        m_skipReason = u"PostgreSQL deneme veritabanı açılamadı: "_s + error;
        return;
    }
    std::optional<store::ConnectionSettings> s
        = store::ConnectionSettings::fromConnInfo(m_adminConnInfo);
    s->database = m_pgDatabase;
    m_settings = *s;
    m_db = std::make_unique<store::Database>(m_settings);
    m_valid = true;
}

TestStore::~TestStore()
{
    m_db.reset();
    if (!m_pgDatabase.isEmpty()) {
        QString error;
        runAdmin(m_adminConnInfo, u"DROP DATABASE IF EXISTS %1 WITH (FORCE)"_s.arg(m_pgDatabase),
                 &error);
    }
}

std::unique_ptr<store::Database> TestStore::newConnection() const
{
    return std::make_unique<store::Database>(m_settings);
}

bool TestStore::openYear(int calismaId)
{
    if (!store::DatabaseAc(*m_db, store::Store::Global, true, false))
        return false;
    m_db->selectYear(calismaId);
    if (!store::DatabaseAc(*m_db, store::Store::Year, true, true))
        return false;
    return true;
}

QVariant scalar(store::Database &db, const QString &sqlText, const QVariantList &values)
{
    store::Query q(db, sqlText);
    for (const QVariant &v : values)
        q.bind(v);
    if (!q.exec() || !q.next())
        return QVariant();
    return q.value(0);
}

bool run(store::Database &db, const QString &sqlText, const QVariantList &values)
{
    store::Query q(db, sqlText);
    for (const QVariant &v : values)
        q.bind(v);
    if (!q.exec()) {
        qWarning("%s", qPrintable(q.error(QString()).text));
        return false;
    }
    return true;
}

int count(store::Database &db, const QString &table, const QString &where,
          const QVariantList &values)
{
    const QString sqlText
        = u"SELECT COUNT(*) FROM "_s + table + (where.isEmpty() ? QString() : u" WHERE "_s + where);
    const QVariant n = scalar(db, sqlText, values);
    return n.isValid() ? n.toInt() : -1;
}

QVariant field(store::Database &db, const QString &table, const QString &column, qint64 kayitId)
{
    return scalar(db, u"SELECT %1 FROM %2 WHERE KayitID = ?"_s.arg(column, table), {kayitId});
}

QList<store::Engine> engines()
{
    // CTest runs a store test once per engine; run by hand, it takes both.
    const QString only = qEnvironmentVariable("VORTEL_TEST_ENGINES");
    if (only == "sqlite"_L1)
        return {store::Engine::SQLite};
    if (only == "postgres"_L1)
        return {store::Engine::PostgreSQL};
    return {store::Engine::SQLite, store::Engine::PostgreSQL};
}

const char *engineName(store::Engine engine)
{
    return engine == store::Engine::SQLite ? "sqlite" : "postgres";
}

void addEngineRows()
{
    QTest::addColumn<int>("engine");
    for (store::Engine e : engines())
        QTest::addRow("%s", engineName(e)) << int(e);
}

StoreMessages::StoreMessages()
{
    store::setMessageHandler([this](store::MessageKind, const QString &title, const QString &text) {
        m_titles.append(title);
        m_texts.append(text);
    });
}

StoreMessages::~StoreMessages()
{
    store::setMessageHandler(nullptr);
}

QStringList raceTwo(const store::ConnectionSettings &settings,
                    const std::function<QString(store::Database &db, int which)> &work)
{
    std::atomic<int> ready{0};
    QString failures[2];
    auto workstation = [&](int which) {
        store::Database db(settings);
        db.selectYear(1);
        const bool opened = store::DatabaseAc(db, store::Store::Year, true, false);
        if (opened && db.engine() == store::Engine::SQLite) {
            for (const char *file : {"main", "aidat", "laidat"}) {
                (void)db.exec(
                    QStringLiteral("PRAGMA %1.synchronous = OFF").arg(QLatin1String(file)));
            }
        }
        ++ready;
        while (ready < 2) {
            std::this_thread::yield();
        }
        failures[which] = opened ? work(db, which) : QStringLiteral("açılamadı");
    };
    std::thread first(workstation, 0);
    std::thread second(workstation, 1);
    first.join();
    second.join();
    QStringList out;
    for (const QString &f : failures) {
        if (!f.isEmpty()) {
            out << f;
        }
    }
    return out;
}

} // namespace testing
