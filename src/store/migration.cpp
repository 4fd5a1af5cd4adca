#include "store/migration.h"

#include "store/dialect.h"

#include <QLockFile>
#include <QLoggingCategory>

#include <functional>
#include <memory>

namespace store {

using schema::Field;
using schema::FieldType;

namespace {

const QString s_label = QStringLiteral("DatabaseGuncelle");

int s_failingStep = 0;

bool sameType(const ColumnInfo &current, const Field &wanted)
{
    if (wanted.type == FieldType::Text)
        return isTextType(current.typeName) && current.size == wanted.size;
    if (wanted.type == FieldType::Memo)
        return isTextType(current.typeName) && current.size == 0;
    return !isTextType(current.typeName);
}

const Field &declared(Store store, const QString &table, const QString &field)
{
    const Field *f = schema::field(store, table, field);
    Q_ASSERT_X(f, "migration", qPrintable(table + QLatin1Char('.') + field));
    return *f;
}

// A back-fill that every opening runs, on a new field or an old one.
struct Fill
{
    QString table;
    QString field;
    QString value;

    QString statement() const
    {
        return QStringLiteral("UPDATE %1 SET ") + field + QLatin1Char('=') + value
               + QStringLiteral(" WHERE ") + field + QStringLiteral(" IS NULL");
    }
};

// The running state of one migration: the catalogue as it stands, and the first failure.
// Run over the steps with FillsOnly, it changes nothing and only notes the back-fills that
// every opening runs, for a year whose shape is already current.
class Migrator
{
public:
    enum class Mode { Full, FillsOnly };

    Migrator(Database &db, Store store, Mode mode = Mode::Full)
        : m_db(db)
        , m_store(store)
        , m_mode(mode)
    {}

    base::Status load()
    {
        base::Result<Catalog> c = m_db.dialect().readCatalog(m_db, m_store);
        if (!c)
            return c.error();
        m_catalog = std::move(*c);
        return {};
    }

    bool ok() const { return m_ok; }
    const base::Error &error() const { return m_error; }
    const QList<Fill> &fills() const { return m_fills; }
    const Catalog &catalog() const { return m_catalog; }

    QString qualified(const QString &table) const { return m_db.table(m_store, table); }

    bool hasField(const QString &table, const QString &field) const
    {
        return m_catalog.hasColumn(table, field);
    }

    // Adds a declared field when missing; true when it was added now.
    bool add(const QString &table, const QString &fieldName)
    {
        if (!changing() || hasField(table, fieldName))
            return false;
        const Field &field = declared(m_store, table, fieldName);
        if (field.autoNumber) {
            if (!check(addAutoNumberColumn(m_db, m_store, table, field)))
                return false;
        } else if (!check(m_db.exec(m_db.dialect().addColumn(qualified(table), field),
                                    label(table)))) {
            return false;
        }
        m_catalog.addColumn(table, ColumnInfo{field.name, QString(), field.size, field.autoNumber});
        return true;
    }

    // Runs a statement on a table of the store: "%1" stands for the table's qualified name.
    void run(const QString &statement, const QString &table)
    {
        if (!changing())
            return;
        check(m_db.exec(statement.arg(qualified(table)), label(table)));
    }

    // Creates a declared table when missing; true when it was created now.
    bool createIfMissing(const QString &table)
    {
        if (!changing() || m_catalog.hasTable(table))
            return false;
        const schema::Table *t = schema::table(m_store, table);
        Q_ASSERT(t);
        if (!check(createDeclaredTable(m_db, *t)))
            return false;
        return check(load());
    }

    void index(const QString &table, const QString &indexName)
    {
        if (!changing() || m_catalog.hasIndex(indexName))
            return;
        const schema::Table *t = schema::table(m_store, table);
        const schema::Index *ix = t ? t->index(indexName) : nullptr;
        Q_ASSERT(ix);
        if (m_db.tryExec(m_db.dialect().createIndex(m_db.schema(m_store), table, *ix)))
            m_catalog.addIndex(indexName);
    }

    void rename(const QString &table, const QString &from, const QString &to)
    {
        if (!changing() || !hasField(table, from) || hasField(table, to))
            return;
        if (m_db.tryExec(m_db.dialect().renameColumn(qualified(table), from, to)))
            (void)check(load());
    }

    void changeType(const QString &table, const QString &fieldName)
    {
        if (!changing())
            return;
        const ColumnInfo *current = m_catalog.column(table, fieldName);
        const Field &field = declared(m_store, table, fieldName);
        if (!current || sameType(*current, field))
            return;
        if (check(changeColumnType(m_db, m_store, table, field)))
            (void)check(load());
    }

    // "UPDATE t SET f=v WHERE f IS NULL", run at every opening.
    void fill(const QString &table, const QString &field, const QString &value)
    {
        if (m_mode == Mode::FillsOnly) {
            m_fills.append(Fill{table, field, value});
            return;
        }
        run(Fill{table, field, value}.statement(), table);
    }

    // Forgets a failure, to try a step again.
    void clearFailure()
    {
        m_ok = true;
        m_error = base::Error();
    }

    bool check(const base::Status &status)
    {
        if (!status && m_ok) {
            m_ok = false;
            m_error = status.error();
        }
        return status.ok();
    }

private:
    static QString label(const QString &table) { return s_label + QLatin1Char(':') + table; }
    bool changing() const { return m_ok && m_mode == Mode::Full; }

