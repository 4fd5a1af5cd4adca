#include "test_support.h"

#include "store/migration.h"

#include <QCoreApplication>
#include <QFile>
#include <QSqlDatabase>
#include <QSqlError>
#include <QSqlQuery>
#include <QTest>
#include <QUuid>

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
        *error = QStringLiteral("VORTEL_TEST_PG okunamadı: ") + conninfo;
        return false;
    }
    const QString name = QStringLiteral("admin-") + QUuid::createUuid().toString(QUuid::Id128);
    bool ok = false;
    {
        QSqlDatabase db = QSqlDatabase::addDatabase(QStringLiteral("QPSQL"), name);
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
        m_settings = store::ConnectionSettings::sqlite(m_folder->path() + QStringLiteral("/data"));
        m_db = std::make_unique<store::Database>(m_settings);
        m_valid = true;
        return;
    }
    const std::optional<QString> conninfo = postgresConnInfo();
    if (!conninfo) {
        m_skipReason = QStringLiteral("PostgreSQL sunucusu verilmedi (VORTEL_TEST_PG)");
        return;
    }
    m_adminConnInfo = *conninfo;
    m_pgDatabase
        = QStringLiteral("vortel_t_") + QUuid::createUuid().toString(QUuid::Id128).left(16);
    QString error;
    if (!runAdmin(m_adminConnInfo, QStringLiteral("CREATE DATABASE ") + m_pgDatabase, &error)) {
        m_skipReason = QStringLiteral("PostgreSQL deneme veritabanı açılamadı: ") + error;
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
        runAdmin(m_adminConnInfo,
                 QStringLiteral("DROP DATABASE IF EXISTS %1 WITH (FORCE)").arg(m_pgDatabase),
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

QList<store::Engine> engines()
{
    // CTest runs a store test once per engine; run by hand, it takes both.
    const QString only = qEnvironmentVariable("VORTEL_TEST_ENGINES");
    if (only == QLatin1String("sqlite"))
        return {store::Engine::SQLite};
    if (only == QLatin1String("postgres"))
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

} // namespace testing
