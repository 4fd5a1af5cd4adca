#include "store/sqlite_functions.h"

#include "store/database.h"

#include <QCollator>
#include <QLocale>
#include <QSqlDriver>
#include <QVariant>

#include <sqlite3.h>

#include <cstring>

namespace store {

namespace {

// Turkish order (c < ç < d, ı < i, I < İ); strings equal for the collator but different in
// their bytes keep a fixed order, so that equality stays exact.
int turkishCompare(void *, int leftLength, const void *left, int rightLength, const void *right)
{
    if (leftLength == rightLength && std::memcmp(left, right, size_t(leftLength)) == 0)
        return 0;
    static thread_local QCollator collator = [] {
        QCollator c(QLocale(QLocale::Turkish, QLocale::Turkey));
        c.setCaseSensitivity(Qt::CaseSensitive);
        return c;
    }();
    const QString a = QString::fromUtf8(static_cast<const char *>(left), leftLength);
    const QString b = QString::fromUtf8(static_cast<const char *>(right), rightLength);
    const int order = collator.compare(a, b);
    if (order != 0)
        return order < 0 ? -1 : 1;
    const int common = std::memcmp(left, right, size_t(std::min(leftLength, rightLength)));
    if (common != 0)
        return common < 0 ? -1 : 1;
    return leftLength < rightLength ? -1 : 1;
}

// Dates are kept as "yyyy-MM-dd HH:mm:ss"; the parts are read by position.
bool datePart(sqlite3_value *value, int from, int length, int *out)
{
    if (sqlite3_value_type(value) != SQLITE_TEXT)
        return false;
    const char *text = reinterpret_cast<const char *>(sqlite3_value_text(value));
    const int size = sqlite3_value_bytes(value);
    if (size < from + length)
        return false;
    int result = 0;
    for (int i = from; i < from + length; ++i) {
        if (text[i] < '0' || text[i] > '9')
            return false;
        result = result * 10 + (text[i] - '0');
    }
    *out = result;
    return true;
}

template<int From, int Length>
void datePartFunction(sqlite3_context *context, int, sqlite3_value **argv)
{
    int part = 0;
    if (datePart(argv[0], From, Length, &part))
        sqlite3_result_int(context, part);
    else
        sqlite3_result_null(context);
}

void dateValueFunction(sqlite3_context *context, int, sqlite3_value **argv)
{
    int year = 0;
    if (!datePart(argv[0], 0, 4, &year)) {
        sqlite3_result_null(context);
        return;
    }
    const char *text = reinterpret_cast<const char *>(sqlite3_value_text(argv[0]));
    char result[20];
    std::memcpy(result, text, 10);
    std::memcpy(result + 10, " 00:00:00", 10);
    sqlite3_result_text(context, result, 19, SQLITE_TRANSIENT);
}

// The databases of a connection that hold the program's stores.
bool isStore(const char *database)
{
    if (!database) {
        return true;
    }
    return std::strcmp(database, "main") == 0 || std::strcmp(database, "aidat") == 0
           || std::strcmp(database, "laidat") == 0;
}

// Called while a statement is compiled, once for each thing it does; the guard is asked only
// when it would change a store.
int writeGuardAuthorizer(void *, int action, const char *first, const char *, const char *database,
                         const char *)
{
    switch (action) {
    case SQLITE_INSERT:
    case SQLITE_UPDATE:
    case SQLITE_DELETE:
    case SQLITE_CREATE_INDEX:
    case SQLITE_CREATE_TABLE:
    case SQLITE_CREATE_TRIGGER:
    case SQLITE_CREATE_VIEW:
    case SQLITE_CREATE_VTABLE:
    case SQLITE_DROP_INDEX:
    case SQLITE_DROP_TABLE:
    case SQLITE_DROP_TRIGGER:
    case SQLITE_DROP_VIEW:
    case SQLITE_DROP_VTABLE:
    case SQLITE_REINDEX:
    case SQLITE_ANALYZE:
        break;
    case SQLITE_ALTER_TABLE:
        // Here the database comes first and the table second.
        database = first;
        break;
    default:
        // Reading, attaching, pragmas, transactions, savepoints, the temporary objects.
        return SQLITE_OK;
    }
    return !isStore(database) || writeGuardAllows() ? SQLITE_OK : SQLITE_DENY;
}

sqlite3 *sqliteHandle(const QSqlDatabase &db)
{
    const QVariant v = db.driver()->handle();
    if (!v.isValid() || qstrcmp(v.typeName(), "sqlite3*") != 0)
        return nullptr;
    return *static_cast<sqlite3 *const *>(v.constData());
}

} // namespace

bool installWriteGuard(const QSqlDatabase &db)
{
    sqlite3 *handle = sqliteHandle(db);
    return handle && sqlite3_set_authorizer(handle, writeGuardAuthorizer, nullptr) == SQLITE_OK;
}

bool registerSqliteFunctions(const QSqlDatabase &db)
{
    sqlite3 *handle = sqliteHandle(db);
    if (!handle)
        return false;
    const int flags = SQLITE_UTF8 | SQLITE_DETERMINISTIC;
    bool ok = sqlite3_create_collation(handle, "turkce", SQLITE_UTF8, nullptr, turkishCompare)
              == SQLITE_OK;
    ok = ok
         && sqlite3_create_function(handle, "year", 1, flags, nullptr, datePartFunction<0, 4>,
                                    nullptr, nullptr)
                == SQLITE_OK;
    ok = ok
         && sqlite3_create_function(handle, "month", 1, flags, nullptr, datePartFunction<5, 2>,
                                    nullptr, nullptr)
                == SQLITE_OK;
    ok = ok
         && sqlite3_create_function(handle, "day", 1, flags, nullptr, datePartFunction<8, 2>,
                                    nullptr, nullptr)
                == SQLITE_OK;
    ok = ok
         && sqlite3_create_function(handle, "datevalue", 1, flags, nullptr, dateValueFunction,
                                    nullptr, nullptr)
                == SQLITE_OK;
    return ok;
}

} // namespace store