    Database &m_db;
    Store m_store;
    Mode m_mode;
    QList<Fill> m_fills;
    Catalog m_catalog;
    bool m_ok = true;
    base::Error m_error;
};

// Adds each field, and after each one runs its back-fill "UPDATE t SET f=v WHERE f IS NULL",
// whether the field is new or not.
void addFilled(Migrator &m, const QString &table, const QString &field, const QString &value)
{
    m.add(table, field);
    m.fill(table, field, value);
}

// Adds a field and, only when it is new, sets every row to the value.
void addNew(Migrator &m, const QString &table, const QString &field, const QString &value)
{
    if (m.add(table, field))
        m.run(QStringLiteral("UPDATE %1 SET ") + field + QLatin1Char('=') + value, table);
}

void addAll(Migrator &m, const QString &table, const QStringList &fields)
{
    for (const QString &field : fields)
        m.add(table, field);
}

void haklar(Migrator &m)
{
    m.createIfMissing(QStringLiteral("Haklar"));
    addAll(m, QStringLiteral("Haklar"),
           {QStringLiteral("Kullanici_Adi"), QStringLiteral("Haklar_Okuma"),
            QStringLiteral("Haklar_Yazma"), QStringLiteral("Haklar_Program_Adi"),
            QStringLiteral("Kullanici_Program")});
}

void kasaPersonel(Migrator &m)
{
    m.createIfMissing(QStringLiteral("KASA"));
    if (m.createIfMissing(QStringLiteral("KASAKOD")))
        m.index(QStringLiteral("KASAKOD"), QStringLiteral("idx_kasakod"));
    if (m.createIfMissing(QStringLiteral("PERSONEL")))
        m.index(QStringLiteral("PERSONEL"), QStringLiteral("idx_personel"));
}

void bankalar(Migrator &m)
{
    m.createIfMissing(QStringLiteral("Bankalar"));
}

using Step = std::function<void(Migrator &, Database &)>;

// The month (yyyyMM) of a due or payment date, in each engine's own SQL.
QString monthOf(Engine engine, const QString &column)
{
    return engine == Engine::SQLite
               ? QStringLiteral("(CAST(substr(%1, 1, 4) AS INTEGER) * 100 + "
                                "CAST(substr(%1, 6, 2) AS INTEGER))")
                     .arg(column)
               : QStringLiteral("CAST(EXTRACT(YEAR FROM %1) * 100 + EXTRACT(MONTH FROM %1) AS "
                                "INTEGER)")
                     .arg(column);
}

// The triggers that keep AyOzeti, and its first filling. A row without a date counts nowhere.
base::Status AyOzetiKur(Database &db)
{
    const Engine engine = db.engine();
    const QString ozet = db.table(Store::Year, QStringLiteral("AyOzeti"));
    QStringList statements;
    struct Source
    {
        const char *table;
        const char *amount;
        const char *count; // 1 for an installment, 0 for a payment
        const char *column;
    };
    const Source sources[] = {{"OgrenciAidatDetay", "Odenecek", "1", "Odenecek"},
                              {"OgrenciAidatOdeme", "Odenen", "0", "Odenen"}};
    for (const Source &src : sources) {
        const QString table = QString::fromLatin1(src.table);
        const QString amount = QString::fromLatin1(src.amount);
        const QString count = QString::fromLatin1(src.count);
        const QString column = QString::fromLatin1(src.column);
        if (engine == Engine::SQLite) {
            const QString schemaName = ozet.section(QLatin1Char('.'), 0, 0);
            const auto add = [&](const QString &row) {
                return QStringLiteral("INSERT INTO AyOzeti (Ay, TaksitSayisi, Odenecek, Odenen) "
                                      "SELECT %1, %2, %3, %4 WHERE %5.OdemeTarihi IS NOT NULL "
                                      "ON CONFLICT(Ay) DO UPDATE SET TaksitSayisi = "
                                      "TaksitSayisi + excluded.TaksitSayisi, Odenecek = "
                                      "Odenecek + excluded.Odenecek, Odenen = Odenen + "
                                      "excluded.Odenen;")
                    .arg(monthOf(engine, row + QStringLiteral(".OdemeTarihi")), count,
                         column == QLatin1String("Odenecek")
                             ? QStringLiteral("COALESCE(%1.%2, 0)").arg(row, amount)
                             : QStringLiteral("0"),
                         column == QLatin1String("Odenen")
                             ? QStringLiteral("COALESCE(%1.%2, 0)").arg(row, amount)
                             : QStringLiteral("0"),
                         row);
            };
            const auto take = [&](const QString &row) {
                return QStringLiteral("UPDATE AyOzeti SET TaksitSayisi = TaksitSayisi - %1, "
                                      "%2 = %2 - COALESCE(%3.%4, 0) WHERE %3.OdemeTarihi IS NOT "
                                      "NULL AND Ay = %5;")
                    .arg(count, column, row, amount,
                         monthOf(engine, row + QStringLiteral(".OdemeTarihi")));
            };
            const QString name = QStringLiteral("%1.AyOzeti_%2").arg(schemaName, table);
            statements << QStringLiteral("CREATE TRIGGER IF NOT EXISTS %1_ekle AFTER INSERT ON "
                                         "%2 BEGIN %3 END")
                              .arg(name, table, add(QStringLiteral("NEW")))
                       << QStringLiteral("CREATE TRIGGER IF NOT EXISTS %1_sil AFTER DELETE ON %2 "
                                         "BEGIN %3 END")
                              .arg(name, table, take(QStringLiteral("OLD")))
                       << QStringLiteral("CREATE TRIGGER IF NOT EXISTS %1_degistir AFTER UPDATE "
                                         "ON %2 BEGIN %3 %4 END")
                              .arg(name, table, take(QStringLiteral("OLD")),
                                   add(QStringLiteral("NEW")));
        } else {
            const QString schemaName = ozet.section(QLatin1Char('.'), 0, 0);
            const QString function
                = QStringLiteral("%1.ayozeti_%2").arg(schemaName, table.toLower());
            const QString month = [&](const QString &row) {
                return monthOf(engine, row + QStringLiteral(".OdemeTarihi"));
            }(QStringLiteral("%1"));
            statements << QStringLiteral(
                              "CREATE OR REPLACE FUNCTION %1() RETURNS trigger LANGUAGE plpgsql AS "
                              "$f$ BEGIN "
                              "IF TG_OP IN ('DELETE', 'UPDATE') AND OLD.OdemeTarihi IS NOT NULL "
                              "THEN UPDATE %2 SET TaksitSayisi = TaksitSayisi - %3, %4 = %4 - "
                              "COALESCE(OLD.%5, 0) WHERE Ay = %6; END IF; "
                              "IF TG_OP IN ('INSERT', 'UPDATE') AND NEW.OdemeTarihi IS NOT NULL "
                              "THEN INSERT INTO %2 (Ay, TaksitSayisi, Odenecek, Odenen) VALUES "
                              "(%7, %3, %8, %9) ON CONFLICT (Ay) DO UPDATE SET TaksitSayisi = "
                              "%2.TaksitSayisi + EXCLUDED.TaksitSayisi, Odenecek = %2.Odenecek + "
                              "EXCLUDED.Odenecek, Odenen = %2.Odenen + EXCLUDED.Odenen; END IF; "
                              "RETURN NULL; END $f$")
                              .arg(function, ozet, count, column, amount,
                                   month.arg(QStringLiteral("OLD")),
                                   month.arg(QStringLiteral("NEW")),
                                   column == QLatin1String("Odenecek")
                                       ? QStringLiteral("COALESCE(NEW.%1, 0)").arg(amount)
                                       : QStringLiteral("0"),
                                   column == QLatin1String("Odenen")
                                       ? QStringLiteral("COALESCE(NEW.%1, 0)").arg(amount)
                                       : QStringLiteral("0"))
                       << QStringLiteral("DROP TRIGGER IF EXISTS ayozeti ON %1")
                              .arg(db.table(Store::Year, table))
                       << QStringLiteral("CREATE TRIGGER ayozeti AFTER INSERT OR UPDATE OR DELETE "
                                         "ON %1 FOR EACH ROW EXECUTE FUNCTION %2()")
                              .arg(db.table(Store::Year, table), function);
        }
    }
    // The first filling, from the rows there are.
    statements << QStringLiteral("DELETE FROM %1").arg(ozet);
    statements << QStringLiteral("INSERT INTO %1 (Ay, TaksitSayisi, Odenecek, Odenen) SELECT %2, "
                                 "COUNT(*), CAST(SUM(COALESCE(Odenecek, 0)) AS BIGINT), 0 FROM %3 "
                                 "WHERE OdemeTarihi IS NOT NULL GROUP BY %2")
                      .arg(ozet, monthOf(engine, QStringLiteral("OdemeTarihi")),
                           db.table(Store::Year, QStringLiteral("OgrenciAidatDetay")));
    statements << QStringLiteral("INSERT INTO %1 (Ay, TaksitSayisi, Odenecek, Odenen) SELECT %2, "
                                 "0, 0, CAST(SUM(COALESCE(Odenen, 0)) AS BIGINT) FROM %3 "
                                 "WHERE OdemeTarihi IS NOT NULL GROUP BY %2 "
                                 "ON CONFLICT (Ay) DO UPDATE SET Odenen = excluded.Odenen")
                      .arg(ozet, monthOf(engine, QStringLiteral("OdemeTarihi")),
                           db.table(Store::Year, QStringLiteral("OgrenciAidatOdeme")));
    for (const QString &sql : statements) {
        if (base::Status s = db.exec(sql, QStringLiteral("DatabaseGuncelle:AyOzeti")); !s)
            return s;
    }
    return {};
}

const std::vector<Step> &steps()
{
    static const std::vector<Step> s_steps = {
        // 1. school settings
        [](Migrator &m, Database &) {
            const QString t = QStringLiteral("Sabit");
            addFilled(m, t, QStringLiteral("ParaTuru"), QStringLiteral("0"));
            addFilled(m, t, QStringLiteral("OgrAOtoDeg"), QStringLiteral("'0'"));
            addFilled(m, t, QStringLiteral("ParaBirimi"), QStringLiteral("'TL'"));
            addFilled(m, t, QStringLiteral("TaksitFatura"), QStringLiteral("'0'"));
            addFilled(m, t, QStringLiteral("TaksitKilitle"), QStringLiteral("0"));
            addFilled(m, t, QStringLiteral("FisNoKilitle"), QStringLiteral("'0'"));
        },
        // 2. account headers
        [](Migrator &m, Database &) {
            const QString t = QStringLiteral("OgrenciAidatTanim");
            addFilled(m, t, QStringLiteral("YTLCevrim"), QStringLiteral("0"));
            addFilled(m, t, QStringLiteral("IskontoTutari"), QStringLiteral("0"));
            m.index(t, QStringLiteral("OgrenciAidatTanim_index2"));
            m.add(t, QStringLiteral("Aidatiptal"));
            addNew(m, t, QStringLiteral("Surum"), QStringLiteral("0"));
        },
        // 3. payments
        [](Migrator &m, Database &) {
            const QString t = QStringLiteral("OgrenciAidatOdeme");
            m.add(t, QStringLiteral("Fatura_ID"));
            m.add(t, QStringLiteral("ID"));
            m.add(t, QStringLiteral("BankaAdi"));
            addFilled(m, t, QStringLiteral("YTLCevrim"), QStringLiteral("0"));
        },
        // 4. installments
        [](Migrator &m, Database &) {
            const QString t = QStringLiteral("OgrenciAidatDetay");
            m.add(t, QStringLiteral("YTLCevrim"));
            m.add(t, QStringLiteral("OdemeSekli"));
            m.fill(t, QStringLiteral("YTLCevrim"), QStringLiteral("0"));
            addFilled(m, t, QStringLiteral("Fatura_ID"), QStringLiteral("0"));
            m.add(t, QStringLiteral("ID"));
        },
        // 5. invoices
        [](Migrator &m, Database &) {
            const QString t = QStringLiteral("Fatura");
            addFilled(m, t, QStringLiteral("YTLCevrim"), QStringLiteral("0"));
            addFilled(m, t, QStringLiteral("KDVOrani"), QStringLiteral("0"));
            addFilled(m, t, QStringLiteral("KDVTutari"), QStringLiteral("0"));
            addFilled(m, t, QStringLiteral("KDVsizTutar"), QStringLiteral("0"));
            m.add(t, QStringLiteral("FaturaAdiSoyadi"));
            m.add(t, QStringLiteral("FaturaAdres"));
        },
        // 6. fee definitions
        [](Migrator &m, Database &) {
            addFilled(m, QStringLiteral("AidatTanim"), QStringLiteral("YTLCevrim"),
                      QStringLiteral("0"));
            addFilled(m, QStringLiteral("AidatTanim"), QStringLiteral("KDVOrani"),
                      QStringLiteral("0"));
        },
        // 7. installments of the definitions
        [](Migrator &m, Database &) {
            addFilled(m, QStringLiteral("AidatDetay"), QStringLiteral("YTLCevrim"),
                      QStringLiteral("0"));
        },
        // 8. rights
        [](Migrator &m, Database &) { haklar(m); },
        // 9. students
        [](Migrator &m, Database &) {
            const QString t = QStringLiteral("Ogrenci");
            addAll(m, t,
                   {QStringLiteral("Ogr_Kayit_Tarihi"), QStringLiteral("Ogr_Kayit_Silme_Tarihi"),
                    QStringLiteral("Ogr_Kayit_Turu"), QStringLiteral("Donem"),
                    QStringLiteral("Ogr_Diger_vergiNo"), QStringLiteral("Ogr_Diger_VergiAdi"),
                    QStringLiteral("Ogr_Veli_CepTelefon"),
                    QStringLiteral("Ogr_Okulda_Okuyan_Kardes_Say"), QStringLiteral("Ogr_Ayrildi"),
                    QStringLiteral("Ogr_Muaf"), QStringLiteral("Ogr_Veli_KrediKarti"),
                    QStringLiteral("Ogr_Veli_KK_SonGec"), QStringLiteral("Ogr_TaahutNo"),
                    QStringLiteral("Ogr_FaturaAdiSoyadi"), QStringLiteral("Ogr_FaturaAdres"),
                    QStringLiteral("Ogr_Veli_Maas"), QStringLiteral("Ogr_Cari_Durum_Aciklama")});
            // Older files have a shorter note field; it grows, keeping its notes and place.
            m.changeType(t, QStringLiteral("Ogr_Cari_Durum_Aciklama"));
            m.rename(QStringLiteral("OgrenciAidatOdeme"), QStringLiteral("Aciklama"),
                     QStringLiteral("Ogr_Cari_Durum_Aciklamasi"));
            for (const QString &who : {QStringLiteral("Ana"), QStringLiteral("Baba")}) {
                for (const QString &field :
                     {QStringLiteral("TcNo"), QStringLiteral("Adi"), QStringLiteral("Soyadi"),
                      QStringLiteral("Meslegi"), QStringLiteral("Gorevi"), QStringLiteral("isYeri"),
                      QStringLiteral("isyeriSahibiMi"), QStringLiteral("isTel"),
                      QStringLiteral("EvTel"), QStringLiteral("Fax"), QStringLiteral("Email"),
                      QStringLiteral("CepTel")}) {
                    m.add(t, QStringLiteral("Ogr_") + who + QLatin1Char('_') + field);
                }
            }
            m.add(t, QStringLiteral("Ogr_CariHesap_Kodu"));
            m.add(t, QStringLiteral("Ogr_Ucret_Odeme_Turu"));
        },
        // 10. invoices get their row identity
        [](Migrator &m, Database &) { m.add(QStringLiteral("Fatura"), QStringLiteral("ID")); },
        // 11. discount definitions
        [](Migrator &m, Database &) { m.createIfMissing(QStringLiteral("IskontoTanim")); },
        // 12. discounts of the students
        [](Migrator &m, Database &) { m.createIfMissing(QStringLiteral("OgrenciIskonto")); },
        // 13. banks
        [](Migrator &m, Database &) { bankalar(m); },
        // 14. collection details of the payments
        [](Migrator &m, Database &) {
            addAll(m, QStringLiteral("OgrenciAidatOdeme"),
                   {QStringLiteral("Tahsilat_Vade_Tarihi"), QStringLiteral("Pesinat_Tarihi"),
                    QStringLiteral("Sube"), QStringLiteral("Ciro")});
        },
        // 15. cash box and personnel
        [](Migrator &m, Database &) { kasaPersonel(m); },
        // 16. education support and the school's registry numbers
        [](Migrator &m, Database &) {
            const QString t = QStringLiteral("Sabit");
            m.add(t, QStringLiteral("EgitimDestekTutari"));
            const int months[] = {12, 2, 6, 0};
            for (int i = 1; i <= 4; ++i) {
                addNew(m, t, QStringLiteral("EgitimDestekAy%1").arg(i),
                       QString::number(months[i - 1]));
            }
            for (int i = 1; i <= 4; ++i)
                m.add(t, QStringLiteral("EgitimDestekTaksit%1").arg(i));
            addAll(m, t,
                   {QStringLiteral("MersisNo"), QStringLiteral("TicaretSicilNo"),
                    QStringLiteral("VergiSicilNo"), QStringLiteral("VergiDairesiAdi"),
                    QStringLiteral("Adres")});
        },
        // 17. education support of a student
        [](Migrator &m, Database &) {
            addNew(m, QStringLiteral("Ogrenci"), QStringLiteral("Ogr_EgitimDestekDurumu"),
                   QStringLiteral("0"));
        },
        // 18. how each discount of a student is computed
        [](Migrator &m, Database &) {
            const QString t = QStringLiteral("OgrenciIskonto");
            addNew(m, t, QStringLiteral("IskontoMatrahi"), QStringLiteral("0"));
            addNew(m, t, QStringLiteral("IskontoTipi"), QStringLiteral("0"));
            addNew(m, t, QStringLiteral("IskontoKalanTutardan"), QStringLiteral("0"));
            m.add(t, QStringLiteral("IskontoSirasi"));
        },
        // 19. the order of the discount definitions
        [](Migrator &m, Database &db) {
            const QString t = QStringLiteral("IskontoTanim");
            addNew(m, t, QStringLiteral("IskontoTipi"), QStringLiteral("0"));
            addNew(m, t, QStringLiteral("IskontoKalanTutardan"), QStringLiteral("0"));
            if (m.add(t, QStringLiteral("IskontoSirasi")))
                m.check(IskontoSirasiDoldur(db));
        },
        // 20. scholarships
        [](Migrator &m, Database &) {
            if (m.createIfMissing(QStringLiteral("OgrenciBurs")))
                m.index(QStringLiteral("OgrenciBurs"), QStringLiteral("OgrenciBurs_INX"));
        },
        // 21. the scholarship amount, kept as text
        [](Migrator &m, Database &) {
            m.add(QStringLiteral("OgrenciBurs"), QStringLiteral("BursMiktari"));
        },
        // 22. the record lock and the parents' work addresses
        [](Migrator &m, Database &) {
            const QString t = QStringLiteral("Ogrenci");
            addNew(m, t, QStringLiteral("Ogr_Islem_Yapan_Kullanici"), QStringLiteral("''"));
            addNew(m, t, QStringLiteral("Ogr_Islem_Yapan_Kullanici_Ilk"), QStringLiteral("''"));
            addNew(m, t, QStringLiteral("Ogr_Anne_Is_Adresi"), QStringLiteral("''"));
            addNew(m, t, QStringLiteral("Ogr_Baba_Is_Adresi"), QStringLiteral("''"));
        },
        // 23. banks once more: a file that went through step 13 is left as it is
        [](Migrator &m, Database &) { bankalar(m); },
        // 24. refunds
        [](Migrator &m, Database &) {
            if (m.createIfMissing(QStringLiteral("AidatIade")))
                m.index(QStringLiteral("AidatIade"), QStringLiteral("AidatIade_INX"));
        },
        // 25. the kind of a fee
        [](Migrator &m, Database &) {
            addNew(m, QStringLiteral("AidatTanim"), QStringLiteral("AidatTuru"),
                   QStringLiteral("0"));
        },
        // 26. what the screens look rows up by: the siblings table and fields that the student
        // screen used to add for itself, room for the encrypted card number, and an index for
        // every key a ledger or student screen
        // reads by (without the payments' one, the balance of one student scans every payment
        // of the school).
        [](Migrator &m, Database &) {
            m.createIfMissing(QStringLiteral("OgrenciKardesler"));
            // The guardian's card number is kept encrypted, longer than the number it hides.
            m.changeType(QStringLiteral("Ogrenci"), QStringLiteral("Ogr_Veli_KrediKarti"));
            addAll(m, QStringLiteral("Ogrenci"),
                   {QStringLiteral("KardesAd"), QStringLiteral("KardesSoyad"),
                    QStringLiteral("KardesOkul")});
            for (const schema::Table &t : schema::tables()) {
                if (t.store != Store::Year || !m.catalog().hasTable(t.name))
                    continue;
                for (const schema::Index &ix : t.indexes)
                    m.index(t.name, ix.name);
            }
        },
        // 27. the ledger's month sums, which the background's figures read in place of the
        // whole ledger: kept by triggers at every write, filled once from the rows there are.
        [](Migrator &m, Database &db) {
            if (m.createIfMissing(QStringLiteral("AyOzeti"))) {
                m.index(QStringLiteral("AyOzeti"), QStringLiteral("AyOzeti_Ay"));
                if (m.ok())
                    m.check(AyOzetiKur(db));
            }
        },
    };
    return s_steps;
}

// Raised by hand when a step changes in a way that neither the declaration nor the number of
// steps shows (a back-fill of its own, say).
constexpr int s_revision = 1;

// The back-fills of an up-to-date year: one reading tells which of them have rows to fill, and
// only those run, together in one transaction; with none, nothing is written. The rows are
// found through the indexes of the Null rows, so a large ledger costs nothing here.
base::Status runFills(Database &db, const QList<Fill> &fills)
{
    if (fills.isEmpty())
        return {};
    QStringList probes;
    for (const Fill &f : fills) {
        probes << QStringLiteral("EXISTS (SELECT 1 FROM %1 WHERE %2 IS NULL)")
                      .arg(db.table(Store::Year, f.table), f.field);
    }
    QList<Fill> due;
    {
        Query q(db, QStringLiteral("SELECT ") + probes.join(QStringLiteral(", ")));
        if (!q.exec() || !q.next())
            return q.error(s_label);
        for (qsizetype i = 0; i < fills.size(); ++i) {
            if (q.value(int(i)).toBool())
                due.append(fills.at(i));
        }
    }
    if (due.isEmpty())
        return {};
    Transaction tx(db);
    if (!tx)
        return tx.error();
    for (const Fill &f : std::as_const(due)) {
        if (base::Status st = db.exec(f.statement().arg(db.table(Store::Year, f.table)),
                                      s_label + QLatin1Char(':') + f.table);
            !st) {
            return st;
        }
    }
    if (!tx.commit())
        return tx.error();
    return {};
}

base::Status fillsOnly(Database &db)
{
    Migrator m(db, Store::Year, Migrator::Mode::FillsOnly);
    for (const Step &step : steps())
        step(m, db);
    return runFills(db, m.fills());
}

// One workstation brings a store forward at a time; the next one waits and then finds the work
// done. The steps commit one by one, so the lock outlives each transaction: on PostgreSQL a
// session-level advisory lock on the store's key, given back at the end (or when the connection
// ends); on SQLite, whose locks end with their transaction, a lock file beside the store's file,
// which a crashed holder leaves stale and the next one takes over.
class MigrationLock
{
public:
    MigrationLock(Database &db, Store store)
        : m_db(db)
        , m_key(db.schemaLockKey(store))
    {
        if (db.engine() == Engine::SQLite) {
            m_file = std::make_unique<QLockFile>(db.location(store, db.openYear())
                                                 + QStringLiteral(".lock"));
            m_file->setStaleLockTime(0);
            if (m_file->tryLock(s_wait)) {
                return;
            }
            m_status = m_file->error() == QLockFile::LockFailedError
                           ? busy()
                           : base::Error{75,
                                         QStringLiteral("Kilit dosyası yazılamadı: ")
                                             + m_file->fileName(),
                                         s_label};
            return;
        }
        Query q(db,
                QStringLiteral("SELECT pg_advisory_lock(CAST(? AS integer), CAST(? AS integer))"));
        q.bind(m_key.first).bind(m_key.second);
        if (!q.exec()) {
            m_status = q.error(s_label);
            return;
        }
        m_held = true;
    }

