#pragma once

#include "store/database.h"

#include <QList>
#include <QStringList>
#include <QTemporaryDir>

#include <functional>
#include <memory>
#include <optional>

namespace testing {

// The PostgreSQL server the tests may use: VORTEL_TEST_PG (a libpq keyword text), or the
// throwaway cluster that CTest's fixture started (VORTEL_TEST_PG_FILE names its conninfo).
std::optional<QString> postgresConnInfo();

// A store for one test: a temporary data folder on SQLite, or a fresh database of its own on
// PostgreSQL that is dropped again at the end.
class TestStore
{
public:
    explicit TestStore(store::Engine engine);
    ~TestStore();
    TestStore(const TestStore &) = delete;
    TestStore &operator=(const TestStore &) = delete;

    bool isValid() const { return m_valid; }
    QString skipReason() const { return m_skipReason; }
    const store::ConnectionSettings &settings() const { return m_settings; }
    // The test's connection; further connections to the same store can be made from settings().
    store::Database &db() { return *m_db; }
    std::unique_ptr<store::Database> newConnection() const;
    // Opens the global store and a new working year (number 1), migrated.
    bool openYear(int calismaId = 1);

private:
    store::Engine m_engine;
    bool m_valid = false;
    QString m_skipReason;
    std::unique_ptr<QTemporaryDir> m_folder;
    QString m_pgDatabase;
    QString m_adminConnInfo;
    store::ConnectionSettings m_settings;
    std::unique_ptr<store::Database> m_db;
};

// The first column of the first row a statement gives; an invalid QVariant when it gives none
// or fails.
QVariant scalar(store::Database &db, const QString &sqlText, const QVariantList &values = {});
// Runs a statement with its values; false, with the engine's words in the log, when it failed.
bool run(store::Database &db, const QString &sqlText, const QVariantList &values = {});
// The rows of a table, all or those the condition keeps; -1 when the count failed.
int count(store::Database &db, const QString &table, const QString &where = QString(),
          const QVariantList &values = {});
// One field of the row with that KayitID.
QVariant field(store::Database &db, const QString &table, const QString &column, qint64 kayitId);

// The engines a store test runs on: SQLite always, PostgreSQL when a server is at hand.
QList<store::Engine> engines();
const char *engineName(store::Engine engine);
// Adds one QTest data row per engine, tagged "sqlite" / "postgres", in a column "engine".
void addEngineRows();
// Opens a TestStore for the current data row's engine; skips the test when PostgreSQL is
// missing. Use as: TestStore *s = storeForRow(); if (!s) return;
#define VORTEL_STORE_FOR_ROW(var)                                                                  \
    QFETCH(int, engine);                                                                           \
    testing::TestStore var(static_cast<store::Engine>(engine));                                    \
    if (!var.isValid())                                                                            \
        QSKIP(qPrintable(var.skipReason()));

// Two workstations at once: each of two threads opens its own connection to working year 1
// (commits not synced on SQLite: the locks are under test, not the disk), waits for the other,
// then runs work(db, 0 or 1). What the threads report as failures; empty when none did.
QStringList raceTwo(const store::ConnectionSettings &settings,
                    const std::function<QString(store::Database &db, int which)> &work);

// Records the messages the store's opening procedure shows during its life (a missing data
// file, a failed migration).
class StoreMessages
{
public:
    StoreMessages();
    ~StoreMessages();

    QStringList texts() const { return m_texts; }
    QStringList titles() const { return m_titles; }
    void clear()
    {
        m_texts.clear();
        m_titles.clear();
    }

private:
    QStringList m_texts;
    QStringList m_titles;
};

} // namespace testing
