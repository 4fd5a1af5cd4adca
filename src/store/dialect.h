#pragma once

#include "store/database.h"
#include "store/schema.h"

#include <QHash>
#include <QSet>
#include <QString>
#include <QStringList>

namespace store {

// A column as the catalogue shows it.
struct ColumnInfo
{
    QString name;     // as the engine keeps it (PostgreSQL folds unquoted names to lower case)
    QString typeName; // the declared type: "VARCHAR(100)", "character varying(100)", "BIGINT"
    int size = 0;     // the length of a sized text type, 0 otherwise
    bool autoNumber = false;
};

// What one store holds: its tables with their columns in order, and its index names.
// Names are looked up without regard to case, as unquoted SQL identifiers are.
class Catalog
{
public:
    bool hasTable(const QString &table) const;
    bool hasColumn(const QString &table, const QString &column) const;
    const ColumnInfo *column(const QString &table, const QString &column) const;
    QList<ColumnInfo> columns(const QString &table) const;
    bool hasIndex(const QString &index) const;
    QStringList tableNames() const;

    void addTable(const QString &table);
    void addColumn(const QString &table, const ColumnInfo &column);
    void addIndex(const QString &index);
    void clear();

private:
    QHash<QString, QList<ColumnInfo>> m_columns; // lower-case table name -> columns
    QHash<QString, QString> m_tableNames;        // lower-case -> as kept
    QSet<QString> m_indexes;                     // lower-case
};

// Everything in which SQLite and PostgreSQL differ: types, DDL, the catalogue, compaction.
// The SQL of the screens is written once, for both.
class Dialect
{
public:
    explicit Dialect(Engine engine)
        : m_engine(engine)
    {}

    Engine engine() const { return m_engine; }

    // "Ogr_Adi VARCHAR(20) COLLATE turkce", "KayitID INTEGER PRIMARY KEY AUTOINCREMENT"...
    QString columnDefinition(const schema::Field &field) const;
    QString createTable(const QString &qualifiedName, const QList<schema::Field> &fields) const;
    QString createIndex(const QString &schemaName, const QString &table,
                        const schema::Index &index) const;
    QString addColumn(const QString &qualifiedTable, const schema::Field &field) const;
    QString renameColumn(const QString &qualifiedTable, const QString &from,
                         const QString &to) const;

    // Reads what a store holds.
    base::Result<Catalog> readCatalog(Database &db, Store store) const;
    // Reads the columns of the named tables only; the indexes are not read.
    base::Result<Catalog> readColumns(Database &db, Store store, const QStringList &tables) const;
    // True when the store holds a table at all: a store without one is new.
    base::Result<bool> hasTables(Database &db, Store store) const;

    // The number that the migration leaves in a store once all of its steps have succeeded;
    // 0 when none was left. SQLite keeps it in the file's header (user_version), PostgreSQL as
    // the comment of the store's schema; both change with the transaction that sets them.
    base::Result<int> schemaVersion(Database &db, Store store) const;
    base::Status setSchemaVersion(Database &db, Store store, int version) const;

    // The name of the Turkish collation in column definitions.
    QString collation() const;

private:
    Engine m_engine;
};

// True for a text column as either engine names its type ("VARCHAR(20)", "character varying",
// "TEXT").
bool isTextType(const QString &typeName);

// Catalogue operations that need more than one statement on one of the engines (SQLite has
// no ALTER COLUMN and cannot add an autonumber to a table that has rows): the table is rebuilt
// with the same columns in the same order, its rows and indexes carried over.
base::Status addAutoNumberColumn(Database &db, Store store, const QString &table,
                                 const schema::Field &field);
base::Status changeColumnType(Database &db, Store store, const QString &table,
                              const schema::Field &field);

} // namespace store