    ~MigrationLock()
    {
        if (m_held) {
            Query q(m_db, QStringLiteral(
                              "SELECT pg_advisory_unlock(CAST(? AS integer), CAST(? AS integer))"));
            q.bind(m_key.first).bind(m_key.second);
            (void)q.exec();
        }
    }

    MigrationLock(const MigrationLock &) = delete;
    MigrationLock &operator=(const MigrationLock &) = delete;

    const base::Status &status() const { return m_status; }

private:
    static base::Error busy()
    {
        return base::Error{3260,
                           QStringLiteral("Çalışma dosyası başka bir iş istasyonunda "
                                          "güncelleniyor; bir süre sonra yeniden deneyiniz."),
                           s_label};
    }

    static constexpr int s_wait = 10 * 60 * 1000; // a large year rebuilt on a slow disk

    Database &m_db;
    std::pair<qint32, qint32> m_key;
    std::unique_ptr<QLockFile> m_file;
    bool m_held = false;
    base::Status m_status;
};

base::Status createIndexes(Database &db, const schema::Table &table, bool modelOnly)
{
    for (const schema::Index &ix : table.indexes) {
        if (modelOnly && ix.added)
            continue;
        schema::Index named = ix;
        if (modelOnly) {
            // The model knows some fields under their older names.
            for (QString &fieldName : named.fields) {
                const Field *f = table.field(fieldName);
                if (f && !f->modelName.isEmpty())
                    fieldName = f->modelName;
            }
        }
        if (base::Status s
            = db.exec(db.dialect().createIndex(db.schema(table.store), table.name, named),
                      QStringLiteral("DatabaseAc:") + table.name);
            !s) {
            return s;
        }
    }
    return {};
}

base::Status createTable(Database &db, const schema::Table &table, bool bornFieldsOnly)
{
    QList<Field> fields;
    for (const Field &f : table.fields) {
        if (bornFieldsOnly && f.added)
            continue;
        Field born = f;
        if (bornFieldsOnly && !f.modelName.isEmpty())
            born.name = f.modelName;
        fields.append(born);
    }
    return db.exec(db.dialect().createTable(db.table(table.store, table.name), fields),
                   QStringLiteral("DatabaseAc:") + table.name);
}

} // namespace

// ---- catalogue helpers ---------------------------------------------------------------------

bool Field_Exist(Database &db, Store store, const QString &table, const QString &field)
{
    base::Result<Catalog> c = db.dialect().readCatalog(db, store);
    return c && c->hasColumn(table, field);
}

bool AddField_ToTable(Database &db, Store store, const QString &table, const Field &field,
                      const QString &defaultValue)
{
    base::Result<Catalog> c = db.dialect().readCatalog(db, store);
    if (!c || !c->hasTable(table) || c->hasColumn(table, field.name))
        return false;
    const bool added = field.autoNumber
                           ? addAutoNumberColumn(db, store, table, field).ok()
                           : db.tryExec(db.dialect().addColumn(db.table(store, table), field));
    if (added && !defaultValue.isEmpty()) {
        (void)db.tryExec(QStringLiteral("UPDATE %1 SET %2=%3")
                             .arg(db.table(store, table), field.name, defaultValue));
    }
    return added;
}

bool AlanYoksaEkle(Database &db, Store store, const QString &table, const Field &field)
{
    if (Field_Exist(db, store, table, field.name))
        return true;
    AddField_ToTable(db, store, table, field);
    return Field_Exist(db, store, table, field.name);
}

bool TabloYoksaEkle(Database &db, Store store, const QString &table)
{
    base::Result<Catalog> c = db.dialect().readCatalog(db, store);
    return c && !c->hasTable(table);
}

void IndeksEkle(Database &db, Store store, const QString &table, const schema::Index &index)
{
    base::Result<Catalog> c = db.dialect().readCatalog(db, store);
    if (!c || c->hasIndex(index.name))
        return;
    (void)db.tryExec(db.dialect().createIndex(db.schema(store), table, index));
}

void AlanAdiDegistir(Database &db, Store store, const QString &table, const QString &from,
                     const QString &to)
{
    base::Result<Catalog> c = db.dialect().readCatalog(db, store);
    if (!c || !c->hasColumn(table, from) || c->hasColumn(table, to))
        return;
    (void)db.tryExec(db.dialect().renameColumn(db.table(store, table), from, to));
}

base::Status AlanDegistir(Database &db, Store store, const QString &table, const Field &field)
{
    base::Result<Catalog> c = db.dialect().readCatalog(db, store);
    if (!c)
        return c.error();
    const ColumnInfo *current = c->column(table, field.name);
    if (!current || sameType(*current, field))
        return {};
    Transaction tx(db);
    if (!tx)
        return tx.error();
    if (base::Status s = changeColumnType(db, store, table, field); !s)
        return s;
    if (!tx.commit())
        return tx.error();
    return {};
}

// ---- creation ------------------------------------------------------------------------------

base::Status createDeclaredTable(Database &db, const schema::Table &table)
{
    if (base::Status s = createTable(db, table, true); !s)
        return s;
    // Indexes of a table that a step makes come with that step; the model's come with it.
    if (!table.added)
        return createIndexes(db, table, true);
    return {};
}

base::Status createGlobalTables(Database &db)
{
    const auto missing = [](const Catalog &c) {
        for (const schema::Table &t : schema::tables()) {
            if (t.store == Store::Global && !t.added && !c.hasTable(t.name)) {
                return true;
            }
        }
        return false;
    };
    base::Result<Catalog> c = db.dialect().readCatalog(db, Store::Global);
    if (!c)
        return c.error();
    if (!missing(*c))
        return {};
    // Another workstation may be making them at this moment: read again under the lock.
    Transaction tx(db);
    if (!tx)
        return tx.error();
    if (base::Status s = db.lockSchema(Store::Global); !s) {
        return s;
    }
    c = db.dialect().readCatalog(db, Store::Global);
    if (!c) {
        return c.error();
    }
    for (const schema::Table &t : schema::tables()) {
        if (t.store != Store::Global || t.added || c->hasTable(t.name))
            continue;
        if (base::Status s = createTable(db, t, false); !s)
            return s;
        if (base::Status s = createIndexes(db, t, false); !s)
            return s;
    }
    if (!tx.commit())
        return tx.error();
    return {};
}

base::Status prepareGlobalStore(Database &db)
{
    base::Result<Catalog> c = db.dialect().readCatalog(db, Store::Global);
    if (!c)
        return c.error();
    bool complete = c->columns(QStringLiteral("Haklar")).size() >= 5;
    for (const schema::Table &t : schema::tables()) {
        if (t.store == Store::Global && !t.added && !c->hasTable(t.name))
            complete = false;
    }
    if (complete)
        return {};
    if (base::Status s = createGlobalTables(db); !s)
        return s;
    return HaklarTabloEkle(db, Store::Global);
}

base::Status createModel(Database &db)
{
    Transaction tx(db);
    if (!tx)
        return tx.error();
    for (const schema::Table &t : schema::tables()) {
        if (t.store != Store::Year || t.added)
            continue;
        if (base::Status s = createDeclaredTable(db, t); !s)
            return s;
    }
    if (!tx.commit())
        return tx.error();
    return {};
}

base::Status HaklarTabloEkle(Database &db, Store store)
{
    Migrator m(db, store);
    if (base::Status s = m.load(); !s)
        return s;
    if (m.catalog().hasTable(QStringLiteral("Haklar"))
        && m.catalog().columns(QStringLiteral("Haklar")).size() >= 5) {
        return {};
    }
    Transaction tx(db);
    if (!tx)
        return tx.error();
    if (base::Status s = db.lockSchema(store); !s) {
        return s;
    }
    if (base::Status s = m.load(); !s) {
        return s;
    }
    haklar(m);
    if (!m.ok())
        return m.error();
    if (!tx.commit())
        return tx.error();
    return {};
}

base::Status KasaPersonelTabloEkle(Database &db)
{
    Migrator m(db, Store::Year);
    Transaction tx(db);
    if (!tx)
        return tx.error();
    if (base::Status s = db.lockSchema(Store::Year); !s) {
        return s;
    }
    if (base::Status s = m.load(); !s)
        return s;
    kasaPersonel(m);
    if (!m.ok())
        return m.error();
    if (!tx.commit())
        return tx.error();
    return {};
}

base::Status IskontoSirasiDoldur(Database &db)
{
    const QString label = QStringLiteral("DatabaseGuncelle:IskontoSirasiDoldur");
    QList<qint64> ids;
    {
        Query q(db, QStringLiteral("SELECT ID FROM %1 ORDER BY ID")
                        .arg(db.table(Store::Year, QStringLiteral("IskontoTanim"))));
        if (!q.exec())
            return q.error(label);
        while (q.next())
            ids.append(q.integer(0));
    }
    int sira = 0;
    for (qint64 id : std::as_const(ids)) {
        ++sira;
        Query own(db, QStringLiteral("UPDATE %1 SET IskontoSirasi=? WHERE ID=?")
                          .arg(db.table(Store::Year, QStringLiteral("IskontoTanim"))));
        own.bind(sira).bind(id);
        if (!own.exec())
            return own.error(label);
        Query students(db, QStringLiteral("UPDATE %1 SET IskontoSirasi=? WHERE IskontoID=?")
                               .arg(db.table(Store::Year, QStringLiteral("OgrenciIskonto"))));
        students.bind(sira).bind(id);
        if (!students.exec())
            return students.error(label);
    }
    Query serbest(db, QStringLiteral("INSERT INTO %1 (IskontoAciklama, IskontoOrani, IskontoTipi, "
                                     "IskontoKalanTutardan, IskontoSirasi) VALUES (?, 0, 1, 1, ?)")
                          .arg(db.table(Store::Year, QStringLiteral("IskontoTanim"))));
    serbest.bind(QStringLiteral("Serbest İndirim")).bind(sira + 1);
    if (!serbest.exec())
        return serbest.error(label);
    return {};
}

// ---- migration -----------------------------------------------------------------------------

int migrationStepCount()
{
    return int(steps().size());
}

void failMigrationStepForTest(int step)
{
    s_failingStep = step;
}

int yearSchemaVersion()
{
    static const int s_version = [] {
        // FNV-1a over the declaration, a separator after each part.
        quint32 hash = 2166136261u;
        const auto mix = [&hash](const QString &part) {
            for (const char c : part.toUtf8())
                hash = (hash ^ quint8(c)) * 16777619u;
            hash = (hash ^ 0xffu) * 16777619u;
        };
        mix(QString::number(s_revision));
        mix(QString::number(steps().size()));
        for (const schema::Table &t : schema::tables()) {
            if (t.store != Store::Year)
                continue;
            mix(t.name);
            for (const Field &f : t.fields) {
                mix(QStringLiteral("%1 %2 %3 %4")
                        .arg(f.name)
                        .arg(int(f.type))
                        .arg(f.size)
                        .arg(f.autoNumber ? 1 : 0));
            }
            for (const schema::Index &ix : t.indexes) {
                mix(QStringLiteral("%1 (%2) %3 %4")
                        .arg(ix.name, ix.fields.join(QLatin1Char(',')))
                        .arg(ix.unique ? 1 : 0)
                        .arg(ix.where));
            }
        }
        // Positive, and never 0, which stands for a store without a number.
        return int(hash & 0x7fffffffu) | 1;
    }();
    return s_version;
}

namespace {

base::Status migrate(Database &db)
{
    const int current = yearSchemaVersion();
    // The number is left only by a migration that has finished: read without the lock, it
    // tells an up-to-date year, whose shape nobody changes now.
    base::Result<int> stored = db.dialect().schemaVersion(db, Store::Year);
    if (!stored)
        return stored.error();
    if (*stored == current)
        return fillsOnly(db);

    // The catalogue is read once the lock is held, and no other workstation changes it
    // until the lock is given back.
    const MigrationLock lock(db, Store::Year);
    if (!lock.status())
        return lock.status();
    // Another workstation may have brought the year forward while this one waited.
    stored = db.dialect().schemaVersion(db, Store::Year);
    if (!stored)
        return stored.error();
    if (*stored == current)
        return fillsOnly(db);

    Migrator m(db, Store::Year);
    base::Status result = m.load();
    const int last = int(steps().size());
    int number = 0;
    for (const Step &step : steps()) {
        if (!result)
            break;
        ++number;
        // A step reads before it writes. On SQLite a read that would then wait for another
        // workstation's write is refused at once, to avoid a deadlock ("database is
        // locked"): such a step is run again holding the write lock from its start.
        for (Transaction::Mode mode : {Transaction::Mode::Deferred, Transaction::Mode::Immediate}) {
            result = {};
            Transaction tx(db, mode);
            if (!tx) {
                result = tx.error();
            } else {
                step(m, db);
                if (number == s_failingStep) {
                    s_failingStep = 0;
                    m.check(base::Error{
                        3061, QStringLiteral("Adım %1 bu dosyada tamamlanamadı.").arg(number),
                        s_label});
                }
                // The year is current when the last step commits, and not before.
                if (number == last && m.ok())
                    m.check(db.dialect().setSchemaVersion(db, Store::Year, current));
                if (!m.ok())
                    result = m.error();
                else if (!tx.commit())
                    result = tx.error();
            }
            const bool busy = !result && result.error().number == 3260
                              && db.engine() == Engine::SQLite
                              && mode == Transaction::Mode::Deferred;
            if (!busy)
                break;
            tx.rollback();
            m.clearFailure();
            if (base::Status reload = m.load(); !reload) {
                result = reload;
                break;
            }
        }
    }
    return result;
}

} // namespace

base::Status DatabaseGuncelle(Database &db)
{
    const WriteGuardExemption own;
    // The lock is given back before anybody reads the notice.
    const base::Status result = migrate(db);
    if (!result) {
        // The steps done so far stay; the next opening goes on from here.
        base::Error e = result.error().withLabel(s_label);
        e.bildiri = base::Bildiri{QStringLiteral("HATA"),
                                  QStringLiteral("Database güncellemede hata!\n") + e.text,
                                  base::Icon::Critical};
        return e;
    }
    return {};
}

void SonAlanlariEkle(Database &db)
{
    const WriteGuardExemption own;
    // The fields are there on every year opened before: two statements that name them tell so
    // without reading the catalogue.
    if (db.tryExec(QStringLiteral("SELECT AidatBirimFiyati, AidatBirimAdeti FROM %1 WHERE 1 = 0")
                       .arg(db.table(Store::Year, QStringLiteral("AidatTanim"))))
        && db.tryExec(QStringLiteral("SELECT OgrKayitSilinenRapordaGoster FROM %1 WHERE 1 = 0")
                          .arg(db.table(Store::Year, QStringLiteral("Sabit"))))) {
        return;
    }
    // One reading of the two tables' columns serves the three tests; an add is refused,
    // quietly, when the field is there after all.
    base::Result<Catalog> c = db.dialect().readColumns(
        db, Store::Year, {QStringLiteral("AidatTanim"), QStringLiteral("Sabit")});
    if (!c)
        return;
    const struct
    {
        const char *table;
        const char *lookedFor;
        const char *added;
    } fields[] = {
        {"AidatTanim", "AidatBirimFiyati", "AidatBirimFiyati"},
        {"AidatTanim", "AidatBirimAdet", "AidatBirimAdeti"},
        {"Sabit", "OgrKayitSilinenRapordaGoster", "OgrKayitSilinenRapordaGoster"},
    };
    for (const auto &f : fields) {
        const QString table = QString::fromLatin1(f.table);
        if (c->hasColumn(table, QString::fromLatin1(f.lookedFor)))
            continue;
        const Field &field = declared(Store::Year, table, QString::fromLatin1(f.added));
        if (c->hasColumn(table, field.name))
            continue;
        if (db.tryExec(db.dialect().addColumn(db.table(Store::Year, table), field)))
            c.value().addColumn(table, ColumnInfo{field.name, QString(), field.size, false});
    }
}

} // namespace store
