#pragma once

#include "store/database.h"

#include <QString>
#include <QStringList>

#include <vector>

// Every table of the system, declared once as data: name, fields with their logical types and
// sizes, indexes. The model shape of a store is what a brand-new store starts with; the fields,
// tables and indexes marked `added` are brought in by the migration of a working year (or, for
// the global tables, by their owners when missing).
namespace store::schema {

enum class FieldType {
    Boolean, // kept as 0/1 in a SMALLINT on both engines, so that one SQL text serves both
    Byte,
    Integer,
    Long,
    Money, // base::Para: BIGINT ten-thousandths
    Single,
    Double,
    Date, // ISO text on SQLite, timestamp on PostgreSQL
    Text, // sized; Turkish collation
    Memo, // unsized text; Turkish collation
    Blob,
};

struct Field
{
    QString name;
    FieldType type = FieldType::Text;
    int size = 0;            // Text only
    bool autoNumber = false; // the table's autonumber key
    bool added = false;      // not in the model: brought in later
    QString modelName = {};  // the name the model gives the field, where it was renamed since
};

struct Index
{
    QString name; // unique within its store: a name that stands on several tables of a store
                  // carries the table's name in front
    QStringList fields;
    bool unique = false;
    bool added = false;
    QString where = {}; // a partial index: only the rows this condition holds for
};

struct Table
{
    QString name;
    Store store = Store::Year;
    bool added = false; // the model has no such table
    std::vector<Field> fields;
    std::vector<Index> indexes;

    const Field *field(const QString &fieldName) const;
    const Index *index(const QString &indexName) const;
};

const std::vector<Table> &tables();
const Table *table(Store store, const QString &name);
// A declared field of a table; nullptr when there is none.
const Field *field(Store store, const QString &tableName, const QString &fieldName);
// The size of a Text field, 0 for other fields: entry boxes cut their text to it.
int textSize(Store store, const QString &tableName, const QString &fieldName);

// The error table, which lives apart from the three stores so that a failure can always be
// written down, whatever transaction the failing screen left open.
const Table &errorTable();

} // namespace store::schema
